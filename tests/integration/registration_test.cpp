// Registration with the platform's regsvr32 in the test prefix: every key of the registration script,
// the type library and the front end's component key; their removal, failures reported as HRESULTs, and
// the per-user type-library registration.
#include <gtest/gtest.h>
#include <string>
#include "framework/handles.h"
#include "support/import_hook.h"
#include "support/ocx.h"
#include "support/registry_helpers.h"

using namespace tovtest;

namespace {

const std::wstring kClassKey = L"CLSID\\{B650592E-C92E-4739-8B43-8FB7CCF89466}";
const std::wstring kTypeLibKey = L"TypeLib\\{E677A061-08FE-11D1-A900-080009B0CB9D}\\1.1";
const std::wstring kComponentsKey = L"SOFTWARE\\TOV\\General\\Frontend\\Components";
const std::wstring kComponentKey = kComponentsKey + L"\\HTMLViewerControl";

int Register(const std::wstring& options = L"/s ") { return RunProcess(L"regsvr32.exe " + options + L"\"" + OcxPath() + L"\""); }
int Unregister() { return Register(L"/s /u "); }

void CreateKey(const std::wstring& path, DWORD options = 0)
{
    tov::UniqueHKey key;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, options, KEY_WRITE, nullptr, key.Put(), nullptr));
}

// Paths of the OCX as the registry holds them may differ from ours in case only.
std::wstring Lower(std::optional<std::wstring> s)
{
    std::wstring r = s.value_or(L"<missing>");
    CharLowerW(r.data());
    return r;
}

class Registration : public testing::Test {
protected:
    void SetUp() override { TearDown(); }
    void TearDown() override
    {
        Unregister();
        DeleteTree(HKEY_LOCAL_MACHINE, L"SOFTWARE\\TOV");
    }
};

// The per-user switch as the ATL runtime keeps it (Wine's runtime only stubs it) and the per-user type
// library registration it leads to: the OCX finds both at run time and is handed these fakes.
bool g_perUserAsked = false;
int g_perUserRegistrations = 0;
HRESULT WINAPI FakeAtlGetPerUserRegistration(bool* perUser) { *perUser = g_perUserAsked; return S_OK; }
HRESULT WINAPI CountRegisterTypeLibForUser(ITypeLib*, OLECHAR*, OLECHAR*) { ++g_perUserRegistrations; return S_OK; }
FARPROC WINAPI LookUp(HMODULE module, LPCSTR name)
{
    const std::string n = HIWORD(reinterpret_cast<ULONG_PTR>(name)) ? name : "";
    if (n == "RegisterTypeLibForUser") return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&CountRegisterTypeLibForUser));
    if (n == "AtlGetPerUserRegistration") return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&FakeAtlGetPerUserRegistration));
    return GetProcAddress(module, name);
}

} // namespace

TEST_F(Registration, RegisterWritesEveryEntryAndTwiceChangesNothing)
{
    ASSERT_EQ(0, Register());
    ASSERT_EQ(0, Register());
    const std::wstring progId = L"TOV.HTMLIEControl", clsid = L"{B650592E-C92E-4739-8B43-8FB7CCF89466}";
    const std::pair<std::wstring, std::wstring> values[] = { // default values under HKEY_CLASSES_ROOT
        {progId + L".1", L"TOV HTML IE Control"}, {progId + L".1\\CLSID", clsid}, {progId, L"TOV HTML IE Control"},
        {progId + L"\\CLSID", clsid}, {progId + L"\\CurVer", progId + L".1"}, {progId + L"\\EnableOutputFile", L""},
        {kClassKey, L"TOV HTML IE Control"}, {kClassKey + L"\\ProgID", progId + L".1"},
        {kClassKey + L"\\VersionIndependentProgID", progId}, {kClassKey + L"\\MiscStatus", L"0"},
        {kClassKey + L"\\MiscStatus\\1", L"131473"}, {kClassKey + L"\\Version", L"1.1"}, {kTypeLibKey, L"TOV HTML Control"},
        {kClassKey + L"\\TypeLib", clsid}, // as the front end has always found it: the class's identity, not the library's
    };
    for (const auto& [key, value] : values) EXPECT_EQ(value, ReadString(HKEY_CLASSES_ROOT, key)) << key;
    for (const std::wstring& empty : {progId + L".1\\Insertable", kClassKey + L"\\Programmable", kClassKey + L"\\Control",
                                      kClassKey + L"\\Insertable"})
        EXPECT_TRUE(KeyExists(HKEY_CLASSES_ROOT, empty)) << empty;
    const std::wstring module = OcxPath();
    EXPECT_EQ(Lower(module), Lower(ReadString(HKEY_CLASSES_ROOT, kClassKey + L"\\InprocServer32")));
    EXPECT_EQ(L"Apartment", ReadString(HKEY_CLASSES_ROOT, kClassKey + L"\\InprocServer32", L"ThreadingModel"));
    EXPECT_EQ(Lower(module + L", 1"), Lower(ReadString(HKEY_CLASSES_ROOT, kClassKey + L"\\ToolboxBitmap32")));
    EXPECT_EQ(Lower(module), Lower(ReadString(HKEY_CLASSES_ROOT, kTypeLibKey + L"\\0\\win64")));

    EXPECT_EQ(L"{2D502E4F-B818-41F9-9B33-0E9B0C64BEA6}", ReadString(HKEY_LOCAL_MACHINE, kComponentKey, L"CLSID"));
    EXPECT_EQ(L"HTMLViewer", ReadString(HKEY_LOCAL_MACHINE, kComponentKey, L"DisplayName"));
}

