#pragma once
// The scripted browser: stands in for the platform's WebBrowser control. It offers what the control calls,
// records every call in order, can be told to fail or throw on any call, and fires browser events at the
// connected sinks as a test asks.
#include <windows.h>
#include <docobj.h>
#include <exdisp.h>
#include <mshtmhst.h>
#include <ocidl.h>
#include <memory>
#include <functional>
#include <string>
#include <vector>
#include "frontend/call_log.h"
#include "frontend/class_registration.h"
#include "framework/com_ptr.h"
#include "framework/connection_points.h"
#include "framework/handles.h"
#include "framework/object_root.h"
#include "framework/variant.h"
#include "framework/web_browser_stubs.h"
#include "framework/hresult_error.h"

namespace tovfe {

class ScriptedBrowser final : public tov::ObjectRoot,
                              public IOleObject,
                              public IOleInPlaceObject,
                              public IOleInPlaceActiveObject,
                              public tov::WebBrowser2Stubs,
                              public IOleCommandTarget,
                              public tov::ConnectionPointContainerImpl {
public:
    // A browser recording into `log` (a log of its own when null) that starts with the failures of `plan`.
    static tov::ComPtr<ScriptedBrowser> Create(std::shared_ptr<CallLog> log = nullptr, FailurePlan plan = {});

    // ---- for tests
    CallLog& Log() { return *m_log; }
    // This browser's calls alone, when several share one log.
    CallLog& OwnLog() { return m_ownLog; }
    void FailCall(const std::wstring& key, HRESULT hr) { m_plan.Fail(key, hr); }
    void ThrowOn(const std::wstring& key) { m_plan.Throw(key); }
    void ClearFailures() { m_plan.Clear(); }
    // Calls every sink of the connection point for `eventsIid`; the last sink's answer, S_OK without sinks.
    HRESULT FireEvent(REFIID eventsIid, DISPID id, std::vector<tov::Variant> argsInDeclarationOrder);
    size_t SinkCount(REFIID eventsIid) const;
    // A page asks for a new window: NewWindow2 with both arguments by reference, as the engine passes them.
    HRESULT FireNewWindow2(IDispatch** ppDisp, VARIANT_BOOL* cancel);
    ULONG RefCount();
    IOleClientSite* Site() const { return m_site.Get(); }
    HWND ChildWindow() const { return m_child.Get(); }
    void SetHwnd(SHANDLE_PTR hwnd) { m_hwnd = hwnd; }
    void SetDocument(IDispatch* document) { m_document = document; }
    // ---- back channel: a page author's actions, fired at the sinks the way the platform browser fires them
    struct NavigationOutcome {
        HRESULT hr;
        VARIANT_BOOL cancel; // as the sinks left it; it starts false
    };
    // BeforeNavigate, or FrameBeforeNavigate when `inFrame`, with `postData` behind a VARIANT reference
    // (an empty VARIANT when null) and Cancel in/out.
    NavigationOutcome FireBeforeNavigate(BSTR url, LONG flags, BSTR frame, VARIANT* postData, BSTR headers, bool inFrame);
    // "Click a link" in the top document, or in the named frame: no post data, no headers.
    NavigationOutcome ClickLink(const std::wstring& url, const std::wstring& frame = L"");
    // "Submit a form": the url-encoded body as a byte array, with the form's content type as headers.
    NavigationOutcome SubmitForm(const std::wstring& url, const std::string& body, const std::wstring& frame = L"");
    // "Load a page with N frames": the page's BeforeNavigate, then unless it was cancelled the top
    // NavigateComplete, each frame's FrameNavigateComplete and DocumentComplete (with the frame's own
    // object), and last the top DocumentComplete with this browser's IDispatch.
    NavigationOutcome LoadPage(const std::wstring& url, const std::vector<std::wstring>& frameUrls = {});
    // Runs inside every recorded call, after it was logged: a test's way to have the browser do something
    // (fire events, for instance) from inside a method the control called.
    std::function<void(const Call&)> whileCalled;
    // The completion steps on their own.
    HRESULT CompleteTopNavigation(const std::wstring& url);
    HRESULT CompleteFrame(size_t index, const std::wstring& url);
    HRESULT CompleteTopDocument(const std::wstring& url);

    // Calls on the client site (the control), made the way the platform browser makes them: interfaces
    // by QueryInterface on the site, the security manager and focus protection through QueryService.
    // E_UNEXPECTED without a site; the site's own answer otherwise.
    template <class Itf> tov::ComPtr<Itf> SiteAs(REFIID iid) const
    {
        tov::ComPtr<Itf> itf;
        if (m_site) m_site->QueryInterface(iid, itf.PutVoid());
        return itf;
    }
    HRESULT CallGetHostInfo(DOCHOSTUIINFO* info) const;
    HRESULT CallShowContextMenu(DWORD id, POINT* pt) const;
    HRESULT CallQueryService(REFGUID service, REFIID riid, void** ppv) const;
    HRESULT CallProcessUrlAction(const wchar_t* url, DWORD action, BYTE* policy, DWORD cbPolicy) const;
    HRESULT CallExec(const GUID* group, DWORD command, VARIANT* in, VARIANT* out) const;
    HRESULT CallAllowFocusChange(BOOL* allow) const;
    HRESULT CallGetExternal(IDispatch** external) const;
    HRESULT CallTranslateAccelerator(MSG* msg) const;
    HRESULT CallShowObject() const;
    HRESULT CallGetWindowContext(RECT* pos, RECT* clip) const;

    // IUnknown: the interfaces the control asks for by name are recorded.
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override;
    STDMETHODIMP_(ULONG) AddRef() override { return OuterAddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return OuterRelease(); }
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
    STDMETHODIMP DoVerb(LONG iVerb, LPMSG, IOleClientSite*, LONG, HWND hwndParent, LPCRECT lprcPosRect) override;
    STDMETHODIMP EnumVerbs(IEnumOLEVERB** pp) override { return tov::NotImplemented(pp); }
    STDMETHODIMP Update() override { return S_OK; }
    STDMETHODIMP IsUpToDate() override { return S_OK; }
    STDMETHODIMP GetUserClassID(CLSID* pClsid) override;
    STDMETHODIMP GetUserType(DWORD, LPOLESTR* pp) override { return tov::NotImplemented(pp); }
    STDMETHODIMP SetExtent(DWORD, SIZEL*) override { return S_OK; }
    STDMETHODIMP GetExtent(DWORD, SIZEL*) override { return E_NOTIMPL; }
    STDMETHODIMP Advise(IAdviseSink*, DWORD* pdw) override { return tov::NotImplemented(pdw); }
    STDMETHODIMP Unadvise(DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP EnumAdvise(IEnumSTATDATA** pp) override { return tov::NotImplemented(pp); }
    STDMETHODIMP GetMiscStatus(DWORD, DWORD* pdw) override { if (!pdw) return E_POINTER; *pdw = 0; return S_OK; }
    STDMETHODIMP SetColorScheme(LOGPALETTE*) override { return E_NOTIMPL; }

    // IOleWindow, IOleInPlaceObject
    STDMETHODIMP GetWindow(HWND* phwnd) override;
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP InPlaceDeactivate() override;
    STDMETHODIMP UIDeactivate() override;
    STDMETHODIMP SetObjectRects(LPCRECT lprcPosRect, LPCRECT lprcClipRect) override;
    STDMETHODIMP ReactivateAndUndo() override { return E_NOTIMPL; }

    // IOleInPlaceActiveObject: keyboard accelerators the host passes on are recorded.
    STDMETHODIMP TranslateAccelerator(LPMSG lpmsg) override;
    STDMETHODIMP OnFrameWindowActivate(BOOL) override { return S_OK; }
    STDMETHODIMP OnDocWindowActivate(BOOL) override { return S_OK; }
    STDMETHODIMP ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) override { return S_OK; }
    STDMETHODIMP EnableModeless(BOOL) override { return S_OK; }

    // IDispatch: nothing calls the browser late-bound.
    STDMETHODIMP GetTypeInfoCount(UINT* n) override { return tov::NotImplemented(n); }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** pp) override { return tov::NotImplemented(pp); }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override { return E_NOTIMPL; }

