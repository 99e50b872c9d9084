// Provider data that is not HTML goes through temporary files: where the provider is asked, how the
// file is named, that every file made is deleted again (once retried), and the trace text of each provider
// failure. (Output copies: show_methods_test.cpp.)
#include <algorithm>
#include "support/import_hook.h"
#include "support/initialized_control_fixture.h"
#include "frontend/folders.h"

using tov::Bstr;
using tovfe::DataStore;
using tovtest::TempDir;

namespace {

std::vector<std::string> g_deleted;
BOOL WINAPI RecordDeleteFileA(LPCSTR path)
{
    g_deleted.push_back(path ? path : "");
    return DeleteFileA(path);
}
HRESULT WINAPI NoGuid(GUID*) { return E_FAIL; }


} // namespace

class TempFiles : public tovtest::InitializedControlFixture {
protected:
    TempFiles() : InitializedControlFixture(2) {}
    void SetUp() override
    {
        InitializedControlFixture::SetUp();
        ASSERT_EQ(S_OK, control->put_URLPrefixLocal(Bstr(L"http://srv/app/").Get()));
    }

    LONG Show(const wchar_t* url)
    {
        browser->Log().Clear();
        ClearLines();
        DataStore::Instance().calls.clear();
        return ShowData(url);
    }
    // The URL of the last Navigate the browser received, empty when there was none.
    std::wstring Navigated() const
    {
        const auto& calls = browser->Log().Calls();
        auto it = std::find_if(calls.rbegin(), calls.rend(), [](const tovfe::Call& c) { return c.name == L"Navigate"; });
        return it == calls.rend() ? std::wstring() : it->args.at(0);
    }
    bool ProviderAskedFor(const std::wstring& url) const
    {
        const auto& calls = DataStore::Instance().calls;
        return std::find(calls.begin(), calls.end(), L"SetDataFromURL(, , " + url + L")") != calls.end();
    }
    // Releases the control the way its container does; its temporary files go with it.
    void ReleaseControl()
    {
        host.Destroy();
        control.Reset();
    }
};

TEST_F(TempFiles, FileNamesAndWhereTheProviderIsAsked)
{
    // Data URLs are passed to the provider as they stand (their scheme in any letter case: tests/native).
    const struct {
        const wchar_t *url, *asked, *fileEnd;
    } cases[] = {
        {L"page.htm#top", L"http://srv/app/page.htm", L"page.htm#top"},
        {L"TOVQ5:/a/b/Picture%20one.gif", L"TOVQ5:/a/b/Picture%20one.gif", L"Picture one.gif"},
        {L"a%3Db.txt", L"http://srv/app/a%3Db.txt", L"a%3Db.txt"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "url " << c.url);
        DataStore::Instance().Put(c.asked, "GIF89a", L"gif");
        EXPECT_EQ(0, Show(c.url));
        EXPECT_TRUE(ProviderAskedFor(c.asked));
        const std::wstring path = Navigated();
        EXPECT_TRUE(path.starts_with(TempDir()) && path.ends_with(c.fileEnd) && FileExists(path)) << path;
    }
}

// Every file made is deleted at release: the same URL twice makes two files; a file held open is tried twice,
// a gone or reused one once.
TEST_F(TempFiles, EveryFileIsDeletedAtReleaseAHeldOneTriedTwice)
{
    DataStore::Instance().Put(L"http://srv/app/held.gif", "GIF89a", L"gif");
    DataStore::Instance().Put(L"http://srv/app/gone.gif", "GIF89a", L"gif");
    DataStore::Instance().Put(L"http://srv/app/again.gif", "GIF89a", L"gif");
    ASSERT_EQ(0, Show(L"held.gif"));
    const std::wstring held = Navigated();
    ASSERT_EQ(0, Show(L"gone.gif"));
    const std::wstring gone = Navigated();
    ASSERT_EQ(0, Show(L"again.gif"));
    const std::wstring first = Navigated();
    // Without a new GUID the last stem stays, so the same URL again finds its file: reused, recorded twice.
    ASSERT_EQ(0, Show(L"again.gif"));
    const std::wstring reused = Navigated();
    EXPECT_NE(first, reused) << "each showing has a file of its own";
    {
        tovtest::ImportHook hook(ocx.Handle(), "ole32.dll", "CoCreateGuid", reinterpret_cast<void*>(&NoGuid));
        ASSERT_TRUE(hook.Installed());
        ASSERT_EQ(0, Show(L"again.gif"));
    }
    EXPECT_EQ(reused, Navigated());
    EXPECT_LT(0u, LinesWith("File already exists :"));
    const auto& calls = DataStore::Instance().calls;
    EXPECT_TRUE(std::none_of(calls.begin(), calls.end(), [](const std::wstring& c) { return c.rfind(L"SaveDataToFile", 0) == 0; }))
        << "a reused file is not written again";
    ASSERT_TRUE(DeleteFileW(gone.c_str()));
    HANDLE h = CreateFileW(held.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, h);

    g_deleted.clear();
    {
        tovtest::ImportHook hook(ocx.Handle(), "kernel32.dll", "DeleteFileA", reinterpret_cast<void*>(&RecordDeleteFileA));
        ASSERT_TRUE(hook.Installed());
        ReleaseControl();
    }
    CloseHandle(h);
    auto count = [](const std::wstring& path) {
        return std::count_if(g_deleted.begin(), g_deleted.end(), [&](const std::string& p) {
            return std::wstring(p.begin(), p.end()) == path;
        });
    };
    EXPECT_EQ(2, count(held)) << "one retry for a file that could not be deleted";
    EXPECT_EQ(1, count(gone)) << "no retry for a file that is already gone";
    EXPECT_EQ(2, count(reused)) << "deleted by the first entry, found gone by the second";
    EXPECT_FALSE(FileExists(first) || FileExists(reused));
    EXPECT_TRUE(FileExists(held));
    DeleteFileW(held.c_str());
}

