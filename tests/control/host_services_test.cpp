// What the control answers its browser as the browser's site, also before InitControl and after Close; and
// script errors of a page reported through the site's command target: the five error properties are read
// late-bound from the page window's event object, nothing is shown, the page keeps running. (The policy
// decisions themselves: tests/native/host_policy_test.cpp.)
#include <functional>
#include <mshtmhst.h>
#include <urlmon.h>
#include "support/browser_fixture.h"
#include "support/page_fixture.h"
#include "framework/variant.h"

using tov::ComPtr;
using tov::QueryAs;
using tov::Variant;

namespace {

// The document host's command group, and another group of the browser's.
constexpr GUID kDocHostCommands = {0xf38bc242, 0xb950, 0x11d1, {0x89, 0x18, 0x00, 0xc0, 0x4f, 0xc2, 0xc8, 0x36}};
constexpr GUID kOtherGroup = {0xde4ba900, 0x59ca, 0x11cf, {0x95, 0x92, 0x44, 0x45, 0x53, 0x54, 0x00, 0x00}};

// The identity outlives the reference.
IUnknown* Identity(IUnknown* object) { return QueryAs<IUnknown>(object, IID_IUnknown).Get(); }

} // namespace

using HostServices = tovtest::BrowserFixture;

TEST_F(HostServices, HostInfoFollowsUIFlagAndNoPageMovesTheFocus)
{
    DOCHOSTUIINFO info{sizeof(info), 0x77, 9};
    EXPECT_EQ(E_NOTIMPL, browser->CallGetHostInfo(&info));
    EXPECT_EQ(0x77u, info.dwFlags) << "nothing written: the browser's defaults";
    ASSERT_EQ(S_OK, control->put_UIFlag(0x40000));
    EXPECT_EQ(S_OK, browser->CallGetHostInfo(&info));
    EXPECT_EQ(0x40000u, info.dwFlags);
    EXPECT_EQ(E_POINTER, browser->CallGetHostInfo(nullptr));

    BOOL allow = TRUE;
    EXPECT_EQ(S_OK, browser->CallAllowFocusChange(&allow));
    EXPECT_FALSE(allow);
}

TEST_F(HostServices, OwnSchemesGetTheControlsUrlPolicyInOneByte)
{
    const std::tuple<const wchar_t*, DWORD, HRESULT, BYTE> cases[] = {
        {L"TOVEVENT:submit?x=1", 0x1400, S_OK, URLPOLICY_ALLOW},
        {L"https://example.invalid/", 0x1400, INET_E_DEFAULT_ACTION, 0xAB},
    };
    for (const auto& [url, action, result, byte] : cases) {
        DWORD policy = 0xABABABAB;
        EXPECT_EQ(result, browser->CallProcessUrlAction(url, action, reinterpret_cast<BYTE*>(&policy), sizeof(policy)));
        EXPECT_EQ(0xABABAB00u | byte, policy) << "only one byte is written";
    }
    EXPECT_EQ(INET_E_DEFAULT_ACTION, browser->CallProcessUrlAction(nullptr, 0x1400, nullptr, 0));
    EXPECT_EQ(S_OK, browser->CallProcessUrlAction(L"tovevent:x", 0x1400, nullptr, 0)) << "no buffer, nothing written";
}

TEST_F(HostServices, SecurityAndFocusServicesAnswerOthersDoNot)
{
    ComPtr<IUnknown> viaSecurity, focus;
    EXPECT_EQ(S_OK, browser->CallQueryService(SID_SInternetSecurityManager, IID_IOleClientSite, viaSecurity.PutVoid()))
        << "the security-manager service answers any interface of the control";
    EXPECT_EQ(S_OK, browser->CallQueryService(SID_SProtectFocus, IID_IProtectFocus, focus.PutVoid()));

    for (const GUID* service : {&SID_SProtectFocus, &IID_IOleClientSite}) {
        IUnknown* out = reinterpret_cast<IUnknown*>(1);
        EXPECT_EQ(E_NOINTERFACE, browser->CallQueryService(*service, IID_IOleClientSite, reinterpret_cast<void**>(&out)))
            << "the focus service only as itself, no other service";
        EXPECT_EQ(nullptr, out);
    }
    EXPECT_EQ(E_POINTER, browser->CallQueryService(SID_SInternetSecurityManager, IID_IUnknown, nullptr));
}

