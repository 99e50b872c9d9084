#include "guicontrol/TOVGUIControlBase.h"
#include <cwchar>
#include "framework/bstr.h"
#include "framework/hresult_error.h"
#include "guicontrol/drag_data.h"
#include "guicontrol/registry_config.h"

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
    m_pDragData.Reset();
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
        tov::ReportCaught(*this, "SetContainer");
    }
    return S_OK;
}

STDMETHODIMP CTOVGUIControlBase::HandleEvent(LONG lEvent, IUnknown* pParameter)
{
    try {
        const LONG pre = PreHandleEvent(lEvent, pParameter);
        if (pre != 1) return pre;
        if (lEvent == 106) {
            const TOVDpiRecord dpi = ReadDpiRecord(pParameter);
            if (ITOVGUIService* gui = GetGUIService())
                tov::ComPtr<ITOVGUIService>(gui)->OnDpiChanged(dpi.dpi, dpi.scalingFactorX, dpi.scalingFactorY);
        }
        return DispatchEvent(lEvent, pParameter);
    } catch (...) {
        tov::ReportCaught(*this, "HandleEvent");
        return E_UNEXPECTED;
    }
}

LONG CTOVGUIControlBase::DispatchEvent(LONG lEvent, IUnknown* pParameter)
{
    switch (lEvent) {
    case 101:
        m_bFrontendActive = 1;
        if (pParameter) OnEvent101WithParameter(pParameter);
        else OnEvent101();
        return 1;
    case 102:
        m_bFrontendActive = 0;
        OnEvent102();
        return 1;
    case 103:
        OnTraceSettingsChanged();
        return 1;
    case 104:
        return OnEvent104() == 0 ? 1 : 0;
    case 105:
        OnEvent105();
        return 1;
    case 106:
        if (pParameter) OnEvent106(pParameter);
        return 1;
    case 300:
        ContextMenuEvent(pParameter);
        return 1;
    case 301:
        OnEvent301(pParameter);
        return 1;
    case 302:
        OnEvent302(pParameter);
        return 1;
    case 401: case 402: case 410: case 420: case 421: case 422: case 425: case 426: case 427: case 430: case 440:
    case 450:
        DragEvent(lEvent, pParameter);
        return 1;
    case 501: case 502: case 503: case 504: case 505:
        OnEvent5xx(lEvent, pParameter);
        return 1;
    default:
        // Other numbers of the framework's ranges, and anything outside them, are not for this control.
        return 1;
    }
}

LONG CTOVGUIControlBase::ContextMenuEvent(IUnknown* pParameter)
{
    auto menu = tov::QueryAs<ITOVContextMenu>(pParameter, IID_ITOVContextMenu);
    if (!menu) return 1;
    tov::ComPtr<IUnknown> item;
    LONG index = -1;
    if (SUCCEEDED(menu->GetSelectedIndex(&index))) menu->GetItem(index, item.Put());
    return OnContextMenuItemSelected(pParameter, item.Get());
}

LONG CTOVGUIControlBase::DragEvent(LONG lEvent, IUnknown* pParameter)
{
    // A drag keeps its data object from event to event; an event that brings one replaces it.
    if (auto data = tov::QueryAs<IDataObject>(pParameter, IID_IDataObject)) m_pDragData = data;
    tov::ComPtr<IDataObject> data = m_pDragData;
    return OnDragEvent(lEvent, data.Get(), FirstDroppedFileName(data.Get()));
}

TOVDpiRecord CTOVGUIControlBase::ReadDpiRecord(IUnknown* pParameter)
{
    TOVDpiRecord record;
    auto parameter = tov::QueryAs<ITOVEventParameter>(pParameter, IID_ITOVEventParameter);
    if (!parameter) return record;
    tov::ComPtr<ITOVEventRecord> child;
    const tov::Bstr childName(L"dpi_change");
    if (FAILED(parameter->GetChild(childName.Get(), child.Put())) || !child) return record;
    const tov::Bstr empty(L"");
    auto attribute = [&](const wchar_t* name, LONG& out) {
        const tov::Bstr attributeName(name);
        tov::Bstr value;
        if (SUCCEEDED(child->GetAttribute(attributeName.Get(), empty.Get(), value.Put())) && value.Length() > 0)
            out = static_cast<LONG>(std::wcstol(value.CStr(), nullptr, 10));
    };
    attribute(L"dpi", record.dpi);
    attribute(L"scalingFactor_x", record.scalingFactorX);
    attribute(L"scalingFactor_y", record.scalingFactorY);
    return record;
}

