#include "hosting/browser_site.h"
#include "control/TOVHTMLControl.h"
#include "framework/object_root.h"

using tov::Entry;

void* CBrowserSite::FindInterface(REFIID riid) noexcept
{
    const tov::InterfaceEntry table[] = {
        Entry<IOleClientSite>(IID_IOleClientSite, this),
        Entry<IOleInPlaceSite>(IID_IOleInPlaceSite, this),
        Entry<IOleInPlaceSite>(IID_IOleWindow, this),
        Entry<IOleControlSite>(IID_IOleControlSite, this),
        Entry<IDocHostUIHandler>(IID_IDocHostUIHandler, this),
        Entry<IOleContainer>(IID_IOleContainer, this),
        Entry<IOleContainer>(IID_IParseDisplayName, this),
        Entry<IServiceProvider>(IID_IServiceProvider, this),
        Entry<IInternetSecurityManager>(IID_IInternetSecurityManager, this),
        Entry<IProtectFocus>(IID_IProtectFocus, this),
        Entry<IOleCommandTarget>(IID_IOleCommandTarget, this),
    };
    for (const auto& e : table)
        if (IsEqualIID(riid, *e.piid)) return e.pItf;
    return nullptr;
}

STDMETHODIMP CBrowserSite::QueryInterface(REFIID riid, void** ppv) { return m_control.ControllingUnknown()->QueryInterface(riid, ppv); }
// The browser holds its site and its sinks while the control holds the browser. Those references are
// counted apart from the control's own, so that the front end's last release still ends the control and
// its tear-down lets the browser go.
STDMETHODIMP_(ULONG) CBrowserSite::AddRef() { return ++m_control.m_cBrowserHeldRefs; }
STDMETHODIMP_(ULONG) CBrowserSite::Release() { return --m_control.m_cBrowserHeldRefs; }

