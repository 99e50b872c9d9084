#include "frontend/scripted_browser.h"
#include <stdexcept>

namespace tovfe {
namespace {

struct NamedIid {
    const IID* iid;
    const wchar_t* name;
};
// QueryInterface calls worth recording, by name.
const NamedIid kRecordedQueries[] = {
    {&IID_IWebBrowser, L"IWebBrowser"},
    {&IID_IWebBrowserApp, L"IWebBrowserApp"},
    {&IID_IWebBrowser2, L"IWebBrowser2"},
    {&IID_IOleCommandTarget, L"IOleCommandTarget"},
    {&IID_IOleInPlaceObject, L"IOleInPlaceObject"},
    {&IID_IOleObject, L"IOleObject"},
    {&IID_IConnectionPointContainer, L"IConnectionPointContainer"},
};

std::wstring RectText(LPCRECT r)
{
    if (!r) return L"<null>";
    return std::to_wstring(r->left) + L"," + std::to_wstring(r->top) + L"," + std::to_wstring(r->right) + L"," +
           std::to_wstring(r->bottom);
}

std::wstring GuidText(const GUID* g)
{
    if (!g) return L"null";
    wchar_t buf[40] = {};
    StringFromGUID2(*g, buf, 40);
    return buf;
}

} // namespace

ScriptedBrowser::RecordingPoint::RecordingPoint(ScriptedBrowser& owner, const IID& iid, const wchar_t* name)
    : tov::EventConnectionPoint(*static_cast<IOleObject*>(&owner), *static_cast<IConnectionPointContainer*>(&owner), iid),
      m_browser(owner), m_name(name)
{
}

STDMETHODIMP ScriptedBrowser::RecordingPoint::Advise(IUnknown* pUnkSink, DWORD* pdwCookie)
{
    const HRESULT planned = m_browser.Record(L"Advise", {m_name});
    if (FAILED(planned)) {
        if (pdwCookie) *pdwCookie = 0;
        return planned;
    }
    return tov::EventConnectionPoint::Advise(pUnkSink, pdwCookie);
}

STDMETHODIMP ScriptedBrowser::RecordingPoint::Unadvise(DWORD dwCookie)
{
    m_browser.Record(L"Unadvise", {m_name, std::to_wstring(dwCookie)});
    return tov::EventConnectionPoint::Unadvise(dwCookie);
}

ScriptedBrowser::ScriptedBrowser(std::shared_ptr<CallLog> log, FailurePlan plan)
    : m_log(std::move(log)), m_plan(std::move(plan)), m_events(*this, DIID_DWebBrowserEvents, L"DWebBrowserEvents"),
      m_events2(*this, DIID_DWebBrowserEvents2, L"DWebBrowserEvents2")
{
}

ScriptedBrowser::~ScriptedBrowser()
{
    DestroyChild();
}

HRESULT ScriptedBrowser::Record(const std::wstring& name, std::vector<std::wstring> args)
{
    Call call{name, std::move(args)};
    const std::wstring text = call.Text();
    m_log->Add(call.name, call.args);
    for (const std::wstring& key : {text, name}) {
        if (m_plan.throwing.count(key)) throw std::runtime_error("scripted browser: asked to throw");
        auto f = m_plan.failures.find(key);
        if (f != m_plan.failures.end()) return f->second;
    }
    return S_OK;
}

STDMETHODIMP ScriptedBrowser::QueryInterface(REFIID riid, void** ppv)
{
    if (!ppv) return E_POINTER;
    *ppv = nullptr;
    for (const auto& q : kRecordedQueries) {
        if (IsEqualIID(riid, *q.iid)) {
            if (FAILED(Record(L"QueryInterface", {q.name}))) return E_NOINTERFACE;
            break;
        }
    }
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IOleObject)) *ppv = static_cast<IOleObject*>(this);
    else if (IsEqualIID(riid, IID_IOleWindow) || IsEqualIID(riid, IID_IOleInPlaceObject)) *ppv = static_cast<IOleInPlaceObject*>(this);
    else if (IsEqualIID(riid, IID_IDispatch) || IsEqualIID(riid, IID_IWebBrowser) || IsEqualIID(riid, IID_IWebBrowserApp) ||
             IsEqualIID(riid, IID_IWebBrowser2))
        *ppv = static_cast<IWebBrowser2*>(this);
    else if (IsEqualIID(riid, IID_IOleCommandTarget)) *ppv = static_cast<IOleCommandTarget*>(this);
    else if (IsEqualIID(riid, IID_IConnectionPointContainer)) *ppv = static_cast<IConnectionPointContainer*>(this);
    if (!*ppv) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) ScriptedBrowser::Release()
{
    const ULONG n = --m_refs;
    if (!n) delete this;
    return n;
}

