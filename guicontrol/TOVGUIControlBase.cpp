#include "guicontrol/TOVGUIControlBase.h"
#include "framework/hresult_error.h"

namespace {

struct ServiceIds {
    const GUID* sid;
    const IID* iid;
};

// Service and interface identities by cache slot; the GUI service child has none of its own.
constexpr ServiceIds kServiceIds[] = {
    {&SID_TOVTraceSink, &IID_ITOVTraceSink},
    {&SID_TOVGUIService, &IID_ITOVGUIService},
    {nullptr, &IID_ITOVGUIServiceChild},
    {&SID_TOVContextMenuService, &IID_ITOVContextMenuService},
    {&SID_TOVFrontendInfoService, &IID_ITOVFrontendInfoService},
    {&SID_TOVControlPluginService, &IID_ITOVControlPluginService},
    {&SID_TOVService7, &IID_ITOVService7},
    {&SID_TOVService8, &IID_ITOVService8},
    {&SID_TOVService9, &IID_ITOVService9},
    {&SID_TOVService10, &IID_ITOVService10},
    {&SID_TOVService11, &IID_ITOVService11},
};
static_assert(std::size(kServiceIds) == static_cast<size_t>(CTOVGUIControlBase::Service::Count));

template <class T> T* As(IUnknown* p) { return static_cast<T*>(static_cast<void*>(p)); }

} // namespace

CTOVGUIControlBase::~CTOVGUIControlBase()
{
    ReleaseServices();
    m_pContainer.Reset();
}

void CTOVGUIControlBase::ReleaseServices()
{
    for (auto& s : m_services) s.Reset();
}

STDMETHODIMP CTOVGUIControlBase::SetContainer(IUnknown* pContainer)
{
    try {
        if (!pContainer && m_bConnected) {
            OnContainerDisconnecting();
            m_bConnected = false;
        }
        ReleaseServices();
        m_pContainer.Reset();
        if (pContainer) pContainer->QueryInterface(IID_ITOVFrontendContainer, m_pContainer.PutVoid());
        if (m_pContainer) {
            OnContainerConnected();
            m_bConnected = true;
        }
    } catch (...) {
    }
    return S_OK;
}

STDMETHODIMP CTOVGUIControlBase::HandleEvent(LONG lEvent, IUnknown*)
{
    try {
        if (lEvent == 103) OnTraceSettingsChanged();
        return 1;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

STDMETHODIMP CTOVGUIControlBase::ForwardToGUIService(LONG)
{
    return S_OK;
}

IUnknown* CTOVGUIControlBase::FetchService(Service which, REFGUID sid, REFIID iid)
{
    auto& entry = m_services[static_cast<size_t>(which)];
    if (entry || !m_pContainer) return entry.Get();
    tov::ComPtr<IUnknown> service;
    const HRESULT hr = m_pContainer->GetService(sid, iid, service.Put());
    entry.Reset();
    // Narrowed by QueryInterface whatever the service method returned.
    if (SUCCEEDED(hr) && service) service->QueryInterface(iid, entry.PutVoid());
    return entry.Get();
}

ITOVTraceSink* CTOVGUIControlBase::GetTraceSink()
{
    return As<ITOVTraceSink>(FetchService(Service::TraceSink, SID_TOVTraceSink, IID_ITOVTraceSink));
}

ITOVGUIService* CTOVGUIControlBase::GetGUIService()
{
    auto& entry = m_services[static_cast<size_t>(Service::GUIService)];
    if (!entry && !m_pContainer)
        CoCreateInstance(SID_TOVGUIService, nullptr, CLSCTX_INPROC_SERVER, IID_ITOVGUIService, entry.PutVoid());
    return As<ITOVGUIService>(FetchService(Service::GUIService, SID_TOVGUIService, IID_ITOVGUIService));
}

ITOVGUIServiceChild* CTOVGUIControlBase::GetGUIServiceChild()
{
    auto& entry = m_services[static_cast<size_t>(Service::GUIServiceChild)];
    if (!entry) {
        if (ITOVGUIService* gui = GetGUIService()) {
            ITOVGUIServiceChild* child = nullptr;
            if (SUCCEEDED(gui->GetServiceChild(&child)) && child) entry.Attach(child);
        }
    }
    return As<ITOVGUIServiceChild>(entry.Get());
}

ITOVContextMenuService* CTOVGUIControlBase::GetContextMenuService()
{
    return As<ITOVContextMenuService>(FetchService(Service::ContextMenu, SID_TOVContextMenuService, IID_ITOVContextMenuService));
}

ITOVFrontendInfoService* CTOVGUIControlBase::GetFrontendInfoService()
{
    return As<ITOVFrontendInfoService>(FetchService(Service::FrontendInfo, SID_TOVFrontendInfoService, IID_ITOVFrontendInfoService));
}

IUnknown* CTOVGUIControlBase::GetCachedService(Service which)
{
    const auto& ids = kServiceIds[static_cast<size_t>(which)];
    if (!ids.sid) return GetGUIServiceChild();
    return FetchService(which, *ids.sid, *ids.iid);
}

UINT CTOVGUIControlBase::FrontendCodePage(UINT fallback)
{
    UINT codePage = 0;
    ITOVGUIServiceChild* child = GetGUIServiceChild();
    if (child && SUCCEEDED(child->GetCodePage(&codePage))) return codePage;
    return fallback;
}
