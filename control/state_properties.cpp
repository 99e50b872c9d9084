// The simple state properties of the control object.
#include "control/automation_call.h"

using namespace tov;

STDMETHODIMP CTOVHTMLControl::get_Version(LONG* pVal)
{
    if (pVal) *pVal = 62;
    return S_OK;
}

STDMETHODIMP CTOVHTMLControl::get_DocumentComplete(LONG* pVal)
{
    if (pVal) *pVal = m_bDocumentComplete ? 1 : 0;
    return S_OK;
}

STDMETHODIMP CTOVHTMLControl::get_SimpleBrowse(LONG* pVal)
{
    if (pVal) *pVal = m_bSimpleBrowse ? 1 : 0;
    return S_OK;
}

STDMETHODIMP CTOVHTMLControl::put_SimpleBrowse(LONG newVal)
{
    m_bSimpleBrowse = newVal != 0;
    return S_OK;
}

STDMETHODIMP CTOVHTMLControl::get_TargetFrame(BSTR* pVal)
{
    return MethodCall([&] { return tov::CopyOutOrEmpty(m_bstrTargetFrame, pVal); });
}

STDMETHODIMP CTOVHTMLControl::put_TargetFrame(BSTR newVal)
{
    tov::ReplaceWithCopy(m_bstrTargetFrame, newVal);
    return S_OK;
}

STDMETHODIMP CTOVHTMLControl::get_Headers(BSTR* pVal)
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "get_Headers");
        return tov::CopyOutOrEmpty(m_bstrHeaders, pVal);
    });
}

STDMETHODIMP CTOVHTMLControl::put_Headers(BSTR newVal)
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "put_Headers");
        return tov::ReplaceWithCopy(m_bstrHeaders, newVal) ? S_OK : E_FAIL;
    });
}

HRESULT CTOVHTMLControl::TracedGet(std::string_view scopeName, LONG value, LONG* pVal)
{
    CTraceScope scope(m_trace, TraceSinkRef(), scopeName);
    if (pVal) *pVal = value;
    return S_OK;
}

STDMETHODIMP CTOVHTMLControl::get_URLLength(LONG* pVal)
{
    return MethodCall([&] { return TracedGet("get_URLLength", m_lURLLength, pVal); });
}

STDMETHODIMP CTOVHTMLControl::put_URLLength(LONG newVal)
{
    m_lURLLength = newVal;
    return S_OK;
}

STDMETHODIMP CTOVHTMLControl::get_PostDataLength(LONG* pVal)
{
    return MethodCall([&] { return TracedGet("get_PostDataLength", m_lPostDataLength, pVal); });
}

STDMETHODIMP CTOVHTMLControl::put_PostDataLength(LONG newVal)
{
    m_lPostDataLength = newVal;
    return S_OK;
}

STDMETHODIMP CTOVHTMLControl::get_PostData(IDispatch** pVal)
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "get_PostData");
        if (!pVal) return S_OK;
        *pVal = m_pPostData.CopyOut();
        if (!*pVal) scope.Write("(*pVal)->AddRef() failed", trace::kFailure);
        return S_OK;
    });
}

STDMETHODIMP CTOVHTMLControl::put_PostData(IDispatch* newVal)
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "put_PostData");
        m_pPostData = newVal;
        return S_OK;
    });
}

STDMETHODIMP CTOVHTMLControl::get_UIFlag(LONG* pVal)
{
    if (pVal) *pVal = m_lUIFlag;
    return S_OK;
}

STDMETHODIMP CTOVHTMLControl::put_UIFlag(LONG newVal)
{
    m_lUIFlag = newVal;
    return S_OK;
}

STDMETHODIMP CTOVHTMLControl::put_ScriptRecording(LONG newVal)
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "put_ScriptRecording");
        m_bScriptRecording = newVal;
        return S_OK;
    });
}

STDMETHODIMP CTOVHTMLControl::get_PostDataModified(LONG* pVal)
{
    if (pVal) *pVal = m_bPostDataModified;
    m_bPostDataModified = 0;
    return S_OK;
}

STDMETHODIMP CTOVHTMLControl::put_EndSessionWithBrowser(LONG newVal)
{
    m_bEndSessionWithBrowser = newVal;
    return S_OK;
}
