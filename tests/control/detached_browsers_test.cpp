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

namespace {

std::vector<std::string> g_shellCalls; // "<owner> <verb> <file> <parameters> <directory> <show>"
INT_PTR g_shellResult = 42;
HINSTANCE WINAPI RecordShellExecuteA(HWND owner, LPCSTR verb, LPCSTR file, LPCSTR parameters, LPCSTR directory, INT show)
{
    std::string call = std::to_string(reinterpret_cast<uintptr_t>(owner));
    for (LPCSTR text : {verb, file, parameters, directory}) call += std::string(" ") + (text ? text : "<null>");
    g_shellCalls.push_back(call + " " + std::to_string(show));
    return reinterpret_cast<HINSTANCE>(g_shellResult);
}

const wchar_t kAdminKey[] = L"Software\\Classes\\TOVHTTPPROXY\\admin";
const std::wstring kEmpty4 = L", <empty>, <empty>, <empty>, <empty>)";

std::wstring ErrorPage(const std::wstring& method, const std::wstring& url)
{
    return L"Navigate(about:TOVHTML_E_CALL_METHOD_FAILED: " + method + L"(\"" + url + L"\"), <null>, <null>, <null>, <null>)";
}

} // namespace

class DetachedBrowsers : public tovtest::InitializedControlFixture {
protected:
    void SetUp() override
    {
        InitializedControlFixture::SetUp();
        g_shellCalls.clear();
        g_shellResult = 42;
    }
    void TearDown() override
    {
        InitializedControlFixture::TearDown();
        tovtest::DeleteTree(HKEY_CURRENT_USER, kAdminKey);
    }
    LONG Detached(const std::wstring& url, LONG type)
    {
        LONG code = -1;
        EXPECT_EQ(S_OK, control->ShowURLInDetachedBrowser(Bstr(url).Get(), type, &code));
        return code;
    }
    std::vector<std::wstring> WindowCalls(size_t i) const { return WithoutQueries(applications.Created().at(i)->OwnLog()); }
};

TEST_F(DetachedBrowsers, TheSameUrlReusesItsWindowUntilTheUserClosesItLetterCaseMakesAnother)
{
    Init();
    EXPECT_EQ(0, InBrowser(L"http://example.invalid/A"));
    EXPECT_EQ(0, InBrowser(L"http://example.invalid/A"));
    ASSERT_EQ(1u, applications.Created().size());
    EXPECT_EQ((std::vector<std::wstring>{L"put_Visible(true)", L"Navigate(http://example.invalid/A" + kEmpty4, L"get_HWND()",
                                         L"Navigate(http://example.invalid/A" + kEmpty4}),
              WindowCalls(0))
        << "navigated twice, shown once";
    EXPECT_EQ(0, InBrowser(L"http://example.invalid/a"));
    EXPECT_EQ(2u, applications.Created().size());

    tovfe::ScriptedBrowser* first = applications.Created().at(0).Get();
    first->SetHwnd(0);
    first->OwnLog().Clear();
    EXPECT_EQ(0, InBrowser(L"http://example.invalid/A"));
    EXPECT_EQ((std::vector<std::wstring>{L"get_HWND()", L"Stop()", L"Quit()"}), WithoutQueries(first->OwnLog()));
    ASSERT_EQ(3u, applications.Created().size());
    EXPECT_EQ(1u, first->RefCount()) << "the control let go of the closed window";
    applications.Created().at(2)->FailCall(L"get_HWND", RPC_E_DISCONNECTED);
    EXPECT_EQ(0, InBrowser(L"http://example.invalid/A"));
    EXPECT_EQ(4u, applications.Created().size()) << "a window that no longer answers counts as closed";

    for (const auto& w : applications.Created()) w->OwnLog().Clear();
    host.Destroy();
    control.Reset();
    for (size_t i : {1, 3}) {
        EXPECT_EQ((std::vector<std::wstring>{L"Stop()", L"Quit()"}), WindowCalls(i)) << "release closes every remembered window";
        EXPECT_EQ(1u, applications.Created()[i]->RefCount());
    }
}

