#pragma once
// The front end as the control sees it: a container that hands out services, and the trace service
// that a test sets to a level and that collects every line.
#include <windows.h>
#include <string>
#include <utility>
#include <vector>
#include "frontend/call_log.h"
#include "frontend/class_registration.h"
#include "framework/com_ptr.h"
#include "framework/object_root.h"
#include "tov_frontend.h"
#include "framework/early_bound.h"

namespace tovfe {

// The front end's interfaces: the control only calls them early-bound.
using tov::EarlyBoundOnly;

class FrontendContainer final : public tov::ObjectRoot, public EarlyBoundOnly<ITOVFrontendContainer> {
public:
    static tov::ComPtr<FrontendContainer> Create()
    {
        return CreateStandIn<FrontendContainer, ITOVFrontendContainer>(IID_ITOVFrontendContainer);
    }

    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override
    {
        return Lookup(riid, {tov::Entry<ITOVFrontendContainer>(IID_ITOVFrontendContainer, this),
                             tov::Entry<ITOVFrontendContainer>(IID_IDispatch, this)});
    }
    // The service registered for `guidService`, as IUnknown: the caller asks it for `riid` itself.
    STDMETHODIMP GetService(REFGUID guidService, REFIID riid, IUnknown** ppService) override;

    // Registers (or with null removes) the service for `sid`.
    void AddService(REFGUID sid, IUnknown* service);
    CallLog& Log() { return m_log; }

private:
    friend class tov::ObjectRoot;
    FrontendContainer() = default;

    std::vector<std::pair<GUID, tov::ComPtr<IUnknown>>> m_services;
    CallLog m_log;
};

class TraceSinkStandIn final : public tov::ObjectRoot, public EarlyBoundOnly<ITOVTraceSink> {
public:
    static tov::ComPtr<TraceSinkStandIn> Create() { return CreateStandIn<TraceSinkStandIn, ITOVTraceSink>(IID_ITOVTraceSink); }

    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override
    {
        return Lookup(riid, {tov::Entry<ITOVTraceSink>(IID_ITOVTraceSink, this), tov::Entry<ITOVTraceSink>(IID_IDispatch, this)});
    }
    STDMETHODIMP WriteLine(GUID component, LPCSTR text) override;
    STDMETHODIMP GetTraceLevel(GUID component, ULONG* pLevel) override;

    void SetLevel(ULONG level) { m_level = level; }
    void FailGetLevel(HRESULT hr) { m_levelFailure = hr; }
    const std::vector<std::string>& Lines() const { return m_lines; }
    const std::vector<GUID>& Components() const { return m_components; }
    void ClearLines();
    int LevelQueries() const { return m_levelQueries; }
    // Every line written so far, one per row, for a person reading the demo.
    std::string Text() const;

private:
    friend class tov::ObjectRoot;
    TraceSinkStandIn() = default;

    ULONG m_level = 0;
    HRESULT m_levelFailure = S_OK;
    int m_levelQueries = 0;
    std::vector<std::string> m_lines;
    std::vector<GUID> m_components;
};

// A container with the trace sink registered as its trace service.
void MakeFrontend(tov::ComPtr<FrontendContainer>& container, tov::ComPtr<TraceSinkStandIn>& sink);

} // namespace tovfe
