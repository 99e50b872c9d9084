// Registration with the platform's regsvr32 in the test prefix: every key of the registration script,
// the type library, the front end's component key, and their removal.
#include <gtest/gtest.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>
#include "support/ocx.h"
#include "support/import_hook.h"
#include "support/registry_helpers.h"

using namespace tovtest;

namespace {

const std::wstring kClassKey = L"CLSID\\{B650592E-C92E-4739-8B43-8FB7CCF89466}";
const std::wstring kTypeLibKey = L"TypeLib\\{E677A061-08FE-11D1-A900-080009B0CB9D}\\1.1";
const std::wstring kComponentsKey = L"SOFTWARE\\TOV\\General\\Frontend\\Components";
const std::wstring kComponentKey = kComponentsKey + L"\\HTMLViewerControl";

int Regsvr32(const std::wstring& args) { return RunProcess(L"regsvr32.exe /s " + args); }
int Register(const std::wstring& file = OcxPath()) { return Regsvr32(L"\"" + file + L"\""); }
int Unregister(const std::wstring& file = OcxPath()) { return Regsvr32(L"/u \"" + file + L"\""); }

class Registration : public testing::Test {
protected:
    void SetUp() override
    {
        Unregister();
        DeleteTree(HKEY_LOCAL_MACHINE, L"SOFTWARE\\TOV");
    }
    void TearDown() override
    {
        Unregister();
        DeleteTree(HKEY_LOCAL_MACHINE, L"SOFTWARE\\TOV");
    }
};

void ExpectEveryScriptEntry()
{
    const std::wstring module = OcxPath();
    EXPECT_EQ(L"TOV HTML IE Control", ReadString(HKEY_CLASSES_ROOT, L"TOV.HTMLIEControl.1"));
    EXPECT_EQ(L"{B650592E-C92E-4739-8B43-8FB7CCF89466}", ReadString(HKEY_CLASSES_ROOT, L"TOV.HTMLIEControl.1\\CLSID"));
    EXPECT_TRUE(KeyExists(HKEY_CLASSES_ROOT, L"TOV.HTMLIEControl.1\\Insertable"));
    EXPECT_EQ(L"TOV HTML IE Control", ReadString(HKEY_CLASSES_ROOT, L"TOV.HTMLIEControl"));
    EXPECT_EQ(L"{B650592E-C92E-4739-8B43-8FB7CCF89466}", ReadString(HKEY_CLASSES_ROOT, L"TOV.HTMLIEControl\\CLSID"));
    EXPECT_EQ(L"TOV.HTMLIEControl.1", ReadString(HKEY_CLASSES_ROOT, L"TOV.HTMLIEControl\\CurVer"));
    EXPECT_EQ(L"", ReadString(HKEY_CLASSES_ROOT, L"TOV.HTMLIEControl\\EnableOutputFile"));

    EXPECT_EQ(L"TOV HTML IE Control", ReadString(HKEY_CLASSES_ROOT, kClassKey));
    EXPECT_EQ(L"TOV.HTMLIEControl.1", ReadString(HKEY_CLASSES_ROOT, kClassKey + L"\\ProgID"));
    EXPECT_EQ(L"TOV.HTMLIEControl", ReadString(HKEY_CLASSES_ROOT, kClassKey + L"\\VersionIndependentProgID"));
    for (const wchar_t* empty : {L"Programmable", L"Control", L"Insertable"})
        EXPECT_TRUE(KeyExists(HKEY_CLASSES_ROOT, kClassKey + L"\\" + empty)) << empty;
    auto server = ReadString(HKEY_CLASSES_ROOT, kClassKey + L"\\InprocServer32");
    ASSERT_TRUE(server.has_value());
    EXPECT_EQ(0, _wcsicmp(module.c_str(), server->c_str())) << "InprocServer32 names the OCX";
    EXPECT_EQ(L"Apartment", ReadString(HKEY_CLASSES_ROOT, kClassKey + L"\\InprocServer32", L"ThreadingModel"));
    auto bitmap = ReadString(HKEY_CLASSES_ROOT, kClassKey + L"\\ToolboxBitmap32");
    ASSERT_TRUE(bitmap.has_value());
    EXPECT_EQ(0, _wcsicmp((module + L", 1").c_str(), bitmap->c_str()));
    EXPECT_EQ(L"0", ReadString(HKEY_CLASSES_ROOT, kClassKey + L"\\MiscStatus"));
    EXPECT_EQ(L"131473", ReadString(HKEY_CLASSES_ROOT, kClassKey + L"\\MiscStatus\\1"));
    // Kept as the front end has always found it: the class identity, not the library's.
    EXPECT_EQ(L"{B650592E-C92E-4739-8B43-8FB7CCF89466}", ReadString(HKEY_CLASSES_ROOT, kClassKey + L"\\TypeLib"));
    EXPECT_EQ(L"1.1", ReadString(HKEY_CLASSES_ROOT, kClassKey + L"\\Version"));

    EXPECT_EQ(L"TOV HTML Control", ReadString(HKEY_CLASSES_ROOT, kTypeLibKey));
    auto tlb = ReadString(HKEY_CLASSES_ROOT, kTypeLibKey + L"\\0\\win64");
    ASSERT_TRUE(tlb.has_value());
    EXPECT_EQ(0, _wcsicmp(module.c_str(), tlb->c_str()));

    EXPECT_EQ(L"{2D502E4F-B818-41F9-9B33-0E9B0C64BEA6}", ReadString(HKEY_LOCAL_MACHINE, kComponentKey, L"CLSID"));
    EXPECT_EQ(L"HTMLViewer", ReadString(HKEY_LOCAL_MACHINE, kComponentKey, L"DisplayName"));
}

std::wstring CopyOfOcx(const wchar_t* name, size_t keepBytes, bool scramble)
{
    std::ifstream in(std::filesystem::path(OcxPath()), std::ios::binary);
    std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (keepBytes < bytes.size()) bytes.resize(keepBytes);
    if (scramble)
        for (size_t i = 0x200; i < bytes.size(); i += 7) bytes[i] = static_cast<char>(bytes[i] ^ 0x5A);
    const std::wstring path = TempDir() + name;
    std::ofstream out(std::filesystem::path(path), std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return path;
}

} // namespace

TEST_F(Registration, RegisterWritesEveryEntryAndTwiceChangesNothing)
{
    EXPECT_FALSE(KeyExists(HKEY_CLASSES_ROOT, kClassKey));
    ASSERT_EQ(0, Register());
    ExpectEveryScriptEntry();
    ASSERT_EQ(0, Register());
    ExpectEveryScriptEntry();
}

TEST_F(Registration, UnregisterRemovesClassProgIdsAndComponentButKeepsTypeLibrary)
{
    ASSERT_EQ(0, Register());
    ASSERT_EQ(0, Unregister());
    EXPECT_FALSE(KeyExists(HKEY_CLASSES_ROOT, L"TOV.HTMLIEControl.1"));
    EXPECT_FALSE(KeyExists(HKEY_CLASSES_ROOT, L"TOV.HTMLIEControl"));
    EXPECT_FALSE(KeyExists(HKEY_CLASSES_ROOT, kClassKey));
    EXPECT_TRUE(KeyExists(HKEY_CLASSES_ROOT, L"CLSID"));
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kComponentKey));
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, L"SOFTWARE\\TOV")) << "nothing else lived under it";
    EXPECT_TRUE(KeyExists(HKEY_CLASSES_ROOT, kTypeLibKey + L"\\0\\win64"));
}

