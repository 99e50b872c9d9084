#include "frontend/plugin_service_standin.h"

namespace tovfe {

tov::ComPtr<ControlPluginServiceStandIn> ControlPluginServiceStandIn::Create()
{
    return CreateStandIn<ControlPluginServiceStandIn, ITOVControlPluginService>(IID_ITOVControlPluginService);
}

STDMETHODIMP ControlPluginServiceStandIn::Connect(BSTR value, BOOL bUtf8)
{
    return StandInCall([&] {
        m_log.Add(L"Connect", {ArgText(value), bUtf8 ? L"BOOL:true" : L"BOOL:false"});
        return m_failure;
    });
}

tov::ComPtr<CacheOnlyServiceStandIn> CacheOnlyServiceStandIn::Create(REFIID iid)
{
    auto service = CreateStandIn<CacheOnlyServiceStandIn, IDispatch>(IID_IDispatch);
    service->m_iid = iid;
    return service;
}

} // namespace tovfe