void ScriptedBrowser::DestroyChild()
{
    if (m_child && IsWindow(m_child)) DestroyWindow(m_child);
    m_child = nullptr;
}

HRESULT ScriptedBrowser::FireEvent(REFIID eventsIid, DISPID id, std::vector<tov::Variant> args)
{
    tov::EventConnectionPoint& point = IsEqualIID(eventsIid, DIID_DWebBrowserEvents2) ? m_events2 : m_events;
    std::vector<VARIANTARG> list(args.rbegin(), args.rend());
    HRESULT hr = S_OK;
    for (const auto& sink : point.Sinks()) {
        auto* disp = reinterpret_cast<IDispatch*>(sink.Get());
        DISPPARAMS params{list.empty() ? nullptr : list.data(), nullptr, static_cast<UINT>(list.size()), 0};
        tov::Variant result;
        hr = disp->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, &result, nullptr, nullptr);
    }
    return hr;
}

size_t ScriptedBrowser::SinkCount(REFIID eventsIid) const
{
    return (IsEqualIID(eventsIid, DIID_DWebBrowserEvents2) ? m_events2 : m_events).Sinks().size();
}

// ---- IOleObject, IOleInPlaceObject -----------------------------------------------------------------

STDMETHODIMP ScriptedBrowser::SetClientSite(IOleClientSite* pClientSite)
{
    HRESULT hr = Record(L"SetClientSite", {pClientSite ? L"site" : L"null"});
    if (FAILED(hr)) return hr;
    m_site = pClientSite;
    return S_OK;
}

STDMETHODIMP ScriptedBrowser::GetClientSite(IOleClientSite** ppClientSite)
{
    if (!ppClientSite) return E_POINTER;
    *ppClientSite = m_site.CopyOut();
    return S_OK;
}

STDMETHODIMP ScriptedBrowser::Close(DWORD dwSaveOption)
{
    HRESULT hr = Record(L"Close", {std::to_wstring(dwSaveOption)});
    DestroyChild();
    return hr;
}

STDMETHODIMP ScriptedBrowser::DoVerb(LONG iVerb, LPMSG, IOleClientSite*, LONG, HWND hwndParent, LPCRECT lprcPosRect)
{
    HRESULT hr = Record(L"DoVerb", {std::to_wstring(iVerb), HexArg(reinterpret_cast<uintptr_t>(hwndParent)), RectText(lprcPosRect)});
    if (FAILED(hr)) return hr;
    if (iVerb == OLEIVERB_INPLACEACTIVATE && hwndParent && !m_child && lprcPosRect) {
        m_child = CreateWindowExW(0, L"Static", L"scripted browser", WS_CHILD | WS_VISIBLE, lprcPosRect->left, lprcPosRect->top,
                                  lprcPosRect->right - lprcPosRect->left, lprcPosRect->bottom - lprcPosRect->top, hwndParent,
                                  nullptr, GetModuleHandleW(nullptr), nullptr);
    }
    return S_OK;
}

STDMETHODIMP ScriptedBrowser::GetUserClassID(CLSID* pClsid)
{
    if (!pClsid) return E_POINTER;
    *pClsid = CLSID_WebBrowser;
    return S_OK;
}

