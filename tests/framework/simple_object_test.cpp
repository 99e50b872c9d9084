// SimpleObject: QueryInterface over the listed interfaces with one identity, its refusals, and both
// lifetime policies.
#include <gtest/gtest.h>
#include <ocidl.h>
#include "framework/simple_object.h"

using tov::Implements;
using tov::Lifetime;

namespace {

constexpr IID kEventsIid = {0x3c1d5a7e, 0x52b4, 0x4b8e, {0x9d, 0x11, 0x6e, 0x0a, 0x42, 0x7f, 0x90, 0x35}};

// The dispatch interface comes second, so that a wrong pointer adjustment shows in the identity.
template <Lifetime lifetime>
class Probe final : public tov::SimpleObject<Probe<lifetime>, lifetime,
                                             Implements<IPersistStream, IID_IPersistStream, IID_IPersist>,
                                             Implements<IDispatch, kEventsIid>> {
public:
    explicit Probe(int& destroyed) : m_destroyed(destroyed) {}
    ~Probe() { ++m_destroyed; }

    STDMETHODIMP GetClassID(CLSID*) override { return E_NOTIMPL; }
    STDMETHODIMP IsDirty() override { return S_FALSE; }
    STDMETHODIMP Load(IStream*) override { return E_NOTIMPL; }
    STDMETHODIMP Save(IStream*, BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP GetSizeMax(ULARGE_INTEGER*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override { return E_NOTIMPL; }

private:
    int& m_destroyed;
};

// No interface derived from IDispatch; one identity chosen at run time.
class Sink final : public tov::SimpleObject<Sink, Lifetime::CountOnly, Implements<IPersist>> {
public:
    bool AlsoAnswers(REFIID riid) const noexcept { return IsEqualIID(riid, answered); }
    STDMETHODIMP GetClassID(CLSID*) override { return E_NOTIMPL; }
    IID answered = IID_NULL;
};

void* Query(IUnknown* through, REFIID riid)
{
    void* pv = reinterpret_cast<void*>(1);
    const HRESULT hr = through->QueryInterface(riid, &pv);
    if (FAILED(hr)) {
        EXPECT_EQ(nullptr, pv) << "a refusal clears the out pointer";
        return nullptr;
    }
    return pv;
}

} // namespace

TEST(SimpleObject, AnswersEachListedIdentityWithItsInterfaceAndOneIUnknown)
{
    int destroyed = 0;
    auto* probe = new Probe<Lifetime::DeleteOnLastRelease>(destroyed);
    IPersistStream* const stream = probe;
    IDispatch* const dispatch = probe;
    IUnknown* const identity = stream;
    struct Case {
        const IID* iid;
        void* expected;
        const char* what;
    };
    const Case cases[] = {
        {&IID_IPersistStream, stream, "IPersistStream"},
        {&IID_IPersist, stream, "its base, listed with it"},
        {&kEventsIid, dispatch, "the dispinterface listed with IDispatch"},
        {&IID_IDispatch, dispatch, "IDispatch, from the interface that derives from it"},
        {&IID_IUnknown, identity, "IUnknown"},
    };
    for (IUnknown* through : {static_cast<IUnknown*>(stream), static_cast<IUnknown*>(dispatch)}) {
        for (const Case& c : cases) {
            EXPECT_EQ(c.expected, Query(through, *c.iid)) << c.what;
            EXPECT_EQ(2u, probe->RefCount()) << c.what << ": the answer holds a reference";
            probe->Release();
        }
        EXPECT_EQ(nullptr, Query(through, IID_IStream));
        EXPECT_EQ(E_POINTER, through->QueryInterface(IID_IPersist, nullptr));
        EXPECT_EQ(1u, probe->RefCount()) << "refusals add no reference";
    }
    probe->Release();
    EXPECT_EQ(1, destroyed);
}

TEST(SimpleObject, IDispatchOnlyFromADerivedInterfaceAndRunTimeIdentitiesWithTheIUnknown)
{
    Sink sink;
    IUnknown* const identity = &sink;
    EXPECT_EQ(nullptr, Query(identity, IID_IDispatch));
    EXPECT_EQ(nullptr, Query(identity, IID_IPropertyNotifySink));
    sink.answered = IID_IPropertyNotifySink;
    EXPECT_EQ(identity, Query(identity, IID_IPropertyNotifySink));
    EXPECT_EQ(1u, sink.Release());
}

TEST(SimpleObject, DeleteOnLastReleaseEndsTheObjectAtZeroAndCountOnlyNever)
{
    int destroyed = 0;
    auto* owned = new Probe<Lifetime::DeleteOnLastRelease>(destroyed);
    EXPECT_EQ(2u, owned->AddRef()) << "the creator holds the first reference";
    EXPECT_EQ(1u, owned->Release());
    EXPECT_EQ(0, destroyed);
    EXPECT_EQ(0u, owned->Release());
    EXPECT_EQ(1, destroyed);

    destroyed = 0;
    auto* counted = new Probe<Lifetime::CountOnly>(destroyed);
    EXPECT_EQ(0u, counted->Release());
    EXPECT_EQ(0, destroyed);
    EXPECT_EQ(1u, counted->AddRef()) << "still alive and counting";
    EXPECT_EQ(0u, counted->Release());
    delete counted; // its owner ends it
    EXPECT_EQ(1, destroyed);
}
