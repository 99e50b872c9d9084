// What the control answers its browser as the browser's site: host flags, the URL-action policy of its
// own schemes, services, focus protection, script errors, the external object, showing and placing the
// browser, accelerator keys; also before InitControl and after Close.
#include <mshtmhst.h>
#include <urlmon.h>
#include "support/browser_fixture.h"
#include "framework/variant.h"

using tov::ComPtr;
using tov::Variant;
using tovtest::BrowserFixture;
using tovtest::ControlFixture;

namespace {

constexpr BYTE kUntouched = 0xAB;
// The document host's command group, and another group of the browser's.
constexpr GUID kDocHostCommands = {0xf38bc242, 0xb950, 0x11d1, {0x89, 0x18, 0x00, 0xc0, 0x4f, 0xc2, 0xc8, 0x36}};
constexpr GUID kOtherGroup = {0xde4ba900, 0x59ca, 0x11cf, {0x95, 0x92, 0x44, 0x45, 0x53, 0x54, 0x00, 0x00}};

template <class Itf> ComPtr<Itf> As(IUnknown* object, REFIID iid)
{
    ComPtr<Itf> itf;
    object->QueryInterface(iid, itf.PutVoid());
    return itf;
}

ComPtr<IUnknown> Identity(IUnknown* object)
{
    return As<IUnknown>(object, IID_IUnknown);
}

} // namespace

using HostServices = BrowserFixture;

TEST_F(HostServices, HostInfoIsTheBrowsersDefaultUntilUIFlagIsSet)
{
    DOCHOSTUIINFO info{};
    info.cbSize = sizeof(info);
    info.dwFlags = 0x77;
    info.dwDoubleClick = 9;
    EXPECT_EQ(E_NOTIMPL, browser->CallGetHostInfo(&info));
    EXPECT_EQ(0x77u, info.dwFlags) << "nothing written";
    EXPECT_EQ(9u, info.dwDoubleClick);

    ASSERT_EQ(S_OK, control->put_UIFlag(0x40000));
    EXPECT_EQ(S_OK, browser->CallGetHostInfo(&info));
    EXPECT_EQ(0x40000u, info.dwFlags);
    EXPECT_EQ(static_cast<DWORD>(DOCHOSTUIDBLCLK_DEFAULT), info.dwDoubleClick);
    EXPECT_EQ(sizeof(info), info.cbSize) << "the size field is the browser's";
    EXPECT_EQ(nullptr, info.pchHostCss);
    EXPECT_EQ(nullptr, info.pchHostNS);

    EXPECT_EQ(E_POINTER, browser->CallGetHostInfo(nullptr));
    control->put_UIFlag(0);
    EXPECT_EQ(E_NOTIMPL, browser->CallGetHostInfo(nullptr));
}

TEST_F(HostServices, OwnSchemesGetTheControlsUrlPolicy)
{
    struct Case {
        const wchar_t* url;
        DWORD action;
        HRESULT result;
        BYTE policy;
    };
    const Case cases[] = {
        {L"TOVEVENT:submit?x=1", 0x1400, S_OK, URLPOLICY_ALLOW},
        {L"tovevent:go", 0x1A00, S_OK, URLPOLICY_ALLOW},
        {L"tovhtmlp://1a2b/page.htm", 0x1401, S_OK, URLPOLICY_QUERY},
        {L"mk:@TOVHTML:data.htm", 0x1401, S_OK, URLPOLICY_QUERY},
        {L"Mk:@tovhtml:data.htm", 0x2100, S_OK, URLPOLICY_ALLOW},
        {L"tovhtmlp://1a2b/page.htm", 0x1405, INET_E_DEFAULT_ACTION, kUntouched},
        {L"TOVEVENT:x", 0x1208, INET_E_DEFAULT_ACTION, kUntouched},
        {L"mk:@tovhtml:x", 0x1203, INET_E_DEFAULT_ACTION, kUntouched},
        {L"https://example.invalid/", 0x1400, INET_E_DEFAULT_ACTION, kUntouched},
        {L"about:blank", 0x1401, INET_E_DEFAULT_ACTION, kUntouched},
        {L"tovq5:data", 0x1400, INET_E_DEFAULT_ACTION, kUntouched},
        {L"tovhtml", 0x1400, INET_E_DEFAULT_ACTION, kUntouched},
        {L"", 0x1400, INET_E_DEFAULT_ACTION, kUntouched},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << std::hex << c.action);
        DWORD policy = 0xABABABAB;
        EXPECT_EQ(c.result, browser->CallProcessUrlAction(c.url, c.action, reinterpret_cast<BYTE*>(&policy), sizeof(policy)));
        EXPECT_EQ(c.policy, reinterpret_cast<BYTE*>(&policy)[0]);
        EXPECT_EQ(0xABABAB00u, policy & 0xFFFFFF00u) << "only one byte is written";
    }
    EXPECT_EQ(INET_E_DEFAULT_ACTION, browser->CallProcessUrlAction(nullptr, 0x1400, nullptr, 0));
    EXPECT_EQ(S_OK, browser->CallProcessUrlAction(L"tovevent:x", 0x1400, nullptr, 0)) << "no buffer, nothing written";
}

