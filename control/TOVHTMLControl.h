#pragma once
// The HTML viewer control: hosts the platform's WebBrowser object and stands between it and the front end.
#include <windows.h>
#include <ocidl.h>
#include "TOVHTML_h.h"
#include "../framework/dispatch_impl.h"
#include "../framework/object_root.h"

class CTOVHTMLControl : public tov::ObjectRoot,
                        public tov::DispatchImpl<ITOVHTMLControl, &IID_ITOVHTMLControl>,
                        public IProvideClassInfo2,
                        public ISupportErrorInfo {
public:
    CTOVHTMLControl();
    ~CTOVHTMLControl() override;

    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override;

    // ITOVHTMLControl
    STDMETHODIMP GoBack(LONG *pRetCode) override;
    STDMETHODIMP GoForward(LONG *pRetCode) override;
    STDMETHODIMP GoHome(LONG *pRetCode) override;
    STDMETHODIMP Stop(LONG *pRetCode) override;
    STDMETHODIMP DoRefresh(LONG *pRetCode) override;
    STDMETHODIMP ShowData(BSTR pURL, BSTR pFrame, LONG bLocalURL, LONG *pRetCode) override;
    STDMETHODIMP ShowURL(BSTR pURL, BSTR pFrame, LONG *pRetCode) override;
    STDMETHODIMP ShowURLInBrowser(BSTR pURL, LONG *pRetCode) override;
    STDMETHODIMP InitControl(LONG *pRetCode) override;
    STDMETHODIMP get_URLPrefixLocal(BSTR *pVal) override;
    STDMETHODIMP put_URLPrefixLocal(BSTR newVal) override;
    STDMETHODIMP get_PostData(IDispatch **pVal) override;
    STDMETHODIMP put_PostData(IDispatch *a) override;
    STDMETHODIMP get_TargetFrame(BSTR *pVal) override;
    STDMETHODIMP put_TargetFrame(BSTR newVal) override;
    STDMETHODIMP get_Headers(BSTR *pVal) override;
    STDMETHODIMP put_Headers(BSTR newVal) override;
    STDMETHODIMP get_PostDataLength(LONG *pVal) override;
    STDMETHODIMP put_PostDataLength(LONG newVal) override;
    STDMETHODIMP get_URLLength(LONG *pVal) override;
    STDMETHODIMP put_URLLength(LONG newVal) override;
    STDMETHODIMP get_URLPrefixGlobal(BSTR *pVal) override;
    STDMETHODIMP put_URLPrefixGlobal(BSTR newVal) override;
    STDMETHODIMP GetCurrentURL(BSTR *pstrURL) override;
    STDMETHODIMP get_BrowserVersion(LONG *pVal) override;
    STDMETHODIMP putref_ScriptText(IDispatch *a) override;
    STDMETHODIMP ExecuteScript() override;
    STDMETHODIMP get_BrowserHandle(IDispatch **pVal) override;
    STDMETHODIMP get_NavigationStyle(BSTR *pVal) override;
    STDMETHODIMP put_NavigationStyle(BSTR newVal) override;
    STDMETHODIMP get_TryUseTOVHTMLP(LONG *pVal) override;
    STDMETHODIMP get_UIFlag(LONG *pVal) override;
    STDMETHODIMP put_UIFlag(LONG newVal) override;
    STDMETHODIMP TrackContextMenu(IDispatch *pMenu, LONG nPosX, LONG nPosY) override;
    STDMETHODIMP putref_ScriptOnBRELCompleted(IDispatch *a) override;
    STDMETHODIMP putref_ScriptOnDataSubmitted(IDispatch *a) override;
    STDMETHODIMP ShowDataInBrowser(BSTR pURL, LONG *pRetCode) override;
    STDMETHODIMP ExecuteWB(LONG nCmdId, LONG nCmdOpt) override;
    STDMETHODIMP CloseDocument() override;
    STDMETHODIMP get_BrowserString(BSTR *pVal) override;
    STDMETHODIMP get_Version(LONG *pVal) override;
    STDMETHODIMP DoTOVEVENT(BSTR FrameName, LONG PostDataLen, BSTR pURL1, BSTR pURL2, BSTR pURL3, BSTR pURL4, BSTR pURL5, BSTR pURL6, BSTR pURL7, BSTR pURL8) override;
    STDMETHODIMP DoNavigateComplete(BSTR strURL) override;
    STDMETHODIMP DoContextMenuSelected(BSTR strFCode) override;
    STDMETHODIMP DoContextMenuRequest(LONG lPosX, LONG lPosY) override;
    STDMETHODIMP put_ScriptRecording(LONG newVal) override;
    STDMETHODIMP get_PostDataModified(LONG *pVal) override;
    STDMETHODIMP EnableTOVSSO(LONG bEnabled, BSTR mySSOTicket, BSTR mySSOServiceUrl) override;
    STDMETHODIMP get_DocumentComplete(LONG *pVal) override;
    STDMETHODIMP get_SimpleBrowse(LONG *pVal) override;
    STDMETHODIMP put_SimpleBrowse(LONG newVal) override;
    STDMETHODIMP ShowURLInDetachedBrowser(BSTR pURL, LONG bURLType, LONG *pRetCode) override;
    STDMETHODIMP GetCharsetString(BSTR *pstrCharset) override;
    STDMETHODIMP put_EndSessionWithBrowser(LONG newVal) override;
    STDMETHODIMP GetHTMLSourceContent(BSTR *str) override;
    STDMETHODIMP SetHTMLSourceContent(BSTR *str) override;
    STDMETHODIMP LoadIconFont(BSTR iconRequest, BSTR *iconInfo) override;
    STDMETHODIMP EnableSecSess(BSTR mySSOTicket, BSTR mySSOServiceUrl) override;
    STDMETHODIMP DropAcceptFiles(LONG val) override;

    // IProvideClassInfo2
    STDMETHODIMP GetClassInfo(ITypeInfo** ppTI) override;
    STDMETHODIMP GetGUID(DWORD dwGuidKind, GUID* pGUID) override;

    // ISupportErrorInfo
    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID riid) override;
};
