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

// Personalisation: the front end's personalisation tool sets and resets control properties by name.
// Positions 4, 6, 7 and 8 are passed on to the control unchanged.
// {D3E3CCB7-73B0-4811-9E0D-AC665C1F0EE5}
inline constexpr IID IID_ITOVGUITessarilControl = {0xd3e3ccb7, 0x73b0, 0x4811, {0x9e, 0x0d, 0xac, 0x66, 0x5c, 0x1f, 0x0e, 0xe5}};
struct ITOVGUITessarilControl : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE SetTessarilProperty(LPCWSTR name, LPCWSTR value) = 0;                    // 3
    virtual HRESULT STDMETHODCALLTYPE TessarilMethod4(LPCWSTR name, LONG kind, VARIANT* value, LONG* result) = 0; // 4
    virtual HRESULT STDMETHODCALLTYPE ResetTessarilProperty() = 0;                                             // 5
    virtual HRESULT STDMETHODCALLTYPE TessarilMethod6(LPCWSTR name) = 0;                                       // 6
    virtual HRESULT STDMETHODCALLTYPE TessarilMethod7(LPCWSTR name, VARIANT* value) = 0;                       // 7
    virtual HRESULT STDMETHODCALLTYPE TessarilMethod8(IUnknown* tool) = 0;                                     // 8
};

// Notifications of the front end's data provider to its controls. Positions 3, 5 and 6 carry
// something to the control; 4, 7, 8 and 9 are answered at once.
// {8333F4D7-527A-4FAE-8460-8EEE42A1C37E}
inline constexpr IID IID__ITOVDataProviderEvents = {0x8333f4d7, 0x527a, 0x4fae, {0x84, 0x60, 0x8e, 0xee, 0x42, 0xa1, 0xc3, 0x7e}};
struct _ITOVDataProviderEvents : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE DataEvent3(IUnknown* provider) = 0;                                      // 3
    virtual HRESULT STDMETHODCALLTYPE DataEvent4(LONG value) = 0;                                              // 4
    virtual HRESULT STDMETHODCALLTYPE DataEvent5(IUnknown* provider, LPCWSTR url, LONG kind, LONG value) = 0;  // 5
    virtual HRESULT STDMETHODCALLTYPE DataEvent6(IUnknown* provider) = 0;                                      // 6
    virtual HRESULT STDMETHODCALLTYPE DataEvent7(LONG value) = 0;                                              // 7
    virtual HRESULT STDMETHODCALLTYPE DataEvent8(LONG value) = 0;                                              // 8
    virtual HRESULT STDMETHODCALLTYPE DataEvent9(LONG value) = 0;                                              // 9
};

// Reserved, unused, fixed now so it never moves: {C7F50AC2-2983-48F0-94A0-29E4A10DAD7C}

// ---- The front end's services (handed out by ITOVFrontendContainer::GetService) ---------------------
// Slots the control never calls are placeholders that keep the positions; an implementation may leave
// them as they are.

