// The class object, creation alone and aggregated, and the module's unload answer.
#include <gtest/gtest.h>
#include "support/ocx.h"
#include "framework/variant.h"

using tov::ComPtr;
using tovtest::Ocx;

namespace {

// {00000000-1111-2222-3333-444444444444}
constexpr CLSID kOtherClass = {0, 0x1111, 0x2222, {0x33, 0x33, 0x44, 0x44, 0x44, 0x44, 0x44, 0x44}};

// A minimal controlling object for aggregation.
class Outer : public IUnknown {
public:
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override
    {
        if (IsEqualIID(riid, IID_IUnknown)) { *ppv = this; AddRef(); return S_OK; }
        ++innerQueries;
        return inner ? inner->QueryInterface(riid, ppv) : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++refs; }
    STDMETHODIMP_(ULONG) Release() override { return --refs; }
    ULONG refs = 1;
    int innerQueries = 0;
    IUnknown* inner = nullptr;
};

} // namespace

TEST(ClassObject, OnlyTheControlClassIsServed)
{
    Ocx ocx;
    void* p = reinterpret_cast<void*>(1);
    EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, ocx.GetClassObject(kOtherClass, IID_IClassFactory, &p));
    EXPECT_EQ(nullptr, p);
    EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, ocx.GetClassObject(IID_ITOVHTMLControl, IID_IClassFactory, &p));
    EXPECT_EQ(E_POINTER, ocx.GetClassObject(CLSID_TOVHTMLControl, IID_IClassFactory, nullptr));

    ComPtr<IClassFactory> factory;
    ASSERT_EQ(S_OK, ocx.GetClassObject(CLSID_TOVHTMLControl, IID_IClassFactory, factory.PutVoid()));
    ComPtr<IClassFactory> again;
    ASSERT_EQ(S_OK, ocx.GetClassObject(CLSID_TOVHTMLControl, IID_IClassFactory, again.PutVoid()));
    EXPECT_EQ(factory.Get(), again.Get()) << "the class object is cached per module";
    ComPtr<IDispatch> wrong;
    EXPECT_EQ(E_NOINTERFACE, ocx.GetClassObject(CLSID_TOVHTMLControl, IID_IDispatch, wrong.PutVoid()));
}

TEST(ClassObject, UnloadIsRefusedWhileAControlOrALockLives)
{
    Ocx ocx;
    EXPECT_EQ(S_OK, ocx.CanUnloadNow());
    {
        ComPtr<IClassFactory> factory;
        ASSERT_EQ(S_OK, ocx.GetClassObject(CLSID_TOVHTMLControl, IID_IClassFactory, factory.PutVoid()));
        EXPECT_EQ(S_FALSE, ocx.CanUnloadNow()) << "a client holds the class object";
        ComPtr<ITOVHTMLControl> control;
        ASSERT_EQ(S_OK, factory->CreateInstance(nullptr, IID_ITOVHTMLControl, control.PutVoid()));
        factory.Reset();
        EXPECT_EQ(S_FALSE, ocx.CanUnloadNow());
        ComPtr<IDispatch> disp;
        ASSERT_EQ(S_OK, control->QueryInterface(IID_IDispatch, disp.PutVoid()));
        control.Reset();
        EXPECT_EQ(S_FALSE, ocx.CanUnloadNow()) << "a second interface still holds the control";
    }
    EXPECT_EQ(S_OK, ocx.CanUnloadNow());

    ComPtr<IClassFactory> factory;
    ASSERT_EQ(S_OK, ocx.GetClassObject(CLSID_TOVHTMLControl, IID_IClassFactory, factory.PutVoid()));
    EXPECT_EQ(S_OK, factory->LockServer(TRUE));
    factory.Reset();
    EXPECT_EQ(S_FALSE, ocx.CanUnloadNow());
    ASSERT_EQ(S_OK, ocx.GetClassObject(CLSID_TOVHTMLControl, IID_IClassFactory, factory.PutVoid()));
    EXPECT_EQ(S_OK, factory->LockServer(FALSE));
    factory.Reset();
    EXPECT_EQ(S_OK, ocx.CanUnloadNow());
}

