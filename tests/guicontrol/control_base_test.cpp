// A control on the common base connected to the front end: the container, the services it hands out
// and what the control keeps of them.
#include <gtest/gtest.h>
#include "frontend/context_menu_standin.h"
#include "frontend/event_parameter_standin.h"
#include "frontend/plugin_service_standin.h"
#include "guicontrol/hook_recorder.h"
#include "support/registry_helpers.h"

using tov::ComPtr;
using tovfe::CacheOnlyServiceStandIn;
using tovtest::HookRecorder;

namespace {

ULONG Refs(IUnknown* p)
{
    p->AddRef();
    return p->Release();
}

struct CacheOnly {
    CTOVGUIControlBase::Service which;
    const GUID* sid;
    const IID* iid;
    const wchar_t* sidText;
};

const CacheOnly kCacheOnly[] = {
    {CTOVGUIControlBase::Service::Service7, &SID_TOVService7, &IID_ITOVService7, L"GetService({C1B82522-6E27-11D2-87C5-000000000000})"},
    {CTOVGUIControlBase::Service::Service8, &SID_TOVService8, &IID_ITOVService8, L"GetService({8D3F88B2-B5F5-4E4A-B4B6-2109D517B8BE})"},
    {CTOVGUIControlBase::Service::Service9, &SID_TOVService9, &IID_ITOVService9, L"GetService({A6DCC191-C4A3-4B7B-8041-52D280722E86})"},
    {CTOVGUIControlBase::Service::Service10, &SID_TOVService10, &IID_ITOVService10, L"GetService({62CFD1F3-018B-438B-8940-6C106BF6FE6D})"},
    {CTOVGUIControlBase::Service::Service11, &SID_TOVService11, &IID_ITOVService11, L"GetService({0B052FD7-1A76-4296-BC4F-4FA92368AD40})"},
};

class ControlBase : public testing::Test {
protected:
    void SetUp() override
    {
        control = HookRecorder::Create();
        tovfe::MakeFrontend(container, sink);
        menus = tovfe::ContextMenuServiceStandIn::Create();
        container->AddService(SID_TOVContextMenuService, static_cast<ITOVContextMenuService*>(menus.Get()));
        for (const auto& s : kCacheOnly) {
            cacheOnly.push_back(CacheOnlyServiceStandIn::Create(*s.iid));
            container->AddService(*s.sid, static_cast<IDispatch*>(cacheOnly.back().Get()));
        }
    }
    void TearDown() override { tovtest::DeleteTree(HKEY_CURRENT_USER, L"Software\\TOV\\General"); }

    IUnknown* Container() const { return static_cast<ITOVFrontendContainer*>(container.Get()); }

    ComPtr<HookRecorder> control;
    ComPtr<tovfe::FrontendContainer> container;
    ComPtr<tovfe::TraceSinkStandIn> sink;
    ComPtr<tovfe::ContextMenuServiceStandIn> menus;
    std::vector<ComPtr<CacheOnlyServiceStandIn>> cacheOnly;
};

} // namespace

TEST_F(ControlBase, ObjectWithoutTheContainerInterfaceLeavesItUnconnected)
{
    auto notAContainer = CacheOnlyServiceStandIn::Create(IID_ITOVService7);
    EXPECT_EQ(S_OK, control->SetContainer(static_cast<IDispatch*>(notAContainer.Get())));
    EXPECT_FALSE(control->IsConnected());
    EXPECT_TRUE(control->hooks.empty());
    EXPECT_EQ(nullptr, control->GetTraceSink());
    EXPECT_EQ(nullptr, control->GetContextMenuService());
    EXPECT_EQ(1u, Refs(static_cast<IDispatch*>(notAContainer.Get()))) << "nothing kept of it";

    EXPECT_EQ(S_OK, control->SetContainer(nullptr));
    EXPECT_TRUE(control->hooks.empty()) << "never connected: no disconnection";
}

