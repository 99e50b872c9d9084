#pragma once
// The front end's interfaces as the HTML control uses them, and the identities this project fixes for
// the ones the front end does not publish. A front end (and the stand-ins in frontend/) includes this
// header. Methods stand at the positions the control calls them at, counted from 0 at QueryInterface.
// Never change a GUID published here.
#include <windows.h>
#include <oaidl.h>

// ---- Published by the front end ------------------------------------------------------------------

// The front end's container: hands out its services (position 7).
// {E13A3216-F0E0-11D2-B4B9-006094B9D64F}
inline constexpr IID IID_ITOVFrontendContainer = {0xe13a3216, 0xf0e0, 0x11d2, {0xb4, 0xb9, 0x00, 0x60, 0x94, 0xb9, 0xd6, 0x4f}};
struct ITOVFrontendContainer : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE GetService(REFGUID guidService, REFIID riid, IUnknown** ppService) = 0; // 7
};

// The trace service: service {7BB065F4-3E8E-11D3-90E3-006094B9D64F}, interface {51636D2A-3E8E-11D3-90E3-006094B9D64F}.
inline constexpr GUID SID_TOVTraceSink = {0x7bb065f4, 0x3e8e, 0x11d3, {0x90, 0xe3, 0x00, 0x60, 0x94, 0xb9, 0xd6, 0x4f}};
inline constexpr IID IID_ITOVTraceSink = {0x51636d2a, 0x3e8e, 0x11d3, {0x90, 0xe3, 0x00, 0x60, 0x94, 0xb9, 0xd6, 0x4f}};
struct ITOVTraceSink : IDispatch {
    // One line of text in the thread's ANSI code page, for the component `component`.
    virtual HRESULT STDMETHODCALLTYPE WriteLine(GUID component, LPCSTR text) = 0;            // 7
    virtual HRESULT STDMETHODCALLTYPE GetTraceLevel(GUID component, ULONG* pLevel) = 0;      // 8
};

// The data provider: holds the application server's content by URL. Class {799104C5-04C5-11D0-AC56-080009D23306},
// interface {799104C1-04C5-11D0-AC56-080009D23306}. Only the methods the control calls are named; the
// others keep their places. The two leading strings of the URL methods are always passed empty.
inline constexpr CLSID CLSID_TOVDataProvider = {0x799104c5, 0x04c5, 0x11d0, {0xac, 0x56, 0x08, 0x00, 0x09, 0xd2, 0x33, 0x06}};
inline constexpr IID IID_ITOVDataProvider = {0x799104c1, 0x04c5, 0x11d0, {0xac, 0x56, 0x08, 0x00, 0x09, 0xd2, 0x33, 0x06}};

// The provider's description of the data it holds (get_SubType at position 13).
// {8D67FBE7-123C-47EE-990B-58E8DC442746}
inline constexpr IID IID_ITOVDataFormat = {0x8d67fbe7, 0x123c, 0x47ee, {0x99, 0x0b, 0x58, 0xe8, 0xdc, 0x44, 0x27, 0x46}};
struct ITOVDataFormat : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE Reserved7() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved8() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved9() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved10() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved11() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved12() = 0;
    virtual HRESULT STDMETHODCALLTYPE get_SubType(BSTR* pSubType) = 0;                       // 13
};

// The provider's data container (ResetContainer at position 9).
// {0DEB7E0F-F6E5-433F-AB67-7484F933BDD4}
inline constexpr IID IID_ITOVDataContainer = {0x0deb7e0f, 0xf6e5, 0x433f, {0xab, 0x67, 0x74, 0x84, 0xf9, 0x33, 0xbd, 0xd4}};
struct ITOVDataContainer : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE Reserved7() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved8() = 0;
    virtual HRESULT STDMETHODCALLTYPE ResetContainer() = 0;                                   // 9
};

struct ITOVDataProvider : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE Reserved7() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved8() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved9() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved10() = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDataContainer(IUnknown** ppContainer) = 0;          // 11
    virtual HRESULT STDMETHODCALLTYPE Reserved12() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved13() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved14() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved15() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved16() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved17() = 0;
    virtual HRESULT STDMETHODCALLTYPE SaveDataToFile(BSTR s1, BSTR s2, BSTR path) = 0;        // 18
    virtual HRESULT STDMETHODCALLTYPE GetDataAsStream(LPCWSTR s1, LPCWSTR s2, IStream** ppStream) = 0; // 19
    virtual HRESULT STDMETHODCALLTYPE Reserved20() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved21() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved22() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved23() = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDataAsFormat(LPCWSTR s1, LPCWSTR s2, ITOVDataFormat** ppFormat) = 0; // 24
    virtual HRESULT STDMETHODCALLTYPE Reserved25() = 0;
    virtual HRESULT STDMETHODCALLTYPE SetDataFromStream(LPCWSTR url, BSTR name, IStream* pStream) = 0; // 26
    virtual HRESULT STDMETHODCALLTYPE Reserved27() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved28() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved29() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved30() = 0;
    virtual HRESULT STDMETHODCALLTYPE SetDataFromURL(LPCWSTR s1, LPCWSTR s2, BSTR url) = 0;  // 31
};

// ---- Fixed by this project (the front end does not publish them) ---------------------------------

// The common control interface of the front end's GUI controls.
// {32AFCB7E-3F1C-438B-A7BB-9EE8DFBAF420}
inline constexpr IID IID_ITOVGUIControl = {0x32afcb7e, 0x3f1c, 0x438b, {0xa7, 0xbb, 0x9e, 0xe8, 0xdf, 0xba, 0xf4, 0x20}};
struct ITOVGUIControl : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE SetContainer(IUnknown* pContainer) = 0;               // 3
    virtual HRESULT STDMETHODCALLTYPE HandleEvent(LONG lEvent, IUnknown* pParameter) = 0;   // 4
    virtual HRESULT STDMETHODCALLTYPE ForwardToGUIService(LONG lValue) = 0;                 // 5
};

// Reserved identities for the front end's remaining interfaces, fixed now so they never move:
// ITOVGUITessarilControl      {D3E3CCB7-73B0-4811-9E0D-AC665C1F0EE5}
// _ITOVDataProviderEvents     {8333F4D7-527A-4FAE-8460-8EEE42A1C37E}
// table data object           {C7F50AC2-2983-48F0-94A0-29E4A10DAD7C}
// table line reader           {BB558682-0817-4D95-A4E2-0E886BB30EDF}
// context-menu item           {00C1B3C0-3921-4294-881A-E9C4F6820DB4}
// icon-font service object    {BA9BF342-7467-44DC-981B-592C000C745E}
