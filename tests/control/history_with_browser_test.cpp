// The history methods with a scripted browser: the browser call, failure and exception codes, the same
// result late-bound.
#include "support/browser_fixture.h"
#include "framework/variant.h"

using tov::ComPtr;

namespace {

struct History {
    const char* scope;
    const wchar_t* browserCall;
    const char* failure;
    DISPID dispid;
    HRESULT (STDMETHODCALLTYPE ITOVHTMLControl::*method)(LONG*);
};

const History kHistory[] = {
    {"GoBack", L"GoBack", "GoBack: m_pWebBrowser->GoBack", 1, &ITOVHTMLControl::GoBack},
    {"GoForward", L"GoForward", "GoForward: m_pWebBrowser->GoForward", 2, &ITOVHTMLControl::GoForward},
    {"GoHome", L"GoHome", "GoHome: m_pWebBrowser->GoHome", 3, &ITOVHTMLControl::GoHome},
    {"Stop", L"Stop", "Stop: m_pWebBrowser->Stop", 4, &ITOVHTMLControl::Stop},
    {"DoRefresh", L"Refresh", "Refresh: m_pWebBrowser->Refresh", 5, &ITOVHTMLControl::DoRefresh},
};

} // namespace

using HistoryWithBrowser = tovtest::BrowserFixture;

TEST_F(HistoryWithBrowser, EachCallsItsBrowserOperationOnce)
{
    for (const History& h : kHistory) {
        SCOPED_TRACE(h.scope);
        browser->Log().Clear();
        LONG code = -1;
        EXPECT_EQ(S_OK, (control.Get()->*h.method)(&code));
        EXPECT_EQ(0, code);
        EXPECT_EQ(std::vector<std::wstring>{std::wstring(h.browserCall) + L"()"}, browser->Log().Texts());
    }
}

TEST_F(HistoryWithBrowser, FailuresGiveCodeFiveAndExceptionsCodeOne)
{
    Connect(1);
    for (const History& h : kHistory) {
        SCOPED_TRACE(h.scope);
        browser->ClearFailures();
        browser->FailCall(h.browserCall, E_ACCESSDENIED);
        ClearLines();
        LONG code = -1;
        EXPECT_EQ(S_OK, (control.Get()->*h.method)(&code));
        EXPECT_EQ(5, code);
        const std::string entry = std::string("=> ") + h.scope;
        EXPECT_EQ((std::vector<std::string>{entry, Hashes(), entry, h.failure, Hashes(), std::string("<= ") + h.scope}), Lines());

        browser->ClearFailures();
        browser->ThrowOn(h.browserCall);
        code = -1;
        EXPECT_EQ(S_OK, (control.Get()->*h.method)(&code));
        EXPECT_EQ(1, code) << "an exception inside the method";
        EXPECT_EQ(S_OK, (control.Get()->*h.method)(nullptr));
    }
    browser->ClearFailures();
}

TEST_F(HistoryWithBrowser, LateBoundCallsReachTheSameImplementation)
{
    ComPtr<IDispatch> disp;
    ASSERT_EQ(S_OK, control->QueryInterface(IID_IDispatch, disp.PutVoid()));
    browser->FailCall(L"GoHome", E_FAIL);
    for (const History& h : kHistory) {
        SCOPED_TRACE(h.scope);
        DISPPARAMS none{};
        tov::Variant result;
        ASSERT_EQ(S_OK, disp->Invoke(h.dispid, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, &result, nullptr, nullptr));
        EXPECT_EQ(VT_I4, result.vt);
        EXPECT_EQ(h.dispid == 3 ? 5 : 0, result.lVal);
    }
    EXPECT_EQ(1u, browser->Log().Count(L"GoHome"));
}
