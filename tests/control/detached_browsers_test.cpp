// Detached browser windows: one reusable window per URL for ShowURLInBrowser, a fresh one for
// ShowURLInDetachedBrowser or the shell's "open" under the proxy administration condition; all remembered
// windows go with the control.
#include <windows.h>
#include <shellapi.h>
#include <string>
#include "support/import_hook.h"
#include "support/initialized_control_fixture.h"
#include "support/registry_helpers.h"

using tov::Bstr;
using tovtest::InitializedControlFixture;

namespace {

struct ShellCall {
    HWND owner;
    std::string verb, file;
    bool parameters, directory;
    INT show;
};
std::vector<ShellCall> g_shellCalls;
INT_PTR g_shellResult = 42;

HINSTANCE WINAPI RecordShellExecuteA(HWND owner, LPCSTR verb, LPCSTR file, LPCSTR parameters, LPCSTR directory, INT show)
{
    g_shellCalls.push_back({owner, verb ? verb : "<null>", file ? file : "<null>", parameters != nullptr,
                            directory != nullptr, show});
    return reinterpret_cast<HINSTANCE>(g_shellResult);
}

std::vector<HWND> g_raised;
BOOL WINAPI RecordBringWindowToTop(HWND hwnd)
{
    g_raised.push_back(hwnd);
    return TRUE;
}

const wchar_t kAdminKey[] = L"Software\\Classes\\TOVHTTPPROXY\\admin";
const std::wstring kEmpty4 = L", <empty>, <empty>, <empty>, <empty>)";

} // namespace

class DetachedBrowsers : public InitializedControlFixture {
protected:
    void SetUp() override
    {
        InitializedControlFixture::SetUp();
        g_shellCalls.clear();
        g_raised.clear();
        g_shellResult = 42;
    }
    void TearDown() override
    {
        InitializedControlFixture::TearDown();
        tovtest::DeleteTree(HKEY_CURRENT_USER, kAdminKey);
    }
    // The proxy administration condition that sends detached URLs to the shell.
    static void SetShellCondition()
    {
        HKEY key = nullptr;
        ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_CURRENT_USER, kAdminKey, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr));
        const DWORD four = 4;
        RegSetValueExW(key, L"Condition", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&four), sizeof(four));
        RegCloseKey(key);
    }
    LONG InBrowser(const wchar_t* url)
    {
        Bstr u(url);
        LONG code = -1;
        EXPECT_EQ(S_OK, control->ShowURLInBrowser(u.Get(), &code));
        return code;
    }
    LONG Detached(const std::wstring& url, LONG type)
    {
        Bstr u(url);
        LONG code = -1;
        EXPECT_EQ(S_OK, control->ShowURLInDetachedBrowser(u.Get(), type, &code));
        return code;
    }
    std::vector<std::wstring> WindowCalls(size_t i) const { return WithoutQueries(applications.Created().at(i)->OwnLog()); }
    static std::wstring ErrorPage(const std::wstring& method, const std::wstring& url)
    {
        return L"Navigate(about:TOVHTML_E_CALL_METHOD_FAILED: " + method + L"(\"" + url + L"\"), <null>, <null>, <null>, <null>)";
    }
};

TEST_F(DetachedBrowsers, TheSameUrlReusesItsWindowAndLetterCaseMakesAnother)
{
    Init();
    EXPECT_EQ(0, InBrowser(L"http://example.invalid/A"));
    EXPECT_EQ(0, InBrowser(L"http://example.invalid/A"));
    ASSERT_EQ(1u, applications.Created().size());
    EXPECT_EQ((std::vector<std::wstring>{L"put_Visible(true)", L"Navigate(http://example.invalid/A" + kEmpty4, L"get_HWND()",
                                         L"Navigate(http://example.invalid/A" + kEmpty4}),
              WindowCalls(0))
        << "navigated twice, shown once";
    EXPECT_EQ(2u, browser->OwnLog().Count(L"ExecWB")) << "each navigation zooms first";

    EXPECT_EQ(0, InBrowser(L"http://example.invalid/a"));
    EXPECT_EQ(2u, applications.Created().size());
    EXPECT_EQ(L"CoCreateInstance(InternetExplorer)", applications.Log().Texts().front());
}

