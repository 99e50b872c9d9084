// The engine's browser registered with regsvr32 in the test prefix: the WebBrowser class and the browser
// application class then lead to TOVENGINE.DLL for every COM client of the prefix, and unregistering
// gives both back to the entries they had.
#include <gtest/gtest.h>
#include <exdisp.h>
#include <string>
#include "frontend/engine_classes.h"
#include "framework/bstr.h"
#include "framework/com_ptr.h"
#include "support/ocx.h"
#include "support/registry_helpers.h"

using namespace tovtest;

namespace {

const std::wstring kBrowserServer = L"Software\\Classes\\CLSID\\{8856F961-340A-11D0-A96B-00C04FD705A2}\\InprocServer32";
const std::wstring kApplicationServer = L"Software\\Classes\\CLSID\\{0002DF01-0000-0000-C000-000000000046}\\InprocServer32";
const CLSID kWebBrowserClass = {0x8856f961, 0x340a, 0x11d0, {0xa9, 0x6b, 0x00, 0xc0, 0x4f, 0xd7, 0x05, 0xa2}};

int RegisterEngine(const std::wstring& options = L"/s ")
{
    return RunProcess(L"regsvr32.exe " + options + L"\"" + tovfe::EngineClasses::DllPath() + L"\"");
}

std::wstring Lower(std::optional<std::wstring> s)
{
    std::wstring r = s.value_or(L"<missing>");
    CharLowerW(r.data());
    return r;
}

TEST(EngineRegistration, RegsvrTakesBothBrowserClassesAndGivesThemBack)
{
    const auto browserBefore = ReadString(HKEY_LOCAL_MACHINE, kBrowserServer);
    const auto applicationBefore = ReadString(HKEY_LOCAL_MACHINE, kApplicationServer);
    ASSERT_TRUE(browserBefore) << "the platform's own WebBrowser class";

    ASSERT_EQ(0, RegisterEngine());
    std::wstring dll = tovfe::EngineClasses::DllPath();
    CharLowerW(dll.data());
    EXPECT_EQ(dll, Lower(ReadString(HKEY_LOCAL_MACHINE, kBrowserServer)));
    EXPECT_EQ(dll, Lower(ReadString(HKEY_LOCAL_MACHINE, kApplicationServer)));
    EXPECT_EQ(L"Apartment", ReadString(HKEY_LOCAL_MACHINE, kBrowserServer, L"ThreadingModel").value_or(L""));
    ASSERT_EQ(0, RegisterEngine()) << "twice keeps what was there first";

    // Any client of the prefix now gets the engine's browser for the WebBrowser class.
    {
        tov::ComPtr<IWebBrowser2> browser;
        ASSERT_EQ(S_OK, CoCreateInstance(kWebBrowserClass, nullptr, CLSCTX_INPROC_SERVER, IID_IWebBrowser2, browser.PutVoid()));
        tov::Bstr name;
        ASSERT_EQ(S_OK, browser->get_Name(name.Put()));
        EXPECT_EQ(L"TOV engine browser", std::wstring(name.View()));
    }
    CoFreeUnusedLibrariesEx(0, 0);

    ASSERT_EQ(0, RegisterEngine(L"/s /u "));
    EXPECT_EQ(Lower(browserBefore), Lower(ReadString(HKEY_LOCAL_MACHINE, kBrowserServer)));
    EXPECT_EQ(Lower(applicationBefore), Lower(ReadString(HKEY_LOCAL_MACHINE, kApplicationServer)));
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, L"Software\\TOV\\Engine")) << "nothing of ours is left";
}

} // namespace
