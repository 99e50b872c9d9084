// A control's state before it has a browser: its version, the properties that transform what they store, post
// data without an object; members called with null strings and null out pointers before and after
// InitControl (no crash, no exception out of the control, and S_OK wherever a return code is the answer);
// and the final release, which ends the browser session when the front end asked for it and only then.
#include <tuple>
#include "support/import_hook.h"
#include "support/initialized_control_fixture.h"

namespace {

void CallWithNulls(ITOVHTMLControl* c)
{
    EXPECT_EQ(S_OK, c->GoBack(nullptr));
    EXPECT_EQ(S_OK, c->ShowData(nullptr, nullptr, 1, nullptr));
    EXPECT_EQ(S_OK, c->ShowURL(nullptr, nullptr, nullptr));
    EXPECT_EQ(S_OK, c->DoTOVEVENT(nullptr, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(S_OK, c->EnableTOVSSO(0, nullptr, nullptr));
    c->ShowURLInBrowser(nullptr, nullptr); c->ShowURLInDetachedBrowser(nullptr, 0, nullptr);
    c->put_URLPrefixLocal(nullptr); c->put_TargetFrame(nullptr); c->put_PostData(nullptr); c->put_NavigationStyle(nullptr);
    c->get_URLPrefixLocal(nullptr); c->get_PostData(nullptr); c->GetCurrentURL(nullptr); c->get_NavigationStyle(nullptr);
    c->putref_ScriptText(nullptr); c->TrackContextMenu(nullptr, 0, 0); c->GetHTMLSourceContent(nullptr);
    c->SetHTMLSourceContent(nullptr); c->LoadIconFont(nullptr, nullptr); c->CloseDocument();
}

std::vector<std::tuple<void*, DWORD, void*, DWORD>> g_optionCalls;
BOOL WINAPI RecordInternetSetOptionA(void* handle, DWORD option, void* buffer, DWORD length)
{
    g_optionCalls.emplace_back(handle, option, buffer, length);
    return TRUE;
}

} // namespace

using ControlState = tovtest::ControlFixture;

TEST_F(ControlState, VersionAndSimpleBrowseAsOneOrZero)
{
    EXPECT_EQ(62, Property(&ITOVHTMLControl::get_Version));
    control->put_SimpleBrowse(5);
    EXPECT_EQ(1, Property(&ITOVHTMLControl::get_SimpleBrowse)) << "any non-zero value reads back as 1";
}

TEST_F(ControlState, PostDataWithoutAnObjectIsNullAndTraced)
{
    Connect(1);
    IDispatch* out = reinterpret_cast<IDispatch*>(1);
    EXPECT_EQ(S_OK, control->get_PostData(&out));
    EXPECT_EQ(nullptr, out);
    EXPECT_EQ(FailureBlock("get_PostData", "(*pVal)->AddRef() failed"), Lines());
}

using NullArguments = tovtest::InitializedControlFixture;

TEST_F(NullArguments, BeforeAndAfterInitControl)
{
    Connect(2);
    CallWithNulls(control.Get());
    Init(2);
    CallWithNulls(control.Get());
    EXPECT_FALSE(Lines().empty()) << "the calls were traced";
}

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
