// Connection points kept inside their owner: finding and enumerating the points, advising and unadvising
// sinks with slot cookies, enumerating connections, and the references all of these hold.
#include <gtest/gtest.h>
#include <olectl.h>
#include <vector>
#include "counting_object.h"
#include "framework/com_ptr.h"
#include "framework/connection_points.h"
#include "framework/object_root.h"

using tov::ComPtr;
using tovtest::CountingObject;

namespace {

// Sinks for the two outgoing interfaces: the counting object answers the one it is made for.
const IID& kFirstIid = IID_IPropertyNotifySink;
const IID& kSecondIid = IID_IAdviseSink;

class Source final : public tov::ObjectRoot, public IPersist, public tov::ConnectionPointContainerImpl {
public:
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override
    {
        return Lookup(riid, {tov::Entry<IPersist>(IID_IPersist, this),
                             tov::Entry<IConnectionPointContainer>(IID_IConnectionPointContainer, this)});
    }
    STDMETHODIMP GetClassID(CLSID* p) override { if (p) *p = CLSID_NULL; return S_OK; }

    tov::EventConnectionPoint first{*static_cast<IPersist*>(this), *this, kFirstIid};
    tov::EventConnectionPoint second{*static_cast<IPersist*>(this), *this, kSecondIid};

protected:
    std::vector<tov::EventConnectionPoint*> ConnectionPoints() override { return {&first, &second}; }
};

ComPtr<Source> MakeSource()
{
    void* pv = nullptr;
    EXPECT_EQ(S_OK, tov::ObjectRoot::CreateInstance<Source>(nullptr, IID_IPersist, &pv));
    ComPtr<Source> s;
    s.Attach(static_cast<Source*>(static_cast<IPersist*>(pv)));
    return s;
}

ULONG RefsOf(IUnknown* p)
{
    p->AddRef();
    return p->Release();
}

} // namespace

TEST(ConnectionPoints, FoundByInterfaceAndEnumeratedInOrder)
{
    auto source = MakeSource();
    ComPtr<IConnectionPointContainer> cpc;
    ASSERT_EQ(S_OK, source->QueryInterface(IID_IConnectionPointContainer, cpc.PutVoid()));
    const ULONG refs = RefsOf(cpc.Get());

    ComPtr<IConnectionPoint> point;
    ASSERT_EQ(S_OK, cpc->FindConnectionPoint(kSecondIid, point.Put()));
    EXPECT_EQ(&source->second, point.Get());
    EXPECT_EQ(refs + 1, RefsOf(cpc.Get())) << "a point counts on its owner";
    IID iid{};
    EXPECT_EQ(S_OK, point->GetConnectionInterface(&iid));
    EXPECT_TRUE(IsEqualIID(kSecondIid, iid));
    ComPtr<IConnectionPointContainer> back;
    ASSERT_EQ(S_OK, point->GetConnectionPointContainer(back.Put()));
    EXPECT_EQ(cpc.Get(), back.Get());
    ComPtr<IUnknown> pointUnk;
    EXPECT_EQ(S_OK, point->QueryInterface(IID_IUnknown, pointUnk.PutVoid()));
    EXPECT_EQ(E_NOINTERFACE, point->QueryInterface(IID_IPersist, pointUnk.PutVoid()));
    back.Reset();
    point.Reset();

    IConnectionPoint* none = reinterpret_cast<IConnectionPoint*>(1);
    EXPECT_EQ(CONNECT_E_NOCONNECTION, cpc->FindConnectionPoint(IID_IDispatch, &none));
    EXPECT_EQ(nullptr, none);
    EXPECT_EQ(E_POINTER, cpc->FindConnectionPoint(kFirstIid, nullptr));

    ComPtr<IEnumConnectionPoints> points;
    ASSERT_EQ(S_OK, cpc->EnumConnectionPoints(points.Put()));
    IConnectionPoint* got[3] = {};
    ULONG fetched = 0;
    EXPECT_EQ(S_FALSE, points->Next(3, got, &fetched)) << "fewer than asked for";
    ASSERT_EQ(2u, fetched);
    EXPECT_EQ(&source->first, got[0]);
    EXPECT_EQ(&source->second, got[1]);
    got[0]->Release();
    got[1]->Release();
    EXPECT_EQ(E_POINTER, points->Next(2, got, nullptr));
    EXPECT_EQ(S_OK, points->Reset());
    EXPECT_EQ(S_OK, points->Skip(1));
    ComPtr<IEnumConnectionPoints> clone;
    ASSERT_EQ(S_OK, points->Clone(clone.Put()));
    EXPECT_EQ(S_OK, clone->Next(1, got, nullptr));
    EXPECT_EQ(&source->second, got[0]) << "a clone starts where its original stands";
    got[0]->Release();
    EXPECT_EQ(S_FALSE, clone->Skip(5));
    points.Reset();
    clone.Reset();
    EXPECT_EQ(refs, RefsOf(cpc.Get())) << "the enumerators gave back their references";
}

