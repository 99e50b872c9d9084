// History and reload: GoBack, GoForward, GoHome, Stop, DoRefresh; and the current location.
#include "control/automation_call.h"

HRESULT CTOVHTMLControl::HistoryCommand(std::string_view scopeName, const char* invalidText, const char* failureText,
                                        HRESULT (STDMETHODCALLTYPE IWebBrowser::*command)(), LONG* pRetCode)
{
    return AutomationCall(scopeName, invalidText, pRetCode, [&](CTraceScope& scope, LONG& code) {
        IWebBrowser* browser = m_pWebBrowser.Get();
        if (FAILED((browser->*command)())) {
            scope.Write(failureText, tov::trace::kFailure);
            code = tov::codes::kBrowserFailed;
        }
    });
}

STDMETHODIMP CTOVHTMLControl::GoBack(LONG* pRetCode)
{
    HistoryCommand("GoBack", "GoBack: m_pWebBrowser is invalid", "GoBack: m_pWebBrowser->GoBack", &IWebBrowser::GoBack,
                   pRetCode);
    // Deliberate: an own navigation also when the browser failed or is missing; the next page link
    // then goes on in place.
    m_ownNavigation.Begin();
    return S_OK;
}

STDMETHODIMP CTOVHTMLControl::GoForward(LONG* pRetCode)
{
    HistoryCommand("GoForward", "GoForward: m_pWebBrowser is invalid", "GoForward: m_pWebBrowser->GoForward",
                   &IWebBrowser::GoForward, pRetCode);
    m_ownNavigation.Begin();
    return S_OK;
}

STDMETHODIMP CTOVHTMLControl::GoHome(LONG* pRetCode)
{
    return HistoryCommand("GoHome", "GoHome: m_pWebBrowser is invalid", "GoHome: m_pWebBrowser->GoHome",
                          &IWebBrowser::GoHome, pRetCode);
}

STDMETHODIMP CTOVHTMLControl::Stop(LONG* pRetCode)
{
    return HistoryCommand("Stop", "Stop: m_pWebBrowser is invalid", "Stop: m_pWebBrowser->Stop", &IWebBrowser::Stop,
                          pRetCode);
}

STDMETHODIMP CTOVHTMLControl::DoRefresh(LONG* pRetCode)
{
    return HistoryCommand("DoRefresh", "Refresh: m_pWebBrowser is invalid", "Refresh: m_pWebBrowser->Refresh",
                          &IWebBrowser::Refresh, pRetCode);
}

// No scope and no return code: the browser's answer as it stands. Without a browser (or without its
// command target) the front end gets an empty string and S_OK.
STDMETHODIMP CTOVHTMLControl::GetCurrentURL(BSTR* pstrURL)
{
    if (!pstrURL) return m_pWebBrowser ? m_pWebBrowser->get_LocationURL(pstrURL) : S_OK;
    if (!m_pWebBrowser) {
        *pstrURL = SysAllocString(L"");
        return *pstrURL ? S_OK : E_OUTOFMEMORY;
    }
    return m_pWebBrowser->get_LocationURL(pstrURL);
}
