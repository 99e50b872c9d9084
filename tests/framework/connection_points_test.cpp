// Connection points kept inside their owner: finding them, slot cookies with reuse of a freed slot,
// refused sinks and cookies, and the references all of these hold and give back.
#include <gtest/gtest.h>
#include <olectl.h>
#include "counting_object.h"
#include "framework/com_ptr.h"
#include "framework/connection_points.h"
#include "framework/object_root.h"

using tov::ComPtr;
using tovtest::CountingObject;

namespace {

// Sinks for the two outgoing interfaces: a counting object answers the one it is made for.
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
    STDMETHODIMP GetClassID(CLSID*) override { return E_NOTIMPL; }
    tov::EventConnectionPoint first{*static_cast<IPersist*>(this), *this, kFirstIid};
    tov::EventConnectionPoint second{*static_cast<IPersist*>(this), *this, kSecondIid};

protected:
    std::vector<tov::EventConnectionPoint*> ConnectionPoints() override { return {&first, &second}; }
};

} // namespace

TEST(ConnectionPoints, FoundByInterfaceCookiesAreSlotsWrongOnesRefusedAndEveryReferenceGivenBack)
{
    CountingObject a(kFirstIid), b(kFirstIid), c(kFirstIid), d(kFirstIid), wrong(kSecondIid);
    CountingObject* const sinks[] = {&a, &b, &c, &d, &wrong};
    ComPtr<IConnectionPointContainer> cpc; // after the sinks, so that they outlive the source
    ASSERT_EQ(S_OK, tov::ObjectRoot::CreateInstance<Source>(nullptr, IID_IConnectionPointContainer, cpc.PutVoid()));
    auto* const source = static_cast<Source*>(cpc.Get());
    {
        ComPtr<IConnectionPoint> point;
        ASSERT_EQ(S_OK, cpc->FindConnectionPoint(kSecondIid, point.Put()));
        EXPECT_EQ(&source->second, point.Get());
        EXPECT_EQ(CONNECT_E_NOCONNECTION, cpc->FindConnectionPoint(IID_IDispatch, point.Put()));
        EXPECT_FALSE(point);
    }
    cpc->AddRef();
    EXPECT_EQ(1u, cpc->Release()) << "a point found lets go of its owner";

    DWORD cookies[5] = {};
    for (int i = 0; i < 3; ++i) ASSERT_EQ(S_OK, source->first.Advise(sinks[i], &cookies[i]));
    EXPECT_EQ(S_OK, source->first.Unadvise(cookies[1]));
    ASSERT_EQ(S_OK, source->first.Advise(&d, &cookies[3]));
    cookies[4] = 7;
    EXPECT_EQ(CONNECT_E_CANNOTCONNECT, source->first.Advise(&wrong, &cookies[4])) << "a sink without the interface";
    EXPECT_EQ(0u, cookies[4]);
    EXPECT_EQ(E_POINTER, source->first.Advise(&a, nullptr));

    ComPtr<IEnumConnections> connections;
    ASSERT_EQ(S_OK, source->first.EnumConnections(connections.Put()));
    CONNECTDATA data[4] = {};
    ULONG fetched = 0;
    EXPECT_EQ(S_FALSE, connections->Next(4, data, &fetched));
    ASSERT_EQ(3u, fetched);
    const std::pair<IUnknown*, DWORD> expected[] = {{&a, 1}, {&d, 2}, {&c, 3}}; // d took the freed slot
    for (ULONG i = 0; i < fetched; ++i) {
        ComPtr<IUnknown> held;
        held.Attach(data[i].pUnk);
        EXPECT_EQ(expected[i], std::make_pair(held.Get(), data[i].dwCookie)) << i;
    }
    connections.Reset();

    EXPECT_EQ(CONNECT_E_NOCONNECTION, source->second.Unadvise(1)) << "a cookie of another point";
    for (DWORD bad : {0ul, 4ul, 0xFFFFFFFFul}) EXPECT_EQ(CONNECT_E_NOCONNECTION, source->first.Unadvise(bad)) << bad;
    EXPECT_EQ(S_OK, source->first.Unadvise(3));
    EXPECT_EQ(CONNECT_E_NOCONNECTION, source->first.Unadvise(3)) << "twice";
    EXPECT_EQ(E_POINTER, cpc->FindConnectionPoint(kFirstIid, nullptr));
    source->first.UnadviseAll();
    for (const CountingObject* sink : sinks) EXPECT_EQ(1u, sink->RefCount()) << "no sink keeps a reference";
}
