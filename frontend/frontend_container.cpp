#include "frontend/frontend_container.h"

namespace tovfe {

std::wstring GuidKey(REFGUID g)
{
    wchar_t buf[40] = {};
    StringFromGUID2(g, buf, 40);
    return buf;
}

STDMETHODIMP FrontendContainer::QueryInterface(REFIID riid, void** ppv)
{
    if (!ppv) return E_POINTER;
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IDispatch) || IsEqualIID(riid, IID_ITOVFrontendContainer)) {
        *ppv = static_cast<ITOVFrontendContainer*>(this);
        AddRef();
        return S_OK;
    }
    *ppv = nullptr;
    return E_NOINTERFACE;
}

STDMETHODIMP FrontendContainer::GetService(REFGUID guidService, REFIID, IUnknown** ppService)
{
    m_log.Add(L"GetService", {GuidKey(guidService)});
    if (!ppService) return E_POINTER;
    *ppService = nullptr;
    auto it = m_services.find(GuidKey(guidService));
    if (it == m_services.end()) return E_NOINTERFACE;
    *ppService = it->second.CopyOut();
    return S_OK;
}

void FrontendContainer::AddService(REFGUID sid, IUnknown* service)
{
    m_services[GuidKey(sid)] = service;
}

STDMETHODIMP TraceSinkStandIn::QueryInterface(REFIID riid, void** ppv)
{
    if (!ppv) return E_POINTER;
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IDispatch) || IsEqualIID(riid, IID_ITOVTraceSink)) {
        *ppv = static_cast<ITOVTraceSink*>(this);
        AddRef();
        return S_OK;
    }
    *ppv = nullptr;
    return E_NOINTERFACE;
}

STDMETHODIMP TraceSinkStandIn::WriteLine(GUID component, LPCSTR text)
{
    m_lines.push_back(text ? text : "");
    m_components.push_back(component);
    return S_OK;
}

STDMETHODIMP TraceSinkStandIn::GetTraceLevel(GUID, ULONG* pLevel)
{
    ++m_levelQueries;
    if (FAILED(m_levelFailure)) return m_levelFailure;
    if (!pLevel) return E_POINTER;
    *pLevel = m_level;
    return S_OK;
}

std::string TraceSinkStandIn::Text() const
{
    std::string all;
    for (const auto& l : m_lines) all += l + "\n";
    return all;
}

void MakeFrontend(tov::ComPtr<FrontendContainer>& container, tov::ComPtr<TraceSinkStandIn>& sink)
{
    container.Attach(new FrontendContainer());
    sink.Attach(new TraceSinkStandIn());
    container->AddService(SID_TOVTraceSink, sink.Get());
}

} // namespace tovfe
