// History and reload: GoBack, GoForward, GoHome, Stop, DoRefresh.
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
    m_bOwnNavigation = true;
    return S_OK;
}

STDMETHODIMP CTOVHTMLControl::GoForward(LONG* pRetCode)
{
    HistoryCommand("GoForward", "GoForward: m_pWebBrowser is invalid", "GoForward: m_pWebBrowser->GoForward",
                   &IWebBrowser::GoForward, pRetCode);
    m_bOwnNavigation = true;
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
