// CloseDocument: closes exactly one thing, the latest Simple Browse dialog, else the detached window used
// last, else the control's own document.
#include "control/automation_call.h"

using namespace tov;

STDMETHODIMP CTOVHTMLControl::CloseDocument()
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "CloseDocument");
        if (m_pSimpleBrowseDlg && m_bSimpleBrowse && CloseSimpleBrowseWindow()) return S_OK;
        if (m_detached.CloseLast()) return S_OK;
        // The blank page is an internal one: its completion is not reported.
        m_bInternalPage = true;
        if (m_pWebBrowser) {
            Bstr blank(L"about:blank");
            m_pWebBrowser->Navigate(blank.Get(), nullptr, nullptr, nullptr, nullptr);
        }
        return S_OK;
    });
}
