// The four show methods with the scripted browser and the data provider stand-in: the browser calls in
// order with their arguments, the zoom rule and the screen's resolution it follows (the zoom value of each
// resolution: tests/native/browser_rules_test.cpp), temporary files, error pages and output copies.
#include "support/import_hook.h"
#include "support/initialized_control_fixture.h"
#include "support/registry_helpers.h"

using tov::Bstr;

namespace {

int g_dpi = 96;
int WINAPI FakeGetDeviceCaps(HDC, int index) { return (index == LOGPIXELSX || index == LOGPIXELSY) ? g_dpi : 0; }

// The path a Navigate call names: "Navigate(<path>, ...".
std::wstring NavigatedPath(const std::wstring& call) { return call.substr(9, call.find(L", ", 9) - 9); }

} // namespace

class ShowMethods : public tovtest::InitializedControlFixture {
protected:
    ShowMethods() : InitializedControlFixture(2) {}
    LONG InWindow(HRESULT (STDMETHODCALLTYPE ITOVHTMLControl::*method)(BSTR, LONG*), const wchar_t* url)
    {
        LONG code = -1;
        EXPECT_EQ(S_OK, (control.Get()->*method)(Bstr(url).Get(), &code));
        return code;
    }
    static void Put(const std::wstring& url, const char* bytes, const wchar_t* type) { tovfe::DataStore::Instance().Put(url, bytes, type); }
    // The browser was stopped, zoomed and navigated, nothing else; the navigation.
    std::wstring StopZoomNavigate() const
    {
        const auto calls = BrowserCalls();
        EXPECT_TRUE(calls.size() == 3 && calls[0] == L"Stop()" && calls[1].starts_with(L"ExecWB(63, 0, ")) << testing::PrintToString(calls);
        return calls.size() == 3 ? calls[2] : L"";
    }
};

TEST_F(ShowMethods, ShowURLPassesFlagsZeroAndTheFrameUnchanged)
{
    Put(L"@TOVHTML://any/page.htm", "<html></html>", L"html");
    Put(L"TOVQ5:/a/page.htm", "<html></html>", L"html");
    const struct {
        const wchar_t *url, *frame;
        std::wstring navigate;
    } cases[] = {
        {L"", L"main", kBlank},
        {nullptr, nullptr, kBlank},
        {L"http://example.invalid/a", L"main", L"Navigate(http://example.invalid/a, I4:0, BSTR:main, <null>, <null>)"},
        {L"@TOVHTML://any/page.htm", L"f", L"Navigate(mk:@TOVHTML://any/page.htm, I4:0, BSTR:f, <null>, <null>)"},
        // The scheme in any letter case, the fragment not asked for.
        {L"TOVQ5:/a/page.htm#top", L"f", L"Navigate(TOVQ5:/a/page.htm#top, I4:0, BSTR:f, <null>, <null>)"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(c.url ? c.url : L"<null>")));
        browser->OwnLog().Clear();
        EXPECT_EQ(0, ShowURL(c.url, c.frame));
        EXPECT_EQ(c.navigate, StopZoomNavigate());
    }
}

TEST_F(ShowMethods, ShowDataNavigatesHtmlWithFlagsTwelveAndOtherDataAsATemporaryFile)
{
    tovtest::ImportHook hook(ocx.Handle(), "gdi32.dll", "GetDeviceCaps", reinterpret_cast<void*>(&FakeGetDeviceCaps));
    ASSERT_TRUE(hook.Installed());
    Put(LocalPrefix() + L"page.htm", "<html></html>", L"html");
    Put(LocalPrefix() + L"global.htm", "<html></html>", L"HTML");
    Put(LocalPrefix() + L"picture.gif", "GIF89a", L"gif");
    const std::wstring navigate = L"Navigate(mk:" + LocalPrefix() + L"page.htm, I4:12, BSTR:main, <null>, <null>)";
    g_dpi = 96;
    EXPECT_EQ(0, ShowData(L"page.htm", L"main"));
    EXPECT_EQ(navigate, StopZoomNavigate()) << "HTML is zoomed at 100 dots per inch or less";
    g_dpi = 120;
    browser->OwnLog().Clear();
    EXPECT_EQ(0, ShowData(L"page.htm", L"main"));
    EXPECT_EQ((std::vector<std::wstring>{L"Stop()", navigate}), BrowserCalls()) << "and only there";
    EXPECT_EQ(0, ShowData(L"global.htm", L"", 0));
    EXPECT_EQ(L"Navigate(mk:@TOVHTML://global.htm, I4:12, BSTR:, <null>, <null>)", BrowserCalls().back())
        << "asked under the local prefix, shown under the global one";

    browser->OwnLog().Clear();
    EXPECT_EQ(0, ShowData(L"picture.gif", L"main"));
    const std::wstring file = StopZoomNavigate();
    const std::wstring path = NavigatedPath(file);
    EXPECT_EQ(L"Navigate(" + path + L", <null>, BSTR:main, <null>, <null>)", file) << "other data always zoomed, no flags";
    EXPECT_EQ(L"ExecWB(63, 0, I4:125, <null>)", BrowserCalls().at(1)) << "the zoom of the screen's resolution";
    EXPECT_TRUE(path.starts_with(tovtest::TempDir()) && path.ends_with(L"}picture.gif")) << path;

    // (A failing ShowData: internal_pages_test.cpp.)
    browser->ThrowOn(L"Stop");
    EXPECT_EQ(1, ShowData(L"page.htm", L"main")) << "an exception inside the method";
    browser->ClearFailures();
}

