// The five history methods: the browser call, codes 0/3/5/1 with their trace blocks, a null pRetCode.
#include "support/browser_fixture.h"

using tovtest::ControlFixture;

namespace {

struct HistoryMethod {
    const char* scope;
    const wchar_t* browserCall;
    std::string failure; // "<name>: m_pWebBrowser" is also the start of the "is invalid" text
    HRESULT (STDMETHODCALLTYPE ITOVHTMLControl::*method)(LONG*);
};

const HistoryMethod kHistory[] = {
    {"GoBack", L"GoBack", "GoBack: m_pWebBrowser->GoBack", &ITOVHTMLControl::GoBack},
    {"GoForward", L"GoForward", "GoForward: m_pWebBrowser->GoForward", &ITOVHTMLControl::GoForward},
    {"GoHome", L"GoHome", "GoHome: m_pWebBrowser->GoHome", &ITOVHTMLControl::GoHome},
    {"Stop", L"Stop", "Stop: m_pWebBrowser->Stop", &ITOVHTMLControl::Stop},
    {"DoRefresh", L"Refresh", "Refresh: m_pWebBrowser->Refresh", &ITOVHTMLControl::DoRefresh},
};

} // namespace

using History = ControlFixture;

TEST_F(History, WithoutABrowserEachAnswersCodeThreeWithItsText)
{
    Connect(1);
    for (const auto& h : kHistory) {
        SCOPED_TRACE(h.scope);
        ClearLines();
        LONG code = -1;
        EXPECT_EQ(S_OK, (control.Get()->*h.method)(&code));
        EXPECT_EQ(3, code);
        EXPECT_EQ(FailureBlock(h.scope, h.failure.substr(0, h.failure.find("->")) + " is invalid"), Lines());
    }
    Connect(0);
    ClearLines();
    control->GoBack(nullptr);
    EXPECT_EQ((std::vector<std::string>{Hashes(), "GoBack: m_pWebBrowser is invalid", Hashes()}), Lines())
        << "at level 0 the block has no entry line";
}

using HistoryWithBrowser = tovtest::BrowserFixture;

TEST_F(HistoryWithBrowser, CodesForSuccessFailureAndException)
{
    Connect(1);
    for (const auto& h : kHistory) {
        SCOPED_TRACE(h.scope);
        browser->Log().Clear();
        LONG code = -1;
        EXPECT_EQ(S_OK, (control.Get()->*h.method)(&code));
        EXPECT_EQ(0, code);
        EXPECT_EQ(std::vector<std::wstring>{std::wstring(h.browserCall) + L"()"}, browser->Log().Texts());

        browser->FailCall(h.browserCall, E_ACCESSDENIED);
        ClearLines();
        EXPECT_EQ(S_OK, (control.Get()->*h.method)(&code));
        EXPECT_EQ(5, code);
        EXPECT_EQ(FailureBlock(h.scope, h.failure), Lines());

        browser->ClearFailures();
        browser->ThrowOn(h.browserCall);
        EXPECT_EQ(S_OK, (control.Get()->*h.method)(&code));
        EXPECT_EQ(1, code) << "an exception inside the method";
        EXPECT_EQ(S_OK, (control.Get()->*h.method)(nullptr));
        browser->ClearFailures();
    }
}
