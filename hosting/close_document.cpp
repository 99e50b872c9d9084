// CloseDocument: closes exactly one thing, the latest Simple Browse dialog, else the detached window used
// last, else the control's own document.
#include "control/automation_call.h"

using namespace tov;

STDMETHODIMP CTOVHTMLControl::CloseDocument()
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "CloseDocument");
        if (m_pSimpleBrowseDlg && m_bSimpleBrowse && CloseSimpleBrowseWindow()) return S_OK;
        if (!m_pDetachedBrowser) {
            // The blank page is an internal one: its completion is not reported.
            m_bInternalPage = true;
            if (m_pWebBrowser) {
                Bstr blank(L"about:blank");
                m_pWebBrowser->Navigate(blank.Get(), nullptr, nullptr, nullptr, nullptr);
            }
            return S_OK;
        }
        ComPtr<IWebBrowser2> closing = std::move(m_pDetachedBrowser);
        closing->Stop();
        closing->Quit();
        for (auto it = m_mapDetachedBrowsers.begin(); it != m_mapDetachedBrowsers.end(); ++it) {
            if (it->second.Get() == closing.Get()) {
                m_mapDetachedBrowsers.erase(it);
                break;
            }
        }
        return S_OK;
    });
}
