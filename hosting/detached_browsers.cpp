// Detached browser windows: browser applications of their own for URLs the front end wants shown outside
// the control, reused per URL or fresh each time, or the shell's "open" when the proxy administration asks
// for it.
#include "control/automation_call.h"
#include <shellapi.h>

using namespace tov;

namespace {

// {0002DF01-0000-0000-C000-000000000046}
constexpr CLSID kInternetExplorerClass = {0x0002df01, 0x0000, 0x0000, {0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

ComPtr<IWebBrowser2> CreateBrowserApplication()
{
    ComPtr<IWebBrowser2> browser;
    if (FAILED(CoCreateInstance(kInternetExplorerClass, nullptr, CLSCTX_SERVER, IID_IWebBrowser2, browser.PutVoid())))
        return nullptr;
    return browser;
}

} // namespace

HRESULT CTOVHTMLControl::OpenDocumentInNewWindow(BSTR url)
{
    CTraceScope scope(m_trace, TraceSinkRef(), "OpenDocumentInNewWindow");
    const Bstr key = Bstr::CopyOf(url);
    // Held here: the navigation may re-enter the control and open or close other windows.
    ComPtr<IWebBrowser2> browser = m_detached.OpenWindowFor(key);
    if (!browser) {
        browser = CreateBrowserApplication();
        if (!browser) {
            scope.Write("CoCreateInstance() failed", trace::kDetail);
            return E_FAIL;
        }
        m_detached.Remember(key, browser);
        browser->put_Visible(VARIANT_TRUE);
    }
    if (m_bSSOEnabled) return DoFirstSSONavigation(url, browser.Get());
    if (m_bSecSessEnabled) return DoFirstEnableSecSessNavigation(url, browser.Get());
    Zoom();
    Variant empty;
    return browser->Navigate(url, &empty, &empty, &empty, &empty);
}

HRESULT CTOVHTMLControl::OpenDocumentInDetachedWindow(BSTR url)
{
    CTraceScope scope(m_trace, TraceSinkRef(), "OpenDocumentInDetachedWindow");
    const ComPtr<IWebBrowser2> browser = CreateBrowserApplication();
    if (!browser) {
        scope.Write("CoCreateInstance() for CLSID_InternetExplorer failed in OpenDocumentInDetachedWindow method",
                    trace::kDetail);
        return E_FAIL;
    }
    if (m_bSSOEnabled) {
        DoFirstSSONavigation(url, browser.Get());
    } else if (m_bSecSessEnabled) {
        DoFirstEnableSecSessNavigation(url, browser.Get());
    } else {
        Variant empty;
        browser->Navigate(url, &empty, &empty, &empty, &empty);
    }
    const HRESULT hr = browser->put_Visible(VARIANT_TRUE);
    SHANDLE_PTR window = 0;
    if (SUCCEEDED(browser->get_HWND(&window)))
        BringWindowToTop(reinterpret_cast<HWND>(window));
    else
        scope.Write("CTOVHTMLControl::OpenDocumentInDetachedWindow: IE window handle not obtained", trace::kDetail);
    // The window belongs to the user now.
    return hr;
}

STDMETHODIMP CTOVHTMLControl::ShowURLInDetachedBrowser(BSTR pURL, LONG bURLType, LONG* pRetCode)
{
    return AutomationCall("ShowURLInDetachedBrowser", nullptr, pRetCode, [&](CTraceScope& scope, LONG& code) {
        const std::string narrowUrl = ToAnsi(BstrView(pURL));
        scope.Detail(narrowUrl);
        m_bInternalPage = false;
        const auto shellOpen = [&](const std::string& file) {
            CTraceScope shell(m_trace, TraceSinkRef(), "ShellExecute API is called");
            const auto result = reinterpret_cast<INT_PTR>(
                ShellExecuteA(nullptr, "open", file.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
            if (result < 32) ShowErrorMessage("ShellExecute failed", pURL);
        };
        if (bURLType != 0) {
            CTraceScope absolute(m_trace, TraceSinkRef(), "Absolute URL");
            if (!m_bShellOpenDetached) {
                if (FAILED(OpenDocumentInDetachedWindow(pURL))) {
                    code = codes::kBrowserFailed;
                    ShowErrorMessage("ShowURLInDetachedBrowser", pURL);
                }
            } else {
                // The shell's answer is shown as a page, never as a code.
                shellOpen(narrowUrl);
            }
            return;
        }
        CTraceScope generated(m_trace, TraceSinkRef(), "Q5 Generated URL");
        const Bstr path = CreateTempFile(BstrView(pURL));
        if (path.Length() > 0) {
            if (m_bShellOpenDetached) {
                // Deliberate: code 5 also after the shell opened the file; front ends have always seen it.
                shellOpen(ToAnsi(path.View()));
            } else if (SUCCEEDED(OpenDocumentInDetachedWindow(path.Get()))) {
                return;
            }
        }
        code = codes::kBrowserFailed;
        ShowErrorMessage("ShowDataInBrowser", pURL);
    });
}

LONG CTOVHTMLControl::CloseBrowserWindows()
{
    CTraceScope scope(m_trace, TraceSinkRef(), "CloseBrowserWindows");
    m_detached.CloseAll();
    return 0;
}