TEST_F(ShowMethods, WindowsShowProviderDataThroughATemporaryFileAndAreCancelledQuietly)
{
    applications.FailCallOnNext(L"Navigate", HRESULT_FROM_WIN32(ERROR_CANCELLED));
    EXPECT_EQ(0, InWindow(&ITOVHTMLControl::ShowURLInBrowser, L"http://example.invalid/c")) << "the user cancelled";
    EXPECT_EQ(0u, browser->OwnLog().Count(L"Navigate")) << "no error page";
    applications.ClearFailurePlan();
    Put(L"tovhtmlp://x/pic.gif", "GIF89a", L"gif");
    EXPECT_EQ(0, InWindow(&ITOVHTMLControl::ShowURLInBrowser, L"tovhtmlp://x/pic.gif"));
    ASSERT_EQ(2u, applications.Created().size());
    const auto calls = WithoutQueries(applications.Last()->OwnLog());
    const std::wstring path = NavigatedPath(calls.back());
    EXPECT_EQ((std::vector<std::wstring>{L"put_Visible(true)", L"Navigate(" + path + L", <empty>, <empty>, <empty>, <empty>)"}), calls);
    EXPECT_TRUE(path.ends_with(L"}pic.gif") && FileExists(path)) << path;
}

TEST_F(ShowMethods, GetCurrentUrlAnswersTheBrowsersLocation)
{
    EXPECT_EQ(0, ShowURL(L"http://example.invalid/here", L""));
    Bstr current;
    EXPECT_TRUE(control->GetCurrentURL(current.Put()) == S_OK && current.View() == L"http://example.invalid/here");
    browser->FailCall(L"get_LocationURL", E_ACCESSDENIED);
    EXPECT_EQ(E_ACCESSDENIED, control->GetCurrentURL(current.Put())) << "the browser's result unchanged";
}

using ShowMethodsWithoutBrowser = tovtest::ControlFixture;

TEST_F(ShowMethodsWithoutBrowser, CodeThreeWithTheirTextsAndAnEmptyCurrentUrl)
{
    Connect(1);
    Bstr url(L"page.htm");
    LONG codes[2] = {-1, -1};
    EXPECT_EQ(S_OK, control->ShowURL(url.Get(), nullptr, &codes[0]));
    ClearLines();
    EXPECT_EQ(S_OK, control->ShowDataInBrowser(url.Get(), &codes[1]));
    EXPECT_EQ((std::vector<LONG>{3, 3}), std::vector<LONG>(codes, codes + 2));
    EXPECT_EQ(FailureBlock("ShowDataInBrowser", "m_pWebBrowser is invalid"), Lines());
    Bstr current(L"stale");
    EXPECT_TRUE(control->GetCurrentURL(current.Put()) == S_OK && !current.IsNull() && current.Length() == 0);
}

// With output copies switched on in the registry (read at InitControl), ShowData keeps a copy beside the
// temporary files of the data it showed and of the data it failed to show, ShowDataInBrowser one also when
// its window fails, ShowURL none; the control never deletes them.
class ShowMethodOutputCopies : public ShowMethods {
protected:
    static constexpr const wchar_t* kKey = L"Software\\Classes\\TOV.HTMLControl\\EnableOutputFile";
    void SetUp() override
    {
        const DWORD on = 1;
        ASSERT_EQ(ERROR_SUCCESS, RegSetKeyValueW(HKEY_LOCAL_MACHINE, kKey, nullptr, REG_DWORD, &on, sizeof(on)));
        ShowMethods::SetUp();
        RemoveCopies();
    }
    void TearDown() override
    {
        ShowMethods::TearDown();
        tovtest::DeleteTree(HKEY_LOCAL_MACHINE, kKey);
        RemoveCopies();
    }
    static std::wstring Copy(const std::wstring& url) { return tovtest::TempDir() + L"Output" + url; }
    static void RemoveCopies()
    {
        for (const wchar_t* url : {L"page.htm", L"failed.htm", L"window.pdf"}) DeleteFileW(Copy(url).c_str());
    }
};

TEST_F(ShowMethodOutputCopies, AfterFailuresTooButNotForShowURLAndTheyOutliveTheControl)
{
    Put(LocalPrefix() + L"page.htm", "<html>copy</html>", L"html");
    EXPECT_EQ(0, ShowData(L"page.htm#part", nullptr));
    EXPECT_TRUE(FileExists(Copy(L"page.htm"))) << "named without the fragment";
    Put(LocalPrefix() + L"failed.htm", "data", L"html");
    browser->FailCall(L"Navigate", E_FAIL);
    EXPECT_EQ(5, ShowData(L"failed.htm", nullptr));
    EXPECT_TRUE(FileExists(Copy(L"failed.htm")));
    Put(LocalPrefix() + L"window.pdf", "data", L"pdf");
    applications.FailCreate(E_FAIL);
    EXPECT_EQ(5, InWindow(&ITOVHTMLControl::ShowDataInBrowser, L"window.pdf"));
    EXPECT_TRUE(FileExists(Copy(L"window.pdf")));
    browser->ClearFailures();
    Put(L"tovq5:/a/page.htm", "<html></html>", L"html");
    auto& calls = tovfe::DataStore::Instance().calls;
    calls.clear();
    EXPECT_EQ(0, ShowURL(L"tovq5:/a/page.htm", nullptr));
    for (const auto& call : calls) EXPECT_EQ(std::wstring::npos, call.find(L"Output")) << call;
    host.Destroy();
    control.Reset();
    EXPECT_TRUE(FileExists(Copy(L"page.htm")) && FileExists(Copy(L"failed.htm")));
}