TEST_F(HostServices, TheRestOfTheSecurityManagerIsLeftToThePlatform)
{
    auto manager = browser->SiteAs<IInternetSecurityManager>(IID_IInternetSecurityManager);
    ASSERT_TRUE(manager);
    DWORD zone = 7;
    EXPECT_EQ(INET_E_DEFAULT_ACTION, manager->MapUrlToZone(L"tovevent:x", &zone, 0));
    EXPECT_EQ(INET_E_DEFAULT_ACTION, manager->SetSecuritySite(nullptr));
    IInternetSecurityMgrSite* site = reinterpret_cast<IInternetSecurityMgrSite*>(1);
    EXPECT_EQ(INET_E_DEFAULT_ACTION, manager->GetSecuritySite(&site));
    EXPECT_EQ(nullptr, site);
    EXPECT_EQ(INET_E_DEFAULT_ACTION, manager->GetSecuritySite(nullptr));
    BYTE* policy = reinterpret_cast<BYTE*>(1);
    DWORD size = 5;
    EXPECT_EQ(INET_E_DEFAULT_ACTION, manager->QueryCustomPolicy(L"tovevent:x", GUID_NULL, &policy, &size, nullptr, 0, 0));
    EXPECT_EQ(nullptr, policy);
    EXPECT_EQ(INET_E_DEFAULT_ACTION, manager->QueryCustomPolicy(nullptr, GUID_NULL, nullptr, nullptr, nullptr, 0, 0));
    EXPECT_EQ(INET_E_DEFAULT_ACTION, manager->GetZoneMappings(0, nullptr, 0));
}

TEST_F(HostServices, ServicesAreTheControlItself)
{
    ComPtr<IUnknown> viaSecurity;
    EXPECT_EQ(S_OK, browser->CallQueryService(SID_SInternetSecurityManager, IID_IOleClientSite, viaSecurity.PutVoid()))
        << "the security-manager service answers any interface of the control";
    ASSERT_TRUE(viaSecurity);
    EXPECT_EQ(Identity(control.Get()).Get(), Identity(viaSecurity.Get()).Get());

    ComPtr<IProtectFocus> focus;
    EXPECT_EQ(S_OK, browser->CallQueryService(SID_SProtectFocus, IID_IProtectFocus, focus.PutVoid()));
    ASSERT_TRUE(focus);
    EXPECT_EQ(Identity(control.Get()).Get(), Identity(focus.Get()).Get());

    IUnknown* out = reinterpret_cast<IUnknown*>(1);
    EXPECT_EQ(E_NOINTERFACE, browser->CallQueryService(SID_SProtectFocus, IID_IOleClientSite, reinterpret_cast<void**>(&out)));
    EXPECT_EQ(nullptr, out) << "the focus service only as itself";
    out = reinterpret_cast<IUnknown*>(1);
    EXPECT_EQ(E_NOINTERFACE, browser->CallQueryService(IID_IOleClientSite, IID_IOleClientSite, reinterpret_cast<void**>(&out)));
    EXPECT_EQ(nullptr, out);
    EXPECT_EQ(E_POINTER, browser->CallQueryService(SID_SInternetSecurityManager, IID_IUnknown, nullptr));
}

TEST_F(HostServices, NoPageMovesTheFocus)
{
    BOOL allow = TRUE;
    EXPECT_EQ(S_OK, browser->CallAllowFocusChange(&allow));
    EXPECT_FALSE(allow);
    EXPECT_EQ(E_POINTER, browser->CallAllowFocusChange(nullptr));
}

