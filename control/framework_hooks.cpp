// What the control does with the front end's framework events and its personalisation property "url".
#include "control/TOVHTMLControl.h"
#include <cwchar>

using namespace tov;

LONG CTOVHTMLControl::OnEvent102()
{
    // The back end has finished its processing.
    if (!m_strScriptOnBRELCompleted.empty()) InternalExecuteScript(std::string(m_strScriptOnBRELCompleted));
    return 0;
}

LONG CTOVHTMLControl::OnSetTessarilProperty(LPCWSTR name, LPCWSTR value)
{
    if (!m_pWebBrowser || !name || _wcsicmp(name, L"url") != 0) return 0;
    ComPtr<IWebBrowser2> browser = m_pWebBrowser;
    Bstr current;
    GetCurrentURL(current.Put());
    m_bstrTessarilSavedURL = current.IsNull() ? Bstr(L"") : std::move(current);
    m_strFrontEndKey = ToAnsi(name);
    const Bstr url(value ? value : L"");
    browser->Navigate(url.Get(), nullptr, nullptr, nullptr, nullptr);
    return 0;
}

LONG CTOVHTMLControl::OnResetTessarilProperty()
{
    // Deliberate: compared exactly; a property set as "URL" is not navigated back.
    if (!m_pWebBrowser || m_strFrontEndKey != "url") return 0;
    ComPtr<IWebBrowser2> browser = m_pWebBrowser;
    const Bstr saved = m_bstrTessarilSavedURL;
    m_bstrTessarilSavedURL = Bstr(L"");
    browser->Navigate(saved.Get(), nullptr, nullptr, nullptr, nullptr);
    return 0;
}
