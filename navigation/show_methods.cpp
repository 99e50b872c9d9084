// The show methods: URLs and provider data in the control's own browser or in a browser window of their own.
#include "control/automation_call.h"
#include "framework/handles.h"
#include "navigation/url_rules.h"

using namespace tov;

namespace {

Variant FrameArg(BSTR frame)
{
    Variant v;
    v.vt = VT_BSTR;
    v.bstrVal = frame ? ThrowIfNull(SysAllocStringLen(frame, SysStringLen(frame))) : nullptr;
    return v;
}

} // namespace

STDMETHODIMP CTOVHTMLControl::ShowData(BSTR pURL, BSTR pFrame, LONG bLocalURL, LONG* pRetCode)
{
    return AutomationCall("ShowData", nullptr, pRetCode, [&](CTraceScope& scope, LONG& code) {
        scope.Detail(ToAnsi(BstrView(pURL)));
        m_ownNavigation.Begin();
        m_bInternalPage = false;
        if (m_pWebBrowser) m_pWebBrowser->Stop();
        if (!m_pWebBrowser) {
            scope.Write("ShowData: m_pWebBrowser is invalid", trace::kFailure);
            code = codes::kNoBrowser;
            return;
        }
        m_detached.ForgetLast();
        Variant flags = Variant::I4(12); // navNoReadFromCache | navNoWriteToCache
        Variant frame = FrameArg(pFrame);
        const Bstr& prefix = bLocalURL ? m_bstrURLPrefixLocal : m_bstrURLPrefixGlobal;
        Bstr target(url::ShowDataUrl(m_nProtocolMode, prefix.View(), BstrView(pURL)));

        HRESULT hr = E_FAIL;
        const Bstr subtype = GetDataSubtype(BstrView(pURL));
        if (subtype.IsNull()) {
            scope.Write("GetDataSubtype: GetDataSubtype() failed", trace::kFailure);
        } else if (url::IsHtmlSubtype(subtype.View())) {
            CheckMetaTag(BstrView(pURL));
            // HTML is zoomed by the browser itself on high-resolution screens.
            const tov::WindowDc dc(ControlWindow());
            const int dpi = dc.Get() ? GetDeviceCaps(dc.Get(), LOGPIXELSX) : 96;
            if (dpi <= 100) Zoom();
            hr = m_pWebBrowser->Navigate(target.Get(), &flags, &frame, nullptr, nullptr);
        } else {
            const Bstr path = CreateTempFile(BstrView(pURL));
            if (path.Length() > 0) {
                Zoom();
                hr = m_pWebBrowser->Navigate(path.Get(), nullptr, &frame, nullptr, nullptr);
            }
        }
        if (FAILED(hr)) {
            code = codes::kBrowserFailed;
            scope.Write("ShowData: m_pWebBrowser->Navigate() failed", trace::kFailure);
            ShowBlankPageOnAccessDenied("ShowData", pURL);
        }
        if (m_bEnableOutputFile) CreateOutputFile(BstrView(pURL));
    });
}

STDMETHODIMP CTOVHTMLControl::ShowURL(BSTR pURL, BSTR pFrame, LONG* pRetCode)
{
    return AutomationCall("ShowURL", nullptr, pRetCode, [&](CTraceScope& scope, LONG& code) {
        scope.Detail(ToAnsi(BstrView(pURL)));
        m_ownNavigation.Begin();
        m_bInternalPage = false;
        if (m_pWebBrowser) m_pWebBrowser->Stop();
        if (!m_pWebBrowser) {
            scope.Write("ShowURL: m_pWebBrowser is invalid", trace::kFailure);
            code = codes::kNoBrowser;
            return;
        }
        Variant flags = Variant::I4(0);
        Variant frame = FrameArg(pFrame);
        const std::wstring_view url = BstrView(pURL);
        HRESULT hr = E_FAIL;
        if (url::IsDataUrl(url)) {
            m_detached.ForgetLast();
            const Bstr subtype = GetDataSubtype(url);
            if (subtype.IsNull()) {
                hr = E_FAIL;
            } else if (url::IsHtmlSubtype(subtype.View())) {
                CheckMetaTag(url);
                Zoom();
                Bstr target(url::IsMonikerUrl(url) ? std::wstring(url::kMonikerPrefix) + std::wstring(url) : std::wstring(url));
                hr = m_pWebBrowser->Navigate(target.Get(), &flags, &frame, nullptr, nullptr);
            } else {
                const Bstr path = CreateTempFile(url);
                if (path.Length() > 0) {
                    Zoom();
                    hr = m_pWebBrowser->Navigate(path.Get(), &flags, &frame, nullptr, nullptr);
                }
            }
        } else if (m_bSSOEnabled) {
            hr = DoFirstSSONavigation(pURL, m_pWebBrowser.Get());
        } else if (m_bSecSessEnabled) {
            hr = DoFirstEnableSecSessNavigation(pURL, m_pWebBrowser.Get());
        } else if (url.empty()) {
            Zoom();
            Bstr blank(url::kBlankPage);
            hr = m_pWebBrowser->Navigate(blank.Get(), nullptr, nullptr, nullptr, nullptr);
        } else {
            Zoom();
            hr = m_pWebBrowser->Navigate(pURL, &flags, &frame, nullptr, nullptr);
        }
        if (FAILED(hr)) {
            code = codes::kBrowserFailed;
            ShowErrorMessage("ShowUrl", pURL);
        }
    });
}

STDMETHODIMP CTOVHTMLControl::ShowURLInBrowser(BSTR pURL, LONG* pRetCode)
{
    // The control's own browser is not used: no browser test, no Stop.
    return AutomationCall("ShowURLInBrowser", nullptr, pRetCode, [&](CTraceScope& scope, LONG& code) {
        scope.Detail(ToAnsi(BstrView(pURL)));
        m_bInternalPage = false;
        HRESULT hr = E_FAIL;
        if (url::IsDataUrlForSeparateWindow(BstrView(pURL))) {
            const Bstr path = CreateTempFile(BstrView(pURL));
            if (path.Length() > 0) hr = OpenDocumentInNewWindow(path.Get());
        } else {
            hr = OpenDocumentInNewWindow(pURL);
        }
        // A window the user cancelled is no failure.
        if (FAILED(hr) && hr != HRESULT_FROM_WIN32(ERROR_CANCELLED)) {
            code = codes::kBrowserFailed;
            ShowErrorMessage("ShowURLInBrowser", pURL);
        }
    });
}

STDMETHODIMP CTOVHTMLControl::ShowDataInBrowser(BSTR pURL, LONG* pRetCode)
{
    return AutomationCall("ShowDataInBrowser", nullptr, pRetCode, [&](CTraceScope& scope, LONG& code) {
        m_ownNavigation.Begin();
        if (m_pWebBrowser) {
            m_pWebBrowser->Stop();
            HRESULT hr = E_FAIL;
            const Bstr path = CreateTempFile(BstrView(pURL));
            if (path.Length() > 0) hr = OpenDocumentInNewWindow(path.Get());
            if (FAILED(hr)) {
                code = codes::kBrowserFailed;
                ShowErrorMessage("ShowDataInBrowser", pURL);
            }
        } else {
            scope.Write("m_pWebBrowser is invalid", trace::kFailure);
            code = codes::kNoBrowser;
        }
        // Unlike ShowData, the copy is made also without a browser.
        if (m_bEnableOutputFile) CreateOutputFile(BstrView(pURL));
    });
}
