#pragma once
// The WebBrowser class over the engine: an embeddable OLE object with the browser interfaces and the
// browser events of both generations, showing the engine's rendering of its page in its own window.
// The same class, as the browser application class, is a stand-alone browser window.
#include <windows.h>
#include <docobj.h>
#include <exdisp.h>
#include <mshtmhst.h>
#include <ocidl.h>
#include <map>
#include <memory>
#include <string>
#include "engine/browser_view.h"
#include "engine/page.h"
#include "framework/web_browser_stubs.h"
#include "framework/com_ptr.h"
#include "framework/connection_points.h"
#include "framework/object_root.h"

namespace tovengine {

class CEngineFrame;

class CEngineBrowser : public tov::ObjectRoot,
                       public IOleObject,
                       public IOleInPlaceObject,
                       public IOleInPlaceActiveObject,
                       public tov::WebBrowser2Stubs,
                       public IOleCommandTarget,
                       public tov::ConnectionPointContainerImpl,
                       public PageListener,
                       public ViewHost {
public:
    CEngineBrowser();
    ~CEngineBrowser() override;

    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override;

    // IOleObject
    STDMETHODIMP SetClientSite(IOleClientSite* pClientSite) override;
    STDMETHODIMP GetClientSite(IOleClientSite** ppClientSite) override;
    STDMETHODIMP SetHostNames(LPCOLESTR, LPCOLESTR) override { return S_OK; }
    STDMETHODIMP Close(DWORD dwSaveOption) override;
    STDMETHODIMP SetMoniker(DWORD, IMoniker*) override { return E_NOTIMPL; }
    STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker** pp) override { return tov::NotImplemented(pp); }
    STDMETHODIMP InitFromData(IDataObject*, BOOL, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP GetClipboardData(DWORD, IDataObject** pp) override { return tov::NotImplemented(pp); }
    STDMETHODIMP DoVerb(LONG iVerb, LPMSG, IOleClientSite* pActiveSite, LONG, HWND hwndParent, LPCRECT lprcPosRect) override;
    STDMETHODIMP EnumVerbs(IEnumOLEVERB** pp) override { return tov::NotImplemented(pp); }
    STDMETHODIMP Update() override { return S_OK; }
    STDMETHODIMP IsUpToDate() override { return S_OK; }
    STDMETHODIMP GetUserClassID(CLSID* pClsid) override;
    STDMETHODIMP GetUserType(DWORD, LPOLESTR* pp) override { return tov::NotImplemented(pp); }
    STDMETHODIMP SetExtent(DWORD, SIZEL* size) override;
    STDMETHODIMP GetExtent(DWORD, SIZEL* size) override;
    STDMETHODIMP Advise(IAdviseSink*, DWORD* pdw) override { return tov::NotImplemented(pdw); }
    STDMETHODIMP Unadvise(DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP EnumAdvise(IEnumSTATDATA** pp) override { return tov::NotImplemented(pp); }
    STDMETHODIMP GetMiscStatus(DWORD, DWORD* status) override;
    STDMETHODIMP SetColorScheme(LOGPALETTE*) override { return E_NOTIMPL; }

    // IOleWindow, IOleInPlaceObject
    STDMETHODIMP GetWindow(HWND* phwnd) override;
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP InPlaceDeactivate() override;
    STDMETHODIMP UIDeactivate() override { return S_OK; }
    STDMETHODIMP SetObjectRects(LPCRECT lprcPosRect, LPCRECT lprcClipRect) override;
    STDMETHODIMP ReactivateAndUndo() override { return E_NOTIMPL; }

    // IOleInPlaceActiveObject
    STDMETHODIMP TranslateAccelerator(LPMSG lpmsg) override;
    STDMETHODIMP OnFrameWindowActivate(BOOL) override { return S_OK; }
    STDMETHODIMP OnDocWindowActivate(BOOL) override { return S_OK; }
    STDMETHODIMP ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) override { return S_OK; }
    STDMETHODIMP EnableModeless(BOOL) override { return S_OK; }

    // IDispatch: the browser is driven early-bound.
    STDMETHODIMP GetTypeInfoCount(UINT* n) override { return tov::NotImplemented(n); }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** pp) override { return tov::NotImplemented(pp); }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override { return E_NOTIMPL; }

