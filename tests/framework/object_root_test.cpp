// Object root: QueryInterface through the interface table, reference counting, the module lock,
// construction failures, and aggregation (the outer unknown receives the calls of every interface but
// the inner non-delegating unknown). The class factory and the module lock count.
#include <gtest/gtest.h>
#include <ocidl.h>
#include "counting_object.h"
#include "framework/class_factory.h"
#include "framework/com_ptr.h"
#include "framework/object_root.h"

using tov::ComPtr;
using tov::Module;
using tovtest::CountingObject;

namespace {

class TwoFaced final : public tov::ObjectRoot, public IPersist, public IOleWindow {
public:
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override
    {
        return Lookup(riid, {tov::Entry<IPersist>(IID_IPersist, this), tov::Entry<IOleWindow>(IID_IOleWindow, this)});
    }
    STDMETHODIMP GetClassID(CLSID* p) override { if (p) *p = CLSID_NULL; return S_OK; }
    STDMETHODIMP GetWindow(HWND* p) override { if (p) *p = nullptr; return E_FAIL; }
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }

    ~TwoFaced() override { ++destroyed; }
    static inline int destroyed = 0;
    static inline HRESULT constructResult = S_OK;

protected:
    void FinalConstruct() override
    {
        // A reference taken and given back while constructing must not end the object.
        ComPtr<IPersist> self;
        QueryInterface(IID_IPersist, self.PutVoid());
        self.Reset();
        tov::ThrowIfFailed(constructResult);
    }
};

template <class Itf> ComPtr<Itf> Make(REFIID iid, HRESULT* hr = nullptr)
{
    ComPtr<Itf> p;
    const HRESULT r = tov::ObjectRoot::CreateInstance<TwoFaced>(nullptr, iid, p.PutVoid());
    if (hr) *hr = r;
    return p;
}

} // namespace

class ObjectRootTest : public testing::Test {
protected:
    void SetUp() override
    {
        TwoFaced::destroyed = 0;
        TwoFaced::constructResult = S_OK;
        locks = Module::LockCount();
    }
    void TearDown() override { EXPECT_EQ(locks, Module::LockCount()) << "every object let go of the module"; }
    LONG locks = 0;
};

TEST_F(ObjectRootTest, InterfacesShareOneIdentityAndOneCount)
{
    ComPtr<IPersist> persist = Make<IPersist>(IID_IPersist);
    ASSERT_TRUE(persist);
    EXPECT_EQ(locks + 1, Module::LockCount()) << "a live object locks the module";
    ComPtr<IOleWindow> window;
    ASSERT_EQ(S_OK, persist->QueryInterface(IID_IOleWindow, window.PutVoid()));
    ComPtr<IUnknown> id1, id2;
    ASSERT_EQ(S_OK, persist->QueryInterface(IID_IUnknown, id1.PutVoid()));
    ASSERT_EQ(S_OK, window->QueryInterface(IID_IUnknown, id2.PutVoid()));
    EXPECT_EQ(id1.Get(), id2.Get());
    EXPECT_EQ(static_cast<IUnknown*>(persist.Get()), id1.Get()) << "the first table row is the identity";

    void* none = reinterpret_cast<void*>(1);
    EXPECT_EQ(E_NOINTERFACE, persist->QueryInterface(IID_IStream, &none));
    EXPECT_EQ(nullptr, none);
    EXPECT_EQ(E_POINTER, persist->QueryInterface(IID_IPersist, nullptr));

    EXPECT_EQ(5u, persist->AddRef()) << "persist, window, id1, id2 and this one";
    EXPECT_EQ(4u, persist->Release());
    window.Reset();
    id1.Reset();
    id2.Reset();
    EXPECT_EQ(0, TwoFaced::destroyed);
    persist.Reset();
    EXPECT_EQ(1, TwoFaced::destroyed) << "the last release deletes the object";
}

TEST_F(ObjectRootTest, CreationFailuresLeaveNothingBehind)
{
    HRESULT hr = S_OK;
    EXPECT_FALSE(Make<IStream>(IID_IStream, &hr));
    EXPECT_EQ(E_NOINTERFACE, hr);
    EXPECT_EQ(1, TwoFaced::destroyed);

    TwoFaced::constructResult = E_ACCESSDENIED;
    EXPECT_FALSE(Make<IPersist>(IID_IPersist, &hr));
    EXPECT_EQ(E_ACCESSDENIED, hr) << "FinalConstruct's failure is the answer";
    EXPECT_EQ(2, TwoFaced::destroyed);

    EXPECT_EQ(E_POINTER, tov::ObjectRoot::CreateInstance<TwoFaced>(nullptr, IID_IPersist, nullptr));
    CountingObject outer;
    void* pv = reinterpret_cast<void*>(1);
    EXPECT_EQ(CLASS_E_NOAGGREGATION, tov::ObjectRoot::CreateInstance<TwoFaced>(&outer, IID_IPersist, &pv))
        << "an aggregated object is asked for IUnknown only";
    EXPECT_EQ(nullptr, pv);
    EXPECT_EQ(1u, outer.refs);
}

