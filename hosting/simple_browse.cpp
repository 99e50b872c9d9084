// The Simple Browse window: new windows that pages ask for open in a dialog of the control's own.
#include "control/automation_call.h"
#include "server/resource.h"

extern "C" HRESULT WINAPI AtlAxGetControl(HWND hWnd, IUnknown** pp);

using namespace tov;

namespace {

// The control hosted in a control-host window of the dialog machinery. The registered message answers
// without a reference; the platforms that answer it with nothing name the same object through
// AtlAxGetControl.
ComPtr<IUnknown> HostedControl(HWND host)
{
    static const UINT getControl = RegisterWindowMessageW(L"WM_ATLGETCONTROL");
    ComPtr<IUnknown> control(reinterpret_cast<IUnknown*>(SendMessageW(host, getControl, 0, 0)));
    if (!control) AtlAxGetControl(host, control.Put());
    return control;
}

} // namespace

HRESULT CTOVHTMLControl::NewWindow2(IDispatch** ppDisp, VARIANT_BOOL* /*Cancel: never set*/)
{
    try {
        CTraceScope scope(m_trace, TraceSinkRef(), "NewWindow2");
        // Off: the browser opens its own new window.
        if (!m_bSimpleBrowse) return S_OK;
        CTraceScope simple(m_trace, TraceSinkRef(), "NewWindow2 with SimpleBrowse On.");
        try {
            // An earlier dialog is forgotten, not closed.
            m_pSimpleBrowseDlg.Attach(CTovDialogBox::New(static_cast<ITOVHTMLControl*>(this)));
            const HWND dialog = m_pSimpleBrowseDlg->Create(ControlWindow(), 0);
            const HWND item = dialog ? GetDlgItem(dialog, IDC_SIMPLEBROWSE_BROWSER) : nullptr;
            // The three lines fall through: a success writes all of them, a failure those from its own on.
            if (item) {
                if (ComPtr<IUnknown> hosted = HostedControl(item)) {
                    ComPtr<IWebBrowser> browser;
                    if (SUCCEEDED(hosted->QueryInterface(IID_IWebBrowser, browser.PutVoid())) && browser) {
                        // The new window's navigation happens in the dialog's browser.
                        browser->get_Application(ppDisp);
                        ShowWindow(dialog, SW_SHOW);
                    }
                    CTraceScope(m_trace, TraceSinkRef(), "NewWindow2 pWebBrowser invalid.");
                }
                CTraceScope(m_trace, TraceSinkRef(), "NewWindow2 pUnknow invalid.");
            }
            CTraceScope(m_trace, TraceSinkRef(), "NewWindow2 ATL CWindow invalid.");
        } catch (...) {
            ReportCaught(Failures(), "NewWindow2");
            CTraceScope(m_trace, TraceSinkRef(), "Exception raised in NewWindow2 method .");
            return E_FAIL;
        }
        return S_OK;
    } catch (...) {
        ReportCaught(Failures(), "NewWindow2");
        return E_FAIL;
    }
}

BOOL CTOVHTMLControl::CloseSimpleBrowseWindow()
{
    CTraceScope scope(m_trace, TraceSinkRef(), "CloseSimpleBrowseWindow");
    BOOL closed = FALSE;
    if (m_pSimpleBrowseDlg && m_bSimpleBrowse && IsWindow(m_pSimpleBrowseDlg->Window())) {
        const HWND dialog = m_pSimpleBrowseDlg->Window();
        ShowWindow(dialog, SW_HIDE);
        closed = DestroyWindow(dialog) ? TRUE : FALSE;
        m_pSimpleBrowseDlg.Reset();
        if (closed) return TRUE;
    }
    scope.Write("CloseSimpleBrowseWindow: Simple Browse Window not closed successfully", trace::kDetail);
    return closed;
}
