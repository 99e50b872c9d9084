// The five history methods: the browser call, codes 0/3/5/1 with their trace blocks, a null pRetCode, and
// the same codes late-bound by DISPID.
#include "support/browser_fixture.h"
#include "framework/variant.h"

using tovtest::ControlFixture;

namespace {

struct HistoryMethod {
    const char* scope;
    const wchar_t* browserCall;
    std::string failure; // "<name>: m_pWebBrowser" is also the start of the "is invalid" text
    DISPID dispid;
    HRESULT (STDMETHODCALLTYPE ITOVHTMLControl::*method)(LONG*);
};

const HistoryMethod kHistory[] = {
    {"GoBack", L"GoBack", "GoBack: m_pWebBrowser->GoBack", 1, &ITOVHTMLControl::GoBack},
    {"GoForward", L"GoForward", "GoForward: m_pWebBrowser->GoForward", 2, &ITOVHTMLControl::GoForward},
    {"GoHome", L"GoHome", "GoHome: m_pWebBrowser->GoHome", 3, &ITOVHTMLControl::GoHome},
    {"Stop", L"Stop", "Stop: m_pWebBrowser->Stop", 4, &ITOVHTMLControl::Stop},
    {"DoRefresh", L"Refresh", "Refresh: m_pWebBrowser->Refresh", 5, &ITOVHTMLControl::DoRefresh},
};

std::vector<std::string> FailureBlock(const HistoryMethod& h, const std::string& text)
{
    const std::string entry = std::string("=> ") + h.scope, hashes(45, '#');
    return {entry, hashes, entry, text, hashes, std::string("<= ") + h.scope};
}

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
        EXPECT_EQ(FailureBlock(h, h.failure.substr(0, h.failure.find("->")) + " is invalid"), Lines());
    }
    Connect(0);
    ClearLines();
    control->GoBack(nullptr);
    EXPECT_EQ((std::vector<std::string>{Hashes(), "GoBack: m_pWebBrowser is invalid", Hashes()}), Lines())
        << "at level 0 the block has no entry line";
}

using HistoryWithBrowser = tovtest::BrowserFixture;

TEST_F(HistoryWithBrowser, CodesForSuccessFailureAndExceptionAlsoLateBound)
{
    Connect(1);
    tov::ComPtr<IDispatch> disp;
    ASSERT_EQ(S_OK, control->QueryInterface(IID_IDispatch, disp.PutVoid()));
    const auto lateBound = [&](DISPID id) {
        DISPPARAMS none{};
        tov::Variant result;
        EXPECT_EQ(S_OK, disp->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, &result, nullptr, nullptr));
        return result.vt == VT_I4 ? result.lVal : -1;
    };
    for (const auto& h : kHistory) {
        SCOPED_TRACE(h.scope);
        browser->Log().Clear();
        LONG code = -1;
        EXPECT_EQ(S_OK, (control.Get()->*h.method)(&code));
        EXPECT_EQ(0, code);
        EXPECT_EQ(std::vector<std::wstring>{std::wstring(h.browserCall) + L"()"}, browser->Log().Texts());
        EXPECT_EQ(0, lateBound(h.dispid));

        browser->FailCall(h.browserCall, E_ACCESSDENIED);
        ClearLines();
        EXPECT_EQ(S_OK, (control.Get()->*h.method)(&code));
        EXPECT_EQ(5, code);
        EXPECT_EQ(FailureBlock(h, h.failure), Lines());
        EXPECT_EQ(5, lateBound(h.dispid));

        browser->ClearFailures();
        browser->ThrowOn(h.browserCall);
        EXPECT_EQ(S_OK, (control.Get()->*h.method)(&code));
        EXPECT_EQ(1, code) << "an exception inside the method";
        EXPECT_EQ(S_OK, (control.Get()->*h.method)(nullptr));
        browser->ClearFailures();
    }
}
