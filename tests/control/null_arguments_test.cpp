// Members called with null strings and null out pointers, before and after InitControl: no crash, no
// exception out of the control, and S_OK wherever a return code is the answer.
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

} // namespace

using NullArguments = tovtest::InitializedControlFixture;

TEST_F(NullArguments, BeforeAndAfterInitControl)
{
    Connect(2);
    CallWithNulls(control.Get());
    Init(2);
    CallWithNulls(control.Get());
    EXPECT_FALSE(Lines().empty()) << "the calls were traced";
}
