#pragma once
// Outgoing interfaces of a COM object: connection points kept as parts of their owner (their IUnknown is
// the owner's), sinks in slot order, and the container interface over a fixed set of them.
#include <windows.h>
#include <ocidl.h>
#include <vector>
#include "framework/com_ptr.h"
#include "framework/hresult_error.h"

namespace tov {

class ConnectionPointContainerImpl;

class EventConnectionPoint : public IConnectionPoint {
public:
    EventConnectionPoint(IUnknown& owner, ConnectionPointContainerImpl& container, const IID& iid)
        : m_owner(owner), m_container(container), m_iid(iid) {}
    EventConnectionPoint(const EventConnectionPoint&) = delete;
    EventConnectionPoint& operator=(const EventConnectionPoint&) = delete;

    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override;
    STDMETHODIMP_(ULONG) AddRef() override { return m_owner.AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return m_owner.Release(); }

    STDMETHODIMP GetConnectionInterface(IID* pIID) override;
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** ppCPC) override;
    STDMETHODIMP Advise(IUnknown* pUnkSink, DWORD* pdwCookie) override;
    STDMETHODIMP Unadvise(DWORD dwCookie) override;
    STDMETHODIMP EnumConnections(IEnumConnections** ppEnum) override;

    const IID& Iid() const { return m_iid; }
    // The connected sinks (as queried for the outgoing interface) in slot order: a snapshot, so a sink
    // may unadvise itself or another one while it is being called.
    std::vector<ComPtr<IUnknown>> Sinks() const;
    void UnadviseAll() { m_slots.clear(); }
    // Slot access while firing: a sink unadvised by an earlier handler is skipped, one advised meanwhile is reached.
    size_t SlotCount() const { return m_slots.size(); }
    ComPtr<IUnknown> SinkAt(size_t slot) const { return slot < m_slots.size() ? m_slots[slot] : ComPtr<IUnknown>(); }

private:
    IUnknown& m_owner;
    ConnectionPointContainerImpl& m_container;
    IID m_iid;
    std::vector<ComPtr<IUnknown>> m_slots; // cookie = slot index + 1; a freed slot is reused
};

// IConnectionPointContainer over the owner's connection points; the final class supplies IUnknown. What
// the points and the container catch goes to the owner's report (nowhere unless it keeps a trace).
class ConnectionPointContainerImpl : public IConnectionPointContainer, public FailureReport {
public:
    STDMETHODIMP FindConnectionPoint(REFIID riid, IConnectionPoint** ppCP) override;
    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** ppEnum) override;

protected:
    virtual std::vector<EventConnectionPoint*> ConnectionPoints() = 0;
};

} // namespace tov
