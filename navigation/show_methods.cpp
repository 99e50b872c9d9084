// ShowData and ShowURL: provider data and URLs in the control's own browser.
#include "control/automation_call.h"
#include "navigation/url_rules.h"

using namespace tov;

namespace {

std::wstring_view View(BSTR b) { return b ? std::wstring_view(b, SysStringLen(b)) : std::wstring_view(); }

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
        scope.Detail(ToAnsi(View(pURL)));
        m_bOwnNavigation = true;
        m_bInternalPage = false;
        if (m_pWebBrowser) m_pWebBrowser->Stop();
        if (!m_pWebBrowser) {
            scope.Write("ShowData: m_pWebBrowser is invalid", trace::kFailure);
            code = codes::kNoBrowser;
            return;
        }
        m_pDetachedBrowser.Reset();
        Variant flags = Variant::I4(12); // navNoReadFromCache | navNoWriteToCache
        Variant frame = FrameArg(pFrame);
        const Bstr& prefix = bLocalURL ? m_bstrURLPrefixLocal : m_bstrURLPrefixGlobal;
        Bstr target(url::ShowDataUrl(m_nProtocolMode, prefix.View(), View(pURL)));

        HRESULT hr = E_FAIL;
        const Bstr subtype = GetDataSubtype(View(pURL));
        if (subtype.IsNull()) {
            scope.Write("GetDataSubtype: GetDataSubtype() failed", trace::kFailure);
        } else if (url::IsHtmlSubtype(subtype.View())) {
            CheckMetaTag(View(pURL));
            // HTML is zoomed by the browser itself on high-resolution screens.
            const HWND hwnd = ControlWindow();
            HDC dc = GetDC(hwnd);
            const int dpi = dc ? GetDeviceCaps(dc, LOGPIXELSX) : 96;
            if (dc) ReleaseDC(hwnd, dc);
            if (dpi <= 100) Zoom();
            hr = m_pWebBrowser->Navigate(target.Get(), &flags, &frame, nullptr, nullptr);
        } else {
            const Bstr path = CreateTempFile(View(pURL));
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
        if (m_bEnableOutputFile) CreateOutputFile(View(pURL));
    });
}

STDMETHODIMP CTOVHTMLControl::ShowURL(BSTR pURL, BSTR pFrame, LONG* pRetCode)
{
    return AutomationCall("ShowURL", nullptr, pRetCode, [&](CTraceScope& scope, LONG& code) {
        scope.Detail(ToAnsi(View(pURL)));
        m_bOwnNavigation = true;
        m_bInternalPage = false;
        if (m_pWebBrowser) m_pWebBrowser->Stop();
        if (!m_pWebBrowser) {
            scope.Write("ShowURL: m_pWebBrowser is invalid", trace::kFailure);
            code = codes::kNoBrowser;
            return;
        }
        Variant flags = Variant::I4(0);
        Variant frame = FrameArg(pFrame);
        const std::wstring_view url = View(pURL);
        HRESULT hr = E_FAIL;
        if (url::IsDataUrl(url)) {
            m_pDetachedBrowser.Reset();
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
