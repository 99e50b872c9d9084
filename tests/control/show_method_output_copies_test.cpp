// With output copies switched on in the registry, ShowData keeps a copy of the data it showed or failed to
// show, ShowDataInBrowser one of every call, ShowURL none; the copies stay after the control is gone.
#include "support/initialized_control_fixture.h"
#include "support/registry_helpers.h"

using tov::Bstr;
using tovtest::InitializedControlFixture;

namespace {

const wchar_t kOutputKey[] = L"Software\\Classes\\TOV.HTMLControl\\EnableOutputFile";

bool FileExists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

// Saves of output copies the data provider was asked for.
size_t OutputSaves()
{
    size_t n = 0;
    for (const auto& call : tovfe::DataStore::Instance().calls)
        n += call.rfind(L"SaveDataToFile(", 0) == 0 && call.find(L"\\Output") != std::wstring::npos;
    return n;
}

} // namespace

class ShowMethodOutputCopies : public InitializedControlFixture {
protected:
    void SetUp() override
    {
        InitializedControlFixture::SetUp();
        HKEY key = nullptr;
        ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_LOCAL_MACHINE, kOutputKey, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr));
        const DWORD on = 1;
        RegSetValueExW(key, nullptr, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&on), sizeof(on));
        RegCloseKey(key);
        Init(1);
        for (const wchar_t* name : {L"shown.htm", L"failed.htm", L"window.pdf"}) DeleteFileW(Copy(name).c_str());
    }
    void TearDown() override
    {
        InitializedControlFixture::TearDown();
        tovtest::DeleteTree(HKEY_LOCAL_MACHINE, kOutputKey);
        for (const wchar_t* name : {L"shown.htm", L"failed.htm", L"window.pdf"}) DeleteFileW(Copy(name).c_str());
    }
    static std::wstring Copy(const std::wstring& url) { return tovtest::TempDir() + L"Output" + url; }
    void Put(const std::wstring& url, const char* subtype)
    {
        tovfe::DataStore::Instance().Put(LocalPrefix() + url, "data", std::wstring(subtype, subtype + strlen(subtype)));
    }
};

TEST_F(ShowMethodOutputCopies, ShowDataCopiesAfterSuccessAndAfterFailure)
{
    Put(L"shown.htm", "html");
    Put(L"failed.htm", "html");
    Bstr shown(L"shown.htm#part"), failed(L"failed.htm");
    LONG code = -1;
    EXPECT_EQ(S_OK, control->ShowData(shown.Get(), nullptr, 1, &code));
    EXPECT_EQ(0, code);
    EXPECT_TRUE(FileExists(Copy(L"shown.htm"))) << "named after the URL without its fragment";

    browser->FailCall(L"Navigate", E_FAIL);
    EXPECT_EQ(S_OK, control->ShowData(failed.Get(), nullptr, 1, &code));
    EXPECT_EQ(5, code);
    EXPECT_TRUE(FileExists(Copy(L"failed.htm")));

    host.Destroy();
    control.Reset();
    EXPECT_TRUE(FileExists(Copy(L"shown.htm"))) << "copies are never deleted by the control";
}

TEST_F(ShowMethodOutputCopies, ShowDataInBrowserCopiesAlsoWhenTheWindowFailsAndShowURLNever)
{
    Put(L"window.pdf", "pdf");
    applications.FailCreate(E_FAIL);
    Bstr url(L"window.pdf");
    LONG code = -1;
    EXPECT_EQ(S_OK, control->ShowDataInBrowser(url.Get(), &code));
    EXPECT_EQ(5, code);
    EXPECT_TRUE(FileExists(Copy(L"window.pdf")));

    const size_t saves = OutputSaves();
    tovfe::DataStore::Instance().Put(L"tovq5:/a/page.htm", "<html></html>", L"html");
    Bstr provider(L"tovq5:/a/page.htm");
    EXPECT_EQ(S_OK, control->ShowURL(provider.Get(), nullptr, &code));
    EXPECT_EQ(0, code);
    EXPECT_EQ(saves, OutputSaves());
}