TEST(ClassObject, CreatesTheControlAggregated)
{
    Ocx ocx;
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(S_OK, ocx.GetClassObject(CLSID_TOVHTMLControl, IID_IClassFactory, factory.PutVoid()));

    Outer outer;
    void* p = nullptr;
    EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(&outer, IID_ITOVHTMLControl, &p));
    EXPECT_EQ(nullptr, p);

    IUnknown* inner = nullptr;
    ASSERT_EQ(S_OK, factory->CreateInstance(&outer, IID_IUnknown, reinterpret_cast<void**>(&inner)));
    outer.inner = inner;
    ComPtr<ITOVHTMLControl> control;
    ASSERT_EQ(S_OK, inner->QueryInterface(IID_ITOVHTMLControl, control.PutVoid()));
    const ULONG before = outer.refs;
    // Interfaces of the aggregated control answer for the outer object's identity.
    ComPtr<IUnknown> identity;
    ASSERT_EQ(S_OK, control->QueryInterface(IID_IUnknown, identity.PutVoid()));
    EXPECT_EQ(static_cast<IUnknown*>(&outer), identity.Get());
    identity.Reset();
    EXPECT_EQ(before, outer.refs);
    LONG version = 0;
    EXPECT_EQ(S_OK, control->get_Version(&version));
    EXPECT_EQ(62, version);
    control.Reset();
    EXPECT_EQ(S_FALSE, ocx.CanUnloadNow());
    EXPECT_EQ(0u, inner->Release());
    EXPECT_EQ(S_FALSE, ocx.CanUnloadNow()) << "the factory is still held";
    factory.Reset();
    EXPECT_EQ(S_OK, ocx.CanUnloadNow());
}

TEST(ClassObject, VersionAnswersEarlyAndLateBound)
{
    Ocx ocx;
    auto control = ocx.CreateControl();
    ASSERT_TRUE(control);
    LONG version = 0;
    EXPECT_EQ(S_OK, control->get_Version(&version));
    EXPECT_EQ(62, version);

    ComPtr<IDispatch> disp;
    ASSERT_EQ(S_OK, control->QueryInterface(IID_IDispatch, disp.PutVoid()));
    LPOLESTR name = const_cast<LPOLESTR>(L"version");
    DISPID id = 0;
    ASSERT_EQ(S_OK, disp->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id));
    EXPECT_EQ(32, id);
    DISPPARAMS none{};
    tov::Variant result;
    ASSERT_EQ(S_OK, disp->Invoke(32, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &result, nullptr, nullptr));
    EXPECT_EQ(VT_I4, result.vt);
    EXPECT_EQ(62, result.lVal);
    EXPECT_EQ(DISP_E_UNKNOWNINTERFACE,
              disp->Invoke(32, IID_IUnknown, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &result, nullptr, nullptr));
    EXPECT_EQ(DISP_E_MEMBERNOTFOUND,
              disp->Invoke(999, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, &result, nullptr, nullptr));
}

TEST(ClassObject, EntryPointsAreExportedAtOrdinalsOneToFour)
{
    Ocx ocx;
    const char* names[] = {"DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer", "DllUnregisterServer"};
    for (WORD ordinal = 1; ordinal <= 4; ++ordinal) {
        FARPROC byOrdinal = GetProcAddress(ocx.Handle(), MAKEINTRESOURCEA(ordinal));
        ASSERT_NE(nullptr, byOrdinal) << ordinal;
        EXPECT_EQ(GetProcAddress(ocx.Handle(), names[ordinal - 1]), byOrdinal) << names[ordinal - 1];
    }
    EXPECT_EQ(nullptr, GetProcAddress(ocx.Handle(), MAKEINTRESOURCEA(5)));
}
