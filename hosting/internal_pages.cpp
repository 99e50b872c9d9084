// The control's internal pages: the error page that names a failing method and its URL, and the blank
// page after an access failure. Their completion is not reported to the front end.
#include "control/automation_call.h"

#include "framework/code_pages.h"

using namespace tov;

void CTOVHTMLControl::ShowInternalPage(const std::wstring& url)
{
    m_bInternalPage = true;
    Zoom();
    if (!m_pWebBrowser) return;
    // A real BSTR: the browser, or a proxy in between, may read its length prefix.
    Bstr target(url);
    m_pWebBrowser->Navigate(target.Get(), nullptr, nullptr, nullptr, nullptr);
}

void CTOVHTMLControl::ShowErrorMessage(std::string_view method, BSTR url)
{
    CTraceScope scope(m_trace, TraceSinkRef(), "ShowErrorMessage");
    const std::wstring_view wideUrl = url ? std::wstring_view(url, SysStringLen(url)) : std::wstring_view();
    scope.Detail(std::string(method));
    scope.Detail(ToAnsi(wideUrl));
    std::wstring page = L"about:TOVHTML_E_CALL_METHOD_FAILED: ";
    page += Widen(method, CP_THREAD_ACP);
    page += L"(\"";
    page += wideUrl.substr(0, wideUrl.find(L'\0'));
    page += L"\")";
    ShowInternalPage(page);
}

void CTOVHTMLControl::ShowBlankPageOnAccessDenied(std::string_view method, BSTR url)
{
    CTraceScope scope(m_trace, TraceSinkRef(), "ShowBlankPageOnAccessDenied");
    scope.Detail("Access denied while creating file");
    scope.Detail(std::string(method));
    scope.Detail(ToAnsi(url ? std::wstring_view(url, SysStringLen(url)) : std::wstring_view()));
    ShowInternalPage(L"about:blank");
}
