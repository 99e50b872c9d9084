// TOVEVENT interception: every navigation of the browser passes here. A "TOVEVENT:" URL is cancelled and
// handed to the front end as BeforeNavigate with its URL in eight pieces and its post data in the front
// end's data provider; other URLs go on, unless the restricted style blocks their scheme or the new-window
// style opens top-level links elsewhere.
#include "control/automation_call.h"
#include <algorithm>
#include <optional>
#include "framework/code_pages.h"
#include "navigation/unescape_url.h"
#include "navigation/url_packing.h"

using namespace tov;

namespace {

// Deliberate: Cancel gets 1, not VARIANT_TRUE; the browser reads it as a flag, and front ends that
// look at it have always seen 1.
void SetCancel(VARIANT_BOOL* Cancel, VARIANT_BOOL value)
{
    if (Cancel) *Cancel = value;
}

// Some front ends send UTF-8 through an ANSI path: with code page 65001 and the Japanese language key the
// URL's bytes are read again as UTF-8, into at most 260 characters.
std::wstring RedecodeAsUtf8(const std::wstring& url)
{
    const std::wstring_view text(url.c_str()); // up to a zero character
    const std::string narrow = Narrow(text, CP_ACP);
    if (!text.empty() && narrow.empty()) return url;
    wchar_t decoded[260];
    const int n = MultiByteToWideChar(CP_UTF8, 0, narrow.c_str(), -1, decoded, 260);
    return n > 0 ? std::wstring(decoded) : url;
}

Bstr PieceArg(const std::optional<std::wstring_view>& piece)
{
    return piece ? Bstr(*piece) : Bstr();
}

} // namespace

HRESULT CTOVHTMLControl::OnTopLevelBeforeNavigate(BSTR URL, LONG Flags, BSTR TargetFrameName, VARIANT* PostData,
                                                  BSTR Headers, VARIANT_BOOL* Cancel)
{
    CTraceScope scope(m_trace, TraceSinkRef(), "BeforeNavigate");
    if (m_trace.Level() >= 2) scope.Detail(ToAnsi(BstrView(URL)));
    m_bDocumentComplete = false;
    HRESULT hr = S_OK;
    try {
        hr = OnBeforeNavigate(URL, Flags, TargetFrameName, PostData, Headers, Cancel);
    } catch (...) {
        ReportCaught(Failures(), "BeforeNavigate");
        hr = S_OK;
    }
    // New-window style: a page's own top-level link opens in a new browser window and this page stays.
    // Tested after the interception, so a handled TOVEVENT (an own navigation) is never re-issued.
    const ComPtr<IWebBrowser2> browser = m_pWebBrowser;
    const bool own = m_ownNavigation.Take();
    if (browser && m_lNewWindowNavFlags != 0 && Flags == 0 && !own) {
        Zoom();
        VARIANT flags, frame, headers;
        VariantInit(&flags);
        VariantInit(&frame);
        VariantInit(&headers);
        flags.vt = VT_I4;
        flags.lVal = m_lNewWindowNavFlags;
        // Borrowed strings, never cleared. Headers go in the post-data position and the event's post data
        // in the headers position: front ends rely on exactly this pairing.
        frame.vt = VT_BSTR;
        frame.bstrVal = TargetFrameName;
        headers.vt = VT_BSTR;
        headers.bstrVal = Headers;
        hr = browser->Navigate(URL, &flags, &frame, &headers, PostData);
        SetCancel(Cancel, 1);
    }
    return hr;
}

HRESULT CTOVHTMLControl::OnFrameBeforeNavigate(BSTR URL, LONG Flags, BSTR TargetFrameName, VARIANT* PostData,
                                               BSTR Headers, VARIANT_BOOL* Cancel)
{
    CTraceScope scope(m_trace, TraceSinkRef(), "FrameBeforeNavigate");
    try {
        return OnBeforeNavigate(URL, Flags, TargetFrameName, PostData, Headers, Cancel);
    } catch (...) {
        ReportCaught(Failures(), "FrameBeforeNavigate");
        return S_OK;
    }
}

HRESULT CTOVHTMLControl::OnBeforeNavigate(BSTR URL, LONG /*Flags*/, BSTR TargetFrameName, VARIANT* PostData,
                                          BSTR Headers, VARIANT_BOOL* Cancel)
{
    CTraceScope scope(m_trace, TraceSinkRef(), "OnBeforeNavigate");
    // Every navigation passes here: the texts are only made when they are written.
    if (m_trace.Level() >= 2) {
        scope.Detail(ToAnsi(BstrView(URL)));
        scope.Detail(ToAnsi(BstrView(TargetFrameName)));
    }

    const UINT codePage = FrontendCodePage();
    if (m_bstrLanguage.Length() == 0) {
        if (ITOVFrontendInfoService* info = GetFrontendInfoService()) {
            Bstr key;
            if (SUCCEEDED(info->GetLanguageKey(key.Put()))) m_bstrLanguage = std::move(key);
        }
    }

    std::wstring url = url::UnescapeURL(BstrView(URL));
    if (codePage == CP_UTF8 && !m_bstrLanguage.IsNull() && m_bstrLanguage.View() == L"JA") url = RedecodeAsUtf8(url);

    if (!url::IsEventUrl(url)) {
        SetCancel(Cancel, (m_bRestrictSchemes && !url::SchemeAllowedWhenRestricted(url)) ? 1 : 0);
        return S_OK;
    }

    HRESULT hr = S_OK;
    // The provider object stays alive even when a handler replaces PostData.
    const auto provider = QueryAs<ITOVDataProvider>(m_pPostData.Get(), IID_ITOVDataProvider);
    if (provider) hr = StorePostData(provider.Get(), PostData, scope);

    Bstr frame = Bstr::CopyOf(TargetFrameName);
    Bstr headers = Bstr::CopyOf(Headers);
    m_bstrTargetFrame = std::move(frame);
    m_bstrHeaders = std::move(headers);
    m_ownNavigation.Begin();
    m_lURLLength = static_cast<LONG>(std::min<size_t>(url.size(), 0x7FFFFFFF));

    const url::UrlPieces pieces = url::PackUrl(url);
    Bstr p[url::kPieceCount];
    for (size_t i = 0; i < url::kPieceCount; ++i) p[i] = PieceArg(pieces[i]);

    if (m_bReadyForInput) {
        HRESULT fired = S_OK;
        FireEvent([&] {
            fired = m_events.Fire_BeforeNavigate(TargetFrameName, m_lPostDataLength, p[0].Get(), p[1].Get(), p[2].Get(),
                                                 p[3].Get(), p[4].Get(), p[5].Get(), p[6].Get(), p[7].Get());
        });
        if (SUCCEEDED(fired) && m_bScriptOnDataSubmitted) InternalExecuteScript(std::string(m_strScriptOnDataSubmitted));
    }
    SetCancel(Cancel, 1);
    return hr;
}