STDMETHODIMP ScriptedBrowser::GetWindow(HWND* phwnd)
{
    if (!phwnd) return E_POINTER;
    *phwnd = m_child;
    return m_child ? S_OK : E_FAIL;
}

STDMETHODIMP ScriptedBrowser::InPlaceDeactivate()
{
    HRESULT hr = Record(L"InPlaceDeactivate");
    DestroyChild();
    return hr;
}

STDMETHODIMP ScriptedBrowser::UIDeactivate() { return Record(L"UIDeactivate"); }

STDMETHODIMP ScriptedBrowser::SetObjectRects(LPCRECT lprcPosRect, LPCRECT)
{
    HRESULT hr = Record(L"SetObjectRects", {RectText(lprcPosRect)});
    if (SUCCEEDED(hr) && m_child && lprcPosRect)
        MoveWindow(m_child, lprcPosRect->left, lprcPosRect->top, lprcPosRect->right - lprcPosRect->left,
                   lprcPosRect->bottom - lprcPosRect->top, TRUE);
    return hr;
}

// ---- IWebBrowser2 -----------------------------------------------------------------------------------

STDMETHODIMP ScriptedBrowser::GoBack() { return Record(L"GoBack"); }
STDMETHODIMP ScriptedBrowser::GoForward() { return Record(L"GoForward"); }
STDMETHODIMP ScriptedBrowser::GoHome() { return Record(L"GoHome"); }
STDMETHODIMP ScriptedBrowser::GoSearch() { return Record(L"GoSearch"); }
STDMETHODIMP ScriptedBrowser::Refresh() { return Record(L"Refresh"); }
STDMETHODIMP ScriptedBrowser::Refresh2(VARIANT* Level) { return Record(L"Refresh2", {ArgText(Level)}); }
STDMETHODIMP ScriptedBrowser::Stop() { return Record(L"Stop"); }
STDMETHODIMP ScriptedBrowser::Quit() { return Record(L"Quit"); }

STDMETHODIMP ScriptedBrowser::Navigate(BSTR URL, VARIANT* Flags, VARIANT* TargetFrameName, VARIANT* PostData, VARIANT* Headers)
{
    HRESULT hr = Record(L"Navigate", {ArgText(URL), ArgText(Flags), ArgText(TargetFrameName), ArgText(PostData), ArgText(Headers)});
    if (SUCCEEDED(hr)) m_location = URL ? std::wstring(URL) : std::wstring();
    return hr;
}

STDMETHODIMP ScriptedBrowser::Navigate2(VARIANT* URL, VARIANT* Flags, VARIANT* TargetFrameName, VARIANT* PostData, VARIANT* Headers)
{
    return Record(L"Navigate2", {ArgText(URL), ArgText(Flags), ArgText(TargetFrameName), ArgText(PostData), ArgText(Headers)});
}

STDMETHODIMP ScriptedBrowser::get_Application(IDispatch** ppDisp)
{
    HRESULT hr = Record(L"get_Application");
    if (!ppDisp) return E_POINTER;
    *ppDisp = nullptr;
    if (FAILED(hr)) return hr;
    *ppDisp = static_cast<IWebBrowser2*>(this);
    AddRef();
    return S_OK;
}

STDMETHODIMP ScriptedBrowser::get_Document(IDispatch** ppDisp)
{
    HRESULT hr = Record(L"get_Document");
    if (!ppDisp) return E_POINTER;
    *ppDisp = nullptr;
    if (FAILED(hr)) return hr;
    *ppDisp = m_document.CopyOut();
    return S_OK;
}

STDMETHODIMP ScriptedBrowser::get_LocationURL(BSTR* LocationURL)
{
    HRESULT hr = Record(L"get_LocationURL");
    if (!LocationURL) return E_POINTER;
    *LocationURL = nullptr;
    if (FAILED(hr)) return hr;
    *LocationURL = SysAllocStringLen(m_location.data(), static_cast<UINT>(m_location.size()));
    return S_OK;
}

