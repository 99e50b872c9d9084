// The control's final release ends the browser session when the front end asked for it, and only then.
#include <tuple>
#include "support/control_fixture.h"
#include "support/import_hook.h"

namespace {

using OptionCall = std::tuple<void*, DWORD, void*, DWORD>;
std::vector<OptionCall> g_optionCalls;

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
    ASSERT_TRUE(notAsked);
    EXPECT_EQ(S_OK, control->put_EndSessionWithBrowser(1));
    control.Reset();
    notAsked.Reset();
    const OptionCall endSession{nullptr, 42 /* INTERNET_OPTION_END_BROWSER_SESSION */, nullptr, 0};
    EXPECT_EQ(std::vector<OptionCall>{endSession}, g_optionCalls);
}
