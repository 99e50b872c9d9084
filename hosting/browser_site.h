#pragma once
// The site the control offers its hosted browser: a part of the control object (its IUnknown is the
// control's), so the browser finds these interfaces on the control itself.
#include <windows.h>
#include <docobj.h>
#include <mshtmhst.h>
#include <ocidl.h>
#include <servprov.h>
#include <urlmon.h>

class CTOVHTMLControl;

class CBrowserSite : public IOleClientSite,
                     public IOleInPlaceSite,
                     public IOleControlSite,
                     public IDocHostUIHandler,
                     public IOleContainer,
                     public IServiceProvider,
                     public IInternetSecurityManager,
                     public IProtectFocus,
                     public IOleCommandTarget {
public:
    explicit CBrowserSite(CTOVHTMLControl& control) : m_control(control) {}

    // The site's interface for `riid`, or null.
    void* FindInterface(REFIID riid) noexcept;

    // IUnknown: the control's identity.
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;

    // IOleClientSite
    STDMETHODIMP SaveObject() override;
    STDMETHODIMP GetMoniker(DWORD dwAssign, DWORD dwWhichMoniker, IMoniker** ppmk) override;
    STDMETHODIMP GetContainer(IOleContainer** ppContainer) override;
    STDMETHODIMP ShowObject() override;
    STDMETHODIMP OnShowWindow(BOOL fShow) override;
    STDMETHODIMP RequestNewObjectLayout() override;

    // IOleWindow / IOleInPlaceSite
    STDMETHODIMP GetWindow(HWND* phwnd) override;
    STDMETHODIMP ContextSensitiveHelp(BOOL fEnterMode) override;
    STDMETHODIMP CanInPlaceActivate() override;
    STDMETHODIMP OnInPlaceActivate() override;
    STDMETHODIMP OnUIActivate() override;
    STDMETHODIMP GetWindowContext(IOleInPlaceFrame** ppFrame, IOleInPlaceUIWindow** ppDoc, LPRECT lprcPosRect,
                                  LPRECT lprcClipRect, LPOLEINPLACEFRAMEINFO lpFrameInfo) override;
    STDMETHODIMP Scroll(SIZE scrollExtant) override;
    STDMETHODIMP OnUIDeactivate(BOOL fUndoable) override;
    STDMETHODIMP OnInPlaceDeactivate() override;
    STDMETHODIMP DiscardUndoState() override;
    STDMETHODIMP DeactivateAndUndo() override;
    STDMETHODIMP OnPosRectChange(LPCRECT lprcPosRect) override;

    // IOleControlSite
    STDMETHODIMP OnControlInfoChanged() override;
    STDMETHODIMP LockInPlaceActive(BOOL fLock) override;
    STDMETHODIMP GetExtendedControl(IDispatch** ppDisp) override;
    STDMETHODIMP TransformCoords(POINTL* pPtlHimetric, POINTF* pPtfContainer, DWORD dwFlags) override;
    STDMETHODIMP TranslateAccelerator(MSG* pMsg, DWORD grfModifiers) override;
    STDMETHODIMP OnFocus(BOOL fGotFocus) override;
    STDMETHODIMP ShowPropertyFrame() override;

    // IDocHostUIHandler
    STDMETHODIMP ShowContextMenu(DWORD dwID, POINT* ppt, IUnknown* pcmdtReserved, IDispatch* pdispReserved) override;
    STDMETHODIMP GetHostInfo(DOCHOSTUIINFO* pInfo) override;
    STDMETHODIMP ShowUI(DWORD dwID, IOleInPlaceActiveObject* pActiveObject, IOleCommandTarget* pCommandTarget,
                        IOleInPlaceFrame* pFrame, IOleInPlaceUIWindow* pDoc) override;
    STDMETHODIMP HideUI() override;
    STDMETHODIMP UpdateUI() override;
    STDMETHODIMP EnableModeless(BOOL fEnable) override;
    STDMETHODIMP OnDocWindowActivate(BOOL fActivate) override;
    STDMETHODIMP OnFrameWindowActivate(BOOL fActivate) override;
    STDMETHODIMP ResizeBorder(LPCRECT prcBorder, IOleInPlaceUIWindow* pUIWindow, BOOL fRameWindow) override;
    STDMETHODIMP TranslateAccelerator(LPMSG lpMsg, const GUID* pguidCmdGroup, DWORD nCmdID) override;
    STDMETHODIMP GetOptionKeyPath(LPOLESTR* pchKey, DWORD dw) override;
    STDMETHODIMP GetDropTarget(IDropTarget* pDropTarget, IDropTarget** ppDropTarget) override;
    STDMETHODIMP GetExternal(IDispatch** ppDispatch) override;
    STDMETHODIMP TranslateUrl(DWORD dwTranslate, LPWSTR pchURLIn, LPWSTR* ppchURLOut) override;
    STDMETHODIMP FilterDataObject(IDataObject* pDO, IDataObject** ppDORet) override;

    // IParseDisplayName / IOleContainer
    STDMETHODIMP ParseDisplayName(IBindCtx* pbc, LPOLESTR pszDisplayName, ULONG* pchEaten, IMoniker** ppmkOut) override;
    STDMETHODIMP EnumObjects(DWORD grfFlags, IEnumUnknown** ppenum) override;
    STDMETHODIMP LockContainer(BOOL fLock) override;

    // IServiceProvider
    STDMETHODIMP QueryService(REFGUID guidService, REFIID riid, void** ppv) override;

    // IInternetSecurityManager
    STDMETHODIMP SetSecuritySite(IInternetSecurityMgrSite* pSite) override;
    STDMETHODIMP GetSecuritySite(IInternetSecurityMgrSite** ppSite) override;
    STDMETHODIMP MapUrlToZone(LPCWSTR pwszUrl, DWORD* pdwZone, DWORD dwFlags) override;
    STDMETHODIMP GetSecurityId(LPCWSTR pwszUrl, BYTE* pbSecurityId, DWORD* pcbSecurityId, DWORD_PTR dwReserved) override;
    STDMETHODIMP ProcessUrlAction(LPCWSTR pwszUrl, DWORD dwAction, BYTE* pPolicy, DWORD cbPolicy, BYTE* pContext,
                                  DWORD cbContext, DWORD dwFlags, DWORD dwReserved) override;
    STDMETHODIMP QueryCustomPolicy(LPCWSTR pwszUrl, REFGUID guidKey, BYTE** ppPolicy, DWORD* pcbPolicy, BYTE* pContext,
                                   DWORD cbContext, DWORD dwReserved) override;
    STDMETHODIMP SetZoneMapping(DWORD dwZone, LPCWSTR lpszPattern, DWORD dwFlags) override;
    STDMETHODIMP GetZoneMappings(DWORD dwZone, IEnumString** ppenumString, DWORD dwFlags) override;

    // IProtectFocus
    STDMETHODIMP AllowFocusChange(BOOL* pfAllow) override;

    // IOleCommandTarget
    STDMETHODIMP QueryStatus(const GUID* pguidCmdGroup, ULONG cCmds, OLECMD prgCmds[], OLECMDTEXT* pCmdText) override;
    STDMETHODIMP Exec(const GUID* pguidCmdGroup, DWORD nCmdID, DWORD nCmdexecopt, VARIANT* pvaIn, VARIANT* pvaOut) override;

private:
    CTOVHTMLControl& m_control;
};