TEST_F(Registration, UnregisterKeepsParentsThatOtherComponentsUse)
{
    HKEY other = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_LOCAL_MACHINE, (kComponentsKey + L"\\OtherControl").c_str(), 0, nullptr,
                                             0, KEY_WRITE, nullptr, &other, nullptr));
    RegCloseKey(other);
    ASSERT_EQ(0, Register());
    ASSERT_EQ(0, Unregister());
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kComponentKey));
    EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, kComponentsKey + L"\\OtherControl"));

    DeleteTree(HKEY_LOCAL_MACHINE, L"SOFTWARE\\TOV");
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\TOV\\Other", 0, nullptr, 0, KEY_WRITE, nullptr,
                                             &other, nullptr));
    RegCloseKey(other);
    ASSERT_EQ(0, Register());
    ASSERT_EQ(0, Unregister());
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, L"SOFTWARE\\TOV\\General"));
    EXPECT_TRUE(KeyExists(HKEY_LOCAL_MACHINE, L"SOFTWARE\\TOV\\Other"));
}

TEST_F(Registration, ComponentKeyFailureIsReportedAsWin32Result)
{
    // A volatile parent refuses a non-volatile child: the component key cannot be written.
    HKEY parent = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_LOCAL_MACHINE, kComponentsKey.c_str(), 0, nullptr, REG_OPTION_VOLATILE,
                                             KEY_WRITE, nullptr, &parent, nullptr));
    RegCloseKey(parent);
    Ocx ocx;
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE), ocx.Register());
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kComponentKey));
    // The class registration went through all the same.
    EXPECT_TRUE(KeyExists(HKEY_CLASSES_ROOT, kClassKey));
    EXPECT_NE(0, Register()) << "regsvr32 reports the failure";
    EXPECT_EQ(S_OK, ocx.Unregister());
    EXPECT_FALSE(KeyExists(HKEY_CLASSES_ROOT, kClassKey));
}

