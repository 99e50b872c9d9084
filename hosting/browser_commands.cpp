// Browser information and commands: version and handle, ExecuteWB with the screen-resolution zoom,
// printing, the navigation style, drop targets.
#include "control/automation_call.h"
#include "framework/code_pages.h"
#include "framework/handles.h"
#include "guicontrol/registry_config.h"
#include "hosting/browser_rules.h"

using namespace tov;

namespace {
// {EAB22AC3-30C1-11CF-A7EB-0000C05BAE0B}: the first browser generation's class.
constexpr CLSID kWebBrowserV1Class = {0xeab22ac3, 0x30c1, 0x11cf, {0xa7, 0xeb, 0x00, 0x00, 0xc0, 0x5b, 0xae, 0x0b}};
} // namespace

int CTOVHTMLControl::ScreenZoom() const
{
    const tov::WindowDc dc(ControlWindow());
    if (!dc.Get()) return 100;
    return browser::ScreenZoom(GetDeviceCaps(dc.Get(), LOGPIXELSX), GetDeviceCaps(dc.Get(), LOGPIXELSY));
}

STDMETHODIMP CTOVHTMLControl::ExecuteWB(LONG nCmdId, LONG nCmdOpt)
{
    // The command's own result is not reported, nor is a failure on the way to it.
    MethodCall([&] {
        Variant zoom = Variant::I4(ScreenZoom());
        CTraceScope scope(m_trace, TraceSinkRef(), "ExecuteWB");
        scope.Detail("Command ID: " + std::to_string(nCmdId));
        if (!m_pWebBrowser) return S_OK;
        if (nCmdId >= 1 && nCmdId <= 30) {
            if (nCmdId == OLECMDID_PRINT) {
                PrintDocument();
                return S_OK;
            }
            m_pWebBrowser->ExecWB(static_cast<OLECMDID>(nCmdId), static_cast<OLECMDEXECOPT>(nCmdOpt), nullptr, nullptr);
        } else {
            m_pWebBrowser->ExecWB(static_cast<OLECMDID>(nCmdId), static_cast<OLECMDEXECOPT>(nCmdOpt), &zoom, nullptr);
        }
        return S_OK;
    });
    return S_OK;
}

void CTOVHTMLControl::Zoom()
{
    ExecuteWB(63, 0);
}

void CTOVHTMLControl::PrintDocument()
{
    CTraceScope scope(m_trace, TraceSinkRef(), "PrintDocument");
    // Without a command target there is nothing to print with.
    if (m_pCommandTarget) m_pCommandTarget->Exec(nullptr, OLECMDID_PRINT, OLECMDEXECOPT_DODEFAULT, nullptr, nullptr);
}

STDMETHODIMP CTOVHTMLControl::get_BrowserVersion(LONG* pVal)
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "get_BrowserVersion");
        LONG answer = -1;
        bool created = false;
        if (!m_pOleObject) {
            if (FAILED(CoCreateInstance(kWebBrowserV1Class, nullptr, CLSCTX_INPROC_SERVER, IID_IOleObject,
                                        m_pOleObject.PutVoid()))) {
                if (pVal) *pVal = -2;
                return S_OK;
            }
            created = true;
        }
        IID iid;
        ComPtr<IUnknown> probe;
        if (SUCCEEDED(CLSIDFromString(L"{D30C1661-CDAF-11d0-8A3E-00C04FC9E26E}", &iid)) &&
            SUCCEEDED(m_pOleObject->QueryInterface(iid, probe.PutVoid()))) {
            answer = 4;
        } else if (SUCCEEDED(CLSIDFromString(L"{EAB22AC1-30C1-11CF-A7EB-0000C05BAE0B}", &iid)) &&
                   SUCCEEDED(m_pOleObject->QueryInterface(iid, probe.PutVoid()))) {
            answer = 3;
        } else if (created) {
            m_pOleObject.Reset();
        }
        if (pVal) *pVal = answer;
        return S_OK;
    });
}

STDMETHODIMP CTOVHTMLControl::get_BrowserString(BSTR* pVal)
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "get_BrowserString");
        if (m_bstrBrowserString.Length() == 0) {
            std::string version;
            switch (config::ReadBrowserVersion(version)) {
            case config::BrowserVersionRead::NoKey:
                return E_FAIL;
            case config::BrowserVersionRead::NoValue:
                scope.Write("RegQueryValueEx() failed", trace::kDetail);
                return E_FAIL;
            case config::BrowserVersionRead::Ok:
                break;
            }
            const std::string text = "MSIE-" + version;
            m_bstrBrowserString = Bstr(tov::Widen(text.c_str(), CP_THREAD_ACP)); // up to a zero byte
        }
        // The caller gets its own copy of the cached text: a front end frees what it is handed.
        if (pVal) *pVal = m_bstrBrowserString.CopyOut();
        return S_OK;
    });
}

STDMETHODIMP CTOVHTMLControl::get_BrowserHandle(IDispatch** pVal)
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "get_BrowserHandle");
        if (pVal) *pVal = m_pWebBrowser.CopyOut();
        return S_OK;
    });
}

STDMETHODIMP CTOVHTMLControl::get_NavigationStyle(BSTR* pVal)
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "get_NavigationStyle");
        // Deliberate: reads back the target frame, not the style; front ends have always seen it so.
        return tov::CopyOutOrEmpty(m_bstrTargetFrame, pVal);
    });
}

STDMETHODIMP CTOVHTMLControl::put_NavigationStyle(BSTR newVal)
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "put_NavigationStyle");
        m_bstrNavigationStyle = Bstr::CopyOf(newVal);
        // The style is read as a C string of at most nine bytes; a longer or null style reads as none.
        std::string style = ToAnsi(newVal ? std::wstring_view(newVal) : std::wstring_view());
        if (style.size() > 9) style.clear();
        const auto letters = browser::ParseNavigationStyle(style);
        SetProtocolMode(letters.pluggableProtocol ? 2 : 1);
        m_lNewWindowNavFlags = letters.newWindowNavFlags;
        m_bRestrictSchemes = letters.restrictSchemes ? 1 : 0;
        return S_OK;
    });
}

STDMETHODIMP CTOVHTMLControl::DropAcceptFiles(LONG val)
{
    return MethodCall([&] {
        if (m_pWebBrowser) m_pWebBrowser->put_RegisterAsDropTarget(val ? VARIANT_TRUE : VARIANT_FALSE);
        return S_OK;
    });
}