// The GUI framework object: service {F5FE53B1-4675-11D2-8787-000000000000} (also its class identity when
// there is no container), interface {F5FE53B0-4675-11D2-8787-000000000000}.
inline constexpr GUID SID_TOVGUIService = {0xf5fe53b1, 0x4675, 0x11d2, {0x87, 0x87, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00}};
inline constexpr GUID IID_ITOVGUIService = {0xf5fe53b0, 0x4675, 0x11d2, {0x87, 0x87, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00}};
struct ITOVGUIServiceChild;
struct ITOVGUIService : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE Reserved7() { return E_NOTIMPL; }
    // The icon-font service (ITOVIconFontService).
    virtual HRESULT STDMETHODCALLTYPE GetIconFontService(IUnknown** ppService) = 0;                          // 8
    virtual HRESULT STDMETHODCALLTYPE Reserved9() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved10() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved11() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE GetServiceChild(ITOVGUIServiceChild** ppChild) = 0;                    // 12
    virtual HRESULT STDMETHODCALLTYPE Reserved13() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved14() { return E_NOTIMPL; }
    // An object whose method at position 11 takes the value of ForwardToGUIService (ITOVGUIForwardTarget).
    virtual HRESULT STDMETHODCALLTYPE GetForwardTarget(IUnknown** ppTarget) = 0;                             // 15
    virtual HRESULT STDMETHODCALLTYPE OnDpiChanged(LONG dpi, LONG scalingFactorX, LONG scalingFactorY) = 0;  // 16
};
// {AA227591-0190-4174-A55F-3864A6CEBFAB}
inline constexpr GUID IID_ITOVGUIForwardTarget = {0xaa227591, 0x0190, 0x4174, {0xa5, 0x5f, 0x38, 0x64, 0xa6, 0xce, 0xbf, 0xab}};
struct ITOVGUIForwardTarget : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE Reserved7() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved8() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved9() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved10() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Forward(LONG lValue) = 0;                                              // 11
};
// The GUI service's child object: the front end's code page at position 24. {59E3207A-E7ED-4086-82A7-8732EB6E30C2}
inline constexpr GUID IID_ITOVGUIServiceChild = {0x59e3207a, 0xe7ed, 0x4086, {0x82, 0xa7, 0x87, 0x32, 0xeb, 0x6e, 0x30, 0xc2}};
struct ITOVGUIServiceChild : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE Reserved7() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved8() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved9() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved10() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved11() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved12() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved13() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved14() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved15() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved16() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved17() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved18() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved19() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved20() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved21() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved22() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved23() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE GetCodePage(UINT* pCodePage) = 0;                                      // 24
};
// The icon-font service. {BA9BF342-7467-44DC-981B-592C000C745E}
inline constexpr GUID IID_ITOVIconFontService = {0xba9bf342, 0x7467, 0x44dc, {0x98, 0x1b, 0x59, 0x2c, 0x00, 0x0c, 0x74, 0x5e}};
struct ITOVIconFontService : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE Reserved7() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved8() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved9() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved10() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved11() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved12() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved13() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved14() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved15() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved16() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved17() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved18() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved19() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE GetIconFontDescByName(BSTR name, BSTR* pDescription) = 0;             // 20
};
// The front end's information service: service {FC301047-7FD6-41CC-9A74-A6B1AE777036},
// interface {C52851E2-9A16-4CF1-BEF3-5603664414E8}.
inline constexpr GUID SID_TOVFrontendInfoService = {0xfc301047, 0x7fd6, 0x41cc, {0x9a, 0x74, 0xa6, 0xb1, 0xae, 0x77, 0x70, 0x36}};
inline constexpr GUID IID_ITOVFrontendInfoService = {0xc52851e2, 0x9a16, 0x4cf1, {0xbe, 0xf3, 0x56, 0x03, 0x66, 0x44, 0x14, 0xe8}};
struct ITOVFrontendInfoService : IDispatch {
    // The front end's language key, e.g. "DE" or "JA".
    virtual HRESULT STDMETHODCALLTYPE GetLanguageKey(BSTR* pKey) = 0;                                        // 7
    virtual HRESULT STDMETHODCALLTYPE Reserved8() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved9() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved10() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved11() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved12() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved13() { return E_NOTIMPL; }
    // The value handed to the control plug-in service.
    virtual HRESULT STDMETHODCALLTYPE GetPluginValue(BSTR* pValue) = 0;                                      // 14
};
// The context-menu service: service {0738DC8E-82BD-11D2-B43F-006094B9D64F}, interface {0738DC8D-82BD-11D2-B43F-006094B9D64F}.
inline constexpr GUID SID_TOVContextMenuService = {0x0738dc8e, 0x82bd, 0x11d2, {0xb4, 0x3f, 0x00, 0x60, 0x94, 0xb9, 0xd6, 0x4f}};
inline constexpr GUID IID_ITOVContextMenuService = {0x0738dc8d, 0x82bd, 0x11d2, {0xb4, 0x3f, 0x00, 0x60, 0x94, 0xb9, 0xd6, 0x4f}};
struct ITOVContextMenuService : IDispatch {
    // Shows the menu object (ITOVContextMenu) at the position set on it.
    virtual HRESULT STDMETHODCALLTYPE ShowContextMenu(IDispatch* pMenu) = 0;                                 // 7
};
// The front end's context menu. {F3FA9E8A-82E1-11D2-B43F-006094B9D64F}
inline constexpr GUID IID_ITOVContextMenu = {0xf3fa9e8a, 0x82e1, 0x11d2, {0xb4, 0x3f, 0x00, 0x60, 0x94, 0xb9, 0xd6, 0x4f}};
struct ITOVContextMenu : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE Reserved7() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE GetItem(LONG index, IUnknown** ppItem) = 0;                             // 8
    virtual HRESULT STDMETHODCALLTYPE GetSelectedIndex(LONG* pIndex) = 0;                                    // 9
    virtual HRESULT STDMETHODCALLTYPE put_PosX(LONG x) = 0;                                                  // 10
    virtual HRESULT STDMETHODCALLTYPE put_PosY(LONG y) = 0;                                                  // 11
};
// An entry of the context menu: its function code at position 8. {00C1B3C0-3921-4294-881A-E9C4F6820DB4}
inline constexpr GUID IID_ITOVContextMenuItem = {0x00c1b3c0, 0x3921, 0x4294, {0x88, 0x1a, 0xe9, 0xc4, 0xf6, 0x82, 0x0d, 0xb4}};
struct ITOVContextMenuItem : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE Reserved7() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE GetFunctionCode(BSTR* pFCode) = 0;                                     // 8
};
// The control plug-in service: service {95805C8C-BC13-473B-A252-791545C1EE0A}, interface {700CBB93-02A5-4D05-A3F2-51D0858846E9}.
inline constexpr GUID SID_TOVControlPluginService = {0x95805c8c, 0xbc13, 0x473b, {0xa2, 0x52, 0x79, 0x15, 0x45, 0xc1, 0xee, 0x0a}};
inline constexpr GUID IID_ITOVControlPluginService = {0x700cbb93, 0x02a5, 0x4d05, {0xa3, 0xf2, 0x51, 0xd0, 0x85, 0x88, 0x46, 0xe9}};
struct ITOVControlPluginService : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE Reserved7() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved8() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved9() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Connect(BSTR value, BOOL bUtf8) = 0;                                   // 10
};
inline constexpr GUID SID_TOVService7 = {0xc1b82522, 0x6e27, 0x11d2, {0x87, 0xc5, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00}};
inline constexpr GUID IID_ITOVService7 = {0xc1b82521, 0x6e27, 0x11d2, {0x87, 0xc5, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00}};
inline constexpr GUID SID_TOVService8 = {0x8d3f88b2, 0xb5f5, 0x4e4a, {0xb4, 0xb6, 0x21, 0x09, 0xd5, 0x17, 0xb8, 0xbe}};
inline constexpr GUID IID_ITOVService8 = {0xf63413f2, 0xbc6a, 0x4e24, {0x9d, 0x9e, 0x1e, 0x6a, 0x30, 0x72, 0x61, 0xc5}};
inline constexpr GUID SID_TOVService9 = {0xa6dcc191, 0xc4a3, 0x4b7b, {0x80, 0x41, 0x52, 0xd2, 0x80, 0x72, 0x2e, 0x86}};
inline constexpr GUID IID_ITOVService9 = {0x69cd9ee2, 0xbf88, 0x4ae4, {0x88, 0x0c, 0x88, 0x89, 0x5e, 0x4a, 0x8b, 0x3b}};
inline constexpr GUID SID_TOVService10 = {0x62cfd1f3, 0x018b, 0x438b, {0x89, 0x40, 0x6c, 0x10, 0x6b, 0xf6, 0xfe, 0x6d}};
inline constexpr GUID IID_ITOVService10 = {0x3bd3ac87, 0x3457, 0x4a3f, {0x8a, 0xf9, 0xd7, 0x13, 0x36, 0x50, 0x87, 0x7e}};
inline constexpr GUID SID_TOVService11 = {0x0b052fd7, 0x1a76, 0x4296, {0xbc, 0x4f, 0x4f, 0xa9, 0x23, 0x68, 0xad, 0x40}};
inline constexpr GUID IID_ITOVService11 = {0x01f89c08, 0x176f, 0x4478, {0xaa, 0x36, 0x77, 0x15, 0xe8, 0x17, 0x4a, 0x5d}};

