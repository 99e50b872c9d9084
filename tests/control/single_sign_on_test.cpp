// The one-shot sign-on and security-session navigations through ShowURL: the service gets a GET with the
// ticket and the requested page in its headers; the next navigation goes to the page itself.
#include "support/browser_fixture.h"
#include "framework/bstr.h"

using tov::Bstr;

namespace {

std::wstring ServiceCall(const std::wstring& service, const std::wstring& headers)
{
    return L"Navigate(" + service + L", <empty>, <empty>, <empty>, BSTR:" + headers + L")";
}
std::wstring Direct(const std::wstring& url) { return L"Navigate(" + url + L", I4:0, BSTR:<null>, <null>, <null>)"; }

} // namespace

class SingleSignOn : public tovtest::BrowserFixture {
protected:
    // ShowURL of `url` without a frame; the browser's calls it made.
    std::vector<std::wstring> Show(const wchar_t* url, LONG expectedCode = 0)
    {
        browser->Log().Clear();
        EXPECT_EQ(expectedCode, ShowURL(url));
        return Calls();
    }
    void EnableSSO(LONG enabled, const wchar_t* ticket, const wchar_t* service)
    {
        EXPECT_EQ(S_OK, control->EnableTOVSSO(enabled, Bstr(ticket).Get(), Bstr(service).Get()));
    }
};

TEST_F(SingleSignOn, TheFirstWebNavigationGoesThroughTheServiceOnce)
{
    EnableSSO(1, L"T1", L"https://sso.invalid/S");
    EXPECT_EQ((std::vector<std::wstring>{L"Stop()", ServiceCall(L"https://sso.invalid/S",
                                                                L"tov-mytovsso: T1\r\ntov-mytovred: https://app.invalid/P\r\n")}),
              Show(L"https://app.invalid/P"))
        << "one GET to the service, no post data, no zoom";
    EXPECT_EQ((std::vector<std::wstring>{L"Stop()", ZoomCall(), Direct(L"https://app.invalid/P")}), Show(L"https://app.invalid/P"));

    // Every enabling call enables it again and replaces the ticket.
    EnableSSO(0, L"T2", L"S");
    EXPECT_EQ(ServiceCall(L"S", L"tov-mytovsso: T2\r\ntov-mytovred: P\r\n"), Show(L"P").back()) << "bEnabled 0 enables it too";
    EnableSSO(1, L"", L"S");
    EXPECT_EQ(ServiceCall(L"S", L"tov-mytovsso: \r\ntov-mytovred: P\r\n"), Show(L"P").back()) << "an empty ticket";
}

TEST_F(SingleSignOn, SignOnGoesFirstThenTheSecuritySession)
{
    control->EnableSecSess(Bstr(L"T3").Get(), Bstr(L"SS").Get());
    EnableSSO(1, L"T1", L"S");
    EXPECT_EQ(ServiceCall(L"S", L"tov-mytovsso: T1\r\ntov-mytovred: P1\r\n"), Show(L"P1").back());
    EXPECT_EQ(ServiceCall(L"SS", L"tov-mytovsso: T3\r\ntov-mytovred: P2\r\ntov-only_create_security_session: X\r\n"),
              Show(L"P2").back());
    EXPECT_EQ(Direct(L"P3"), Show(L"P3").back());
}

// Provider data (here none, so each fails) leaves it pending; a failed service navigation uses it up.
TEST_F(SingleSignOn, OwnSchemesLeaveItPendingAndAFailureStillUsesItUp)
{
    EnableSSO(1, L"T1", L"S");
    for (const auto& call : Show(L"tovq5:data", 5)) EXPECT_EQ(std::wstring::npos, call.find(L"tov-mytovsso")) << call;
    browser->FailCall(ServiceCall(L"S", L"tov-mytovsso: T1\r\ntov-mytovred: P\r\n"), E_FAIL);
    EXPECT_EQ(L"Navigate(about:TOVHTML_E_CALL_METHOD_FAILED: ShowUrl(\"P\"), <null>, <null>, <null>, <null>)", Show(L"P", 5).back());
    browser->ClearFailures();
    EXPECT_EQ(Direct(L"P"), Show(L"P").back());
}

TEST_F(SingleSignOn, TheTicketIsNeverTraced)
{
    EnableSSO(1, L"SECRET-TICKET", L"https://sso.invalid/S");
    control->EnableSecSess(Bstr(L"SECRET-TICKET").Get(), Bstr(L"https://sso.invalid/SS").Get());
    Show(L"https://app.invalid/P");
    Show(L"https://app.invalid/Q");
    EXPECT_TRUE(HasLine("https://sso.invalid/SS")) << "the service is traced";
    EXPECT_EQ(0u, LinesWith("SECRET"));
}