TEST_F(HostServices, ScriptErrorsAreSwallowedWithoutAPage)
{
    Variant out;
    EXPECT_EQ(E_INVALIDARG, browser->CallExec(&kDocHostCommands, OLECMDID_SHOWSCRIPTERROR, nullptr, &out))
        << "no document to read the error from";
    EXPECT_EQ(VT_BOOL, out.vt);
    EXPECT_EQ(VARIANT_TRUE, out.boolVal) << "the page's scripts keep running";

    // Something that is not a document: the query's failure is the answer, the scripts still run.
    Variant in;
    in.vt = VT_UNKNOWN;
    browser->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&in.punkVal));
    Variant out2 = Variant::I4(5);
    EXPECT_EQ(E_NOINTERFACE, browser->CallExec(&kDocHostCommands, OLECMDID_SHOWSCRIPTERROR, &in, &out2));
    EXPECT_EQ(VT_BOOL, out2.vt);
    EXPECT_EQ(VARIANT_TRUE, out2.boolVal);

    Variant text;
    text.vt = VT_BSTR;
    text.bstrVal = SysAllocString(L"not an object");
    EXPECT_EQ(E_INVALIDARG, browser->CallExec(&kDocHostCommands, OLECMDID_SHOWSCRIPTERROR, &text, nullptr));
}

TEST_F(HostServices, OtherCommandsAreNotTheControls)
{
    Variant out = Variant::I4(5);
    EXPECT_EQ(OLECMDERR_E_UNKNOWNGROUP, browser->CallExec(nullptr, OLECMDID_SHOWSCRIPTERROR, nullptr, &out));
    EXPECT_EQ(OLECMDERR_E_UNKNOWNGROUP, browser->CallExec(&kOtherGroup, OLECMDID_SHOWSCRIPTERROR, nullptr, &out));
    EXPECT_EQ(OLECMDERR_E_NOTSUPPORTED, browser->CallExec(&kDocHostCommands, OLECMDID_PRINT, nullptr, &out));
    EXPECT_EQ(VT_I4, out.vt) << "the out-argument is only set for script errors";
    auto target = browser->SiteAs<IOleCommandTarget>(IID_IOleCommandTarget);
    ASSERT_TRUE(target);
    OLECMD cmd{OLECMDID_SHOWSCRIPTERROR, 0};
    EXPECT_EQ(S_OK, target->QueryStatus(&kDocHostCommands, 1, &cmd, nullptr));
    EXPECT_EQ(0u, cmd.cmdf) << "nothing is filled in";
}

TEST_F(HostServices, ThePagesExternalObjectIsTheBrowser)
{
    ComPtr<IDispatch> external;
    ASSERT_EQ(S_OK, browser->CallGetExternal(external.Put()));
    ASSERT_TRUE(external);
    EXPECT_EQ(Identity(static_cast<IWebBrowser2*>(browser)).Get(), Identity(external.Get()).Get());
    EXPECT_EQ(E_POINTER, browser->CallGetExternal(nullptr));
}

TEST_F(HostServices, ShowObjectActivatesTheBrowserInPlaceInTheControlsWindow)
{
    RECT rc{};
    GetClientRect(Window(), &rc);
    char handle[32];
    snprintf(handle, sizeof(handle), "0x%llx", static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(Window())));
    const std::wstring where = std::wstring(handle, handle + strlen(handle)) + L", 0,0," + std::to_wstring(rc.right) +
                               L"," + std::to_wstring(rc.bottom) + L")";
    EXPECT_EQ(S_OK, browser->CallShowObject());
    EXPECT_EQ((std::vector<std::wstring>{L"SetClientSite(site)", L"DoVerb(-5, " + where}), Calls());
    browser->FailCall(L"DoVerb", E_FAIL);
    EXPECT_EQ(S_OK, browser->CallShowObject()) << "always S_OK";
    browser->ClearFailures();
}

