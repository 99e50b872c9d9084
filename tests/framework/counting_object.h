#pragma once
// A COM object for framework tests whose reference count is observable: it answers IUnknown and one extra
// interface (IPersist by default) and lives on the test's stack, which holds the first reference.
#include <windows.h>
#include <ocidl.h>

namespace tovtest {

class CountingObject : public IPersist {
public:
    explicit CountingObject(const IID& extra = IID_IPersist) : m_extra(extra) {}
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override
    {
        *ppv = IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, m_extra) ? static_cast<IPersist*>(this) : nullptr;
        if (!*ppv) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++refs; }
    STDMETHODIMP_(ULONG) Release() override { return --refs; }
    STDMETHODIMP GetClassID(CLSID*) override { return E_NOTIMPL; }

    ULONG refs = 1;

private:
    IID m_extra;
};

} // namespace tovtest
