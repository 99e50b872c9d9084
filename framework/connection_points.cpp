#include "framework/connection_points.h"
#include <olectl.h>
#include <new>
#include "framework/simple_object.h"

namespace tov {
namespace {

// A snapshot enumerator over copies of T (CONNECTDATA or IConnectionPoint*), holding its own references.
template <class Itf, class T, const IID& iid>
class Enumerator final
    : public SimpleObject<Enumerator<Itf, T, iid>, Lifetime::DeleteOnLastRelease, Implements<Itf, iid>> {
public:
    explicit Enumerator(std::vector<T> items) : m_items(std::move(items))
    {
        for (auto& item : m_items) AddRefItem(item);
    }
    ~Enumerator()
    {
        for (auto& item : m_items) ReleaseItem(item);
    }
    STDMETHODIMP Next(ULONG count, T* out, ULONG* fetched) override
    {
        if (!out || (count > 1 && !fetched)) return E_POINTER;
        ULONG n = 0;
        for (; n < count && m_pos < m_items.size(); ++n, ++m_pos) {
            out[n] = m_items[m_pos];
            AddRefItem(out[n]);
        }
        if (fetched) *fetched = n;
        return n == count ? S_OK : S_FALSE;
    }
    STDMETHODIMP Skip(ULONG count) override
    {
        const size_t left = m_items.size() - m_pos;
        m_pos += count < left ? count : left;
        return count <= left ? S_OK : S_FALSE;
    }
    STDMETHODIMP Reset() override
    {
        m_pos = 0;
        return S_OK;
    }
    STDMETHODIMP Clone(Itf** ppEnum) override
    {
        if (!ppEnum) return E_POINTER;
        *ppEnum = nullptr;
        try {
            auto* copy = new Enumerator(m_items); // copying the items may throw as well
            copy->m_pos = m_pos;
            *ppEnum = copy;
            return S_OK;
        } catch (...) {
            return E_OUTOFMEMORY;
        }
    }

private:
    static void AddRefItem(CONNECTDATA& d) { if (d.pUnk) d.pUnk->AddRef(); }
    static void ReleaseItem(CONNECTDATA& d) { if (d.pUnk) d.pUnk->Release(); }
    static void AddRefItem(IConnectionPoint* p) { if (p) p->AddRef(); }
    static void ReleaseItem(IConnectionPoint* p) { if (p) p->Release(); }

    std::vector<T> m_items;
    size_t m_pos = 0;
};

using ConnectionsEnum = Enumerator<IEnumConnections, CONNECTDATA, IID_IEnumConnections>;
using PointsEnum = Enumerator<IEnumConnectionPoints, IConnectionPoint*, IID_IEnumConnectionPoints>;

} // namespace

STDMETHODIMP EventConnectionPoint::QueryInterface(REFIID riid, void** ppv)
{
    if (!ppv) return E_POINTER;
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IConnectionPoint)) {
        *ppv = static_cast<IConnectionPoint*>(this);
        AddRef();
        return S_OK;
    }
    *ppv = nullptr;
    return E_NOINTERFACE;
}

STDMETHODIMP EventConnectionPoint::GetConnectionInterface(IID* pIID)
{
    if (!pIID) return E_POINTER;
    *pIID = m_iid;
    return S_OK;
}

STDMETHODIMP EventConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** ppCPC)
{
    if (!ppCPC) return E_POINTER;
    *ppCPC = &m_container;
    m_container.AddRef();
    return S_OK;
}

STDMETHODIMP EventConnectionPoint::Advise(IUnknown* pUnkSink, DWORD* pdwCookie)
{
    if (pdwCookie) *pdwCookie = 0;
    if (!pUnkSink || !pdwCookie) return E_POINTER;
    ComPtr<IUnknown> sink;
    if (FAILED(pUnkSink->QueryInterface(m_iid, sink.PutVoid())) || !sink) return CONNECT_E_CANNOTCONNECT;
    try {
        size_t slot = 0;
        while (slot < m_slots.size() && m_slots[slot]) ++slot;
        if (slot == m_slots.size()) m_slots.emplace_back();
        m_slots[slot] = std::move(sink);
        *pdwCookie = static_cast<DWORD>(slot + 1);
        return S_OK;
    } catch (...) {
        ReportCaught(m_container, "IConnectionPoint::Advise");
        return E_OUTOFMEMORY;
    }
}

STDMETHODIMP EventConnectionPoint::Unadvise(DWORD dwCookie)
{
    if (dwCookie == 0 || dwCookie > m_slots.size() || !m_slots[dwCookie - 1]) return CONNECT_E_NOCONNECTION;
    // Released after the slot is cleared: the sink's release may call back into this point.
    ComPtr<IUnknown> gone = std::move(m_slots[dwCookie - 1]);
    m_slots[dwCookie - 1].Reset();
    return S_OK;
}

STDMETHODIMP EventConnectionPoint::EnumConnections(IEnumConnections** ppEnum)
{
    if (!ppEnum) return E_POINTER;
    *ppEnum = nullptr;
    try {
        std::vector<CONNECTDATA> data;
        for (size_t i = 0; i < m_slots.size(); ++i)
            if (m_slots[i]) data.push_back(CONNECTDATA{m_slots[i].Get(), static_cast<DWORD>(i + 1)});
        *ppEnum = new ConnectionsEnum(std::move(data));
        return S_OK;
    } catch (...) {
        ReportCaught(m_container, "IConnectionPoint::EnumConnections");
        return E_OUTOFMEMORY;
    }
}

std::vector<ComPtr<IUnknown>> EventConnectionPoint::Sinks() const
{
    std::vector<ComPtr<IUnknown>> sinks;
    for (const auto& s : m_slots)
        if (s) sinks.push_back(s);
    return sinks;
}

STDMETHODIMP ConnectionPointContainerImpl::FindConnectionPoint(REFIID riid, IConnectionPoint** ppCP)
{
    if (!ppCP) return E_POINTER;
    *ppCP = nullptr;
    for (EventConnectionPoint* point : ConnectionPoints()) {
        if (IsEqualIID(point->Iid(), riid)) {
            *ppCP = point;
            point->AddRef();
            return S_OK;
        }
    }
    return CONNECT_E_NOCONNECTION;
}

STDMETHODIMP ConnectionPointContainerImpl::EnumConnectionPoints(IEnumConnectionPoints** ppEnum)
{
    if (!ppEnum) return E_POINTER;
    *ppEnum = nullptr;
    try {
        std::vector<IConnectionPoint*> points;
        for (EventConnectionPoint* point : ConnectionPoints()) points.push_back(point);
        *ppEnum = new PointsEnum(std::move(points));
        return S_OK;
    } catch (...) {
        ReportCaught(*this, "IConnectionPointContainer::EnumConnectionPoints");
        return E_OUTOFMEMORY;
    }
}

} // namespace tov
