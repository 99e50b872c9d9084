#include "frontend/frontend_container.h"
#include <algorithm>
#include "frontend/type_library_text.h"

namespace tovfe {

STDMETHODIMP FrontendContainer::GetService(REFGUID guidService, REFIID, IUnknown** ppService)
{
    if (ppService) *ppService = nullptr;
    return StandInCall([&] {
        m_log.Add(L"GetService", {GuidText(guidService)});
        if (!ppService) return E_POINTER;
        for (const auto& [sid, service] : m_services) {
            if (IsEqualGUID(sid, guidService)) {
                *ppService = service.CopyOut();
                return S_OK;
            }
        }
        return E_NOINTERFACE;
    });
}

void FrontendContainer::AddService(REFGUID sid, IUnknown* service)
{
    std::erase_if(m_services, [&](const auto& entry) { return IsEqualGUID(entry.first, sid) != 0; });
    if (service) m_services.emplace_back(sid, service);
}

STDMETHODIMP TraceSinkStandIn::WriteLine(GUID component, LPCSTR text)
{
    return StandInCall([&] {
        m_lines.push_back(text ? text : "");
        m_components.push_back(component);
        return S_OK;
    });
}

STDMETHODIMP TraceSinkStandIn::GetTraceLevel(GUID, ULONG* pLevel)
{
    ++m_levelQueries;
    if (!pLevel) return E_POINTER;
    *pLevel = 0;
    if (FAILED(m_levelFailure)) return m_levelFailure;
    *pLevel = m_level;
    return S_OK;
}

void TraceSinkStandIn::ClearLines()
{
    m_lines.clear();
    m_components.clear();
}

std::string TraceSinkStandIn::Text() const
{
    std::string all;
    for (const auto& l : m_lines) all += l + "\n";
    return all;
}

void MakeFrontend(tov::ComPtr<FrontendContainer>& container, tov::ComPtr<TraceSinkStandIn>& sink)
{
    container = FrontendContainer::Create();
    sink = TraceSinkStandIn::Create();
    container->AddService(SID_TOVTraceSink, static_cast<ITOVTraceSink*>(sink.Get()));
}

} // namespace tovfe
