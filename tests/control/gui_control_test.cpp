// The control as one of the front end's GUI controls: one identity for the common interfaces, the trace
// level read on connection and on event 103, and the personalisation property "url".
#include "support/browser_fixture.h"
#include "framework/bstr.h"

using tov::ComPtr;
using tov::QueryAs;

namespace {
std::wstring Navigate(const std::wstring& url) { return L"Navigate(" + url + L", <null>, <null>, <null>, <null>)"; }
} // namespace

using GUIControl = tovtest::ControlFixture;

TEST_F(GUIControl, CommonInterfacesLeadToTheControlsOneIdentity)
{
    const auto identity = QueryAs<IUnknown>(control.Get(), IID_IUnknown);
    for (const IID* iid : {&IID_ITOVGUIControl, &IID_ITOVGUITessarilControl, &IID__ITOVDataProviderEvents})
        EXPECT_EQ(identity.Get(), QueryAs<IUnknown>(QueryAs<IUnknown>(control.Get(), *iid).Get(), IID_IUnknown).Get());
}

TEST_F(GUIControl, ConnectionReadsTheTraceLevelAndEvent103ReadsItAgain)
{
    auto gui = QueryAs<ITOVGUIControl>(control.Get(), IID_ITOVGUIControl);
    const auto traced = [&] {
        ClearLines();
        control->put_ScriptRecording(1);
        return Lines().size();
    };
    EXPECT_EQ(S_OK, gui->SetContainer(static_cast<ITOVTraceSink*>(sink.Get())));
    EXPECT_EQ(0u, traced()) << "an object that is no container connects nothing";
    EXPECT_EQ(0, sink->LevelQueries());

    sink->SetLevel(1);
    EXPECT_EQ(S_OK, gui->SetContainer(container.Get()));
    EXPECT_EQ(1, sink->LevelQueries());
    EXPECT_EQ(2u, traced());
    sink->FailGetLevel(E_FAIL);
    EXPECT_EQ(1, gui->HandleEvent(103, nullptr));
    EXPECT_EQ(2, sink->LevelQueries());
    EXPECT_EQ(0u, traced()) << "a failed level read means level 0";
}

using Personalisation = tovtest::BrowserFixture;

TEST_F(Personalisation, UrlNavigatesAndTheResetGoesBackOnlyForTheExactName)
{
    auto tessaril = QueryAs<ITOVGUITessarilControl>(control.Get(), IID_ITOVGUITessarilControl);
    EXPECT_EQ(S_OK, tessaril->ResetTessarilProperty());
    for (const wchar_t* other : {L"urls", static_cast<const wchar_t*>(nullptr)})
        EXPECT_EQ(S_OK, tessaril->SetTessarilProperty(other, L"https://x.invalid/"));
    EXPECT_TRUE(browser->Log().Calls().empty()) << "other names and a reset without a set do nothing";

    EXPECT_EQ(S_OK, tessaril->SetTessarilProperty(L"url", L"https://example.invalid/custom"));
    EXPECT_EQ((std::vector<std::wstring>{L"get_LocationURL()", Navigate(L"https://example.invalid/custom")}), browser->Log().Texts());
    browser->Log().Clear();
    EXPECT_EQ(S_OK, tessaril->ResetTessarilProperty());
    EXPECT_EQ(std::vector<std::wstring>{Navigate(L"about:blank")}, browser->Log().Texts()) << "back to the page shown before";

    EXPECT_EQ(S_OK, tessaril->SetTessarilProperty(L"URL", L"https://example.invalid/upper"));
    EXPECT_EQ(Navigate(L"https://example.invalid/upper"), browser->Log().Texts().back()) << "the name in any case";
    browser->Log().Clear();
    EXPECT_EQ(S_OK, tessaril->ResetTessarilProperty());
    EXPECT_TRUE(browser->Log().Calls().empty()) << "the remembered name \"URL\" is not \"url\"";

    EXPECT_EQ(S_OK, tessaril->SetTessarilProperty(L"url", nullptr));
    EXPECT_EQ(Navigate(L""), browser->Log().Texts().back()) << "a null value navigates to nothing rather than crashing";
}