TEST(ConnectionPoints, AdviseKeepsSinksInSlotOrderAndReusesFreedSlots)
{
    auto source = MakeSource();
    CountingObject a(kFirstIid), b(kFirstIid), c(kFirstIid), d(kFirstIid);
    DWORD ca = 0, cb = 0, cc = 0, cd = 0;
    EXPECT_EQ(S_OK, source->first.Advise(&a, &ca));
    EXPECT_EQ(S_OK, source->first.Advise(&b, &cb));
    EXPECT_EQ(S_OK, source->first.Advise(&c, &cc));
    EXPECT_EQ(1u, ca);
    EXPECT_EQ(2u, cb);
    EXPECT_EQ(3u, cc);
    EXPECT_EQ(2u, b.refs) << "a connection holds one reference on its sink";

    EXPECT_EQ(S_OK, source->first.Unadvise(cb));
    EXPECT_EQ(1u, b.refs);
    EXPECT_EQ(S_OK, source->first.Advise(&d, &cd));
    EXPECT_EQ(2u, cd) << "the freed slot is taken again";
    {
        const auto sinks = source->first.Sinks();
        ASSERT_EQ(3u, sinks.size());
        EXPECT_EQ(static_cast<IUnknown*>(&a), sinks[0].Get());
        EXPECT_EQ(static_cast<IUnknown*>(&d), sinks[1].Get());
        EXPECT_EQ(static_cast<IUnknown*>(&c), sinks[2].Get());
        EXPECT_TRUE(source->second.Sinks().empty()) << "points keep their sinks apart";

        // The snapshot keeps its sinks while one of them is unadvised during the walk.
        for (const auto& sink : sinks)
            if (sink.Get() == static_cast<IUnknown*>(&a)) source->first.Unadvise(ca);
        EXPECT_EQ(2u, source->first.Sinks().size());
        EXPECT_EQ(2u, a.refs) << "only the snapshot holds it now";
    }
    EXPECT_EQ(1u, a.refs);

    ComPtr<IEnumConnections> connections;
    ASSERT_EQ(S_OK, source->first.EnumConnections(connections.Put()));
    CONNECTDATA data[4] = {};
    ULONG fetched = 0;
    EXPECT_EQ(S_FALSE, connections->Next(4, data, &fetched));
    ASSERT_EQ(2u, fetched);
    EXPECT_EQ(static_cast<IUnknown*>(&d), data[0].pUnk);
    EXPECT_EQ(2u, data[0].dwCookie);
    EXPECT_EQ(static_cast<IUnknown*>(&c), data[1].pUnk);
    EXPECT_EQ(3u, data[1].dwCookie);
    EXPECT_EQ(4u, c.refs) << "connection, enumerator snapshot and the fetched data";
    data[0].pUnk->Release();
    data[1].pUnk->Release();
    connections.Reset();
    EXPECT_EQ(2u, c.refs);

    source->first.UnadviseAll();
    EXPECT_EQ(1u, c.refs);
    EXPECT_EQ(1u, d.refs);
}

TEST(ConnectionPoints, WrongSinksAndBadCookiesAreRefused)
{
    auto source = MakeSource();
    CountingObject wrong(kSecondIid);
    DWORD cookie = 7;
    EXPECT_EQ(CONNECT_E_CANNOTCONNECT, source->first.Advise(&wrong, &cookie));
    EXPECT_EQ(0u, cookie);
    EXPECT_EQ(1u, wrong.refs) << "a refused sink keeps no reference";
    cookie = 7;
    EXPECT_EQ(E_POINTER, source->first.Advise(nullptr, &cookie));
    EXPECT_EQ(0u, cookie);
    EXPECT_EQ(E_POINTER, source->first.Advise(&wrong, nullptr));

    CountingObject right(kFirstIid);
    ASSERT_EQ(S_OK, source->first.Advise(&right, &cookie));
    EXPECT_EQ(CONNECT_E_NOCONNECTION, source->first.Unadvise(0));
    EXPECT_EQ(CONNECT_E_NOCONNECTION, source->first.Unadvise(cookie + 1));
    EXPECT_EQ(CONNECT_E_NOCONNECTION, source->first.Unadvise(0xFFFFFFFFu));
    EXPECT_EQ(CONNECT_E_NOCONNECTION, source->second.Unadvise(cookie)) << "a cookie of another point";
    EXPECT_EQ(S_OK, source->first.Unadvise(cookie));
    EXPECT_EQ(CONNECT_E_NOCONNECTION, source->first.Unadvise(cookie)) << "twice";
    EXPECT_EQ(1u, right.refs);

    EXPECT_EQ(E_POINTER, source->first.EnumConnections(nullptr));
    EXPECT_EQ(E_POINTER, source->first.GetConnectionInterface(nullptr));
    EXPECT_EQ(E_POINTER, source->first.GetConnectionPointContainer(nullptr));
}