TEST_F(ControlBase, ConnectingRunsTheHookAndFetchesServicesOnlyWhenAsked)
{
    const ULONG containerRefs = Refs(Container());
    EXPECT_EQ(S_OK, control->SetContainer(Container()));
    EXPECT_TRUE(control->IsConnected());
    EXPECT_EQ(std::vector<std::wstring>{L"OnContainerConnected"}, control->hooks);
    EXPECT_TRUE(container->Log().Calls().empty()) << "services are fetched lazily";
    EXPECT_EQ(containerRefs + 1, Refs(Container()));

    EXPECT_EQ(static_cast<ITOVTraceSink*>(sink.Get()), control->GetTraceSink());
    EXPECT_EQ(static_cast<ITOVTraceSink*>(sink.Get()), control->GetTraceSink());
    EXPECT_EQ(static_cast<ITOVContextMenuService*>(menus.Get()), control->GetContextMenuService());
    EXPECT_EQ(static_cast<ITOVContextMenuService*>(menus.Get()), control->GetContextMenuService());
    EXPECT_EQ((std::vector<std::wstring>{L"GetService({7BB065F4-3E8E-11D3-90E3-006094B9D64F})",
                                         L"GetService({0738DC8E-82BD-11D2-B43F-006094B9D64F})"}),
              container->Log().Texts())
        << "each service fetched once, then cached";
    EXPECT_EQ(nullptr, control->GetFrontendInfoService()) << "a service the front end does not offer";
    EXPECT_EQ(nullptr, control->GetFrontendInfoService());
    EXPECT_EQ(4u, container->Log().Count(L"GetService")) << "a missing service is asked for again";
}

TEST_F(ControlBase, TheFiveCacheOnlyServicesHaveTheirIdentities)
{
    ASSERT_EQ(S_OK, control->SetContainer(Container()));
    for (size_t i = 0; i < std::size(kCacheOnly); ++i) {
        SCOPED_TRACE(i);
        container->Log().Clear();
        IUnknown* service = control->GetCachedService(kCacheOnly[i].which);
        EXPECT_EQ(static_cast<IDispatch*>(cacheOnly[i].Get()), service);
        EXPECT_EQ(service, control->GetCachedService(kCacheOnly[i].which));
        EXPECT_EQ(std::vector<std::wstring>{kCacheOnly[i].sidText}, container->Log().Texts());
    }
    EXPECT_EQ(static_cast<ITOVTraceSink*>(sink.Get()), control->GetCachedService(CTOVGUIControlBase::Service::TraceSink));
    EXPECT_EQ(nullptr, control->GetCachedService(CTOVGUIControlBase::Service::Count));

    // A service object that does not answer its interface identity is not kept.
    auto wrong = CacheOnlyServiceStandIn::Create(IID_ITOVService8);
    container->AddService(SID_TOVService7, static_cast<IDispatch*>(wrong.Get()));
    control->SetContainer(Container());
    EXPECT_EQ(nullptr, control->GetCachedService(CTOVGUIControlBase::Service::Service7));
    EXPECT_EQ(2u, Refs(static_cast<IDispatch*>(wrong.Get()))) << "the container's and ours";
}

TEST_F(ControlBase, DisconnectionAndDestructionReleaseEverything)
{
    const ULONG containerRefs = Refs(Container());
    const ULONG sinkRefs = Refs(static_cast<ITOVTraceSink*>(sink.Get()));
    const ULONG menuRefs = Refs(static_cast<ITOVContextMenuService*>(menus.Get()));
    auto drag = tovfe::DragDataStandIn::Create({L"C:\\a.txt"});

    ASSERT_EQ(S_OK, control->SetContainer(Container()));
    control->GetTraceSink();
    control->GetContextMenuService();
    for (const auto& s : kCacheOnly) control->GetCachedService(s.which);
    control->HandleEvent(401, static_cast<IDataObject*>(drag.Get()));
    EXPECT_EQ(sinkRefs + 1, Refs(static_cast<ITOVTraceSink*>(sink.Get())));
    EXPECT_EQ(2u, Refs(static_cast<IDataObject*>(drag.Get())));

    control->hooks.clear();
    EXPECT_EQ(S_OK, control->SetContainer(nullptr));
    EXPECT_EQ(std::vector<std::wstring>{L"OnContainerDisconnecting"}, control->hooks);
    EXPECT_FALSE(control->IsConnected());
    EXPECT_EQ(containerRefs, Refs(Container()));
    EXPECT_EQ(sinkRefs, Refs(static_cast<ITOVTraceSink*>(sink.Get())));
    EXPECT_EQ(menuRefs, Refs(static_cast<ITOVContextMenuService*>(menus.Get())));
    for (const auto& s : cacheOnly) EXPECT_EQ(2u, Refs(static_cast<IDispatch*>(s.Get()))) << "the container's and ours";
    EXPECT_EQ(1u, Refs(static_cast<IDataObject*>(drag.Get())));
    EXPECT_EQ(nullptr, control->GetTraceSink());

    // Connected again, then destroyed while connected.
    ASSERT_EQ(S_OK, control->SetContainer(Container()));
    control->GetTraceSink();
    control->GetContextMenuService();
    control->HandleEvent(401, static_cast<IDataObject*>(drag.Get()));
    control.Reset();
    EXPECT_EQ(containerRefs, Refs(Container()));
    EXPECT_EQ(sinkRefs, Refs(static_cast<ITOVTraceSink*>(sink.Get())));
    EXPECT_EQ(menuRefs, Refs(static_cast<ITOVContextMenuService*>(menus.Get())));
    EXPECT_EQ(1u, Refs(static_cast<IDataObject*>(drag.Get())));
}

