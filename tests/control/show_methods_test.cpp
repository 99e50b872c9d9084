// The four show methods with the scripted browser and the data provider stand-in: the browser calls in
// order with their arguments, the zoom rule, temporary files, error pages, sign-on and output copies.
#include <filesystem>
#include <fstream>
#include "support/import_hook.h"
#include "support/initialized_control_fixture.h"

using tov::Bstr;
using tovtest::InitializedControlFixture;

namespace {

int g_dpi = 96;
int WINAPI FakeGetDeviceCaps(HDC, int index)
{
    return (index == LOGPIXELSX || index == LOGPIXELSY) ? g_dpi : 0;
}

bool IsZoom(const std::wstring& call) { return call.rfind(L"ExecWB(63, 0, ", 0) == 0; }

const std::wstring kNoArguments = L", <null>, <null>, <null>, <null>)";
const std::wstring kBlank = L"Navigate(about:blank" + kNoArguments;

bool FileExists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

// The path a Navigate call text names: "Navigate(<path>, ...".
std::wstring NavigatedPath(const std::wstring& call)
{
    const size_t start = call.find(L'(') + 1;
    return call.substr(start, call.find(L", ", start) - start);
}

// The last `n` characters.
std::wstring Tail(const std::wstring& text, size_t n) { return text.size() < n ? text : text.substr(text.size() - n); }

} // namespace

class ShowMethods : public InitializedControlFixture {
protected:
    void SetUp() override
    {
        InitializedControlFixture::SetUp();
        Init(2);
    }
    LONG ShowData(const wchar_t* url, const wchar_t* frame, LONG local = 1)
    {
        Bstr u(url), f(frame);
        LONG code = -1;
        EXPECT_EQ(S_OK, control->ShowData(u.Get(), f.Get(), local, &code));
        return code;
    }
    LONG ShowURL(const wchar_t* url, const wchar_t* frame)
    {
        Bstr u(url), f(frame);
        LONG code = -1;
        EXPECT_EQ(S_OK, control->ShowURL(u.Get(), f.Get(), &code));
        return code;
    }
    void PutHtml(const std::wstring& url) { tovfe::DataStore::Instance().Put(url, "<html><body>x</body></html>", L"html"); }
    void PutPicture(const std::wstring& url) { tovfe::DataStore::Instance().Put(url, "GIF89a", L"gif"); }
    // The browser was stopped, zoomed and navigated by `navigate`, nothing else.
    void ExpectStopZoomNavigate(const std::wstring& navigate) const
    {
        const auto calls = BrowserCalls();
        ASSERT_EQ(3u, calls.size());
        EXPECT_EQ(L"Stop()", calls[0]);
        EXPECT_TRUE(IsZoom(calls[1])) << calls[1];
        EXPECT_EQ(navigate, calls[2]);
    }
};

TEST_F(ShowMethods, ShowURLOfAnEmptyOrNullUrlShowsTheBlankPageWithNoOptionalArguments)
{
    EXPECT_EQ(0, ShowURL(L"", L"main"));
    ExpectStopZoomNavigate(kBlank);

    browser->OwnLog().Clear();
    LONG code = -1;
    EXPECT_EQ(S_OK, control->ShowURL(nullptr, nullptr, &code));
    EXPECT_EQ(0, code);
    EXPECT_EQ(kBlank, BrowserCalls().back());
}

TEST_F(ShowMethods, ShowURLPassesFlagsZeroAndTheFrameUnchanged)
{
    EXPECT_EQ(0, ShowURL(L"http://example.invalid/a", L"main"));
    EXPECT_EQ(L"Navigate(http://example.invalid/a, I4:0, BSTR:main, <null>, <null>)", BrowserCalls().back());

    browser->OwnLog().Clear();
    LONG code = -1;
    Bstr url(L"http://example.invalid/b");
    EXPECT_EQ(S_OK, control->ShowURL(url.Get(), nullptr, &code));
    EXPECT_EQ(0, code);
    const auto calls = BrowserCalls();
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(L"Navigate(http://example.invalid/b, I4:0, BSTR:<null>, <null>, <null>)", calls.back())
        << "a null frame stays null";
    EXPECT_TRUE(HasLine("http://example.invalid/b")) << "the URL is traced at level 2";
}