TEST_F(HostServices, WindowContextIsTheContainersWithTheControlsRectangles)
{
    host.Resize(300, 200);
    RECT pos{-1, -1, -1, -1}, clip{-1, -1, -1, -1};
    EXPECT_EQ(S_OK, browser->CallGetWindowContext(&pos, &clip));
    EXPECT_EQ(0, pos.left);
    EXPECT_EQ(0, pos.top);
    EXPECT_EQ(300, pos.right);
    EXPECT_EQ(200, pos.bottom);
    EXPECT_TRUE(EqualRect(&pos, &clip));

    auto site = browser->SiteAs<IOleInPlaceSite>(IID_IOleInPlaceSite);
    ASSERT_TRUE(site);
    HWND hwnd = nullptr;
    EXPECT_EQ(S_OK, site->GetWindow(&hwnd));
    EXPECT_EQ(Window(), hwnd);
    EXPECT_EQ(E_POINTER, site->GetWindow(nullptr));
}

TEST_F(HostServices, AcceleratorsReachTheBrowser)
{
    ComPtr<IOleInPlaceActiveObject> active;
    ASSERT_EQ(S_OK, control->QueryInterface(IID_IOleInPlaceActiveObject, active.PutVoid()));
    MSG msg{Window(), WM_KEYDOWN, VK_F5, 0};
    EXPECT_EQ(S_FALSE, active->TranslateAccelerator(&msg));
    browser->FailCall(L"TranslateAccelerator", E_ABORT);
    EXPECT_EQ(E_ABORT, active->TranslateAccelerator(&msg)) << "the browser's answer is the control's";
    browser->ClearFailures();
    EXPECT_EQ((std::vector<std::wstring>{L"TranslateAccelerator(0x100, 0x74)", L"TranslateAccelerator(0x100, 0x74)"}),
              Calls());
    EXPECT_EQ(S_FALSE, browser->CallTranslateAccelerator(&msg)) << "the site itself handles no key";
}

TEST_F(HostServices, EveryInterfaceReachesTheControlsOneIdentity)
{
    const IID* iids[] = {&IID_IOleClientSite,  &IID_IOleInPlaceSite,          &IID_IOleControlSite,
                         &IID_IDocHostUIHandler, &IID_IOleContainer,          &IID_IServiceProvider,
                         &IID_IInternetSecurityManager, &IID_IProtectFocus, &IID_IOleCommandTarget};
    const auto identity = Identity(control.Get());
    for (const IID* iid : iids) {
        auto itf = browser->SiteAs<IUnknown>(*iid);
        ASSERT_TRUE(itf);
        EXPECT_EQ(identity.Get(), Identity(itf.Get()).Get());
    }
    auto clientSite = browser->SiteAs<IOleClientSite>(IID_IOleClientSite);
    ComPtr<IOleContainer> container;
    EXPECT_EQ(S_OK, clientSite->GetContainer(container.Put()));
    ASSERT_TRUE(container);
    EXPECT_EQ(identity.Get(), Identity(container.Get()).Get());
    EXPECT_EQ(E_POINTER, clientSite->GetContainer(nullptr));
    IMoniker* moniker = reinterpret_cast<IMoniker*>(1);
    EXPECT_EQ(E_NOTIMPL, clientSite->GetMoniker(0, 0, &moniker));
    EXPECT_EQ(nullptr, moniker);
    auto controlSite = browser->SiteAs<IOleControlSite>(IID_IOleControlSite);
    IDispatch* extended = reinterpret_cast<IDispatch*>(1);
    EXPECT_EQ(E_NOTIMPL, controlSite->GetExtendedControl(&extended));
    EXPECT_EQ(nullptr, extended);
    EXPECT_EQ(E_NOTIMPL, controlSite->GetExtendedControl(nullptr));
}

TEST_F(HostServices, ContainerLocksKeepTheControlAndAreBalanced)
{
    auto container = browser->SiteAs<IOleContainer>(IID_IOleContainer);
    ASSERT_TRUE(container);
    auto refs = [&] {
        control->AddRef();
        return control->Release();
    };
    const ULONG before = refs();
    EXPECT_EQ(S_OK, container->LockContainer(TRUE));
    EXPECT_GT(refs(), before) << "a lock holds the control";
    EXPECT_EQ(S_OK, container->LockContainer(FALSE));
    EXPECT_EQ(before, refs());
}