TEST_F(DetachedBrowsers, AWindowTheUserClosedIsReplaced)
{
    Init();
    EXPECT_EQ(0, InBrowser(L"http://example.invalid/p"));
    tovfe::ScriptedBrowser* first = applications.Created().at(0).Get();
    first->SetHwnd(0);
    first->OwnLog().Clear();
    EXPECT_EQ(0, InBrowser(L"http://example.invalid/p"));
    EXPECT_EQ((std::vector<std::wstring>{L"get_HWND()", L"Stop()", L"Quit()"}), WithoutQueries(first->OwnLog()));
    ASSERT_EQ(2u, applications.Created().size());
    EXPECT_EQ((std::vector<std::wstring>{L"put_Visible(true)", L"Navigate(http://example.invalid/p" + kEmpty4}), WindowCalls(1));
    EXPECT_EQ(1u, first->RefCount()) << "the control let go of the closed window";

    // A window that no longer answers counts as closed as well.
    tovfe::ScriptedBrowser* second = applications.Created().at(1).Get();
    second->FailCall(L"get_HWND", RPC_E_DISCONNECTED);
    EXPECT_EQ(0, InBrowser(L"http://example.invalid/p"));
    EXPECT_EQ(3u, applications.Created().size());
}

TEST_F(DetachedBrowsers, ReleaseClosesEveryRememberedWindow)
{
    Init(1);
    EXPECT_EQ(0, InBrowser(L"http://example.invalid/1"));
    EXPECT_EQ(0, InBrowser(L"http://example.invalid/2"));
    for (const auto& w : applications.Created()) w->OwnLog().Clear();
    host.Destroy();
    control.Reset();
    ASSERT_EQ(2u, applications.Created().size());
    for (const auto& w : applications.Created()) {
        EXPECT_EQ((std::vector<std::wstring>{L"Stop()", L"Quit()"}), WithoutQueries(w->OwnLog()));
        EXPECT_EQ(1u, w->RefCount()) << "released";
    }
}

TEST_F(DetachedBrowsers, BrowserApplicationThatCannotBeCreated)
{
    Init(2);
    applications.FailCreate(REGDB_E_CLASSNOTREG);
    EXPECT_EQ(5, InBrowser(L"http://example.invalid/x"));
    EXPECT_TRUE(HasLine("CoCreateInstance() failed"));
    EXPECT_EQ(ErrorPage(L"ShowURLInBrowser", L"http://example.invalid/x"), BrowserCalls().back());

    ClearLines();
    EXPECT_EQ(5, Detached(L"http://example.invalid/y", 1));
    EXPECT_TRUE(HasLine("CoCreateInstance() for CLSID_InternetExplorer failed in OpenDocumentInDetachedWindow method"));
    EXPECT_EQ(ErrorPage(L"ShowURLInDetachedBrowser", L"http://example.invalid/y"), BrowserCalls().back());
}

TEST_F(DetachedBrowsers, AbsoluteUrlOpensAFreshWindowEachTimeAndRaisesIt)
{
    tovtest::ImportHook raise(ocx.Handle(), "user32.dll", "BringWindowToTop", reinterpret_cast<void*>(&RecordBringWindowToTop));
    ASSERT_TRUE(raise.Installed());
    Init(2);
    EXPECT_EQ(0, Detached(L"http://example.invalid/d", 1));
    EXPECT_EQ(0, Detached(L"http://example.invalid/d", 1));
    ASSERT_EQ(2u, applications.Created().size());
    EXPECT_EQ((std::vector<std::wstring>{L"Navigate(http://example.invalid/d" + kEmpty4, L"put_Visible(true)", L"get_HWND()"}),
              WindowCalls(0));
    EXPECT_EQ((std::vector<HWND>{reinterpret_cast<HWND>(0x1234), reinterpret_cast<HWND>(0x1234)}), g_raised);
    EXPECT_EQ(1u, applications.Created()[0]->RefCount()) << "the window belongs to the user";
    EXPECT_EQ(0u, browser->OwnLog().Count(L"ExecWB")) << "no zoom for a detached window";
    EXPECT_TRUE(HasLine("http://example.invalid/d"));

    // Its visibility decides; a missing window handle is only traced.
    applications.FailCallOnNext(L"get_HWND", E_FAIL);
    EXPECT_EQ(0, Detached(L"http://example.invalid/e", 1));
    EXPECT_TRUE(HasLine("CTOVHTMLControl::OpenDocumentInDetachedWindow: IE window handle not obtained"));
    EXPECT_EQ(2u, g_raised.size());
    applications.ClearFailurePlan();
    applications.FailCallOnNext(L"put_Visible", E_ACCESSDENIED);
    EXPECT_EQ(5, Detached(L"http://example.invalid/f", 1));
    EXPECT_EQ(ErrorPage(L"ShowURLInDetachedBrowser", L"http://example.invalid/f"), BrowserCalls().back());
}

