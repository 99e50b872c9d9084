#pragma once
// The platform's registry-script interpreter (atl.dll's Registrar object).
#include <windows.h>
#include <unknwn.h>

// {44EC053A-400F-11D0-9DCD-00A0C90391D3}
inline constexpr CLSID CLSID_TovRegistrar = {0x44ec053a, 0x400f, 0x11d0, {0x9d, 0xcd, 0x00, 0xa0, 0xc9, 0x03, 0x91, 0xd3}};
// {44EC053B-400F-11D0-9DCD-00A0C90391D3}
inline constexpr IID IID_TovIRegistrar = {0x44ec053b, 0x400f, 0x11d0, {0x9d, 0xcd, 0x00, 0xa0, 0xc9, 0x03, 0x91, 0xd3}};

struct ITovRegistrar : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE AddReplacement(LPCOLESTR key, LPCOLESTR item) = 0;
    virtual HRESULT STDMETHODCALLTYPE ClearReplacements() = 0;
    virtual HRESULT STDMETHODCALLTYPE ResourceRegisterSz(LPCOLESTR resFileName, LPCOLESTR szID, LPCOLESTR szType) = 0;
    virtual HRESULT STDMETHODCALLTYPE ResourceUnregisterSz(LPCOLESTR resFileName, LPCOLESTR szID, LPCOLESTR szType) = 0;
    virtual HRESULT STDMETHODCALLTYPE FileRegister(LPCOLESTR fileName) = 0;
    virtual HRESULT STDMETHODCALLTYPE FileUnregister(LPCOLESTR fileName) = 0;
    virtual HRESULT STDMETHODCALLTYPE StringRegister(LPCOLESTR data) = 0;
    virtual HRESULT STDMETHODCALLTYPE StringUnregister(LPCOLESTR data) = 0;
    virtual HRESULT STDMETHODCALLTYPE ResourceRegister(LPCOLESTR resFileName, UINT nID, LPCOLESTR szType) = 0;
    virtual HRESULT STDMETHODCALLTYPE ResourceUnregister(LPCOLESTR resFileName, UINT nID, LPCOLESTR szType) = 0;
};