TEST_F(Registration, UnregisterRemovesOurKeysKeepsTheTypeLibraryAndWhatOthersUse)
{
    const struct {
        std::wstring other; // a key of someone else's under ours
        std::wstring gone;  // the deepest empty parent that goes with our component key
    } cases[] = {
        {L"", L"SOFTWARE\\TOV"},
        {kComponentsKey + L"\\OtherControl", kComponentKey},
        {L"SOFTWARE\\TOV\\Other", L"SOFTWARE\\TOV\\General"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.other);
        DeleteTree(HKEY_LOCAL_MACHINE, L"SOFTWARE\\TOV");
        if (!c.other.empty()) CreateKey(c.other);
        ASSERT_EQ(0, Register());
        ASSERT_EQ(0, Unregister());
        for (const std::wstring& key : {std::wstring(L"TOV.HTMLIEControl.1"), std::wstring(L"TOV.HTMLIEControl"), kClassKey})
            EXPECT_FALSE(KeyExists(HKEY_CLASSES_ROOT, key));
        EXPECT_TRUE(KeyExists(HKEY_CLASSES_ROOT, kTypeLibKey + L"\\0\\win64")) << "the type library stays registered";
        EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, c.gone));
        EXPECT_TRUE(c.other.empty() || KeyExists(HKEY_LOCAL_MACHINE, c.other)) << "what others use stays";
    }
}

TEST_F(Registration, ComponentKeyFailureIsReportedAsWin32Result)
{
    // A volatile parent refuses a non-volatile child: the component key cannot be written.
    CreateKey(kComponentsKey, REG_OPTION_VOLATILE);
    Ocx ocx;
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE), ocx.Register());
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kComponentKey));
    EXPECT_TRUE(KeyExists(HKEY_CLASSES_ROOT, kClassKey)) << "the class registration went through all the same";
    EXPECT_NE(0, Register()) << "regsvr32 reports the failure";
    EXPECT_EQ(S_OK, ocx.Unregister());
    EXPECT_FALSE(KeyExists(HKEY_CLASSES_ROOT, kClassKey));
}

TEST_F(Registration, TypeLibraryPerUserOnlyWhenTheProcessAsksForIt)
{
    Ocx ocx;
    tovtest::ImportHook hook(ocx.Handle(), "kernel32.dll", "GetProcAddress", reinterpret_cast<void*>(&LookUp));
    ASSERT_TRUE(hook.Installed());
    tov::UniqueLibrary atl(LoadLibraryW(L"atl100.dll"));
    ASSERT_TRUE(atl);
    EXPECT_EQ(S_OK, ocx.Register());
    EXPECT_EQ(0, g_perUserRegistrations) << "machine-wide by default";

    g_perUserAsked = true;
    EXPECT_EQ(S_OK, ocx.Register());
    EXPECT_EQ(1, g_perUserRegistrations) << "the process asked for per-user registration";
    g_perUserAsked = false;
    EXPECT_EQ(S_OK, ocx.Unregister());
}
