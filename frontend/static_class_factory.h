#pragma once
// The class object of a stand-in that lives as long as the process (a global): every CreateInstance
// makes a new T with `Make` (one reference for the caller) and hands out the asked interface. `allow`,
// when given, runs first and may refuse the creation with its failure.
#include <windows.h>
#include <unknwn.h>
#include <new>
#include "framework/simple_object.h"

namespace tovfe {

// A T made with new; as a SimpleObject it starts with the one reference for the caller.
template <class T> T* MadeWithNew()
{
    return new (std::nothrow) T;
}

template <class T, T* (*Make)() = &MadeWithNew<T>>
class StaticClassFactory final
    : public tov::SimpleObject<StaticClassFactory<T, Make>, tov::Lifetime::CountOnly,
                               tov::Implements<IClassFactory, IID_IClassFactory>> {
public:
    explicit StaticClassFactory(HRESULT (*allow)() = nullptr) : m_allow(allow) {}

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