// IOleClientSite
STDMETHODIMP CBrowserSite::SaveObject() { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::GetMoniker(DWORD, DWORD, IMoniker** ppmk)
{
    if (ppmk) *ppmk = nullptr;
    return E_NOTIMPL;
}
STDMETHODIMP CBrowserSite::GetContainer(IOleContainer** ppContainer)
{
    if (!ppContainer) return E_POINTER;
    *ppContainer = static_cast<IOleContainer*>(this);
    AddRef();
    return S_OK;
}
STDMETHODIMP CBrowserSite::ShowObject() { return S_OK; }
STDMETHODIMP CBrowserSite::OnShowWindow(BOOL) { return S_OK; }
STDMETHODIMP CBrowserSite::RequestNewObjectLayout() { return E_NOTIMPL; }

// IOleInPlaceSite
STDMETHODIMP CBrowserSite::GetWindow(HWND* phwnd)
{
    if (!phwnd) return E_POINTER;
    *phwnd = m_control.ControlWindow();
    return *phwnd ? S_OK : E_FAIL;
}
STDMETHODIMP CBrowserSite::ContextSensitiveHelp(BOOL) { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::CanInPlaceActivate() { return S_OK; }
STDMETHODIMP CBrowserSite::OnInPlaceActivate() { return S_OK; }
STDMETHODIMP CBrowserSite::OnUIActivate() { return S_OK; }
STDMETHODIMP CBrowserSite::GetWindowContext(IOleInPlaceFrame** ppFrame, IOleInPlaceUIWindow** ppDoc, LPRECT lprcPosRect,
                                            LPRECT lprcClipRect, LPOLEINPLACEFRAMEINFO lpFrameInfo)
{
    if (ppFrame) *ppFrame = nullptr;
    if (ppDoc) *ppDoc = nullptr;
    RECT rc{};
    GetClientRect(m_control.ControlWindow(), &rc);
    if (lprcPosRect) *lprcPosRect = rc;
    if (lprcClipRect) *lprcClipRect = rc;
    if (lpFrameInfo) {
        lpFrameInfo->fMDIApp = FALSE;
        lpFrameInfo->hwndFrame = GetAncestor(m_control.ControlWindow(), GA_ROOT);
        lpFrameInfo->haccel = nullptr;
        lpFrameInfo->cAccelEntries = 0;
    }
    return S_OK;
}
STDMETHODIMP CBrowserSite::Scroll(SIZE) { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::OnUIDeactivate(BOOL) { return S_OK; }
STDMETHODIMP CBrowserSite::OnInPlaceDeactivate() { return S_OK; }
STDMETHODIMP CBrowserSite::DiscardUndoState() { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::DeactivateAndUndo() { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::OnPosRectChange(LPCRECT) { return S_OK; }

// IOleControlSite
STDMETHODIMP CBrowserSite::OnControlInfoChanged() { return S_OK; }
STDMETHODIMP CBrowserSite::LockInPlaceActive(BOOL) { return S_OK; }
STDMETHODIMP CBrowserSite::GetExtendedControl(IDispatch** ppDisp)
{
    if (ppDisp) *ppDisp = nullptr;
    return E_NOTIMPL;
}
STDMETHODIMP CBrowserSite::TransformCoords(POINTL*, POINTF*, DWORD) { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::TranslateAccelerator(MSG*, DWORD) { return S_FALSE; }
STDMETHODIMP CBrowserSite::OnFocus(BOOL) { return S_OK; }
STDMETHODIMP CBrowserSite::ShowPropertyFrame() { return E_NOTIMPL; }

// IDocHostUIHandler
STDMETHODIMP CBrowserSite::ShowContextMenu(DWORD, POINT*, IUnknown*, IDispatch*) { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::GetHostInfo(DOCHOSTUIINFO*) { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::ShowUI(DWORD, IOleInPlaceActiveObject*, IOleCommandTarget*, IOleInPlaceFrame*, IOleInPlaceUIWindow*) { return S_FALSE; }
STDMETHODIMP CBrowserSite::HideUI() { return S_OK; }
STDMETHODIMP CBrowserSite::UpdateUI() { return S_OK; }
STDMETHODIMP CBrowserSite::EnableModeless(BOOL) { return S_OK; }
STDMETHODIMP CBrowserSite::OnDocWindowActivate(BOOL) { return S_OK; }
STDMETHODIMP CBrowserSite::OnFrameWindowActivate(BOOL) { return S_OK; }
STDMETHODIMP CBrowserSite::ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) { return S_OK; }
STDMETHODIMP CBrowserSite::TranslateAccelerator(LPMSG, const GUID*, DWORD) { return S_FALSE; }
STDMETHODIMP CBrowserSite::GetOptionKeyPath(LPOLESTR* pchKey, DWORD)
{
    if (pchKey) *pchKey = nullptr;
    return E_NOTIMPL;
}
STDMETHODIMP CBrowserSite::GetDropTarget(IDropTarget*, IDropTarget** ppDropTarget)
{
    if (ppDropTarget) *ppDropTarget = nullptr;
    return E_NOTIMPL;
}
STDMETHODIMP CBrowserSite::GetExternal(IDispatch** ppDispatch)
{
    if (ppDispatch) *ppDispatch = nullptr;
    return E_NOTIMPL;
}
STDMETHODIMP CBrowserSite::TranslateUrl(DWORD, LPWSTR, LPWSTR* ppchURLOut)
{
    if (ppchURLOut) *ppchURLOut = nullptr;
    return S_FALSE;
}
STDMETHODIMP CBrowserSite::FilterDataObject(IDataObject*, IDataObject** ppDORet)
{
    if (ppDORet) *ppDORet = nullptr;
    return S_FALSE;
}

// IOleContainer
STDMETHODIMP CBrowserSite::ParseDisplayName(IBindCtx*, LPOLESTR, ULONG*, IMoniker** ppmkOut)
{
    if (ppmkOut) *ppmkOut = nullptr;
    return E_NOTIMPL;
}
STDMETHODIMP CBrowserSite::EnumObjects(DWORD, IEnumUnknown** ppenum)
{
    if (ppenum) *ppenum = nullptr;
    return E_NOTIMPL;
}
STDMETHODIMP CBrowserSite::LockContainer(BOOL) { return S_OK; }

// IServiceProvider
STDMETHODIMP CBrowserSite::QueryService(REFGUID, REFIID, void** ppv)
{
    if (!ppv) return E_POINTER;
    *ppv = nullptr;
    return E_NOINTERFACE;
}

// IInternetSecurityManager: everything goes to the default manager unless decided here.
STDMETHODIMP CBrowserSite::SetSecuritySite(IInternetSecurityMgrSite*) { return INET_E_DEFAULT_ACTION; }
STDMETHODIMP CBrowserSite::GetSecuritySite(IInternetSecurityMgrSite** ppSite)
{
    if (ppSite) *ppSite = nullptr;
    return INET_E_DEFAULT_ACTION;
}
STDMETHODIMP CBrowserSite::MapUrlToZone(LPCWSTR, DWORD*, DWORD) { return INET_E_DEFAULT_ACTION; }
STDMETHODIMP CBrowserSite::GetSecurityId(LPCWSTR, BYTE*, DWORD*, DWORD_PTR) { return INET_E_DEFAULT_ACTION; }
STDMETHODIMP CBrowserSite::ProcessUrlAction(LPCWSTR, DWORD, BYTE*, DWORD, BYTE*, DWORD, DWORD, DWORD) { return INET_E_DEFAULT_ACTION; }
STDMETHODIMP CBrowserSite::QueryCustomPolicy(LPCWSTR, REFGUID, BYTE** ppPolicy, DWORD* pcbPolicy, BYTE*, DWORD, DWORD)
{
    if (ppPolicy) *ppPolicy = nullptr;
    if (pcbPolicy) *pcbPolicy = 0;
    return INET_E_DEFAULT_ACTION;
}
STDMETHODIMP CBrowserSite::SetZoneMapping(DWORD, LPCWSTR, DWORD) { return INET_E_DEFAULT_ACTION; }
STDMETHODIMP CBrowserSite::GetZoneMappings(DWORD, IEnumString** ppenumString, DWORD)
{
    if (ppenumString) *ppenumString = nullptr;
    return INET_E_DEFAULT_ACTION;
}

// IProtectFocus
STDMETHODIMP CBrowserSite::AllowFocusChange(BOOL* pfAllow)
{
    if (!pfAllow) return E_POINTER;
    *pfAllow = TRUE;
    return S_OK;
}

// IOleCommandTarget
STDMETHODIMP CBrowserSite::QueryStatus(const GUID*, ULONG, OLECMD[], OLECMDTEXT*) { return OLECMDERR_E_UNKNOWNGROUP; }
STDMETHODIMP CBrowserSite::Exec(const GUID*, DWORD, DWORD, VARIANT*, VARIANT*) { return OLECMDERR_E_UNKNOWNGROUP; }