STDMETHODIMP ScriptedBrowser::get_HWND(SHANDLE_PTR* pHWND)
{
    HRESULT hr = Record(L"get_HWND");
    if (!pHWND) return E_POINTER;
    *pHWND = SUCCEEDED(hr) ? m_hwnd : 0;
    return hr;
}

STDMETHODIMP ScriptedBrowser::put_Visible(VARIANT_BOOL Value)
{
    return Record(L"put_Visible", {Value ? L"true" : L"false"});
}

STDMETHODIMP ScriptedBrowser::ExecWB(OLECMDID cmdID, OLECMDEXECOPT cmdexecopt, VARIANT* pvaIn, VARIANT* pvaOut)
{
    return Record(L"ExecWB", {std::to_wstring(cmdID), std::to_wstring(cmdexecopt), ArgText(pvaIn), ArgText(pvaOut)});
}

STDMETHODIMP ScriptedBrowser::put_RegisterAsDropTarget(VARIANT_BOOL bRegister)
{
    return Record(L"put_RegisterAsDropTarget", {bRegister ? L"true" : L"false"});
}

// ---- IOleCommandTarget ------------------------------------------------------------------------------

STDMETHODIMP ScriptedBrowser::QueryStatus(const GUID* pguidCmdGroup, ULONG cCmds, OLECMD[], OLECMDTEXT*)
{
    return Record(L"QueryStatus", {GuidText(pguidCmdGroup), std::to_wstring(cCmds)});
}

STDMETHODIMP ScriptedBrowser::Exec(const GUID* pguidCmdGroup, DWORD nCmdID, DWORD nCmdexecopt, VARIANT* pvaIn, VARIANT* pvaOut)
{
    return Record(L"Exec", {GuidText(pguidCmdGroup), std::to_wstring(nCmdID), std::to_wstring(nCmdexecopt), ArgText(pvaIn),
                            ArgText(pvaOut)});
}

// ---- The class object -------------------------------------------------------------------------------

ScriptedBrowserClass::ScriptedBrowserClass() = default;

ScriptedBrowserClass::~ScriptedBrowserClass()
{
    Revoke();
}

HRESULT ScriptedBrowserClass::Register(const CLSID& clsid)
{
    Revoke();
    return CoRegisterClassObject(clsid, this, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &m_cookie);
}

void ScriptedBrowserClass::Revoke()
{
    if (m_cookie) CoRevokeClassObject(m_cookie);
    m_cookie = 0;
}

STDMETHODIMP ScriptedBrowserClass::QueryInterface(REFIID riid, void** ppv)
{
    if (!ppv) return E_POINTER;
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IClassFactory)) {
        *ppv = static_cast<IClassFactory*>(this);
        return S_OK;
    }
    *ppv = nullptr;
    return E_NOINTERFACE;
}

STDMETHODIMP ScriptedBrowserClass::CreateInstance(IUnknown* pOuter, REFIID riid, void** ppv)
{
    if (!ppv) return E_POINTER;
    *ppv = nullptr;
    m_log->Add(L"CoCreateInstance", {L"WebBrowser"});
    if (pOuter) return CLASS_E_NOAGGREGATION;
    if (FAILED(m_createResult)) return m_createResult;
    tov::ComPtr<ScriptedBrowser> browser;
    browser.Attach(new ScriptedBrowser(m_log, m_plan));
    m_created.push_back(browser);
    // The log shows creation; the caller's first query is part of creating, not of its own calls.
    const size_t before = m_log->Calls().size();
    HRESULT hr = browser->QueryInterface(riid, ppv);
    if (m_log->Calls().size() > before) {
        auto calls = m_log->Calls();
        calls.pop_back();
        m_log->Clear();
        for (auto& c : calls) m_log->Add(c.name, c.args);
    }
    return hr;
}

} // namespace tovfe