// Before InitControl and after Close the browser has no site; whoever still holds the control's site
// interfaces gets the fixed answers and nothing breaks.
class SiteWithoutBrowser : public ControlFixture {
protected:
    void CheckFixedAnswers()
    {
        auto ui = As<IDocHostUIHandler>(control.Get(), IID_IDocHostUIHandler);
        ASSERT_TRUE(ui);
        IDispatch* external = reinterpret_cast<IDispatch*>(1);
        EXPECT_EQ(E_NOTIMPL, ui->GetExternal(&external));
        EXPECT_EQ(nullptr, external);
        EXPECT_EQ(E_NOTIMPL, ui->GetExternal(nullptr));
        control->put_UIFlag(4);
        DOCHOSTUIINFO info{sizeof(info)};
        EXPECT_EQ(S_OK, ui->GetHostInfo(&info));
        EXPECT_EQ(4u, info.dwFlags);
        control->put_UIFlag(0);

        auto manager = As<IInternetSecurityManager>(control.Get(), IID_IInternetSecurityManager);
        BYTE policy = kUntouched;
        EXPECT_EQ(S_OK, manager->ProcessUrlAction(L"tovevent:x", 0x1401, &policy, 1, nullptr, 0, 0, 0));
        EXPECT_EQ(URLPOLICY_QUERY, policy);

        auto target = As<IOleCommandTarget>(control.Get(), IID_IOleCommandTarget);
        Variant out;
        EXPECT_EQ(E_INVALIDARG, target->Exec(&kDocHostCommands, OLECMDID_SHOWSCRIPTERROR, 0, nullptr, &out));
        EXPECT_EQ(VARIANT_TRUE, out.boolVal);

        auto clientSite = As<IOleClientSite>(control.Get(), IID_IOleClientSite);
        EXPECT_EQ(S_OK, clientSite->ShowObject());
        auto inPlace = As<IOleInPlaceSite>(control.Get(), IID_IOleInPlaceSite);
        RECT pos{1, 2, 3, 4}, clip{};
        IOleInPlaceFrame* frame = reinterpret_cast<IOleInPlaceFrame*>(1);
        IOleInPlaceUIWindow* doc = reinterpret_cast<IOleInPlaceUIWindow*>(1);
        OLEINPLACEFRAMEINFO frameInfo{sizeof(frameInfo)};
        EXPECT_TRUE(FAILED(inPlace->GetWindowContext(&frame, &doc, &pos, &clip, &frameInfo))) << "no container site";
        EXPECT_EQ(nullptr, frame);
        EXPECT_EQ(nullptr, doc);
        EXPECT_EQ(E_UNEXPECTED, inPlace->Scroll(SIZE{1, 1}));
        EXPECT_EQ(E_UNEXPECTED, inPlace->OnPosRectChange(nullptr));

        ComPtr<IOleInPlaceActiveObject> active;
        ASSERT_EQ(S_OK, control->QueryInterface(IID_IOleInPlaceActiveObject, active.PutVoid()));
        EXPECT_EQ(S_FALSE, active->TranslateAccelerator(nullptr));
    }
};

TEST_F(SiteWithoutBrowser, BeforeInitControl)
{
    CheckFixedAnswers();
}

TEST_F(SiteWithoutBrowser, AfterClose)
{
    tovfe::ScriptedBrowserClass browsers;
    ASSERT_EQ(S_OK, browsers.Register());
    LONG code = -1;
    {
        tovtest::AtlHost host;
        ASSERT_EQ(S_OK, host.Attach(control.Get()));
        ASSERT_EQ(S_OK, control->InitControl(&code));
        auto ole = As<IOleObject>(control.Get(), IID_IOleObject);
        ASSERT_EQ(S_OK, ole->Close(OLECLOSE_NOSAVE));
        EXPECT_EQ(nullptr, browsers.Last()->Site());
        host.Destroy();
    }
    auto ui = As<IDocHostUIHandler>(control.Get(), IID_IDocHostUIHandler);
    ComPtr<IDispatch> external;
    EXPECT_EQ(S_OK, ui->GetExternal(external.Put())) << "the browser object lives until the control goes";
    external.Reset();
    auto target = As<IOleCommandTarget>(control.Get(), IID_IOleCommandTarget);
    Variant out;
    EXPECT_EQ(E_INVALIDARG, target->Exec(&kDocHostCommands, OLECMDID_SHOWSCRIPTERROR, 0, nullptr, &out));
    auto clientSite = As<IOleClientSite>(control.Get(), IID_IOleClientSite);
    browsers.Last()->Log().Clear();
    EXPECT_EQ(S_OK, clientSite->ShowObject()) << "the control has no window any more: nothing to activate in";
    EXPECT_TRUE(browsers.Last()->Log().Calls().empty());
}
