// Every member called with null strings and null out pointers, before and after InitControl: no crash,
// no exception out of the control, and S_OK wherever a return code is the answer.
#include "support/initialized_control_fixture.h"

namespace {

void CallEverythingWithNulls(ITOVHTMLControl* c)
{
    for (auto m : {&ITOVHTMLControl::GoBack, &ITOVHTMLControl::GoForward, &ITOVHTMLControl::GoHome, &ITOVHTMLControl::Stop,
                   &ITOVHTMLControl::DoRefresh})
        EXPECT_EQ(S_OK, (c->*m)(nullptr));
    EXPECT_EQ(S_OK, c->ShowData(nullptr, nullptr, 1, nullptr));
    EXPECT_EQ(S_OK, c->ShowURL(nullptr, nullptr, nullptr));
    EXPECT_EQ(S_OK, c->DoTOVEVENT(nullptr, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(S_OK, c->DoNavigateComplete(nullptr));
    EXPECT_EQ(S_OK, c->DoContextMenuSelected(nullptr));
    EXPECT_EQ(S_OK, c->DoContextMenuRequest(-1, -1));
    EXPECT_EQ(S_OK, c->EnableTOVSSO(0, nullptr, nullptr));
    EXPECT_EQ(S_OK, c->EnableSecSess(nullptr, nullptr));
    c->ShowURLInBrowser(nullptr, nullptr); c->ShowDataInBrowser(nullptr, nullptr); c->ShowURLInDetachedBrowser(nullptr, 0, nullptr);
    c->put_URLPrefixLocal(nullptr); c->put_URLPrefixGlobal(nullptr); c->put_TargetFrame(nullptr); c->put_Headers(nullptr);
    c->put_PostData(nullptr); c->put_NavigationStyle(nullptr); c->put_ScriptRecording(1); c->put_EndSessionWithBrowser(0);
    c->get_URLPrefixLocal(nullptr); c->get_URLPrefixGlobal(nullptr); c->get_TargetFrame(nullptr); c->get_Headers(nullptr);
    c->get_PostData(nullptr); c->get_PostDataLength(nullptr); c->get_URLLength(nullptr); c->GetCurrentURL(nullptr);
    c->get_BrowserHandle(nullptr); c->get_NavigationStyle(nullptr); c->get_TryUseTOVHTMLP(nullptr); c->get_UIFlag(nullptr);
    c->get_Version(nullptr); c->get_PostDataModified(nullptr); c->get_DocumentComplete(nullptr); c->get_SimpleBrowse(nullptr);
    c->putref_ScriptText(nullptr); c->putref_ScriptOnBRELCompleted(nullptr); c->putref_ScriptOnDataSubmitted(nullptr);
    c->ExecuteScript(); c->TrackContextMenu(nullptr, 0, 0); c->ExecuteWB(63, 0); c->ExecuteWB(-1, 0);
    c->GetCharsetString(nullptr); c->GetHTMLSourceContent(nullptr); c->SetHTMLSourceContent(nullptr);
    c->LoadIconFont(nullptr, nullptr); c->DropAcceptFiles(1); c->CloseDocument();
}

} // namespace

using NullArguments = tovtest::InitializedControlFixture;

TEST_F(NullArguments, BeforeAndAfterInitControl)
{
    Connect(2);
    CallEverythingWithNulls(control.Get());
    Init(2);
    CallEverythingWithNulls(control.Get());
    EXPECT_FALSE(Lines().empty()) << "the calls were traced";
}