TEST_F(Registration, DamagedCopiesFailCleanly)
{
    const std::wstring truncated = CopyOfOcx(L"tovhtml_truncated.ocx", 4096, false);
    const std::wstring scrambled = CopyOfOcx(L"tovhtml_scrambled.ocx", SIZE_MAX, true);
    const std::wstring empty = CopyOfOcx(L"tovhtml_empty.ocx", 0, false);
    for (const auto& file : {truncated, scrambled, empty}) {
        const int rc = Register(file);
        EXPECT_NE(0, rc);
        EXPECT_NE(-1, rc) << "regsvr32 ran";
        DeleteFileW(file.c_str());
    }
    EXPECT_FALSE(KeyExists(HKEY_CLASSES_ROOT, kClassKey));
}

namespace {
int g_perUserRegistrations = 0;
HRESULT WINAPI CountRegisterTypeLibForUser(ITypeLib*, OLECHAR*, OLECHAR*)
{
    ++g_perUserRegistrations;
    return S_OK;
}
// The process's per-user switch as the ATL runtime keeps it (Wine's runtime only stubs it).
bool g_perUserAsked = false;
HRESULT WINAPI FakeAtlGetPerUserRegistration(bool* perUser)
{
    *perUser = g_perUserAsked;
    return S_OK;
}
// The OCX finds both functions at run time: hand it the fakes.
FARPROC WINAPI LookUp(HMODULE module, LPCSTR name)
{
    if (HIWORD(reinterpret_cast<ULONG_PTR>(name))) {
        if (std::string(name) == "RegisterTypeLibForUser")
            return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&CountRegisterTypeLibForUser));
        if (std::string(name) == "AtlGetPerUserRegistration")
            return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&FakeAtlGetPerUserRegistration));
    }
    return GetProcAddress(module, name);
}
} // namespace

TEST_F(Registration, TypeLibraryPerUserOnlyWhenTheProcessAsksForIt)
{
    Ocx ocx;
    tovtest::ImportHook hook(ocx.Handle(), "kernel32.dll", "GetProcAddress", reinterpret_cast<void*>(&LookUp));
    ASSERT_TRUE(hook.Installed());
    HMODULE atl = LoadLibraryW(L"atl100.dll");
    ASSERT_NE(nullptr, atl);
    g_perUserRegistrations = 0;
    g_perUserAsked = false;
    EXPECT_EQ(S_OK, ocx.Register());
    EXPECT_EQ(0, g_perUserRegistrations) << "machine-wide by default";

    g_perUserAsked = true;
    EXPECT_EQ(S_OK, ocx.Register());
    EXPECT_EQ(1, g_perUserRegistrations) << "the process asked for per-user registration";
    g_perUserAsked = false;
    FreeLibrary(atl);
    EXPECT_EQ(S_OK, ocx.Unregister());
}