TEST_F(ShowMethods, ShowURLFailureShowsTheErrorPageSpelledShowUrl)
{
    browser->FailCall(L"Navigate(http://example.invalid/a, I4:0, BSTR:main, <null>, <null>)", E_ACCESSDENIED);
    EXPECT_EQ(5, ShowURL(L"http://example.invalid/a", L"main"));
    EXPECT_EQ(L"Navigate(about:TOVHTML_E_CALL_METHOD_FAILED: ShowUrl(\"http://example.invalid/a\")" + kNoArguments,
              BrowserCalls().back());

    // Provider data that the provider does not hold: the same page, nothing traced of the subtype.
    browser->OwnLog().Clear();
    ClearLines();
    EXPECT_EQ(5, ShowURL(L"tovq5:/a/missing.htm", L""));
    EXPECT_FALSE(HasLine("GetDataSubtype: GetDataSubtype() failed"));
    EXPECT_EQ(L"Navigate(about:TOVHTML_E_CALL_METHOD_FAILED: ShowUrl(\"tovq5:/a/missing.htm\")" + kNoArguments,
              BrowserCalls().back());
}

TEST_F(ShowMethods, ShowURLOfProviderData)
{
    PutHtml(L"@TOVHTML://any/page.htm");
    EXPECT_EQ(0, ShowURL(L"@TOVHTML://any/page.htm", L"f"));
    EXPECT_EQ(L"Navigate(mk:@TOVHTML://any/page.htm, I4:0, BSTR:f, <null>, <null>)", BrowserCalls().back());

    PutHtml(L"TOVQ5:/a/page.htm");
    EXPECT_EQ(0, ShowURL(L"TOVQ5:/a/page.htm#top", L"f")) << "the scheme in any case, the fragment not asked for";
    EXPECT_EQ(L"Navigate(TOVQ5:/a/page.htm#top, I4:0, BSTR:f, <null>, <null>)", BrowserCalls().back());

    PutPicture(L"tovq5:/a/Picture%20one.gif");
    browser->OwnLog().Clear();
    EXPECT_EQ(0, ShowURL(L"tovq5:/a/Picture%20one.gif", L"f"));
    const auto calls = BrowserCalls();
    ASSERT_EQ(3u, calls.size());
    EXPECT_TRUE(IsZoom(calls[1]));
    const std::wstring path = NavigatedPath(calls[2]);
    EXPECT_EQ(L", I4:0, BSTR:f, <null>, <null>)", calls[2].substr(calls[2].find(L", ")));
    EXPECT_EQ(L"Picture one.gif", Tail(path, 15));
    EXPECT_TRUE(FileExists(path));
    control.Reset();
    host.Destroy();
    EXPECT_FALSE(FileExists(path)) << "temporary files go with the control";
}

TEST_F(ShowMethods, ShowDataNavigatesHtmlWithFlagsTwelveAndZoomsOnlyAtLowResolution)
{
    tovtest::ImportHook hook(ocx.Handle(), "gdi32.dll", "GetDeviceCaps", reinterpret_cast<void*>(&FakeGetDeviceCaps));
    ASSERT_TRUE(hook.Installed());
    PutHtml(LocalPrefix() + L"page.htm");
    const std::wstring navigate = L"Navigate(mk:" + LocalPrefix() + L"page.htm, I4:12, BSTR:main, <null>, <null>)";

    g_dpi = 96;
    EXPECT_EQ(0, ShowData(L"page.htm", L"main"));
    ExpectStopZoomNavigate(navigate);

    g_dpi = 120;
    browser->OwnLog().Clear();
    EXPECT_EQ(0, ShowData(L"page.htm", L"main"));
    EXPECT_EQ((std::vector<std::wstring>{L"Stop()", navigate}), BrowserCalls());

    // The global prefix when the URL is not local.
    browser->OwnLog().Clear();
    // The provider is asked under the local prefix; the browser gets the global one.
    tovfe::DataStore::Instance().Put(LocalPrefix() + L"global.htm", "<html></html>", L"HTML");
    EXPECT_EQ(0, ShowData(L"global.htm", L"", 0));
    EXPECT_EQ(L"Navigate(mk:@TOVHTML://global.htm, I4:12, BSTR:, <null>, <null>)", BrowserCalls().back());
}

