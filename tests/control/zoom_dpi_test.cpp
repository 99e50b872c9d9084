// The screen-resolution zoom under the platform: the control window's device context at the prefix's
// resolution, and at 120 dots per inch in a process started after the prefix was set to it.
#include <cstdlib>
#include "support/browser_fixture.h"
#include "support/registry_helpers.h"

using ScreenZoom = tovtest::BrowserFixture;

TEST_F(ScreenZoom, FollowsTheControlWindowsScreen)
{
    const int dpi = Dpi();
    // Set by the test that starts this program again at another resolution.
    if (const char* expected = std::getenv("TOV_TEST_EXPECTED_DPI")) {
        ASSERT_EQ(std::atoi(expected), dpi) << "the prefix's resolution reached this process";
    }
    control->ExecuteWB(63, 0);
    const std::wstring expected = dpi == 96    ? L"ExecWB(63, 0, I4:100, <null>)"
                                  : dpi == 120 ? L"ExecWB(63, 0, I4:125, <null>)"
                                               : ZoomCall();
    EXPECT_EQ(std::vector<std::wstring>{expected}, Calls());
}

TEST(ScreenZoomAtAnotherResolution, At120DotsPerInchTheZoomIs125)
{
    const wchar_t key[] = L"Control Panel\\Desktop";
    wchar_t exe[MAX_PATH];
    ASSERT_NE(0u, GetModuleFileNameW(nullptr, exe, MAX_PATH));
    const auto before = tovtest::ReadDword(HKEY_CURRENT_USER, key, L"LogPixels");
    const DWORD dpi = 120;
    RegSetKeyValueW(HKEY_CURRENT_USER, key, L"LogPixels", REG_DWORD, &dpi, sizeof(dpi));
    SetEnvironmentVariableW(L"TOV_TEST_EXPECTED_DPI", L"120");
    const int exitCode = tovtest::RunProcess(L"\"" + std::wstring(exe) + L"\" --gtest_filter=ScreenZoom.FollowsTheControlWindowsScreen");
    SetEnvironmentVariableW(L"TOV_TEST_EXPECTED_DPI", nullptr);
    if (before) RegSetKeyValueW(HKEY_CURRENT_USER, key, L"LogPixels", REG_DWORD, &*before, sizeof(*before));
    else RegDeleteKeyValueW(HKEY_CURRENT_USER, key, L"LogPixels");
    EXPECT_EQ(0, exitCode) << "the test at 120 dots per inch failed in its own process";
    EXPECT_EQ(before, tovtest::ReadDword(HKEY_CURRENT_USER, key, L"LogPixels")) << "the resolution is restored";
}
