// The entry points of the OCX: the class object for the control class only, creation alone and
// aggregated, and the unload answer while controls, class objects or locks live.
#include <gtest/gtest.h>
#include "framework/counting_object.h"
#include "support/ocx.h"

using tov::ComPtr;
using tovtest::CountingObject;
using tovtest::Ocx;

TEST(ClassObject, OnlyTheControlClassIsServed)
{
    Ocx ocx;
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, ocx.GetClassObject(IID_ITOVHTMLControl, IID_IClassFactory, factory.PutVoid()));
    EXPECT_EQ(E_POINTER, ocx.GetClassObject(CLSID_TOVHTMLControl, IID_IClassFactory, nullptr));
    ComPtr<IDispatch> wrong;
    EXPECT_EQ(E_NOINTERFACE, ocx.GetClassObject(CLSID_TOVHTMLControl, IID_IDispatch, wrong.PutVoid()));
}

TEST(ClassObject, UnloadIsRefusedWhileAControlAClassObjectOrALockLives)
{
    Ocx ocx;
    EXPECT_EQ(S_OK, ocx.CanUnloadNow());
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(S_OK, ocx.GetClassObject(CLSID_TOVHTMLControl, IID_IClassFactory, factory.PutVoid()));
    EXPECT_EQ(S_FALSE, ocx.CanUnloadNow()) << "a client holds the class object";
    ComPtr<IDispatch> control;
    ASSERT_EQ(S_OK, factory->CreateInstance(nullptr, IID_IDispatch, control.PutVoid()));
    EXPECT_EQ(S_OK, factory->LockServer(TRUE));
    factory.Reset();
    control.Reset();
    EXPECT_EQ(S_FALSE, ocx.CanUnloadNow()) << "a lock";
    ASSERT_EQ(S_OK, ocx.GetClassObject(CLSID_TOVHTMLControl, IID_IClassFactory, factory.PutVoid()));
    EXPECT_EQ(S_OK, factory->LockServer(FALSE));
    factory.Reset();
    EXPECT_EQ(S_OK, ocx.CanUnloadNow());
}

TEST(ClassObject, CreatesTheControlAggregated)
{
    Ocx ocx;
    CountingObject outer; // the controlling object
    {
        ComPtr<IClassFactory> factory;
        ASSERT_EQ(S_OK, ocx.GetClassObject(CLSID_TOVHTMLControl, IID_IClassFactory, factory.PutVoid()));
        ComPtr<IUnknown> inner, identity, same;
        EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(&outer, IID_ITOVHTMLControl, inner.PutVoid()));
        ASSERT_EQ(S_OK, factory->CreateInstance(&outer, IID_IUnknown, inner.PutVoid()));
        EXPECT_EQ(1u, outer.RefCount()) << "creating the inner control adds no reference to the outer object";
        ComPtr<ITOVHTMLControl> control;
        ASSERT_EQ(S_OK, inner->QueryInterface(IID_ITOVHTMLControl, control.PutVoid()));
        EXPECT_EQ(2u, outer.RefCount()) << "the control's interfaces count on the outer object";
        ASSERT_EQ(S_OK, control->QueryInterface(IID_IUnknown, identity.PutVoid()));
        EXPECT_EQ(static_cast<IUnknown*>(&outer), identity.Get()) << "and answer for its identity";
        ASSERT_EQ(S_OK, inner->QueryInterface(IID_IUnknown, same.PutVoid()));
        EXPECT_EQ(inner.Get(), same.Get()) << "the inner unknown answers IUnknown with itself";
    }
    EXPECT_EQ(1u, outer.RefCount());
    EXPECT_EQ(S_OK, ocx.CanUnloadNow()) << "the outer object's release of the inner unknown ended the control";
}