TEST_F(ShowMethods, ShowDataOfOtherDataNavigatesATemporaryFileWithoutFlagsAndAlwaysZooms)
{
    tovtest::ImportHook hook(ocx.Handle(), "gdi32.dll", "GetDeviceCaps", reinterpret_cast<void*>(&FakeGetDeviceCaps));
    ASSERT_TRUE(hook.Installed());
    g_dpi = 120;
    PutPicture(LocalPrefix() + L"picture.gif");
    EXPECT_EQ(0, ShowData(L"picture.gif", L"main"));
    const auto calls = BrowserCalls();
    ASSERT_EQ(3u, calls.size());
    EXPECT_TRUE(IsZoom(calls[1]));
    const std::wstring path = NavigatedPath(calls[2]);
    EXPECT_EQ(L"Navigate(" + path + L", <null>, BSTR:main, <null>, <null>)", calls[2]);
    EXPECT_EQ(tovtest::TempDir(), path.substr(0, tovtest::TempDir().size()));
    EXPECT_EQ(L"}picture.gif", Tail(path, 12));
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    EXPECT_EQ("GIF89a", std::string(std::istreambuf_iterator<char>(file), {}));
}

TEST_F(ShowMethods, ShowDataFailuresShowTheBlankPage)
{
    EXPECT_EQ(5, ShowData(L"missing.htm", L"main"));
    EXPECT_TRUE(HasLine("GetDataSubtype: GetDataSubtype() failed"));
    EXPECT_TRUE(HasLine("ShowData: m_pWebBrowser->Navigate() failed"));
    EXPECT_EQ(kBlank, BrowserCalls().back());

    PutHtml(LocalPrefix() + L"page.htm");
    browser->FailCall(L"Navigate(mk:" + LocalPrefix() + L"page.htm, I4:12, BSTR:main, <null>, <null>)", E_FAIL);
    browser->OwnLog().Clear();
    EXPECT_EQ(5, ShowData(L"page.htm", L"main"));
    EXPECT_EQ(kBlank, BrowserCalls().back());

    browser->ThrowOn(L"Stop");
    EXPECT_EQ(1, ShowData(L"page.htm", L"main")) << "an exception inside the method";
}

TEST_F(ShowMethods, SignOnStaysPendingAcrossProviderUrls)
{
    Bstr ticket(L"T1"), service(L"https://sso.invalid/svc");
    ASSERT_EQ(S_OK, control->EnableTOVSSO(1, ticket.Get(), service.Get()));
    PutHtml(L"tovq5:/a/page.htm");
    EXPECT_EQ(0, ShowURL(L"tovq5:/a/page.htm", L""));
    EXPECT_EQ(L"Navigate(tovq5:/a/page.htm, I4:0, BSTR:, <null>, <null>)", BrowserCalls().back());

    browser->OwnLog().Clear();
    EXPECT_EQ(0, ShowURL(L"http://example.invalid/x", L""));
    EXPECT_EQ((std::vector<std::wstring>{L"Stop()", L"Navigate(https://sso.invalid/svc, <empty>, <empty>, <empty>, "
                                                     L"BSTR:tov-mytovsso: T1\r\ntov-mytovred: http://example.invalid/x\r\n)"}),
              BrowserCalls())
        << "the sign-on navigation replaces the zoom and the page's own navigation";

    browser->OwnLog().Clear();
    EXPECT_EQ(0, ShowURL(L"http://example.invalid/y", L""));
    EXPECT_EQ(L"Navigate(http://example.invalid/y, I4:0, BSTR:, <null>, <null>)", BrowserCalls().back()) << "one-shot";
}

TEST_F(ShowMethods, ShowURLInBrowserCancelledGivesCodeZeroOtherFailuresTheErrorPage)
{
    applications.FailCallOnNext(L"Navigate", HRESULT_FROM_WIN32(ERROR_CANCELLED));
    Bstr url(L"http://example.invalid/c");
    LONG code = -1;
    EXPECT_EQ(S_OK, control->ShowURLInBrowser(url.Get(), &code));
    EXPECT_EQ(0, code);
    EXPECT_EQ(0u, browser->OwnLog().Count(L"Navigate")) << "no error page";

    applications.ClearFailurePlan();
    applications.FailCallOnNext(L"Navigate", E_ACCESSDENIED);
    Bstr other(L"http://example.invalid/d");
    EXPECT_EQ(S_OK, control->ShowURLInBrowser(other.Get(), &code));
    EXPECT_EQ(5, code);
    EXPECT_EQ(L"Navigate(about:TOVHTML_E_CALL_METHOD_FAILED: ShowURLInBrowser(\"http://example.invalid/d\")" +
                  kNoArguments,
              BrowserCalls().back());
}