TEST_F(ControlBase, ChangingTheContainerDropsTheOldServices)
{
    ASSERT_EQ(S_OK, control->SetContainer(Container()));
    EXPECT_EQ(static_cast<ITOVTraceSink*>(sink.Get()), control->GetTraceSink());

    ComPtr<tovfe::FrontendContainer> other;
    ComPtr<tovfe::TraceSinkStandIn> otherSink;
    tovfe::MakeFrontend(other, otherSink);
    control->hooks.clear();
    EXPECT_EQ(S_OK, control->SetContainer(static_cast<ITOVFrontendContainer*>(other.Get())));
    EXPECT_EQ(std::vector<std::wstring>{L"OnContainerConnected"}, control->hooks) << "no disconnection between two containers";
    EXPECT_EQ(static_cast<ITOVTraceSink*>(otherSink.Get()), control->GetTraceSink());
    EXPECT_EQ(nullptr, control->GetContextMenuService());
}

TEST_F(ControlBase, FailingOrThrowingContainersGiveNoService)
{
    ASSERT_EQ(S_OK, control->SetContainer(Container()));
    container->AddService(SID_TOVTraceSink, nullptr);
    EXPECT_EQ(nullptr, control->GetTraceSink());
    EXPECT_EQ(S_OK, control->ForwardToGUIService(5)) << "no GUI service: nothing to forward to";

    // An exception in the connect hook is swallowed by SetContainer.
    control->throwIn = L"OnContainerConnected";
    EXPECT_EQ(S_OK, control->SetContainer(Container()));
}

TEST_F(ControlBase, PluginServiceOnlyWithTheSwitchOn)
{
    auto plugin = tovfe::ControlPluginServiceStandIn::Create();
    container->AddService(SID_TOVControlPluginService, static_cast<ITOVControlPluginService*>(plugin.Get()));
    ASSERT_EQ(S_OK, control->SetContainer(Container()));

    tovtest::DeleteTree(HKEY_CURRENT_USER, L"Software\\TOV\\General");
    HKEY key = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\TOV\\General", 0, nullptr, 0, KEY_WRITE,
                                             nullptr, &key, nullptr));
    const DWORD off = 0, on = 1;
    RegSetValueExW(key, L"TOVGUIControlPlugin", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&off), 4);
    EXPECT_EQ(nullptr, control->GetControlPluginService());
    EXPECT_EQ(0u, container->Log().Count(L"GetService")) << "switched off: the service is not even asked for";

    RegSetValueExW(key, L"TOVGUIControlPlugin", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&on), 4);
    RegCloseKey(key);
    EXPECT_EQ(static_cast<ITOVControlPluginService*>(plugin.Get()), control->GetControlPluginService());
    EXPECT_EQ(static_cast<ITOVControlPluginService*>(plugin.Get()), control->GetControlPluginService());
    // Without an information service or a code page the plug-in gets nothing and no UTF-8.
    EXPECT_EQ(std::vector<std::wstring>{L"Connect(<null>, BOOL:false)"}, plugin->Log().Texts()) << "connected once";
}