TEST_F(ObjectRootTest, AggregatedTheOuterUnknownReceivesEveryCallButTheInners)
{
    CountingObject outer;
    ComPtr<IUnknown> inner;
    ASSERT_EQ(S_OK, tov::ObjectRoot::CreateInstance<TwoFaced>(&outer, IID_IUnknown, inner.PutVoid()));
    EXPECT_EQ(1u, outer.refs) << "creating the inner object adds no reference to the outer one";

    ComPtr<IOleWindow> window;
    ASSERT_EQ(S_OK, inner->QueryInterface(IID_IOleWindow, window.PutVoid()));
    EXPECT_EQ(2u, outer.refs) << "an interface of the inner object counts on the outer object";
    EXPECT_NE(static_cast<IUnknown*>(window.Get()), inner.Get()) << "the inner unknown is not an interface's";

    const int queries = outer.queries;
    ComPtr<IUnknown> identity;
    ASSERT_EQ(S_OK, window->QueryInterface(IID_IUnknown, identity.PutVoid()));
    EXPECT_EQ(static_cast<IUnknown*>(static_cast<IPersist*>(&outer)), identity.Get()) << "identity is the outer's";
    EXPECT_EQ(queries + 1, outer.queries);
    identity.Reset();

    ComPtr<IUnknown> same;
    ASSERT_EQ(S_OK, inner->QueryInterface(IID_IUnknown, same.PutVoid()));
    EXPECT_EQ(inner.Get(), same.Get()) << "the non-delegating unknown answers IUnknown with itself";
    EXPECT_EQ(2u, outer.refs);
    same.Reset();

    window.Reset();
    EXPECT_EQ(1u, outer.refs);
    EXPECT_EQ(0, TwoFaced::destroyed);
    inner.Reset();
    EXPECT_EQ(1, TwoFaced::destroyed) << "the outer object's release of the inner unknown ends it";
    EXPECT_EQ(outer.addRefs, outer.releases);
}

TEST_F(ObjectRootTest, ClassFactoryLocksTheModuleWhileHeldOrLocked)
{
    {
        tov::ClassFactory<TwoFaced> factory;
        EXPECT_EQ(locks, Module::LockCount()) << "the module's own reference does not lock";
        ComPtr<IClassFactory> held(&factory);
        EXPECT_EQ(locks + 1, Module::LockCount());
        ComPtr<IUnknown> again;
        ASSERT_EQ(S_OK, held->QueryInterface(IID_IUnknown, again.PutVoid()));
        EXPECT_EQ(locks + 1, Module::LockCount()) << "one lock, however many references";
        again.Reset();
        held.Reset();
        EXPECT_EQ(locks, Module::LockCount());

        EXPECT_EQ(S_OK, factory.LockServer(TRUE));
        EXPECT_EQ(S_OK, factory.LockServer(TRUE));
        EXPECT_EQ(locks + 2, Module::LockCount());
        factory.LockServer(FALSE);
        factory.LockServer(FALSE);
        EXPECT_EQ(locks, Module::LockCount());

        ComPtr<IOleWindow> made;
        ASSERT_EQ(S_OK, factory.CreateInstance(nullptr, IID_IOleWindow, made.PutVoid()));
        EXPECT_EQ(locks + 1, Module::LockCount());
        made.Reset();
        EXPECT_EQ(1, TwoFaced::destroyed);

        CountingObject outer;
        ComPtr<IUnknown> inner;
        EXPECT_EQ(CLASS_E_NOAGGREGATION, factory.CreateInstance(&outer, IID_IPersist, inner.PutVoid()));
        EXPECT_EQ(S_OK, factory.CreateInstance(&outer, IID_IUnknown, inner.PutVoid()));
        inner.Reset();

        void* pv = reinterpret_cast<void*>(1);
        EXPECT_EQ(E_NOINTERFACE, factory.QueryInterface(IID_IPersist, &pv));
        EXPECT_EQ(nullptr, pv);
        EXPECT_EQ(E_POINTER, factory.QueryInterface(IID_IClassFactory, nullptr));
    }
}