TEST_F(HostServices, ScriptErrorsWithoutAPageAreSwallowedOtherCommandsAreNotTheControls)
{
    Variant out;
    EXPECT_EQ(E_INVALIDARG, browser->CallExec(&kDocHostCommands, OLECMDID_SHOWSCRIPTERROR, nullptr, &out));
    EXPECT_TRUE(out.vt == VT_BOOL && out.boolVal == VARIANT_TRUE) << "the page's scripts keep running";
    Variant untouched = Variant::I4(5);
    EXPECT_EQ(OLECMDERR_E_UNKNOWNGROUP, browser->CallExec(&kOtherGroup, OLECMDID_SHOWSCRIPTERROR, nullptr, &untouched));
    EXPECT_EQ(OLECMDERR_E_NOTSUPPORTED, browser->CallExec(&kDocHostCommands, OLECMDID_PRINT, nullptr, &untouched));
    EXPECT_EQ(VT_I4, untouched.vt) << "the out-argument is only set for script errors";
}

TEST_F(HostServices, ExternalObjectShowingPlacingAndKeys)
{
    ComPtr<IDispatch> external;
    ASSERT_EQ(S_OK, browser->CallGetExternal(external.Put()));
    EXPECT_EQ(Identity(static_cast<IWebBrowser2*>(browser)), Identity(external.Get())) << "the page's external is the browser";

    host.Resize(300, 200);
    browser->Log().Clear();
    EXPECT_EQ(S_OK, browser->CallShowObject());
    EXPECT_EQ((std::vector<std::wstring>{L"SetClientSite(site)", L"DoVerb(-5, " + tovfe::HexArg(reinterpret_cast<uintptr_t>(Window())) +
                                                                  L", 0,0,300,200)"}),
              Calls());
    browser->FailCall(L"DoVerb", E_FAIL);
    EXPECT_EQ(S_OK, browser->CallShowObject()) << "always S_OK";
    browser->ClearFailures();
    RECT pos{-1, -1, -1, -1}, clip{-1, -1, -1, -1};
    EXPECT_EQ(S_OK, browser->CallGetWindowContext(&pos, &clip));
    EXPECT_TRUE(pos.left == 0 && pos.top == 0 && pos.right == 300 && pos.bottom == 200 && EqualRect(&pos, &clip));

    auto active = QueryAs<IOleInPlaceActiveObject>(control.Get(), IID_IOleInPlaceActiveObject);
    MSG msg{Window(), WM_KEYDOWN, VK_F5, 0};
    browser->FailCall(L"TranslateAccelerator", E_ABORT);
    EXPECT_EQ(E_ABORT, active->TranslateAccelerator(&msg)) << "the browser's answer is the control's";
    browser->ClearFailures();
    EXPECT_EQ(S_FALSE, browser->CallTranslateAccelerator(&msg)) << "the site itself handles no key";
}

TEST_F(HostServices, TheSitesContainerIsTheControlAndItsLocksAreBalanced)
{
    auto clientSite = browser->SiteAs<IOleClientSite>(IID_IOleClientSite);
    ComPtr<IOleContainer> container;
    EXPECT_EQ(S_OK, clientSite->GetContainer(container.Put()));
    EXPECT_EQ(Identity(control.Get()), Identity(container.Get()));

    const auto refs = [&] { return control->AddRef(), control->Release(); };
    const ULONG before = refs();
    EXPECT_EQ(S_OK, container->LockContainer(TRUE));
    EXPECT_GT(refs(), before) << "a lock holds the control";
    EXPECT_EQ(S_OK, container->LockContainer(FALSE));
    EXPECT_EQ(before, refs());
}

// After Close the browser has no site; whoever still holds the control's site interfaces gets the fixed
// answers and nothing breaks.
using SiteWithoutBrowser = tovtest::BrowserFixture;

