// What the control's final release does to the outside world without a browser.
#include "support/control_fixture.h"
#include "support/import_hook.h"

using tovtest::ControlFixture;

namespace {

struct InternetOptionCall {
    void* handle;
    DWORD option;
    void* buffer;
    DWORD length;
};
std::vector<InternetOptionCall> g_optionCalls;

BOOL WINAPI RecordInternetSetOptionA(void* h, DWORD option, void* buffer, DWORD length)
{
    g_optionCalls.push_back({h, option, buffer, length});
    return TRUE;
}

} // namespace

using ControlRelease = ControlFixture;

TEST_F(ControlRelease, EndsTheBrowserSessionOnceWhenAsked)
{
    tovtest::ImportHook hook(ocx.Handle(), "wininet.dll", "InternetSetOptionA", reinterpret_cast<void*>(&RecordInternetSetOptionA));
    ASSERT_TRUE(hook.Installed()) << "the OCX imports InternetSetOptionA";
    g_optionCalls.clear();

    auto second = ocx.CreateControl();
    ASSERT_TRUE(second);
    EXPECT_EQ(S_OK, control->put_EndSessionWithBrowser(1));
    control.Reset();
    ASSERT_EQ(1u, g_optionCalls.size());
    EXPECT_EQ(nullptr, g_optionCalls[0].handle);
    EXPECT_EQ(42u, g_optionCalls[0].option) << "INTERNET_OPTION_END_BROWSER_SESSION";
    EXPECT_EQ(nullptr, g_optionCalls[0].buffer);
    EXPECT_EQ(0u, g_optionCalls[0].length);

    second.Reset(); // not asked: nothing
    EXPECT_EQ(1u, g_optionCalls.size());
}

TEST_F(ControlRelease, FinalReleaseScopeIsTraced)
{
    Connect(1);
    control.Reset();
    EXPECT_EQ((std::vector<std::string>{"=> FinalRelease()", "==> CloseBrowserWindows", "<== CloseBrowserWindows",
                                        "==> CloseSimpleBrowseWindow", "<== CloseSimpleBrowseWindow", "<= FinalRelease()"}),
              Lines());
}
