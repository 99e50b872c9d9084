#pragma once
// IDispatch of a dual interface through the embedded type library, so that a late-bound call by name or
// DISPID reaches the same vtable method as an early-bound one.
#include <windows.h>
#include <oaidl.h>
#include "com_ptr.h"
#include "module.h"

namespace tov {

template <class Itf, const IID* piid> class DispatchImpl : public Itf {
public:
    STDMETHODIMP GetTypeInfoCount(UINT* pctinfo) override
    {
        if (!pctinfo) return E_POINTER;
        *pctinfo = 1;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT iTInfo, LCID, ITypeInfo** ppTInfo) override
    {
        if (!ppTInfo) return E_POINTER;
        *ppTInfo = nullptr;
        if (iTInfo != 0) return DISP_E_BADINDEX;
        return Module::GetTypeInfo(*piid, ppTInfo);
    }
    STDMETHODIMP GetIDsOfNames(REFIID riid, LPOLESTR* rgszNames, UINT cNames, LCID, DISPID* rgDispId) override
    {
        if (!IsEqualIID(riid, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
        ComPtr<ITypeInfo> typeInfo;
        HRESULT hr = Module::GetTypeInfo(*piid, typeInfo.Put());
        if (FAILED(hr)) return hr;
        return DispGetIDsOfNames(typeInfo.Get(), rgszNames, cNames, rgDispId);
    }
    STDMETHODIMP Invoke(DISPID dispIdMember, REFIID riid, LCID, WORD wFlags, DISPPARAMS* pDispParams,
                        VARIANT* pVarResult, EXCEPINFO* pExcepInfo, UINT* puArgErr) override
    {
        if (!IsEqualIID(riid, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
        ComPtr<ITypeInfo> typeInfo;
        HRESULT hr = Module::GetTypeInfo(*piid, typeInfo.Put());
        if (FAILED(hr)) return hr;
        DISPPARAMS none{};
        return typeInfo->Invoke(static_cast<Itf*>(this), dispIdMember, wFlags, pDispParams ? pDispParams : &none,
                                pVarResult, pExcepInfo, puArgErr);
    }
};

} // namespace tov
