// Members of the automation interface whose behaviour is not built yet: they answer E_NOTIMPL.
#include "TOVHTMLControl.h"

STDMETHODIMP CTOVHTMLControl::putref_ScriptText(IDispatch */*a*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::ExecuteScript() { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::putref_ScriptOnBRELCompleted(IDispatch */*a*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::putref_ScriptOnDataSubmitted(IDispatch */*a*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::GetCharsetString(BSTR */*pstrCharset*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::GetHTMLSourceContent(BSTR */*str*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::SetHTMLSourceContent(BSTR */*str*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::LoadIconFont(BSTR /*iconRequest*/, BSTR */*iconInfo*/) { return E_NOTIMPL; }
