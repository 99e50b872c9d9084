// The control's final release ends the browser session when the front end asked for it, and only then.
#include <tuple>
#include "support/control_fixture.h"
#include "support/import_hook.h"

namespace {

std::vector<std::tuple<void*, DWORD, void*, DWORD>> g_optionCalls;
BOOL WINAPI RecordInternetSetOptionA(void* handle, DWORD option, void* buffer, DWORD length)
{
    g_optionCalls.emplace_back(handle, option, buffer, length);
    return TRUE;
}

} // namespace

using ControlRelease = tovtest::ControlFixture;

TEST_F(ControlRelease, EndsTheBrowserSessionOnceWhenAsked)
{
    tovtest::ImportHook hook(ocx.Handle(), "wininet.dll", "InternetSetOptionA", reinterpret_cast<void*>(&RecordInternetSetOptionA));
    ASSERT_TRUE(hook.Installed()) << "the OCX imports InternetSetOptionA";
    g_optionCalls.clear();
    auto notAsked = ocx.CreateControl();
    EXPECT_EQ(S_OK, control->put_EndSessionWithBrowser(1));
    control.Reset();
    notAsked.Reset();
    // INTERNET_OPTION_END_BROWSER_SESSION
    EXPECT_EQ((std::vector<std::tuple<void*, DWORD, void*, DWORD>>{{nullptr, 42, nullptr, 0}}), g_optionCalls);
}