TEST_F(SiteWithoutBrowser, AfterClose)
{
    ASSERT_EQ(S_OK, QueryAs<IOleObject>(control.Get(), IID_IOleObject)->Close(OLECLOSE_NOSAVE));
    host.Destroy();
    browser->Log().Clear();
    EXPECT_EQ(S_OK, QueryAs<IOleClientSite>(control.Get(), IID_IOleClientSite)->ShowObject());
    EXPECT_EQ(0u, browser->Log().Count(L"DoVerb")) << "no window any more: ShowObject has nothing to activate in";
    RECT pos{}, clip{};
    IOleInPlaceFrame* frame = reinterpret_cast<IOleInPlaceFrame*>(1);
    IOleInPlaceUIWindow* doc = reinterpret_cast<IOleInPlaceUIWindow*>(1);
    OLEINPLACEFRAMEINFO frameInfo{sizeof(frameInfo)};
    EXPECT_TRUE(FAILED(QueryAs<IOleInPlaceSite>(control.Get(), IID_IOleInPlaceSite)
                           ->GetWindowContext(&frame, &doc, &pos, &clip, &frameInfo)))
        << "no container site";
    EXPECT_TRUE(frame == nullptr && doc == nullptr);
}

class ScriptErrorCommand : public tovtest::PageFixture {
protected:
    // Exec 40 of the document host's group with the document as the in-argument; the out-argument must
    // always say "keep running scripts".
    HRESULT ReportScriptError()
    {
        auto target = browser->SiteAs<IOleCommandTarget>(IID_IOleCommandTarget);
        tov::Variant in, out;
        in.vt = VT_UNKNOWN;
        in.punkVal = document->AsDispatch();
        in.punkVal->AddRef();
        const HRESULT hr = target->Exec(&kDocHostCommands, 40, 0, &in, &out);
        EXPECT_EQ(VT_BOOL, out.vt);
        EXPECT_EQ(VARIANT_TRUE, out.boolVal);
        return hr;
    }
};

TEST_F(ScriptErrorCommand, TheFiveErrorPropertiesAreReadInOrder)
{
    Connect(2);
    document->Log().Clear();
    EXPECT_EQ(S_OK, ReportScriptError());
    std::vector<std::wstring> expected = {L"get_parentWindow()", L"get_event()"};
    for (const wchar_t* name : {L"errorLine", L"errorCharacter", L"errorCode", L"errorMessage", L"errorUrl"}) {
        expected.push_back(std::wstring(L"GetIDsOfNames(") + name + L", 0x800)");
        expected.push_back(std::wstring(L"Invoke(") + name + L", 0x800, 2, 0)");
    }
    EXPECT_EQ(expected, document->Log().Texts());
    EXPECT_TRUE(Lines().empty()) << "nothing is traced";
}

// The result is the last call's; a property that cannot be read does not stop the others, a missing step
// ends the reading.
TEST_F(ScriptErrorCommand, FailingStepsAndTheirResults)
{
    const auto allProperties = Page().eventProperties;
    const struct {
        const char* name;
        std::function<void()> arrange;
        HRESULT result;
        size_t events, invokes;
    } cases[] = {
        {"no errorUrl", [&] { Page().eventProperties.pop_back(); }, DISP_E_UNKNOWNNAME, 1, 4},
        {"unreadable errorLine", [&] { document->Plan().Fail(L"Invoke(errorLine, 0x800, 2, 0)", DISP_E_EXCEPTION); }, S_OK, 1, 5},
        {"get_parentWindow fails", [&] { document->Plan().Fail(L"get_parentWindow", E_FAIL); }, E_FAIL, 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        c.arrange();
        document->Log().Clear();
        EXPECT_EQ(c.result, ReportScriptError());
        EXPECT_EQ(c.events, document->Log().Count(L"get_event"));
        EXPECT_EQ(c.invokes, document->Log().Count(L"Invoke"));
        document->Plan().Clear();
        Page().eventProperties = allProperties;
    }
}
