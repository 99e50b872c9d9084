// Members of the automation interface whose behaviour is not built yet: they answer E_NOTIMPL.
#include "TOVHTMLControl.h"

STDMETHODIMP CTOVHTMLControl::ShowData(BSTR /*pURL*/, BSTR /*pFrame*/, LONG /*bLocalURL*/, LONG */*pRetCode*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::ShowURL(BSTR /*pURL*/, BSTR /*pFrame*/, LONG */*pRetCode*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::ShowURLInBrowser(BSTR /*pURL*/, LONG */*pRetCode*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::get_URLPrefixLocal(BSTR */*pVal*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::put_URLPrefixLocal(BSTR /*newVal*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::get_URLPrefixGlobal(BSTR */*pVal*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::put_URLPrefixGlobal(BSTR /*newVal*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::GetCurrentURL(BSTR */*pstrURL*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::get_BrowserVersion(LONG */*pVal*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::putref_ScriptText(IDispatch */*a*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::ExecuteScript() { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::get_BrowserHandle(IDispatch **/*pVal*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::get_NavigationStyle(BSTR */*pVal*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::put_NavigationStyle(BSTR /*newVal*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::get_TryUseTOVHTMLP(LONG */*pVal*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::TrackContextMenu(IDispatch */*pMenu*/, LONG /*nPosX*/, LONG /*nPosY*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::putref_ScriptOnBRELCompleted(IDispatch */*a*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::putref_ScriptOnDataSubmitted(IDispatch */*a*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::ShowDataInBrowser(BSTR /*pURL*/, LONG */*pRetCode*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::ExecuteWB(LONG /*nCmdId*/, LONG /*nCmdOpt*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::CloseDocument() { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::get_BrowserString(BSTR */*pVal*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::DoTOVEVENT(BSTR /*FrameName*/, LONG /*PostDataLen*/, BSTR /*pURL1*/, BSTR /*pURL2*/, BSTR /*pURL3*/, BSTR /*pURL4*/, BSTR /*pURL5*/, BSTR /*pURL6*/, BSTR /*pURL7*/, BSTR /*pURL8*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::DoNavigateComplete(BSTR /*strURL*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::DoContextMenuSelected(BSTR /*strFCode*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::DoContextMenuRequest(LONG /*lPosX*/, LONG /*lPosY*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::EnableTOVSSO(LONG /*bEnabled*/, BSTR /*mySSOTicket*/, BSTR /*mySSOServiceUrl*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::ShowURLInDetachedBrowser(BSTR /*pURL*/, LONG /*bURLType*/, LONG */*pRetCode*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::GetCharsetString(BSTR */*pstrCharset*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::GetHTMLSourceContent(BSTR */*str*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::SetHTMLSourceContent(BSTR */*str*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::LoadIconFont(BSTR /*iconRequest*/, BSTR */*iconInfo*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::EnableSecSess(BSTR /*mySSOTicket*/, BSTR /*mySSOServiceUrl*/) { return E_NOTIMPL; }
STDMETHODIMP CTOVHTMLControl::DropAcceptFiles(LONG /*val*/) { return E_NOTIMPL; }
