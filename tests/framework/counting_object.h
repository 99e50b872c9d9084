#pragma once
// A COM object for framework tests whose references are observable: it counts AddRef and Release, answers
// IUnknown and one extra interface (IPersist by default), and notes when its last reference went.
#include <windows.h>
#include <ocidl.h>

namespace tovtest {

class CountingObject : public IPersist {
public:
    explicit CountingObject(const IID& extra = IID_IPersist) : m_extra(extra) {}

    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override
    {
        if (!ppv) return E_POINTER;
        ++queries;
        if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, m_extra)) {
            *ppv = static_cast<IPersist*>(this);
            AddRef();
            return S_OK;
        }
        *ppv = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { ++addRefs; return ++refs; }
    STDMETHODIMP_(ULONG) Release() override
    {
        ++releases;
        if (--refs == 0) ++finalReleases;
        return refs;
    }
    STDMETHODIMP GetClassID(CLSID* pClassID) override
    {
        if (pClassID) *pClassID = CLSID_NULL;
        return S_OK;
    }

    ULONG refs = 1; // the test's own reference; the object lives on the test's stack
    int addRefs = 0;
    int releases = 0;
    int queries = 0;
    int finalReleases = 0;

private:
    IID m_extra;
};

} // namespace tovtest
