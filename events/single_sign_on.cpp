// Single sign-on and security session: the next web navigation goes to a service with the ticket and the
// requested page in its request headers; one-shot.
#include "control/automation_call.h"

using namespace tov;

namespace {

void StoreSignOn(BOOL& enabled, Bstr& ticket, Bstr& service, BSTR newTicket, BSTR newService)
{
    ticket = Bstr::CopyOf(newTicket);
    service = Bstr::CopyOf(newService);
    enabled = 1;
}

} // namespace

// Deliberate: bEnabled is not looked at; every call enables the sign-on, 0 as well.
STDMETHODIMP CTOVHTMLControl::EnableTOVSSO(LONG /*bEnabled*/, BSTR mySSOTicket, BSTR mySSOServiceUrl)
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "EnableTOVSSO");
        scope.Detail(ToAnsi(Bstr::CopyOf(mySSOServiceUrl).View()));
        StoreSignOn(m_bSSOEnabled, m_bstrSSOTicket, m_bstrSSOServiceUrl, mySSOTicket, mySSOServiceUrl);
        return S_OK;
    });
}

STDMETHODIMP CTOVHTMLControl::EnableSecSess(BSTR mySSOTicket, BSTR mySSOServiceUrl)
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "EnableSecSess");
        scope.Detail(ToAnsi(Bstr::CopyOf(mySSOServiceUrl).View()));
        StoreSignOn(m_bSecSessEnabled, m_bstrSecSessTicket, m_bstrSecSessServiceUrl, mySSOTicket, mySSOServiceUrl);
        return S_OK;
    });
}

HRESULT CTOVHTMLControl::SignOnNavigation(std::string_view scopeName, BSTR url, IWebBrowser2* browser, BOOL& enabled,
                                          const Bstr& ticket, const Bstr& service, bool securitySessionOnly)
{
    CTraceScope scope(m_trace, TraceSinkRef(), scopeName);
    // The URL counts up to its terminating zero; a null URL adds nothing.
    const std::wstring_view requested = url ? std::wstring_view(url) : std::wstring_view();
    scope.Detail(ToAnsi(requested));
    std::wstring headers = L"tov-mytovsso: ";
    headers += ticket.View();
    headers += L"\r\ntov-mytovred: ";
    headers += requested;
    headers += L"\r\n";
    if (securitySessionOnly) headers += L"tov-only_create_security_session: X\r\n";
    Variant headerArg;
    headerArg.vt = VT_BSTR;
    headerArg.bstrVal = Bstr(headers).Detach();
    // One empty VARIANT serves for flags, frame and post data: a plain GET to the service.
    Variant empty;
    const HRESULT hr = browser ? browser->Navigate(service.Get(), &empty, &empty, &empty, &headerArg) : E_POINTER;
    enabled = 0;
    return hr;
}

HRESULT CTOVHTMLControl::DoFirstSSONavigation(BSTR url, IWebBrowser2* browser)
{
    return SignOnNavigation("DoFirstSSONavigation", url, browser, m_bSSOEnabled, m_bstrSSOTicket, m_bstrSSOServiceUrl,
                            false);
}

HRESULT CTOVHTMLControl::DoFirstEnableSecSessNavigation(BSTR url, IWebBrowser2* browser)
{
    return SignOnNavigation("DoFirstEnableSecSessNavigation", url, browser, m_bSecSessEnabled, m_bstrSecSessTicket,
                            m_bstrSecSessServiceUrl, true);
}