// ---- Framework event parameters ------------------------------------------------------------------
// The parameter object of an event (e.g. 106): a child record by name at position 11.
// {69B107B9-88E6-45E7-B39F-5DAF7C39B56A}
inline constexpr GUID IID_ITOVEventParameter = {0x69b107b9, 0x88e6, 0x45e7, {0xb3, 0x9f, 0x5d, 0xaf, 0x7c, 0x39, 0xb5, 0x6a}};
struct ITOVEventRecord;
struct ITOVEventParameter : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE Reserved7() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved8() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved9() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved10() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE GetChild(BSTR name, ITOVEventRecord** ppChild) = 0;                   // 11
};
// A child record: attribute text by name, `defaultText` when absent, at position 10.
// {FEEB1F68-BA24-43F8-9C95-5930FCC5EBF2}
inline constexpr GUID IID_ITOVEventRecord = {0xfeeb1f68, 0xba24, 0x43f8, {0x9c, 0x95, 0x59, 0x30, 0xfc, 0xc5, 0xeb, 0xf2}};
struct ITOVEventRecord : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE Reserved7() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved8() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE Reserved9() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE GetAttribute(BSTR name, BSTR defaultText, BSTR* pValue) = 0;          // 10
};

// ---- Tables (scripts arrive as tables of fixed-width text lines) ---------------------------------
// The table: its data object at position 7. {CC6664B0-04C7-11D0-AC56-080009D23306}
inline constexpr GUID IID_ITOVTable = {0xcc6664b0, 0x04c7, 0x11d0, {0xac, 0x56, 0x08, 0x00, 0x09, 0xd2, 0x33, 0x06}};
struct ITOVTable : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE GetDataObject(IUnknown** ppData) = 0;                                  // 7
};
// The table's data: its line reader at position 7. {E56BC140-229A-11D0-AC64-080009D23306}
inline constexpr GUID IID_ITOVTableData = {0xe56bc140, 0x229a, 0x11d0, {0xac, 0x64, 0x08, 0x00, 0x09, 0xd2, 0x33, 0x06}};
struct ITOVTableLineReader;
struct ITOVTableData : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE GetLineReader(ITOVTableLineReader** ppReader) = 0;                     // 7
};
// Reads the lines: width in bytes, count, and line i (from 1) copied into a buffer of `width` bytes.
// {BB558682-0817-4D95-A4E2-0E886BB30EDF}
inline constexpr GUID IID_ITOVTableLineReader = {0xbb558682, 0x0817, 0x4d95, {0xa4, 0xe2, 0x0e, 0x88, 0x6b, 0xb3, 0x0e, 0xdf}};
struct ITOVTableLineReader : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE GetLineWidth(LONG* pWidth) = 0;                                        // 7
    virtual HRESULT STDMETHODCALLTYPE GetLineCount(LONG* pCount) = 0;                                        // 8
    virtual HRESULT STDMETHODCALLTYPE CopyLine(LONG line, LONG width, LPSTR buffer) = 0;                     // 9
};