    // IWebBrowser
    STDMETHODIMP GoBack() override;
    STDMETHODIMP GoForward() override;
    STDMETHODIMP GoHome() override;
    STDMETHODIMP GoSearch() override;
    STDMETHODIMP Navigate(BSTR URL, VARIANT* Flags, VARIANT* TargetFrameName, VARIANT* PostData, VARIANT* Headers) override;
    STDMETHODIMP Refresh() override;
    STDMETHODIMP Refresh2(VARIANT* Level) override;
    STDMETHODIMP Stop() override;
    STDMETHODIMP get_Application(IDispatch** ppDisp) override;
    STDMETHODIMP get_Document(IDispatch** ppDisp) override;
    STDMETHODIMP get_LocationURL(BSTR* LocationURL) override;

    // IWebBrowserApp
    STDMETHODIMP Quit() override;
    STDMETHODIMP get_HWND(SHANDLE_PTR* pHWND) override;
    STDMETHODIMP put_Visible(VARIANT_BOOL Value) override;

    // IWebBrowser2
    STDMETHODIMP Navigate2(VARIANT* URL, VARIANT* Flags, VARIANT* TargetFrameName, VARIANT* PostData, VARIANT* Headers) override;
    STDMETHODIMP ExecWB(OLECMDID cmdID, OLECMDEXECOPT cmdexecopt, VARIANT* pvaIn, VARIANT* pvaOut) override;
    STDMETHODIMP put_RegisterAsDropTarget(VARIANT_BOOL bRegister) override;

