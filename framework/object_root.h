#pragma once
// Reference counting, aggregation and QueryInterface through an interface table, for every COM object
// of the module. Single-threaded counting is enough: objects live in one apartment. Every object keeps
// the module locked while it exists.
#include <windows.h>
#include <unknwn.h>
#include <initializer_list>
#include "hresult_error.h"
#include "module.h"

namespace tov {

struct InterfaceEntry {
    const IID* piid;
    void* pItf;
};

// One row of an interface table: the interface pointer of `self` for `iid`.
template <class Itf, class T> InterfaceEntry Entry(const IID& iid, T* self) noexcept
{
    return {&iid, static_cast<Itf*>(self)};
}

class ObjectRoot {
public:
    ObjectRoot() noexcept { Module::Lock(); }
    virtual ~ObjectRoot() { Module::Unlock(); }
    ObjectRoot(const ObjectRoot&) = delete;
    ObjectRoot& operator=(const ObjectRoot&) = delete;

    // The object's interfaces for `riid` without a new reference, or null. IUnknown must be answered.
    virtual void* FindInterface(REFIID riid) noexcept = 0;

    HRESULT InternalQueryInterface(REFIID riid, void** ppv) noexcept
    {
        if (!ppv) return E_POINTER;
        *ppv = FindInterface(riid);
        if (!*ppv) return E_NOINTERFACE;
        static_cast<IUnknown*>(*ppv)->AddRef();
        return S_OK;
    }
    ULONG InternalAddRef() noexcept { return ++m_cRef; }
    ULONG InternalRelease() noexcept
    {
        ULONG c = --m_cRef;
        if (c == 0) {
            m_cRef = 1; // guards against re-entrant releases while the object goes away
            OnLastRelease();
        }
        return c;
    }

    // The identity that QueryInterface, AddRef and Release of every interface go to.
    IUnknown* ControllingUnknown() noexcept
    {
        return m_pOuter ? m_pOuter : static_cast<IUnknown*>(FindInterface(IID_IUnknown));
    }
    HRESULT OuterQueryInterface(REFIID riid, void** ppv) noexcept
    {
        return m_pOuter ? m_pOuter->QueryInterface(riid, ppv) : InternalQueryInterface(riid, ppv);
    }
    ULONG OuterAddRef() noexcept { return m_pOuter ? m_pOuter->AddRef() : InternalAddRef(); }
    ULONG OuterRelease() noexcept { return m_pOuter ? m_pOuter->Release() : InternalRelease(); }

    // Creation helper: makes T (alone or aggregated in pOuter) and hands out `riid`.
    template <class T> static HRESULT CreateInstance(IUnknown* pOuter, REFIID riid, void** ppv) noexcept;

protected:
    static void* Lookup(REFIID riid, std::initializer_list<InterfaceEntry> table) noexcept
    {
        for (const auto& e : table)
            if (IsEqualIID(riid, *e.piid)) return e.pItf;
        if (IsEqualIID(riid, IID_IUnknown) && table.size() > 0) return table.begin()->pItf;
        return nullptr;
    }

    // Called once after construction, before the first interface is handed out; may throw.
    virtual void FinalConstruct() {}
    // The last reference is gone: the object frees itself. An object that others still reach through
    // pointers counted apart from its references may postpone that until they let go.
    virtual void OnLastRelease() noexcept { delete this; }

private:
    // The non-delegating unknown an aggregating outer object holds.
    class InnerUnknown : public IUnknown {
    public:
        explicit InnerUnknown(ObjectRoot* owner) noexcept : m_owner(owner) {}
        STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override
        {
            if (!ppv) return E_POINTER;
            if (IsEqualIID(riid, IID_IUnknown)) { *ppv = this; AddRef(); return S_OK; }
            return m_owner->InternalQueryInterface(riid, ppv);
        }
        STDMETHODIMP_(ULONG) AddRef() override { return m_owner->InternalAddRef(); }
        STDMETHODIMP_(ULONG) Release() override { return m_owner->InternalRelease(); }

    private:
        ObjectRoot* m_owner;
    };

    ULONG m_cRef = 0;
    IUnknown* m_pOuter = nullptr;
    InnerUnknown m_inner{this};

};

template <class T> HRESULT ObjectRoot::CreateInstance(IUnknown* pOuter, REFIID riid, void** ppv) noexcept
{
    if (!ppv) return E_POINTER;
    *ppv = nullptr;
    if (pOuter && !IsEqualIID(riid, IID_IUnknown)) return CLASS_E_NOAGGREGATION;
    T* p = nullptr;
    try {
        p = new T();
    } catch (...) {
        return HResultFromCurrentException();
    }
    ObjectRoot* root = p;
    root->m_pOuter = pOuter;
    root->m_cRef = 1; // held during FinalConstruct so a QI/Release pair inside it cannot delete the object
    HRESULT hr = GuardedCall([&] { root->FinalConstruct(); return S_OK; });
    if (SUCCEEDED(hr)) {
        if (pOuter) {
            *ppv = &root->m_inner;
            root->m_inner.AddRef();
        } else {
            hr = root->InternalQueryInterface(riid, ppv);
        }
    }
    root->InternalRelease();
    return hr;
}

// IUnknown for a class derived from ObjectRoot: everything goes to the controlling unknown.
#define TOV_IUNKNOWN_DELEGATING                                                                    \
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override { return OuterQueryInterface(riid, ppv); } \
    STDMETHODIMP_(ULONG) AddRef() override { return OuterAddRef(); }                               \
    STDMETHODIMP_(ULONG) Release() override { return OuterRelease(); }

} // namespace tov
