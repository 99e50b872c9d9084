#pragma once
// IDispatch of an interface whose callers only call it early-bound (through its vtable): the dispatch
// half answers that it has no type information and no names.
#include <oaidl.h>
#include "framework/hresult_error.h"

namespace tov {

template <class Itf> class EarlyBoundOnly : public Itf {
public:
    STDMETHODIMP GetTypeInfoCount(UINT* n) override { return tov::NotImplemented(n); }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** pp) override { return tov::NotImplemented(pp); }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override { return E_NOTIMPL; }
};

} // namespace tov
