#include "hosting/browser_site.h"
#include "control/TOVHTMLControl.h"
#include <mshtml.h>
#include "framework/com_ptr.h"
#include "framework/object_root.h"
#include "framework/variant.h"
#include "hosting/host_policy.h"

using tov::Entry;

namespace {
// {F38BC242-B950-11D1-8918-00C04FC2C836}: the document host's command group (script errors).
constexpr GUID kDocHostCommandHandler = {0xf38bc242, 0xb950, 0x11d1, {0x89, 0x18, 0x00, 0xc0, 0x4f, 0xc2, 0xc8, 0x36}};
} // namespace

void* CBrowserSite::FindInterface(REFIID riid) noexcept
{
    const tov::InterfaceEntry table[] = {
        Entry<IOleClientSite>(IID_IOleClientSite, this),
        Entry<IOleInPlaceSite>(IID_IOleInPlaceSite, this),
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
STDMETHODIMP_(ULONG) CBrowserSite::Release() { return m_control.ReleaseBrowserHeld(); }

// IOleClientSite
STDMETHODIMP CBrowserSite::SaveObject() { return S_OK; }
STDMETHODIMP CBrowserSite::GetMoniker(DWORD, DWORD, IMoniker** ppmk)
{
    if (ppmk) *ppmk = nullptr;
    return E_NOTIMPL;
}
STDMETHODIMP CBrowserSite::GetContainer(IOleContainer** ppContainer)
{
    if (!ppContainer) return E_POINTER;
    *ppContainer = nullptr;
    try {
        return QueryInterface(IID_IOleContainer, reinterpret_cast<void**>(ppContainer)) == S_OK ? S_OK : E_NOINTERFACE;
    } catch (...) {
        tov::ReportCaught(m_control.Failures(), "CBrowserSite::GetContainer");
        return E_FAIL;
    }
}

// The browser asks to be shown: activate it in place again in the control's window.
STDMETHODIMP CBrowserSite::ShowObject()
{
    try {
        m_control.ActivateBrowserInPlace(false);
    } catch (...) {
        tov::ReportCaught(m_control.Failures(), "CBrowserSite::ShowObject");
    }
    return S_OK;
}
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
STDMETHODIMP CBrowserSite::OnInPlaceActivate()
{
    m_control.m_bInPlaceActive = true;
    return S_OK;
}
STDMETHODIMP CBrowserSite::OnUIActivate() { return S_OK; }
// The container's frame and document windows serve the browser too; the rectangles are the control's.
STDMETHODIMP CBrowserSite::GetWindowContext(IOleInPlaceFrame** ppFrame, IOleInPlaceUIWindow** ppDoc, LPRECT lprcPosRect,
                                            LPRECT lprcClipRect, LPOLEINPLACEFRAMEINFO lpFrameInfo)
{
    if (ppFrame) *ppFrame = nullptr;
    if (ppDoc) *ppDoc = nullptr;
    IOleInPlaceSite* containerSite = m_control.ContainerInPlaceSite();
    const HRESULT hr = containerSite ? containerSite->GetWindowContext(ppFrame, ppDoc, lprcPosRect, lprcClipRect, lpFrameInfo)
                                     : E_UNEXPECTED;
    RECT rc{};
    GetClientRect(m_control.ControlWindow(), &rc);
    if (lprcPosRect) *lprcPosRect = rc;
    if (lprcClipRect) *lprcClipRect = rc;
    return hr;
}
STDMETHODIMP CBrowserSite::Scroll(SIZE scrollExtant)
{
    IOleInPlaceSite* site = m_control.ContainerInPlaceSite();
    return site ? site->Scroll(scrollExtant) : E_UNEXPECTED;
}
STDMETHODIMP CBrowserSite::OnUIDeactivate(BOOL) { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::OnInPlaceDeactivate() { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::DiscardUndoState()
{
    IOleInPlaceSite* site = m_control.ContainerInPlaceSite();
    return site ? site->DiscardUndoState() : E_UNEXPECTED;
}
STDMETHODIMP CBrowserSite::DeactivateAndUndo()
{
    IOleInPlaceSite* site = m_control.ContainerInPlaceSite();
    return site ? site->DeactivateAndUndo() : E_UNEXPECTED;
}
STDMETHODIMP CBrowserSite::OnPosRectChange(LPCRECT lprcPosRect)
{
    IOleInPlaceSite* site = m_control.ContainerInPlaceSite();
    return site ? site->OnPosRectChange(lprcPosRect) : E_UNEXPECTED;
}

// IOleControlSite
STDMETHODIMP CBrowserSite::OnControlInfoChanged() { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::LockInPlaceActive(BOOL) { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::GetExtendedControl(IDispatch** ppDisp)
{
    if (ppDisp) *ppDisp = nullptr;
    return E_NOTIMPL;
}
STDMETHODIMP CBrowserSite::TransformCoords(POINTL*, POINTF*, DWORD) { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::TranslateAccelerator(MSG*, DWORD) { return S_FALSE; }
STDMETHODIMP CBrowserSite::OnFocus(BOOL) { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::ShowPropertyFrame() { return E_NOTIMPL; }

// IDocHostUIHandler
STDMETHODIMP CBrowserSite::ShowContextMenu(DWORD, POINT*, IUnknown*, IDispatch*)
{
    return m_control.HandleBrowserCall([&] { return m_control.OnBrowserContextMenu(); });
}
STDMETHODIMP CBrowserSite::GetHostInfo(DOCHOSTUIINFO* pInfo)
{
    if (m_control.m_lUIFlag == 0) return E_NOTIMPL;
    if (!pInfo) return E_POINTER;
    pInfo->dwFlags = static_cast<DWORD>(m_control.m_lUIFlag);
    pInfo->dwDoubleClick = DOCHOSTUIDBLCLK_DEFAULT;
    return S_OK;
}
STDMETHODIMP CBrowserSite::ShowUI(DWORD, IOleInPlaceActiveObject*, IOleCommandTarget*, IOleInPlaceFrame*, IOleInPlaceUIWindow*) { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::HideUI() { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::UpdateUI() { return E_NOTIMPL; }
// The control's own in-place active object would answer these four with E_NOTIMPL.
STDMETHODIMP CBrowserSite::EnableModeless(BOOL) { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::OnDocWindowActivate(BOOL) { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::OnFrameWindowActivate(BOOL) { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) { return E_NOTIMPL; }
STDMETHODIMP CBrowserSite::TranslateAccelerator(LPMSG, const GUID*, DWORD) { return E_NOTIMPL; }
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
// A page's window.external is the browser object itself.
STDMETHODIMP CBrowserSite::GetExternal(IDispatch** ppDispatch)
{
    if (!m_control.m_pWebBrowser) {
        if (ppDispatch) *ppDispatch = nullptr;
        return E_NOTIMPL;
    }
    if (!ppDispatch) return E_POINTER;
    *ppDispatch = m_control.m_pWebBrowser.CopyOut();
    return S_OK;
}
STDMETHODIMP CBrowserSite::TranslateUrl(DWORD, LPWSTR, LPWSTR* ppchURLOut)
{
    if (ppchURLOut) *ppchURLOut = nullptr;
    return E_NOTIMPL;
}
STDMETHODIMP CBrowserSite::FilterDataObject(IDataObject*, IDataObject** ppDORet)
{
    if (ppDORet) *ppDORet = nullptr;
    return E_NOTIMPL;
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
STDMETHODIMP CBrowserSite::LockContainer(BOOL fLock)
{
    return CoLockObjectExternal(m_control.ControllingUnknown(), fLock, TRUE);
}

// IServiceProvider
STDMETHODIMP CBrowserSite::QueryService(REFGUID guidService, REFIID riid, void** ppv)
{
    if (!ppv) return E_POINTER;
    *ppv = nullptr;
    if (IsEqualGUID(guidService, IID_IInternetSecurityManager)) return QueryInterface(riid, ppv);
    if (IsEqualGUID(guidService, IID_IProtectFocus) && IsEqualIID(riid, IID_IProtectFocus)) return QueryInterface(riid, ppv);
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
STDMETHODIMP CBrowserSite::ProcessUrlAction(LPCWSTR pwszUrl, DWORD dwAction, BYTE* pPolicy, DWORD, BYTE*, DWORD, DWORD, DWORD)
{
    const auto answer = tov::host::DecideUrlAction(pwszUrl ? std::wstring_view(pwszUrl) : std::wstring_view(), dwAction);
    if (answer == tov::host::UrlActionAnswer::Default) return INET_E_DEFAULT_ACTION;
    // The browser always passes room for a policy; without a buffer nothing is written.
    if (pPolicy) *pPolicy = answer == tov::host::UrlActionAnswer::Query ? URLPOLICY_QUERY : URLPOLICY_ALLOW;
    return S_OK;
}
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
// No page moves the focus by script.
STDMETHODIMP CBrowserSite::AllowFocusChange(BOOL* pfAllow)
{
    if (!pfAllow) return E_POINTER;
    *pfAllow = FALSE;
    return S_OK;
}

// IOleCommandTarget
STDMETHODIMP CBrowserSite::QueryStatus(const GUID*, ULONG, OLECMD[], OLECMDTEXT*) { return S_OK; }

// Script errors: the error's properties are read from the page's event object and dropped; no dialog is
// shown and the page's scripts keep running.
STDMETHODIMP CBrowserSite::Exec(const GUID* pguidCmdGroup, DWORD nCmdID, DWORD, VARIANT* pvaIn, VARIANT* pvaOut)
{
    if (!pguidCmdGroup || !IsEqualGUID(*pguidCmdGroup, kDocHostCommandHandler)) return OLECMDERR_E_UNKNOWNGROUP;
    if (nCmdID != OLECMDID_SHOWSCRIPTERROR) return OLECMDERR_E_NOTSUPPORTED;
    HRESULT hr = E_INVALIDARG;
    try {
        IUnknown* in = (pvaIn && (pvaIn->vt == VT_UNKNOWN || pvaIn->vt == VT_DISPATCH)) ? pvaIn->punkVal : nullptr;
        tov::ComPtr<IHTMLDocument2> document;
        tov::ComPtr<IHTMLWindow2> window;
        tov::ComPtr<IHTMLEventObj> event;
        if (in) hr = in->QueryInterface(IID_IHTMLDocument2, document.PutVoid());
        if (document) hr = document->get_parentWindow(window.Put());
        document.Reset();
        if (window) hr = window->get_event(event.Put());
        if (event) {
            for (const wchar_t* name : {L"errorLine", L"errorCharacter", L"errorCode", L"errorMessage", L"errorUrl"}) {
                DISPID id = DISPID_UNKNOWN;
                LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
                hr = event->GetIDsOfNames(IID_NULL, names, 1, LOCALE_SYSTEM_DEFAULT, &id);
                if (FAILED(hr)) continue;
                DISPPARAMS none{};
                tov::Variant value;
                hr = event->Invoke(id, IID_NULL, LOCALE_SYSTEM_DEFAULT, DISPATCH_PROPERTYGET, &none, &value, nullptr, nullptr);
            }
        }
    } catch (...) {
        tov::ReportCaught(m_control.Failures(), "CBrowserSite::Exec");
        hr = E_FAIL;
    }
    // Deliberate: the out-argument says TRUE whatever happened, also without an event object.
    if (pvaOut) {
        VariantClear(pvaOut);
        pvaOut->vt = VT_BOOL;
        pvaOut->boolVal = VARIANT_TRUE;
    }
    return hr;
}