    // IWebBrowser2, as far as hosts use it
    STDMETHODIMP GoBack() override;
    STDMETHODIMP GoForward() override;
    STDMETHODIMP GoHome() override;
    STDMETHODIMP Navigate(BSTR URL, VARIANT* Flags, VARIANT* TargetFrameName, VARIANT* PostData, VARIANT* Headers) override;
    STDMETHODIMP Navigate2(VARIANT* URL, VARIANT* Flags, VARIANT* TargetFrameName, VARIANT* PostData, VARIANT* Headers) override;
    STDMETHODIMP Refresh() override;
    STDMETHODIMP Refresh2(VARIANT*) override { return Refresh(); }
    STDMETHODIMP Stop() override;
    STDMETHODIMP get_Application(IDispatch** ppDisp) override;
    STDMETHODIMP get_Parent(IDispatch** ppDisp) override { return get_Application(ppDisp); }
    STDMETHODIMP get_Document(IDispatch** ppDisp) override;
    STDMETHODIMP get_TopLevelContainer(VARIANT_BOOL* p) override;
    STDMETHODIMP get_Type(BSTR* p) override;
    STDMETHODIMP get_LocationName(BSTR* p) override;
    STDMETHODIMP get_LocationURL(BSTR* LocationURL) override;
    STDMETHODIMP get_Busy(VARIANT_BOOL* p) override;
    STDMETHODIMP Quit() override;
    STDMETHODIMP get_Name(BSTR* p) override;
    STDMETHODIMP get_HWND(SHANDLE_PTR* pHWND) override;
    STDMETHODIMP get_Visible(VARIANT_BOOL* p) override;
    STDMETHODIMP put_Visible(VARIANT_BOOL Value) override;
    STDMETHODIMP get_ReadyState(READYSTATE* p) override;
    STDMETHODIMP ExecWB(OLECMDID cmdID, OLECMDEXECOPT cmdexecopt, VARIANT* pvaIn, VARIANT* pvaOut) override;
    STDMETHODIMP QueryStatusWB(OLECMDID cmdID, OLECMDF* pcmdf) override;
    STDMETHODIMP get_Silent(VARIANT_BOOL* p) override;
    STDMETHODIMP put_Silent(VARIANT_BOOL) override { return S_OK; }
    STDMETHODIMP get_RegisterAsBrowser(VARIANT_BOOL* p) override;
    STDMETHODIMP put_RegisterAsBrowser(VARIANT_BOOL) override { return S_OK; }
    STDMETHODIMP get_RegisterAsDropTarget(VARIANT_BOOL* p) override;
    STDMETHODIMP put_RegisterAsDropTarget(VARIANT_BOOL value) override;

    // IOleCommandTarget
    STDMETHODIMP QueryStatus(const GUID* pguidCmdGroup, ULONG cCmds, OLECMD prgCmds[], OLECMDTEXT* pCmdText) override;
    STDMETHODIMP Exec(const GUID* pguidCmdGroup, DWORD nCmdID, DWORD nCmdexecopt, VARIANT* pvaIn, VARIANT* pvaOut) override;

    // Frames and documents reach the page through their browser.
    std::shared_ptr<Page> CurrentPage() const { return m_page; }
    HRESULT NavigateFrame(const std::string& frameId, BSTR url, VARIANT* flags, VARIANT* targetFrame, VARIANT* postData,
                          VARIANT* headers);

protected:
    std::vector<tov::EventConnectionPoint*> ConnectionPoints() override { return {&m_events, &m_events2}; }
    void FinalConstruct() override;
    // The browser application class: a window of its own, shown by put_Visible.
    bool m_application = false;

private:
    // PageListener
    bool OnBeforeNavigate(const Navigation& navigation) override;
    void OnNavigateComplete(const std::string& frameId, const std::wstring& url) override;
    void OnDocumentComplete(const std::string& frameId, const std::wstring& url) override;
    void OnTitleChange(const std::wstring& title) override;
    void OnDownloadBegin() override;
    void OnDownloadComplete() override;
    void OnNewWindow(const std::wstring& url) override;
    void OnFrame(const std::string& picture) override;
    void OnContextMenu(int x, int y) override;
    void OnEngineGone() override;
    // ViewHost
    Page* ViewPage() override { return m_page.get(); }
    void ViewClosedByUser() override;

    // The page, made on first need; null when the engine could not give one.
    Page* EnsurePage();
    IDispatch* FrameDispatch(const std::string& frameId);
    void ClosePage() noexcept;
    void Activate(HWND parent, LPCRECT rect);
    HRESULT OpenInNewWindow(const Navigation& nav);

    tov::EventConnectionPoint m_events;
    tov::EventConnectionPoint m_events2;
    tov::ComPtr<IOleClientSite> m_site;
    std::shared_ptr<Page> m_page;
    BrowserView m_view;
    std::map<std::string, tov::ComPtr<CEngineFrame>> m_frames;
    std::wstring m_title;
    SIZEL m_extent{};
    bool m_visible = false;
    bool m_closed = false;
    bool m_dropTarget = true;
};

// The browser application class: the same browser in a window of its own.
class CEngineApplication final : public CEngineBrowser {
public:
    CEngineApplication() { m_application = true; }
};

} // namespace tovengine