TEST_F(ShowMethods, ShowURLInBrowserOfProviderDataOpensATemporaryFile)
{
    PutPicture(L"tovhtmlp://x/pic.gif");
    Bstr url(L"tovhtmlp://x/pic.gif");
    LONG code = -1;
    EXPECT_EQ(S_OK, control->ShowURLInBrowser(url.Get(), &code));
    EXPECT_EQ(0, code);
    ASSERT_EQ(1u, applications.Created().size());
    const auto calls = WithoutQueries(applications.Last()->OwnLog());
    ASSERT_EQ(2u, calls.size());
    EXPECT_EQ(L"put_Visible(true)", calls[0]);
    const std::wstring path = NavigatedPath(calls[1]);
    EXPECT_EQ(L"Navigate(" + path + L", <empty>, <empty>, <empty>, <empty>)", calls[1]);
    EXPECT_TRUE(FileExists(path));
    EXPECT_EQ(L"}pic.gif", Tail(path, 8));

    // "@TOVHTML:" URLs go to the window as they are.
    Bstr moniker(L"@TOVHTML://x/page.htm");
    EXPECT_EQ(S_OK, control->ShowURLInBrowser(moniker.Get(), &code));
    EXPECT_EQ(0, code);
    EXPECT_EQ(L"Navigate(@TOVHTML://x/page.htm, <empty>, <empty>, <empty>, <empty>)",
              applications.Last()->OwnLog().Texts().back());
}

TEST_F(ShowMethods, ShowDataInBrowserOpensATemporaryFileInAWindow)
{
    PutPicture(LocalPrefix() + L"doc.pdf");
    Bstr url(L"doc.pdf");
    LONG code = -1;
    EXPECT_EQ(S_OK, control->ShowDataInBrowser(url.Get(), &code));
    EXPECT_EQ(0, code);
    const auto calls = BrowserCalls();
    ASSERT_EQ(2u, calls.size()) << "the own browser stops and is zoomed for the window";
    EXPECT_EQ(L"Stop()", calls[0]);
    EXPECT_TRUE(IsZoom(calls[1]));
    ASSERT_EQ(1u, applications.Created().size());
    const std::wstring navigate = applications.Last()->OwnLog().Texts().back();
    EXPECT_EQ(L"}doc.pdf", Tail(NavigatedPath(navigate), 8));

    Bstr missing(L"missing.pdf");
    EXPECT_EQ(S_OK, control->ShowDataInBrowser(missing.Get(), &code));
    EXPECT_EQ(5, code);
    EXPECT_EQ(L"Navigate(about:TOVHTML_E_CALL_METHOD_FAILED: ShowDataInBrowser(\"missing.pdf\")" + kNoArguments,
              BrowserCalls().back());
}

TEST_F(ShowMethods, GetCurrentUrlAnswersTheBrowsersLocation)
{
    EXPECT_EQ(0, ShowURL(L"http://example.invalid/here", L""));
    Bstr current;
    EXPECT_EQ(S_OK, control->GetCurrentURL(current.Put()));
    EXPECT_EQ(L"http://example.invalid/here", current.View());
    browser->FailCall(L"get_LocationURL", E_ACCESSDENIED);
    EXPECT_EQ(E_ACCESSDENIED, control->GetCurrentURL(current.Put())) << "the browser's result unchanged";
}

using ShowMethodsWithoutBrowser = tovtest::ControlFixture;

TEST_F(ShowMethodsWithoutBrowser, CodeThreeWithTheirTextsAndAnEmptyCurrentUrl)
{
    Connect(1);
    Bstr url(L"page.htm");
    LONG code = -1;
    EXPECT_EQ(S_OK, control->ShowData(url.Get(), nullptr, 1, &code));
    EXPECT_EQ(3, code);
    EXPECT_EQ(S_OK, control->ShowURL(url.Get(), nullptr, &code));
    EXPECT_EQ(3, code);
    ClearLines();
    EXPECT_EQ(S_OK, control->ShowDataInBrowser(url.Get(), &code));
    EXPECT_EQ(3, code);
    EXPECT_EQ((std::vector<std::string>{"=> ShowDataInBrowser", Hashes(), "=> ShowDataInBrowser", "m_pWebBrowser is invalid",
                                        Hashes(), "<= ShowDataInBrowser"}),
              Lines());

    Bstr current(L"stale");
    EXPECT_EQ(S_OK, control->GetCurrentURL(current.Put()));
    EXPECT_FALSE(current.IsNull());
    EXPECT_EQ(0u, current.Length());
}