STDMETHODIMP CTOVGUIControlBase::ForwardToGUIService(LONG lValue)
{
    return tov::GuardedCall([&] {
        ITOVGUIService* gui = GetGUIService();
        if (!gui) return S_OK;
        tov::ComPtr<IUnknown> object;
        if (FAILED(tov::ComPtr<ITOVGUIService>(gui)->GetForwardTarget(object.Put()))) return S_OK;
        if (auto target = tov::QueryAs<ITOVGUIForwardTarget>(object.Get(), IID_ITOVGUIForwardTarget))
            target->Forward(lValue);
        return S_OK;
    }, *this, "ForwardToGUIService");
}

// Personalisation and data provider notifications: the hooks' answers are the results.
STDMETHODIMP CTOVGUIControlBase::SetTessarilProperty(LPCWSTR name, LPCWSTR value)
{
    return tov::GuardedCall([&] { return static_cast<HRESULT>(OnSetTessarilProperty(name, value)); }, *this, "SetTessarilProperty");
}
STDMETHODIMP CTOVGUIControlBase::TessarilMethod4(LPCWSTR name, LONG kind, VARIANT* value, LONG* result)
{
    return tov::GuardedCall([&] { return static_cast<HRESULT>(OnTessarilMethod4(name, kind, value, result)); }, *this, "TessarilMethod4");
}
STDMETHODIMP CTOVGUIControlBase::ResetTessarilProperty()
{
    return tov::GuardedCall([&] { return static_cast<HRESULT>(OnResetTessarilProperty()); }, *this, "ResetTessarilProperty");
}
STDMETHODIMP CTOVGUIControlBase::TessarilMethod6(LPCWSTR name)
{
    return tov::GuardedCall([&] { return static_cast<HRESULT>(OnTessarilMethod6(name)); }, *this, "TessarilMethod6");
}
STDMETHODIMP CTOVGUIControlBase::TessarilMethod7(LPCWSTR name, VARIANT* value)
{
    return tov::GuardedCall([&] { return static_cast<HRESULT>(OnTessarilMethod7(name, value)); }, *this, "TessarilMethod7");
}
STDMETHODIMP CTOVGUIControlBase::TessarilMethod8(IUnknown* tool)
{
    return tov::GuardedCall([&] { return static_cast<HRESULT>(OnTessarilMethod8(tool)); }, *this, "TessarilMethod8");
}
STDMETHODIMP CTOVGUIControlBase::DataEvent3(IUnknown* provider)
{
    return tov::GuardedCall([&] { return static_cast<HRESULT>(OnDataEvent3(provider)); }, *this, "DataEvent3");
}
STDMETHODIMP CTOVGUIControlBase::DataEvent5(IUnknown* provider, LPCWSTR url, LONG kind, LONG value)
{
    return tov::GuardedCall([&] { return static_cast<HRESULT>(OnDataEvent5(provider, url, kind, value)); }, *this, "DataEvent5");
}
STDMETHODIMP CTOVGUIControlBase::DataEvent6(IUnknown* provider)
{
    return tov::GuardedCall([&] { return static_cast<HRESULT>(OnDataEvent6(provider)); }, *this, "DataEvent6");
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

ITOVControlPluginService* CTOVGUIControlBase::GetControlPluginService()
{
    auto& entry = m_services[static_cast<size_t>(Service::ControlPlugin)];
    if (entry) return As<ITOVControlPluginService>(entry.Get());
    if (!tov::config::ReadControlPluginSwitch()) return nullptr;
    auto* plugin = As<ITOVControlPluginService>(
        FetchService(Service::ControlPlugin, SID_TOVControlPluginService, IID_ITOVControlPluginService));
    if (!plugin) return nullptr;
    tov::ComPtr<ITOVControlPluginService> keep(plugin);
    tov::Bstr value;
    if (ITOVFrontendInfoService* info = GetFrontendInfoService())
        tov::ComPtr<ITOVFrontendInfoService>(info)->GetPluginValue(value.Put());
    const BOOL utf8 = FrontendCodePage(0) == CP_UTF8;
    keep->Connect(value.Get(), utf8);
    return As<ITOVControlPluginService>(entry.Get());
}

IUnknown* CTOVGUIControlBase::GetCachedService(Service which)
{
    if (static_cast<size_t>(which) >= static_cast<size_t>(Service::Count)) return nullptr;
    const auto& ids = kServiceIds[static_cast<size_t>(which)];
    if (!ids.sid) return GetGUIServiceChild();
    if (which == Service::GUIService) return GetGUIService();
    if (which == Service::ControlPlugin) return GetControlPluginService();
    return FetchService(which, *ids.sid, *ids.iid);
}

UINT CTOVGUIControlBase::FrontendCodePage(UINT fallback)
{
    UINT codePage = 0;
    ITOVGUIServiceChild* child = GetGUIServiceChild();
    if (child && SUCCEEDED(child->GetCodePage(&codePage))) return codePage;
    return fallback;
}