// A provider name's escaped bytes need not be text in the thread's code page: under 932 the file made for
// such a name is deleted at release all the same, by its wide name, without the ANSI retry; under 1252
// every name goes the ANSI way as before. Checked on the file system.
TEST_F(TempFiles, FilesWhoseNamesDoNotSurviveTheCodePageAreDeletedToo)
{
    const LCID before = GetThreadLocale();
    for (const LANGID language : {MAKELANGID(LANG_JAPANESE, SUBLANG_DEFAULT), MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US)}) {
        ASSERT_TRUE(SetThreadLocale(MAKELCID(language, SORT_DEFAULT)));
        CPINFOEXW info{};
        ASSERT_TRUE(GetCPInfoExW(CP_THREAD_ACP, 0, &info));
        SCOPED_TRACE(testing::Message() << "thread code page " << info.CodePage);
        ASSERT_EQ(language == MAKELANGID(LANG_JAPANESE, SUBLANG_DEFAULT) ? 932u : 1252u, info.CodePage);

        auto other = ocx.CreateControl();
        tovtest::AtlHost otherHost;
        ASSERT_EQ(S_OK, otherHost.Attach(other.Get()));
        LONG code = -1;
        ASSERT_EQ(S_OK, other->InitControl(&code));
        std::vector<std::wstring> made;
        for (const wchar_t* url : {L"tovq5:/a/%82%A0%81%20%FDmega.gif", L"tovq5:/a/%82%A0%82%A2.gif", L"tovq5:/a/%E4%F6%FC.gif"}) {
            DataStore::Instance().Put(url, "GIF89a", L"gif");
            code = -1;
            EXPECT_EQ(S_OK, other->ShowData(Bstr(url).Get(), nullptr, 1, &code));
            EXPECT_EQ(0, code) << url;
            const std::wstring path = Navigated(); // the browsers share one log
            EXPECT_TRUE(FileExists(path)) << "made: " << testing::PrintToString(path);
            made.push_back(path);
        }
        // A name no file can have: code 5, and nothing made.
        const auto filesBefore = tovfe::TempFolderFiles();
        DataStore::Instance().Put(L"tovq5:/a/what%3F%2A.gif", "GIF89a", L"gif");
        code = -1;
        EXPECT_EQ(S_OK, other->ShowData(Bstr(L"tovq5:/a/what%3F%2A.gif").Get(), nullptr, 1, &code));
        EXPECT_EQ(5, code);
        EXPECT_EQ(filesBefore, tovfe::TempFolderFiles());
        otherHost.Destroy();
        other.Reset();
        for (const auto& path : made) EXPECT_FALSE(FileExists(path)) << "left behind: " << testing::PrintToString(path);
    }
    SetThreadLocale(before);
}

TEST_F(TempFiles, EachProviderFailureHasItsTraceTextAndNoFile)
{
    struct Case {
        const wchar_t* failing;
        const char* text;
    };
    const Case cases[] = {
        {L"create", "GetDataSubtype: CoCreateInstance failed"},
        {L"SetDataFromURL", "GetDataSubtype: pDPShowData->SetDataFromURL() failed"},
        {L"GetDataAsFormat", "GetDataSubtype: pDPShowData->GetDataAsFormat() failed"},
        {L"get_SubType", "GetDataSubtype: pFormat->get_SubType() failed"},
        {L"SaveDataToFile", "pDPShowData->SaveDataToFile() failed"},
    };
    auto& store = DataStore::Instance();
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "failing " << c.failing);
        store.Clear();
        store.Put(L"http://srv/app/pic.gif", "GIF89a", L"gif");
        if (std::wstring(c.failing) == L"create") store.creationResult = REGDB_E_CLASSNOTREG;
        else store.failures[c.failing] = E_FAIL;
        EXPECT_EQ(5, Show(L"pic.gif"));
        EXPECT_LT(0u, LinesWith(c.text));
        EXPECT_EQ(std::wstring::npos, Navigated().find(L"pic.gif")) << "no file was shown";
    }

    // HTML whose stream cannot be read: no charset found, still shown.
    store.Clear();
    store.Put(L"http://srv/app/page.htm", "<meta charset=utf-8>", L"html");
    store.failures[L"GetDataAsStream"] = E_FAIL;
    EXPECT_EQ(0, Show(L"page.htm"));
    EXPECT_LT(0u, LinesWith("Meta Tag Found: 0"));
}

TEST_F(TempFiles, MalformedNamesStayInsideTheTemporaryFolder)
{
    auto& store = DataStore::Instance();
    const wchar_t* urls[] = {L"TOVQ5:", L"TOVQ5:nothing-after-the-scheme", L"..%5C..%5Cevil.gif", L"%00.gif",
                             L"a%3A%2A%3F%22%3C%3E%7C.gif"};
    int files = 0;
    for (const wchar_t* url : urls) {
        SCOPED_TRACE(testing::Message() << "url " << url);
        store.Put(url, "x", L"gif");
        store.Put(std::wstring(L"http://srv/app/") + url, "x", L"gif");
        Show(url);
        const std::wstring path = Navigated();
        if (path.empty() || path.rfind(L"about:", 0) == 0) continue;
        ++files;
        const std::wstring folder = TempDir();
        ASSERT_EQ(0, path.compare(0, folder.size(), folder)) << path;
        EXPECT_EQ(std::wstring::npos, path.find(L'\\', folder.size())) << "no sub-folder: " << path;
        EXPECT_EQ(std::wstring::npos, path.find(L"..\\")) << path;
    }
    EXPECT_GE(files, 3) << "most of these names still give a file";
}