    // IOleCommandTarget
    STDMETHODIMP QueryStatus(const GUID* pguidCmdGroup, ULONG cCmds, OLECMD prgCmds[], OLECMDTEXT* pCmdText) override;
    STDMETHODIMP Exec(const GUID* pguidCmdGroup, DWORD nCmdID, DWORD nCmdexecopt, VARIANT* pvaIn, VARIANT* pvaOut) override;

protected:
    std::vector<tov::EventConnectionPoint*> ConnectionPoints() override { return {&m_events, &m_events2}; }

private:
    friend class tov::ObjectRoot;
    ScriptedBrowser();

    // Records the call; answers the failure planned for it, or throws AskedToThrow.
    HRESULT Record(std::wstring name, std::vector<std::wstring> args = {});
    const tov::EventConnectionPoint* PointFor(REFIID eventsIid) const;

    // A connection point whose Advise and Unadvise are recorded and can be made to fail.
    class RecordingPoint : public tov::EventConnectionPoint {
    public:
        RecordingPoint(ScriptedBrowser& owner, const IID& iid, const wchar_t* name);
        STDMETHODIMP Advise(IUnknown* pUnkSink, DWORD* pdwCookie) override;
        STDMETHODIMP Unadvise(DWORD dwCookie) override;

    private:
        ScriptedBrowser& m_browser;
        std::wstring m_name;
    };

    std::shared_ptr<CallLog> m_log;
    CallLog m_ownLog;
    FailurePlan m_plan;
    tov::ComPtr<IOleClientSite> m_site;
    tov::ComPtr<IDispatch> m_document;
    tov::UniqueWindow m_child;
    SHANDLE_PTR m_hwnd = 0x1234;
    std::wstring m_location;
    RecordingPoint m_events;
    RecordingPoint m_events2;
    // Frames of the loaded page: browser objects of their own, as the platform's frames are.
    std::vector<tov::ComPtr<ScriptedBrowser>> m_frames;
};

} // namespace tovfe