TEST_F(DetachedBrowsers, GeneratedUrlOpensItsTemporaryFile)
{
    Init(1);
    tovfe::DataStore::Instance().Put(L"tovq5:/r/report.pdf", "%PDF", L"pdf");
    EXPECT_EQ(0, Detached(L"tovq5:/r/report.pdf", 0));
    ASSERT_EQ(1u, applications.Created().size());
    const std::wstring navigate = WindowCalls(0).at(0);
    EXPECT_EQ(L"}report.pdf" + kEmpty4, navigate.substr(navigate.find(L'}')));

    EXPECT_EQ(5, Detached(L"tovq5:/r/missing.pdf", 0));
    EXPECT_EQ(ErrorPage(L"ShowDataInBrowser", L"tovq5:/r/missing.pdf"), BrowserCalls().back());
    EXPECT_EQ(1u, applications.Created().size());
    EXPECT_TRUE(g_shellCalls.empty());
}

TEST_F(DetachedBrowsers, WithTheShellConditionTheShellOpensAndTheCodesStayAsTheyWere)
{
    tovtest::ImportHook shell(ocx.Handle(), "shell32.dll", "ShellExecuteA", reinterpret_cast<void*>(&RecordShellExecuteA));
    ASSERT_TRUE(shell.Installed());
    SetShellCondition();
    Init(1);

    EXPECT_EQ(0, Detached(L"http://example.invalid/s", 1));
    ASSERT_EQ(1u, g_shellCalls.size());
    EXPECT_EQ(nullptr, g_shellCalls[0].owner);
    EXPECT_EQ("open", g_shellCalls[0].verb);
    EXPECT_EQ("http://example.invalid/s", g_shellCalls[0].file);
    EXPECT_FALSE(g_shellCalls[0].parameters || g_shellCalls[0].directory);
    EXPECT_EQ(SW_SHOWNORMAL, g_shellCalls[0].show);
    EXPECT_TRUE(applications.Created().empty());
    EXPECT_EQ(0u, browser->OwnLog().Count(L"Navigate"));
    EXPECT_TRUE(HasLine("===> ShellExecute API is called"));

    // A failing shell: the error page, the code still 0.
    g_shellResult = SE_ERR_NOASSOC;
    EXPECT_EQ(0, Detached(L"http://example.invalid/t", 1));
    EXPECT_EQ(ErrorPage(L"ShellExecute failed", L"http://example.invalid/t"), BrowserCalls().back());

    // A generated URL: the file goes to the shell, and the answer is 5 with the error page all the same.
    g_shellResult = 42;
    tovfe::DataStore::Instance().Put(L"tovq5:/r/sheet.xls", "xls", L"xls");
    browser->OwnLog().Clear();
    EXPECT_EQ(5, Detached(L"tovq5:/r/sheet.xls", 0));
    ASSERT_EQ(3u, g_shellCalls.size());
    EXPECT_EQ("}sheet.xls", g_shellCalls[2].file.substr(g_shellCalls[2].file.find('}')));
    const std::wstring temp = tovtest::TempDir();
    EXPECT_EQ(std::string(temp.begin(), temp.end()), g_shellCalls[2].file.substr(0, temp.size())) << "the temporary file";
    EXPECT_EQ(ErrorPage(L"ShowDataInBrowser", L"tovq5:/r/sheet.xls"), BrowserCalls().back());
    EXPECT_TRUE(applications.Created().empty());
}

TEST_F(DetachedBrowsers, BadInputNeverCrashes)
{
    tovtest::ImportHook shell(ocx.Handle(), "shell32.dll", "ShellExecuteA", reinterpret_cast<void*>(&RecordShellExecuteA));
    Init(1);
    const std::wstring huge = L"http://example.invalid/" + std::wstring(1 << 20, L'x');
    EXPECT_EQ(S_OK, control->ShowURLInDetachedBrowser(nullptr, 1, nullptr)) << "null pRetCode";
    EXPECT_EQ(0, Detached(huge, 1));
    EXPECT_EQ(5, Detached(huge, 0)) << "no data for it";
    EXPECT_EQ(5, Detached(L"", 0));
    EXPECT_EQ(0, InBrowser(huge.c_str()));
    EXPECT_EQ(0, InBrowser(L""));
    EXPECT_EQ(0, InBrowser(nullptr));
    Bstr url(huge);
    LONG code = -1;
    EXPECT_EQ(S_OK, control->ShowDataInBrowser(url.Get(), &code));
    EXPECT_EQ(5, code);
    EXPECT_EQ(S_OK, control->ShowURL(url.Get(), url.Get(), &code));
    EXPECT_EQ(0, code);
    EXPECT_EQ(S_OK, control->ShowData(url.Get(), url.Get(), 1, &code));
    EXPECT_EQ(5, code);
    EXPECT_TRUE(g_shellCalls.empty());
}
