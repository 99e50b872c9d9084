// Completion of pages: the front end hears of every loaded page and frame as NavigateComplete (internal
// pages excepted), every such page gets the marker variable "tovHtmlControl", and the DocumentComplete
// property follows the top-level document.
#include "control/automation_call.h"
#include <mshtml.h>

using namespace tov;

namespace {

// Pages test for this global to know they are shown by the control.
constexpr char kMarkerScript[] = "tovHtmlControl  = \"TRUE\"";
static_assert(sizeof(kMarkerScript) - 1 == 24);

} // namespace

void CTOVHTMLControl::SetScriptVariableInHTMLDocument()
{
    CTraceScope scope(m_trace, TraceSinkRef(), "SetScriptVariableInHTMLDocument");
    InternalExecuteScript(kMarkerScript);
}

void CTOVHTMLControl::ReportCompletion(BSTR URL)
{
    if (m_bInternalPage) return;
    SetScriptVariableInHTMLDocument();
    if (m_bReadyForInput && !m_bHoldNavigateComplete) FireEvent([&] { m_events.Fire_NavigateComplete(URL); });
}

void CTOVHTMLControl::OnNavigateComplete(BSTR URL)
{
    CTraceScope scope(m_trace, TraceSinkRef(), "NavigateComplete");
    scope.Detail(ToAnsi(BstrView(URL)));
    ReportCompletion(URL);

    // Internal pages too: the trace shows what the browser made of every page's encoding.
    const ComPtr<IWebBrowser2> browser = m_pWebBrowser;
    ComPtr<IDispatch> document;
    if (!browser || FAILED(browser->get_Document(document.Put()))) {
        scope.Write("get_Document() failed", trace::kDetail);
        return;
    }
    const auto html = QueryAs<IHTMLDocument2>(document.Get(), IID_IHTMLDocument2);
    if (!html) {
        scope.Write("CComQIPtr<IHTMLDocument2...> failed", trace::kDetail);
        return;
    }
    Bstr charset;
    if (SUCCEEDED(html->get_charset(charset.Put())))
        scope.Write("Encoding of HTML page: " + ToAnsi(charset.View()), trace::kDetail);
}

void CTOVHTMLControl::OnFrameNavigateComplete(BSTR URL)
{
    CTraceScope scope(m_trace, TraceSinkRef(), "FrameNavigateComplete");
    // Deliberate: a frame is reported as a NavigateComplete of its own URL, and the marker runs again in
    // the top-level document, not in the frame's.
    scope.Detail(ToAnsi(BstrView(URL)));
    ReportCompletion(URL);
}

void CTOVHTMLControl::OnDocumentComplete(IDispatch* frame)
{
    // The top-level document arrives with the browser itself as its frame; frames arrive with their own.
    const auto top = QueryAs<IDispatch>(m_pWebBrowser.Get(), IID_IDispatch);
    m_bDocumentComplete = top && frame && top.Get() == frame;
}
