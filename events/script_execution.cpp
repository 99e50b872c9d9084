// Scripts from the front end's tables, run in the page the browser shows.
#include "control/automation_call.h"
#include <mshtml.h>
#include <climits>
#include "events/script_table.h"

using namespace tov;

HRESULT CTOVHTMLControl::GetScriptFromITab(IDispatch* table, int kind)
{
    CTraceScope scope(m_trace, TraceSinkRef(), "GetScriptFromITab");
    const scripts::ScriptSlots slots{&m_strScriptText, &m_strScriptOnBRELCompleted, &m_strScriptOnDataSubmitted};
    switch (scripts::ReadScriptTable(table, kind, slots)) {
    case scripts::TableRead::InvalidObject:
        scope.Write("GetScriptFromITab: invalid LPDISPATCH", trace::kDetail);
        return S_OK;
    case scripts::TableRead::UnknownKind:
        return E_FAIL;
    default:
        return S_OK;
    }
}

STDMETHODIMP CTOVHTMLControl::putref_ScriptText(IDispatch* a)
{
    return MethodCall([&] { return GetScriptFromITab(a, 1); });
}

STDMETHODIMP CTOVHTMLControl::putref_ScriptOnBRELCompleted(IDispatch* a)
{
    return MethodCall([&] {
        m_bScriptOnBRELCompleted = 1;
        return GetScriptFromITab(a, 2);
    });
}

STDMETHODIMP CTOVHTMLControl::putref_ScriptOnDataSubmitted(IDispatch* a)
{
    return MethodCall([&] {
        m_bScriptOnDataSubmitted = 1;
        return GetScriptFromITab(a, 3);
    });
}

STDMETHODIMP CTOVHTMLControl::ExecuteScript()
{
    // The front end learns nothing of a script that could not run: the page reports its own errors.
    MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "ExecuteScript");
        const std::string script = m_strScriptText;
        InternalExecuteScript(script);
        return S_OK;
    });
    return S_OK;
}

void CTOVHTMLControl::InternalExecuteScript(const std::string& script)
{
    CTraceScope scope(m_trace, TraceSinkRef(), "InternalExecuteScript");
    if (!m_pWebBrowser || script.empty()) return;
    const ComPtr<IHTMLDocument2> document = CurrentDocument(scope);
    if (!document) return;
    ComPtr<IHTMLWindow2> window;
    if (FAILED(document->get_parentWindow(window.Put())) || !window) {
        scope.Write("CComPtr<IHTMLWindow2> failed", trace::kDetail);
        return;
    }

    // Scripts are kept in the front end's code page; the page wants UTF-16.
    const UINT codePage = FrontendCodePage(CP_ACP);
    if (script.size() >= static_cast<size_t>(INT_MAX)) Throw(E_INVALIDARG);
    const int length = static_cast<int>(script.size());
    std::wstring wide(script.size() + 1, L'\0');
    if (MultiByteToWideChar(codePage, 0, script.data(), length, wide.data(), length + 1) <= 0) Throw(E_INVALIDARG);
    wide.resize(wcslen(wide.c_str()));

    Bstr text(wide);
    Bstr language(L"JavaScript");
    Variant result;
    if (FAILED(window->execScript(text.Get(), language.Get(), &result)))
        scope.Write("pWindow->execScript() failed", trace::kDetail);
}
