#pragma once
// The class object of one creatable class. It lives as long as the module; while a client holds it
// (a reference beyond the module's own) or has locked it, the module cannot unload.
#include <windows.h>
#include <unknwn.h>
#include "object_root.h"

namespace tov {

template <class T> class ClassFactory final : public IClassFactory {
public:
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override
    {
        if (!ppv) return E_POINTER;
        if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IClassFactory)) {
            *ppv = static_cast<IClassFactory*>(this);
            AddRef();
            return S_OK;
        }
        *ppv = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override
    {
        ULONG c = InterlockedIncrement(&m_cRef);
        if (c == 2) Module::Lock();
        return c;
    }
    STDMETHODIMP_(ULONG) Release() override
    {
        ULONG c = InterlockedDecrement(&m_cRef);
        if (c == 1) Module::Unlock();
        return c;
    }
    STDMETHODIMP CreateInstance(IUnknown* pOuter, REFIID riid, void** ppv) override
    {
        return ObjectRoot::CreateInstance<T>(pOuter, riid, ppv);
    }
    STDMETHODIMP LockServer(BOOL fLock) override
    {
        if (fLock) Module::Lock(); else Module::Unlock();
        return S_OK;
    }

private:
    LONG m_cRef = 1; // the module's own reference
};

} // namespace tov
