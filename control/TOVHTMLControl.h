#pragma once
// The HTML viewer control: hosts the platform's WebBrowser object in its own window, is that browser's
// site, and stands between the browser and the front end.
#include <windows.h>
#include <exdisp.h>
#include <ocidl.h>
#include <map>
#include <source_location>
#include <vector>
#include <string>
#include <string_view>
#include "TOVHTML_h.h"
#include "control/trace.h"
#include "events/browser_event_sinks.h"
#include "events/event_proxy.h"
#include "framework/connection_points.h"
#include "framework/windowed_control.h"
#include "framework/bstr.h"
#include "framework/com_ptr.h"
#include "framework/dispatch_impl.h"
#include "framework/object_root.h"
#include "framework/variant.h"
#include "guicontrol/TOVGUIControlBase.h"
#include "tov_frontend.h"
#include "hosting/browser_site.h"

#include "hosting/detached_windows.h"
#include "hosting/tov_dialog_box.h"
#include "navigation/own_navigation.h"
#include "navigation/temporary_files.h"
struct IHTMLDocument2;

class CTOVHTMLControl : public tov::ObjectRoot,
                        public tov::WindowedControlBase,
                        public tov::DispatchImpl<ITOVHTMLControl, &IID_ITOVHTMLControl>,
                        public IProvideClassInfo2,
                        public ISupportErrorInfo,
                        public tov::ConnectionPointContainerImpl,
                        public CTOVGUIControlBase {
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

    // IOleInPlaceObject: the browser loses its site and sinks before the control deactivates.
    STDMETHODIMP InPlaceDeactivate() override;
    // IOleInPlaceActiveObject: keyboard accelerators go to the browser.
    STDMETHODIMP TranslateAccelerator(LPMSG lpmsg) override;
    using tov::WindowedControlBase::ControlWindow;

protected:
    void FinalConstruct() override;
    void OnLastRelease() noexcept override;
    const CLSID& ControlClassId() const override { return CLSID_TOVHTMLControl; }
    DWORD ControlMiscStatus() const override { return 131473; }
    IUnknown* ControlIdentity() override { return ControllingUnknown(); }
    const IID& DefaultSourceIid() const override { return DIID__TOVHTMLControlEvents; }
    bool OnMessage(UINT msg, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
    // The container's Close: the browser is disconnected, stopped and closed before the standard close.
    HRESULT CloseControl(DWORD dwSaveOption) override;
    std::vector<tov::EventConnectionPoint*> ConnectionPoints() override { return {&m_eventsPoint}; }
    LONG OnContainerConnected() override;
    LONG OnTraceSettingsChanged() override;
    // Framework hooks: completion script (102), context-menu selection (300), personalisation "url".
    LONG OnEvent102() override;
    LONG OnContextMenuItemSelected(IUnknown* pMenu, IUnknown* pItem) override;
    LONG OnSetTessarilProperty(LPCWSTR name, LPCWSTR value) override;
    LONG OnResetTessarilProperty() override;

private:
    friend class CBrowserSite;
    friend class CBrowserEventsSink;
    friend class CBrowserEvents2Sink;

    // Fires one outgoing event; the control stays alive while the front end's handlers run.
    template <class Fire> void FireEvent(Fire&& fire)
    {
        tov::ComPtr<IUnknown> keepAlive(ControllingUnknown());
        fire();
    }
    template <class Fire> void FireFromFrontEnd(std::string_view scopeName, Fire&& fire);
    // Handles one call of the hosted browser: an event at a sink, or a site call that fires events. The
    // front end's handlers run inside it and may drop the control's last reference while the browser
    // still holds the sink or site it called (see OnLastRelease). No exception goes back to the browser;
    // a control being taken down handles nothing and refuses what it is asked through `cancel`.
    template <class F>
    HRESULT HandleBrowserCall(F&& handler, VARIANT_BOOL* cancel = nullptr,
                              std::source_location where = std::source_location::current()) noexcept
    {
        if (BrowserSilenced()) {
            if (cancel) *cancel = VARIANT_TRUE;
            return S_OK;
        }
        ++m_cBrowserCalls;
        tov::ComPtr<IUnknown> keepAlive(ControllingUnknown());
        const HRESULT hr = tov::GuardedCall(std::forward<F>(handler), Failures(), BoundaryName(where));
        keepAlive.Reset();
        --m_cBrowserCalls;
        FreeOnceBrowserLetGo();
        return hr;
    }
    // Every method the front end or a container calls runs under this: the control holds itself for the
    // whole call (the browser fires events from inside its own methods, and a front end's handler may drop
    // the last reference to the control there), and an exception becomes the call's HRESULT.
    template <class F> HRESULT MethodCall(F&& body, std::source_location where = std::source_location::current()) noexcept
    {
        tov::ComPtr<IUnknown> keepAlive(ControllingUnknown());
        return tov::GuardedCall(std::forward<F>(body), Failures(), BoundaryName(where));
    }
    // Every boundary reports what it caught here: a failure block in the trace, at the level for it. The
    // boundaries of the bases and of the connection points come here too.
    void CaughtFailure(HRESULT hr, std::string_view where) noexcept override;
    tov::FailureReport& Failures() noexcept { return static_cast<tov::WindowedControlBase&>(*this); }
    // The boundary's name for the trace: the qualified name of the function the call is in.
    static std::string_view BoundaryName(const std::source_location& where) noexcept;
    // From the start of the control's take-down (the container's Close or the last release) the browser's
    // calls are answered (Cancel set where there is one) but reach neither the front end nor scripts.
    bool BrowserSilenced() const noexcept { return m_bLastReleased || m_bTakenDown; }
    // The steps the container's Close and the last release share, each in its own order.
    enum class TakeDownKind { ContainerClose, LastRelease };
    void TakeDown(TakeDownKind kind);
    // The automation method pattern: trace scope, return code, browser check, exception guard, and the
    // control held for the whole call as in MethodCall.
    template <class Body>
    HRESULT AutomationCall(std::string_view scopeName, const char* invalidText, LONG* pRetCode, Body&& body);
    // Calls one history command of the browser with its failure text.
    HRESULT HistoryCommand(std::string_view scopeName, const char* invalidText, const char* failureText,
                           HRESULT (STDMETHODCALLTYPE IWebBrowser::*command)(), LONG* pRetCode);
    // A trace scope on the control's trace with the front end's sink.
    tov::ComPtr<ITOVTraceSink> TraceSinkRef();
    // A number property's getter that traces its scope; a null pointer gets nothing.
    HRESULT TracedGet(std::string_view scopeName, LONG value, LONG* pVal);
    void FinalRelease() noexcept;
    // The browser's Release on the site or a sink, and the check whether a torn-down control was only
    // waiting for that to be freed.
    ULONG ReleaseBrowserHeld() noexcept;
    void FreeOnceBrowserLetGo() noexcept;
    void EndBrowserSession() noexcept;
    // The browser's zoom for the control window's screen, and the zoom command every own navigation
    // starts with (ExecuteWB 63, 0).
    int ScreenZoom() const;
    void Zoom();
    void PrintDocument();
    // Internal pages: their completion is not reported to the front end.
    void ShowInternalPage(const std::wstring& url);
    void ShowErrorMessage(std::string_view method, BSTR url);
    void ShowBlankPageOnAccessDenied(std::string_view method, BSTR url);
    // The one-shot sign-on and security-session navigations; they return the browser's Navigate result.
    HRESULT DoFirstSSONavigation(BSTR url, IWebBrowser2* browser);
    HRESULT DoFirstEnableSecSessNavigation(BSTR url, IWebBrowser2* browser);
    HRESULT SignOnNavigation(std::string_view scopeName, BSTR url, IWebBrowser2* browser, BOOL& enabled,
                             const tov::Bstr& ticket, const tov::Bstr& service, bool securitySessionOnly);
    // The container's in-place site (null when the control is not active in place).
    IOleInPlaceSite* ContainerInPlaceSite() const;
    // SetClientSite and DoVerb(in-place activate) of the browser in the control's window; with
    // `uiActivate` a DoVerb(UI activate) follows.
    void ActivateBrowserInPlace(bool uiActivate);
    // The browser's context-menu request: S_OK when the front end is asked instead, else E_NOTIMPL.
    HRESULT OnBrowserContextMenu();
    // The data provider: subtype of the data behind a URL (null on any failure), its meta charset, a
    // temporary file for it (placement 0: temporary folder, 1: browser cache folder), an output copy, and
    // the deletion of every temporary file made.
    tov::Bstr GetDataSubtype(std::wstring_view url);
    HRESULT CheckMetaTag(std::wstring_view url);
    tov::Bstr CreateTempFile(std::wstring_view url, int placement = 0);
    void CreateOutputFile(std::wstring_view url);
    // "WM_TOV_WANTKEY": 1 when the control wants the key of the message record behind wParam.
    LRESULT OnTOVWantKey(WPARAM wParam);
    // Stops, quits and forgets every detached browser window.
    LONG CloseBrowserWindows();
    // Sets the mode, the instance tag and both URL prefixes.
    void SetProtocolMode(LONG mode);
    void DisconnectBrowserEvents();
    // Scripts and document content: the table reader for the three scripts, the one routine that runs
    // script text in the current document, the document with its failure traces, the content files.
    HRESULT GetScriptFromITab(IDispatch* table, int kind);
    void InternalExecuteScript(const std::string& script);
    tov::ComPtr<IHTMLDocument2> CurrentDocument(const CTraceScope& scope);
    // Icon-font requests: the reply to an XML request (true when there is one), one icon's description.
    bool ParseXMLIconRequest(BSTR request, tov::Bstr& answer);
    tov::Bstr getGUIIconResource(BSTR name);
    // Back channel: TOVEVENT interception, completion of pages and the page marker (called by the browser sinks).
    HRESULT OnTopLevelBeforeNavigate(BSTR URL, LONG Flags, BSTR TargetFrameName, VARIANT* PostData, BSTR Headers, VARIANT_BOOL* Cancel);
    HRESULT OnFrameBeforeNavigate(BSTR URL, LONG Flags, BSTR TargetFrameName, VARIANT* PostData, BSTR Headers, VARIANT_BOOL* Cancel);
    HRESULT OnBeforeNavigate(BSTR URL, LONG Flags, BSTR TargetFrameName, VARIANT* PostData, BSTR Headers, VARIANT_BOOL* Cancel);
    HRESULT StorePostData(ITOVDataProvider* provider, const VARIANT* PostData, CTraceScope& scope);
    void OnNavigateComplete(BSTR URL);
    void OnFrameNavigateComplete(BSTR URL);
    void ReportCompletion(BSTR URL);
    void OnDocumentComplete(IDispatch* frame);
    void SetScriptVariableInHTMLDocument();
    // Simple Browse dialog and detached browser windows.
    HRESULT NewWindow2(IDispatch** ppDisp, VARIANT_BOOL* Cancel);
    BOOL CloseSimpleBrowseWindow();
    HRESULT OpenDocumentInNewWindow(BSTR url);
    HRESULT OpenDocumentInDetachedWindow(BSTR url);

    // Members in the order the control declares them.
    std::wstring m_pszTempFileStem;
    // The temporary files and source files made, with their deletion.
    tov::TemporaryFiles m_files;
    bool m_bShellOpenDetached = false;
    tov::Bstr m_bstrLanguage;
    CTrace m_trace;
    LONG m_lURLLength = 0;
    LONG m_lPostDataLength = 0;
    bool m_bReadyForInput = true;
    bool m_bHoldNavigateComplete = false;
    DWORD m_dwEventsCookie = 0;
    DWORD m_dwEvents2Cookie = 0;
    tov::Bstr m_bstrURLPrefixLocal;
    tov::Bstr m_bstrURLPrefixGlobal;
    tov::Bstr m_bstrHeaders;
    tov::Bstr m_bstrTargetFrame;
    tov::Bstr m_bstrBrowserString;
    tov::ComPtr<IDispatch> m_pPostData;
    tov::ComPtr<IWebBrowser2> m_pWebBrowser;
    tov::ComPtr<IOleObject> m_pOleObject;
    std::string m_strScriptText;
    std::string m_strScriptOnBRELCompleted;
    std::string m_strScriptOnDataSubmitted;
    tov::Bstr m_bstrNavigationStyle;
    tov::OwnNavigation m_ownNavigation;
    LONG m_nProtocolMode = 1;
    LONG m_lNewWindowNavFlags = 0;
    BOOL m_bRestrictSchemes = 0;
    LONG m_lUIFlag = 0;
    BOOL m_bScriptOnDataSubmitted = 0;
    BOOL m_bScriptOnBRELCompleted = 0;
    wchar_t m_szInstanceTag[64] = {};
    LONG m_bEnableOutputFile = 0;
    // The browser windows opened outside the control, and the one used last.
    tov::DetachedBrowserWindows m_detached;
    tov::ComPtr<IOleCommandTarget> m_pCommandTarget;
    bool m_bInternalPage = true;
    bool m_bMetaTagFound = false;
    bool m_bDataCharsetChecked = false;
    std::string m_strMetaCharset;
    LONG m_bScriptRecording = 0;
    LONG m_bPostDataModified = 0;
    BOOL m_bSSOEnabled = 0;
    tov::Bstr m_bstrSSOTicket;
    tov::Bstr m_bstrSSOServiceUrl;
    BOOL m_bSecSessEnabled = 0;
    tov::Bstr m_bstrSecSessTicket;
    tov::Bstr m_bstrSecSessServiceUrl;
    bool m_bDocumentComplete = false;
    bool m_bSimpleBrowse = false;
    LONG m_bEndSessionWithBrowser = 0;
    tov::Variant m_varReserved1;
    tov::Variant m_varReserved2;
    std::string m_strFrontEndKey;
    tov::Bstr m_bstrTessarilSavedURL;
    tov::ComPtr<CTovDialogBox> m_pSimpleBrowseDlg;

    // The browser reported itself active in place (the state WM_SIZE looks at).
    bool m_bInPlaceActive = false;
    // References the browser holds on the site and the sinks (not on the control itself).
    ULONG m_cBrowserHeldRefs = 0;
    // Calls of the browser in progress, and whether the control was torn down inside one of them.
    ULONG m_cBrowserCalls = 0;
    bool m_bLastReleased = false;
    // The container's Close or the last release has begun taking the control down.
    bool m_bTakenDown = false;
    // Parts of this object with interfaces of their own.
    CBrowserSite m_site{*this};
    CBrowserEventsSink m_eventsSink{*this};
    CBrowserEvents2Sink m_events2Sink{*this};
    tov::EventConnectionPoint m_eventsPoint{*static_cast<ITOVHTMLControl*>(this),
                                            *static_cast<tov::ConnectionPointContainerImpl*>(this), DIID__TOVHTMLControlEvents};
    CProxy_TOVHTMLControlEvents m_events{m_eventsPoint};
};
