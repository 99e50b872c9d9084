#pragma once
// The scripted browser: stands in for the platform's WebBrowser control. It offers what the control calls,
// records every call in order (one log per registered class, shared by all its browsers), can be told to
// fail or throw on any call, and fires browser events at the connected sinks as a test asks.
#include <windows.h>
#include <docobj.h>
#include <exdisp.h>
#include <ocidl.h>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>
#include "frontend/call_log.h"
#include "framework/com_ptr.h"
#include "framework/connection_points.h"
#include "framework/variant.h"

namespace tovfe {

// Failures a test asks for, by call name (as in the log, e.g. "GoBack" or "Advise(DWebBrowserEvents2)").
struct FailurePlan {
    std::map<std::wstring, HRESULT> failures;
    std::set<std::wstring> throwing;
};

class ScriptedBrowser final : public IOleObject,
                              public IOleInPlaceObject,
                              public IWebBrowser2,
                              public IOleCommandTarget,
                              public tov::ConnectionPointContainerImpl {
public:
    ScriptedBrowser(std::shared_ptr<CallLog> log, FailurePlan plan);
    ~ScriptedBrowser();

    // ---- for tests
    CallLog& Log() { return *m_log; }
    void FailCall(const std::wstring& name, HRESULT hr) { m_plan.failures[name] = hr; }
    void ThrowOn(const std::wstring& name) { m_plan.throwing.insert(name); }
    void ClearFailures() { m_plan = FailurePlan{}; }
    HRESULT FireEvent(REFIID eventsIid, DISPID id, std::vector<tov::Variant> argsInDeclarationOrder);
    size_t SinkCount(REFIID eventsIid) const;
    ULONG RefCount() const { return m_refs; }
    IOleClientSite* Site() const { return m_site.Get(); }
    HWND ChildWindow() const { return m_child; }
    void SetHwnd(SHANDLE_PTR hwnd) { m_hwnd = hwnd; }
    void SetDocument(IDispatch* document) { m_document = document; }

    // IUnknown
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override;
    STDMETHODIMP_(ULONG) AddRef() override { return ++m_refs; }
    STDMETHODIMP_(ULONG) Release() override;

    // IOleObject
    STDMETHODIMP SetClientSite(IOleClientSite* pClientSite) override;
    STDMETHODIMP GetClientSite(IOleClientSite** ppClientSite) override;
    STDMETHODIMP SetHostNames(LPCOLESTR, LPCOLESTR) override { return S_OK; }
    STDMETHODIMP Close(DWORD dwSaveOption) override;
    STDMETHODIMP SetMoniker(DWORD, IMoniker*) override { return E_NOTIMPL; }
    STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
    STDMETHODIMP InitFromData(IDataObject*, BOOL, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP GetClipboardData(DWORD, IDataObject**) override { return E_NOTIMPL; }
    STDMETHODIMP DoVerb(LONG iVerb, LPMSG, IOleClientSite*, LONG, HWND hwndParent, LPCRECT lprcPosRect) override;
    STDMETHODIMP EnumVerbs(IEnumOLEVERB**) override { return E_NOTIMPL; }
    STDMETHODIMP Update() override { return S_OK; }
    STDMETHODIMP IsUpToDate() override { return S_OK; }
    STDMETHODIMP GetUserClassID(CLSID* pClsid) override;
    STDMETHODIMP GetUserType(DWORD, LPOLESTR*) override { return E_NOTIMPL; }
    STDMETHODIMP SetExtent(DWORD, SIZEL*) override { return S_OK; }
    STDMETHODIMP GetExtent(DWORD, SIZEL*) override { return E_NOTIMPL; }
    STDMETHODIMP Advise(IAdviseSink*, DWORD*) override { return E_NOTIMPL; }
    STDMETHODIMP Unadvise(DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP EnumAdvise(IEnumSTATDATA**) override { return E_NOTIMPL; }
    STDMETHODIMP GetMiscStatus(DWORD, DWORD* pdw) override { if (pdw) *pdw = 0; return S_OK; }
    STDMETHODIMP SetColorScheme(LOGPALETTE*) override { return E_NOTIMPL; }

    // IOleWindow / IOleInPlaceObject
    STDMETHODIMP GetWindow(HWND* phwnd) override;
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP InPlaceDeactivate() override;
    STDMETHODIMP UIDeactivate() override;
    STDMETHODIMP SetObjectRects(LPCRECT lprcPosRect, LPCRECT lprcClipRect) override;
    STDMETHODIMP ReactivateAndUndo() override { return E_NOTIMPL; }

    // IDispatch (not scripted)
    STDMETHODIMP GetTypeInfoCount(UINT* n) override { if (n) *n = 0; return S_OK; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
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
    STDMETHODIMP get_Parent(IDispatch** ppDisp) override { return NotImplemented(ppDisp); }
    STDMETHODIMP get_Container(IDispatch** ppDisp) override { return NotImplemented(ppDisp); }
    STDMETHODIMP get_Document(IDispatch** ppDisp) override;
    STDMETHODIMP get_TopLevelContainer(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Type(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Left(LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Left(LONG) override { return E_NOTIMPL; }
    STDMETHODIMP get_Top(LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Top(LONG) override { return E_NOTIMPL; }
    STDMETHODIMP get_Width(LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Width(LONG) override { return E_NOTIMPL; }
    STDMETHODIMP get_Height(LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Height(LONG) override { return E_NOTIMPL; }
    STDMETHODIMP get_LocationName(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_LocationURL(BSTR* LocationURL) override;
    STDMETHODIMP get_Busy(VARIANT_BOOL*) override { return E_NOTIMPL; }

    // IWebBrowserApp
    STDMETHODIMP Quit() override;
    STDMETHODIMP ClientToWindow(int*, int*) override { return E_NOTIMPL; }
    STDMETHODIMP PutProperty(BSTR, VARIANT) override { return E_NOTIMPL; }
    STDMETHODIMP GetProperty(BSTR, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Name(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_HWND(SHANDLE_PTR* pHWND) override;
    STDMETHODIMP get_FullName(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Path(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Visible(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Visible(VARIANT_BOOL Value) override;
    STDMETHODIMP get_StatusBar(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_StatusBar(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_StatusText(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_StatusText(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_ToolBar(int*) override { return E_NOTIMPL; }
    STDMETHODIMP put_ToolBar(int) override { return E_NOTIMPL; }
    STDMETHODIMP get_MenuBar(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_MenuBar(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_FullScreen(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_FullScreen(VARIANT_BOOL) override { return E_NOTIMPL; }

    // IWebBrowser2
    STDMETHODIMP Navigate2(VARIANT* URL, VARIANT* Flags, VARIANT* TargetFrameName, VARIANT* PostData, VARIANT* Headers) override;
    STDMETHODIMP QueryStatusWB(OLECMDID, OLECMDF*) override { return E_NOTIMPL; }
    STDMETHODIMP ExecWB(OLECMDID cmdID, OLECMDEXECOPT cmdexecopt, VARIANT* pvaIn, VARIANT* pvaOut) override;
    STDMETHODIMP ShowBrowserBar(VARIANT*, VARIANT*, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP get_ReadyState(READYSTATE*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Offline(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Offline(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_Silent(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Silent(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_RegisterAsBrowser(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_RegisterAsBrowser(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_RegisterAsDropTarget(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_RegisterAsDropTarget(VARIANT_BOOL bRegister) override;
    STDMETHODIMP get_TheaterMode(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_TheaterMode(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_AddressBar(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_AddressBar(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_Resizable(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Resizable(VARIANT_BOOL) override { return E_NOTIMPL; }

    // IOleCommandTarget
    STDMETHODIMP QueryStatus(const GUID* pguidCmdGroup, ULONG cCmds, OLECMD prgCmds[], OLECMDTEXT* pCmdText) override;
    STDMETHODIMP Exec(const GUID* pguidCmdGroup, DWORD nCmdID, DWORD nCmdexecopt, VARIANT* pvaIn, VARIANT* pvaOut) override;

protected:
    std::vector<tov::EventConnectionPoint*> ConnectionPoints() override { return {&m_events, &m_events2}; }

private:
    // Records the call; answers the failure planned for it, or throws when asked to.
    HRESULT Record(const std::wstring& name, std::vector<std::wstring> args = {});
    static HRESULT NotImplemented(IDispatch** pp) { if (pp) *pp = nullptr; return E_NOTIMPL; }
    void DestroyChild();

    // Advise and Unadvise of the two connection points are recorded through these.
    class RecordingPoint : public tov::EventConnectionPoint {
    public:
        RecordingPoint(ScriptedBrowser& owner, const IID& iid, const wchar_t* name);
        STDMETHODIMP Advise(IUnknown* pUnkSink, DWORD* pdwCookie) override;
        STDMETHODIMP Unadvise(DWORD dwCookie) override;

    private:
        ScriptedBrowser& m_browser;
        std::wstring m_name;
    };

    ULONG m_refs = 1;
    std::shared_ptr<CallLog> m_log;
    FailurePlan m_plan;
    tov::ComPtr<IOleClientSite> m_site;
    tov::ComPtr<IDispatch> m_document;
    HWND m_child = nullptr;
    SHANDLE_PTR m_hwnd = 0x1234;
    std::wstring m_location;
    RecordingPoint m_events;
    RecordingPoint m_events2;
};

// The class object for CLSID_WebBrowser in this process: every browser it makes shares one log.
class ScriptedBrowserClass final : public IClassFactory {
public:
    ScriptedBrowserClass();
    ~ScriptedBrowserClass();

    HRESULT Register(const CLSID& clsid = CLSID_WebBrowser);
    void Revoke();
    CallLog& Log() { return *m_log; }
    const std::vector<tov::ComPtr<ScriptedBrowser>>& Created() const { return m_created; }
    ScriptedBrowser* Last() const { return m_created.empty() ? nullptr : m_created.back().Get(); }
    void FailCreate(HRESULT hr) { m_createResult = hr; }
    // Failures every browser made from now on starts with.
    void FailCallOnNext(const std::wstring& name, HRESULT hr) { m_plan.failures[name] = hr; }
    void ClearFailurePlan() { m_plan = FailurePlan{}; }

    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override;
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP CreateInstance(IUnknown* pOuter, REFIID riid, void** ppv) override;
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }

private:
    std::shared_ptr<CallLog> m_log = std::make_shared<CallLog>();
    std::vector<tov::ComPtr<ScriptedBrowser>> m_created;
    FailurePlan m_plan;
    HRESULT m_createResult = S_OK;
    DWORD m_cookie = 0;
};

} // namespace tovfe
