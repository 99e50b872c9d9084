#pragma once
// Stand-ins for the control plug-in service (position 10) and for the five services the control only
// caches: each answers its interface and records what it is asked.
#include <windows.h>
#include <memory>
#include <string>
#include "frontend/frontend_container.h"

namespace tovfe {

class ControlPluginServiceStandIn final : public tov::ObjectRoot, public EarlyBoundOnly<ITOVControlPluginService> {
public:
    static tov::ComPtr<ControlPluginServiceStandIn> Create();

    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override
    {
        return Lookup(riid, {tov::Entry<ITOVControlPluginService>(IID_ITOVControlPluginService, this),
                             tov::Entry<ITOVControlPluginService>(IID_IDispatch, this)});
    }
    // Recorded as "Connect(value, BOOL:true)".
    STDMETHODIMP Connect(BSTR value, BOOL bUtf8) override;

    CallLog& Log() { return m_log; }
    void FailConnect(HRESULT hr) { m_failure = hr; }

private:
    friend class tov::ObjectRoot;
    ControlPluginServiceStandIn() = default;

    CallLog m_log;
    HRESULT m_failure = S_OK;
};

// A service that answers only IUnknown, IDispatch and the one interface identity it is made for.
class CacheOnlyServiceStandIn final : public tov::ObjectRoot, public EarlyBoundOnly<IDispatch> {
public:
    static tov::ComPtr<CacheOnlyServiceStandIn> Create(REFIID iid);

    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override
    {
        return Lookup(riid, {tov::Entry<IDispatch>(m_iid, this), tov::Entry<IDispatch>(IID_IDispatch, this)});
    }
    const IID& Iid() const { return m_iid; }

private:
    friend class tov::ObjectRoot;
    CacheOnlyServiceStandIn() = default;

    IID m_iid = IID_IDispatch;
};

} // namespace tovfe
