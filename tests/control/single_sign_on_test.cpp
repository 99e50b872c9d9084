// The one-shot sign-on and security-session navigations through ShowURL: the service gets a GET with the
// ticket and the requested page in its headers; the next navigation goes to the page itself.
#include <algorithm>
#include "support/browser_fixture.h"
#include "framework/bstr.h"

using tov::Bstr;
using tovtest::BrowserFixture;

namespace {

std::wstring ServiceCall(const std::wstring& service, const std::wstring& headers)
{
    return L"Navigate(" + service + L", <empty>, <empty>, <empty>, BSTR:" + headers + L")";
}

std::wstring Direct(const std::wstring& url)
{
    return L"Navigate(" + url + L", I4:0, BSTR:<null>, <null>, <null>)";
}

} // namespace

class SingleSignOn : public BrowserFixture {
protected:
    // ShowURL of `url` without a frame; the browser's calls it made.
    std::vector<std::wstring> Show(const wchar_t* url, LONG expectedCode = 0)
    {
        browser->Log().Clear();
        LONG code = -1;
        EXPECT_EQ(S_OK, control->ShowURL(Bstr(url).Get(), nullptr, &code));
        EXPECT_EQ(expectedCode, code);
        return Calls();
    }
};

TEST_F(SingleSignOn, TheFirstWebNavigationGoesThroughTheService)
{
    ASSERT_EQ(S_OK, control->EnableTOVSSO(1, Bstr(L"T1").Get(), Bstr(L"https://sso.invalid/S").Get()));
    EXPECT_EQ((std::vector<std::wstring>{
                  L"Stop()",
                  ServiceCall(L"https://sso.invalid/S", L"tov-mytovsso: T1\r\ntov-mytovred: https://app.invalid/P\r\n"),
              }),
              Show(L"https://app.invalid/P"))
        << "one GET to the service, no post data, no zoom";
    EXPECT_EQ((std::vector<std::wstring>{L"Stop()", ZoomCall(), Direct(L"https://app.invalid/P")}),
              Show(L"https://app.invalid/P"))
        << "one-shot";
}

TEST_F(SingleSignOn, EveryEnableCallEnablesAndReplacesTheTicket)
{
    control->EnableTOVSSO(1, Bstr(L"old").Get(), Bstr(L"S0").Get());
    control->EnableTOVSSO(0, Bstr(L"T2").Get(), Bstr(L"S").Get());
    EXPECT_EQ(ServiceCall(L"S", L"tov-mytovsso: T2\r\ntov-mytovred: P\r\n"), Show(L"P").back())
        << "bEnabled 0 enables it just the same";
}

TEST_F(SingleSignOn, AnEmptyOrMissingTicketLeavesTheBareHeaderName)
{
    control->EnableTOVSSO(1, Bstr(L"").Get(), Bstr(L"S").Get());
    EXPECT_EQ(ServiceCall(L"S", L"tov-mytovsso: \r\ntov-mytovred: P\r\n"), Show(L"P").back());
    control->EnableTOVSSO(1, nullptr, nullptr);
    EXPECT_EQ(L"Navigate(<null>, <empty>, <empty>, <empty>, BSTR:tov-mytovsso: \r\ntov-mytovred: P\r\n)", Show(L"P").back())
        << "a null service is passed on as it is";
}

TEST_F(SingleSignOn, SignOnGoesFirstThenTheSecuritySession)
{
    control->EnableSecSess(Bstr(L"T3").Get(), Bstr(L"SS").Get());
    control->EnableTOVSSO(1, Bstr(L"T1").Get(), Bstr(L"S").Get());
    EXPECT_EQ(ServiceCall(L"S", L"tov-mytovsso: T1\r\ntov-mytovred: P1\r\n"), Show(L"P1").back());
    EXPECT_EQ(ServiceCall(L"SS", L"tov-mytovsso: T3\r\ntov-mytovred: P2\r\ntov-only_create_security_session: X\r\n"),
              Show(L"P2").back());
    EXPECT_EQ(Direct(L"P3"), Show(L"P3").back());
}

TEST_F(SingleSignOn, TheOwnSchemesLeaveItPending)
{
    control->EnableTOVSSO(1, Bstr(L"T1").Get(), Bstr(L"S").Get());
    for (const wchar_t* own : {L"tovq5:data", L"@TOVHTML://x/data", L"TOVHTMLP://x/data"}) {
        SCOPED_TRACE(testing::Message() << own);
        for (const auto& call : Show(own, 5))
            EXPECT_EQ(std::wstring::npos, call.find(L"tov-mytovsso")) << "no provider data here, and no sign-on either";
    }
    EXPECT_EQ(ServiceCall(L"S", L"tov-mytovsso: T1\r\ntov-mytovred: P\r\n"), Show(L"P").back());
}

TEST_F(SingleSignOn, AFailedServiceNavigationStillUsesItUp)
{
    control->EnableTOVSSO(1, Bstr(L"T1").Get(), Bstr(L"S").Get());
    browser->FailCall(L"Navigate(S, <empty>, <empty>, <empty>, BSTR:tov-mytovsso: T1\r\ntov-mytovred: P\r\n)", E_FAIL);
    const auto calls = Show(L"P", 5);
    EXPECT_EQ(L"Navigate(about:TOVHTML_E_CALL_METHOD_FAILED: ShowUrl(\"P\"), <null>, <null>, <null>, <null>)", calls.back());
    browser->ClearFailures();
    EXPECT_EQ(Direct(L"P"), Show(L"P").back());
}

TEST_F(SingleSignOn, TheTicketIsNeverTraced)
{
    Connect(2);
    ClearLines();
    control->EnableTOVSSO(1, Bstr(L"SECRET-TICKET").Get(), Bstr(L"https://sso.invalid/S").Get());
    control->EnableSecSess(Bstr(L"SECRET-TICKET").Get(), Bstr(L"https://sso.invalid/SS").Get());
    Show(L"https://app.invalid/P");
    Show(L"https://app.invalid/Q");
    const auto lines = Lines();
    for (const auto& line : lines) EXPECT_EQ(std::string::npos, line.find("SECRET")) << line;
    for (const char* expected : {"=> EnableTOVSSO", "=> EnableSecSess", "https://sso.invalid/S", "https://sso.invalid/SS",
                                 "==> DoFirstSSONavigation", "==> DoFirstEnableSecSessNavigation", "https://app.invalid/Q"})
        EXPECT_NE(lines.end(), std::find(lines.begin(), lines.end(), expected)) << expected;
}
