// Activation of the hosted browser in the control's window, and the browser's context-menu request.
#include "control/automation_call.h"

using namespace tov;

void CTOVHTMLControl::ActivateBrowserInPlace(bool uiActivate)
{
    const HWND hwnd = ControlWindow();
    RECT rc{};
    if (!m_pOleObject || !GetClientRect(hwnd, &rc)) return;
    ComPtr<IOleClientSite> site;
    QueryInterface(IID_IOleClientSite, site.PutVoid());
    if (uiActivate) {
        // Focus: both verbs, no message.
        m_pOleObject->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site.Get(), 0, hwnd, &rc);
        m_pOleObject->DoVerb(OLEIVERB_UIACTIVATE, nullptr, site.Get(), 0, hwnd, &rc);
        return;
    }
    m_pOleObject->SetClientSite(site.Get());
    MSG msg{};
    m_pOleObject->DoVerb(OLEIVERB_INPLACEACTIVATE, &msg, site.Get(), 0, hwnd, &rc);
}

HRESULT CTOVHTMLControl::OnBrowserContextMenu()
{
    if (!(m_lUIFlag & 2)) return E_NOTIMPL;
    POINT pt{};
    GetCursorPos(&pt);
    FireEvent([&] { m_events.Fire_ContextMenuRequest(pt.x, pt.y); });
    return S_OK;
}

IOleInPlaceSite* CTOVHTMLControl::ContainerInPlaceSite() const
{
    return InPlaceSite();
}
