#pragma once
// The class object of a stand-in that lives as long as the process (a global): every CreateInstance
// makes a new T with `Make` (one reference for the caller) and hands out the asked interface. `allow`,
// when given, runs first and may refuse the creation with its failure.
#include <windows.h>
#include <unknwn.h>
#include <new>

namespace tovfe {

// A T made with new (it starts without references) with one reference for the caller.
template <class T> T* MadeWithNew()
{
    T* object = new (std::nothrow) T;
    if (object) object->AddRef();
    return object;
}

template <class T, T* (*Make)() = &MadeWithNew<T>> class StaticClassFactory final : public IClassFactory {
public:
    explicit StaticClassFactory(HRESULT (*allow)() = nullptr) : m_allow(allow) {}

    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override
    {
        if (!ppv) return E_POINTER;
        if (!IsEqualIID(riid, IID_IUnknown) && !IsEqualIID(riid, IID_IClassFactory)) {
            *ppv = nullptr;
            return E_NOINTERFACE;
        }
        *ppv = static_cast<IClassFactory*>(this);
        return S_OK;
    }
    // Not counted: the object is static.
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID riid, void** ppv) override
    {
        if (!ppv) return E_POINTER;
        *ppv = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        if (m_allow) {
            const HRESULT allowed = m_allow();
            if (FAILED(allowed)) return allowed;
        }
        T* object = Make();
        if (!object) return E_OUTOFMEMORY;
        const HRESULT hr = object->QueryInterface(riid, ppv);
        object->Release();
        return hr;
    }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }

private:
    HRESULT (*m_allow)();
};

} // namespace tovfe