TEST_F(DetachedBrowsers, ABrowserApplicationThatCannotBeCreatedGivesTheErrorPage)
{
    Init(2);
    applications.FailCreate(REGDB_E_CLASSNOTREG);
    EXPECT_EQ(5, InBrowser(L"http://example.invalid/x"));
    EXPECT_TRUE(HasLine("CoCreateInstance() failed"));
    EXPECT_EQ(ErrorPage(L"ShowURLInBrowser", L"http://example.invalid/x"), BrowserCalls().back());
    EXPECT_EQ(5, Detached(L"http://example.invalid/y", 1));
    EXPECT_TRUE(HasLine("CoCreateInstance() for CLSID_InternetExplorer failed in OpenDocumentInDetachedWindow method"));
    EXPECT_EQ(ErrorPage(L"ShowURLInDetachedBrowser", L"http://example.invalid/y"), BrowserCalls().back());
}

TEST_F(DetachedBrowsers, AWebUrlOpensAFreshWindowEachTimeBadInputIsSurvived)
{
    Init(2);
    EXPECT_EQ(0, Detached(L"http://example.invalid/d", 1));
    EXPECT_EQ(0, Detached(L"http://example.invalid/d", 1));
    ASSERT_EQ(2u, applications.Created().size());
    EXPECT_EQ((std::vector<std::wstring>{L"Navigate(http://example.invalid/d" + kEmpty4, L"put_Visible(true)", L"get_HWND()"}),
              WindowCalls(0));
    EXPECT_EQ(1u, applications.Created()[0]->RefCount()) << "the window belongs to the user";
    EXPECT_EQ(0u, browser->OwnLog().Count(L"ExecWB")) << "no zoom for a detached window";

    applications.FailCallOnNext(L"get_HWND", E_FAIL);
    EXPECT_EQ(0, Detached(L"http://example.invalid/e", 1)) << "a missing window handle is only traced";
    EXPECT_TRUE(HasLine("CTOVHTMLControl::OpenDocumentInDetachedWindow: IE window handle not obtained"));
    applications.ClearFailurePlan();
    applications.FailCallOnNext(L"put_Visible", E_ACCESSDENIED);
    EXPECT_EQ(5, Detached(L"http://example.invalid/f", 1)) << "its visibility decides";
    EXPECT_EQ(ErrorPage(L"ShowURLInDetachedBrowser", L"http://example.invalid/f"), BrowserCalls().back());

    // Bad input: a URL of a million characters, as a web URL and as a generated one; an empty URL.
    applications.ClearFailurePlan();
    const std::wstring huge = L"http://example.invalid/" + std::wstring(1 << 20, L'x');
    EXPECT_EQ(0, Detached(huge, 1));
    EXPECT_EQ(5, Detached(huge, 0)) << "no data for it";
    EXPECT_EQ(0, InBrowser(L""));
}

TEST_F(DetachedBrowsers, WithTheShellConditionTheShellOpensAndTheCodesStayAsTheyWere)
{
    tovtest::ImportHook shell(ocx.Handle(), "shell32.dll", "ShellExecuteA", reinterpret_cast<void*>(&RecordShellExecuteA));
    ASSERT_TRUE(shell.Installed());
    const DWORD four = 4;
    ASSERT_EQ(ERROR_SUCCESS, RegSetKeyValueW(HKEY_CURRENT_USER, kAdminKey, L"Condition", REG_DWORD, &four, sizeof(four)));
    Init(1);
    EXPECT_EQ(0, Detached(L"http://example.invalid/s", 1));
    EXPECT_EQ(std::vector<std::string>{"0 open http://example.invalid/s <null> <null> 1"}, g_shellCalls);
    EXPECT_TRUE(applications.Created().empty());
    EXPECT_EQ(0u, browser->OwnLog().Count(L"Navigate"));
    EXPECT_TRUE(HasLine("===> ShellExecute API is called"));

    g_shellResult = SE_ERR_NOASSOC;
    EXPECT_EQ(0, Detached(L"http://example.invalid/t", 1)) << "a failing shell: the error page, the code still 0";
    EXPECT_EQ(ErrorPage(L"ShellExecute failed", L"http://example.invalid/t"), BrowserCalls().back());

    g_shellResult = 42;
    tovfe::DataStore::Instance().Put(L"tovq5:/r/sheet.xls", "xls", L"xls");
    EXPECT_EQ(5, Detached(L"tovq5:/r/sheet.xls", 0)) << "a generated URL: 5 and the error page all the same";
    ASSERT_EQ(3u, g_shellCalls.size());
    EXPECT_NE(std::string::npos, g_shellCalls[2].find("}sheet.xls <null> <null> 1")) << "the temporary file";
    EXPECT_EQ(ErrorPage(L"ShowDataInBrowser", L"tovq5:/r/sheet.xls"), BrowserCalls().back());
    EXPECT_TRUE(applications.Created().empty());
}
