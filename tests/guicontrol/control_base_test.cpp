// A control on the common base and the front end's services: fetched when first asked, cached, given back;
// the GUI service made without a container; the plug-in behind its registry switch.
#include "frontend/event_parameter_standin.h"
#include "frontend/gui_service_standin.h"
#include "frontend/plugin_service_standin.h"
#include "guicontrol/hook_recorder.h"
#include "framework/simple_object.h"

using tov::ComPtr;
using tovfe::CacheOnlyServiceStandIn;
using Service = CTOVGUIControlBase::Service;
using Texts = std::vector<std::wstring>;
using ControlBase = tovtest::GUIControlTest;

namespace {

ULONG Refs(IUnknown* p) { p->AddRef(); return p->Release(); }

// A class object handing out one existing object, as a front end's registered class would; it lives on
// the test's stack.
struct OneObjectFactory final
    : tov::SimpleObject<OneObjectFactory, tov::Lifetime::CountOnly, tov::Implements<IClassFactory, IID_IClassFactory>> {
    explicit OneObjectFactory(IUnknown* p) : object(p) {}
    STDMETHODIMP CreateInstance(IUnknown*, REFIID riid, void** ppv) override { return object->QueryInterface(riid, ppv); }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }
    ComPtr<IUnknown> object;
};

} // namespace

TEST_F(ControlBase, ServicesAreFetchedLazilyAndCached)
{
    // An object that is no container is refused with the real control.
    EXPECT_EQ(S_OK, control->SetContainer(Container()));
    EXPECT_TRUE(control->IsConnected());
    EXPECT_EQ(Texts{L"OnContainerConnected"}, control->hooks);
    EXPECT_TRUE(container->Log().Calls().empty()) << "services are fetched lazily";
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(static_cast<ITOVTraceSink*>(sink.Get()), control->GetTraceSink());
        EXPECT_EQ(static_cast<ITOVContextMenuService*>(menus.Get()), control->GetContextMenuService());
        EXPECT_EQ(nullptr, control->GetFrontendInfoService()) << "a service the front end does not offer";
    }
    EXPECT_EQ(4u, container->Log().Count(L"GetService")) << "each fetched once; the missing one asked again";

    // Set again, now without a trace sink and with a service lacking its interface: nothing of the old
    // cache left, neither service kept, and a throwing hook does not reach the front end.
    container->AddService(SID_TOVTraceSink, nullptr);
    auto wrong = CacheOnlyServiceStandIn::Create(IID_ITOVService8);
    container->AddService(SID_TOVService7, static_cast<IDispatch*>(wrong.Get()));
    EXPECT_EQ(S_OK, control->SetContainer(Container()));
    EXPECT_EQ(nullptr, control->GetTraceSink());
    EXPECT_EQ(nullptr, control->GetCachedService(Service::Service7));
    EXPECT_EQ(2u, Refs(static_cast<IDispatch*>(wrong.Get()))) << "the container's and ours only";
    control->throwIn = L"OnContainerConnected";
    EXPECT_EQ(S_OK, control->SetContainer(Container()));
}

TEST_F(ControlBase, DisconnectionAndDestructionGiveEveryReferenceBack)
{
    auto services = tovfe::AddGUIServices(*container.Get());
    auto drag = tovfe::DragDataStandIn::Create({L"C:\\a.txt"});
    const std::vector<IUnknown*> held = {Container(), static_cast<ITOVTraceSink*>(sink.Get()),
                                         static_cast<ITOVContextMenuService*>(menus.Get()),
                                         static_cast<ITOVGUIService*>(services.gui.Get()),
                                         static_cast<ITOVGUIServiceChild*>(&services.gui->Child()),
                                         static_cast<ITOVFrontendInfoService*>(services.info.Get()),
                                         static_cast<IDataObject*>(drag.Get())};
    const auto refs = [&] { std::vector<ULONG> counts; for (IUnknown* p : held) counts.push_back(Refs(p)); return counts; };
    const auto use = [&] {
        control->SetContainer(Container());
        for (size_t i = 0; i < size_t(Service::Count); ++i) control->GetCachedService(Service(i));
        control->HandleEvent(401, static_cast<IDataObject*>(drag.Get()));
    };
    const auto before = refs();
    use();
    const auto used = refs();
    for (size_t i = 0; i < held.size(); ++i) EXPECT_GT(used[i], before[i]) << "object " << i << " is held";

    control->hooks.clear();
    EXPECT_EQ(S_OK, control->SetContainer(nullptr));
    EXPECT_EQ(Texts{L"OnContainerDisconnecting"}, control->hooks);
    EXPECT_FALSE(control->IsConnected());
    EXPECT_EQ(before, refs());
    EXPECT_EQ(nullptr, control->GetTraceSink());

    use();
    control.Reset();
    EXPECT_EQ(before, refs()) << "destroyed while connected";
}

TEST_F(ControlBase, GUIServiceIsMadeWithoutAContainerAndItsExceptionsReachNoFrontEnd)
{
    auto made = tovfe::GUIServiceStandIn::Create();
    OneObjectFactory factory(static_cast<ITOVGUIService*>(made.Get()));
    {
        tovfe::RegisteredClass registered(SID_TOVGUIService, &factory);
        EXPECT_EQ(static_cast<ITOVGUIService*>(made.Get()), control->GetGUIService());
    }
    EXPECT_EQ(static_cast<ITOVGUIService*>(made.Get()), control->GetGUIService()) << "cached";

    // Connected, the container's GUI service is used instead.
    auto services = tovfe::AddGUIServices(*container.Get(), 65001);
    ASSERT_EQ(S_OK, control->SetContainer(Container()));
    EXPECT_EQ(S_OK, control->ForwardToGUIService(42));
    EXPECT_EQ(L"Forward(42)", services.gui->Log().Texts().back());
    services.gui->Plan().Throw(L"Forward");
    EXPECT_EQ(E_UNEXPECTED, control->ForwardToGUIService(9)) << "nothing is thrown back to the front end";
}

TEST_F(ControlBase, PluginServiceOnlyWithTheSwitchOnConnectedWithTheFrontendsValue)
{
    auto plugin = tovfe::ControlPluginServiceStandIn::Create();
    container->AddService(SID_TOVControlPluginService, static_cast<ITOVControlPluginService*>(plugin.Get()));
    const auto setSwitch = [](DWORD on) {
        ASSERT_EQ(ERROR_SUCCESS, RegSetKeyValueW(HKEY_CURRENT_USER, L"Software\\TOV\\General", L"TOVGUIControlPlugin", REG_DWORD, &on, 4));
    };
    setSwitch(0);
    ASSERT_EQ(S_OK, control->SetContainer(Container()));
    EXPECT_EQ(nullptr, control->GetControlPluginService());
    EXPECT_EQ(0u, container->Log().Count(L"GetService")) << "switched off: the service is not even asked for";
    setSwitch(1);
    auto services = tovfe::AddGUIServices(*container.Get(), 65001);
    services.info->pluginValue = L"cfg=1";
    control->SetContainer(Container());
    for (int twice = 0; twice < 2; ++twice)
        EXPECT_EQ(static_cast<ITOVControlPluginService*>(plugin.Get()), control->GetControlPluginService());
    EXPECT_EQ(Texts{L"Connect(cfg=1, BOOL:true)"}, plugin->Log().Texts()) << "connected once, with the value and UTF-8";
}
