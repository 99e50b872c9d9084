#include "frontend/scripted_browser.h"
#include <exdispid.h>
#include "frontend/type_library_text.h"
#include "framework/bstr.h"

namespace tovfe {
namespace {

struct NamedIid {
    const IID* iid;
    const wchar_t* name;
};
// The queries the log shows; IUnknown, IDispatch and the rest would only bury the calls that matter.
const NamedIid kRecordedQueries[] = {
    {&IID_IWebBrowser, L"IWebBrowser"},
    {&IID_IWebBrowserApp, L"IWebBrowserApp"},
    {&IID_IWebBrowser2, L"IWebBrowser2"},
    {&IID_IOleCommandTarget, L"IOleCommandTarget"},
    {&IID_IOleInPlaceObject, L"IOleInPlaceObject"},
    {&IID_IOleInPlaceActiveObject, L"IOleInPlaceActiveObject"},
    {&IID_IOleObject, L"IOleObject"},
    {&IID_IConnectionPointContainer, L"IConnectionPointContainer"},
};

std::wstring RectText(LPCRECT r)
{
    if (!r) return L"<null>";
    return std::to_wstring(r->left) + L"," + std::to_wstring(r->top) + L"," + std::to_wstring(r->right) + L"," +
           std::to_wstring(r->bottom);
}

std::wstring GroupText(const GUID* group)
{
    return group ? GuidText(*group) : L"null";
}

std::wstring BoolText(VARIANT_BOOL b)
{
    return b ? L"true" : L"false";
}

std::wstring LocationText(BSTR url)
{
    return url ? std::wstring(url, SysStringLen(url)) : std::wstring();
}

void Place(HWND window, const RECT& r)
{
    MoveWindow(window, r.left, r.top, r.right - r.left, r.bottom - r.top, TRUE);
}

} // namespace

// ---- Connection points --------------------------------------------------------------------------------

ScriptedBrowser::RecordingPoint::RecordingPoint(ScriptedBrowser& owner, const IID& iid, const wchar_t* name)
    : tov::EventConnectionPoint(*static_cast<IOleObject*>(&owner), owner, iid), m_browser(owner), m_name(name)
{
}

STDMETHODIMP ScriptedBrowser::RecordingPoint::Advise(IUnknown* pUnkSink, DWORD* pdwCookie)
{
    return StandInCall([&] {
        if (pdwCookie) *pdwCookie = 0;
        const HRESULT planned = m_browser.Record(L"Advise", {m_name});
        return FAILED(planned) ? planned : tov::EventConnectionPoint::Advise(pUnkSink, pdwCookie);
    });
}

STDMETHODIMP ScriptedBrowser::RecordingPoint::Unadvise(DWORD dwCookie)
{
    return StandInCall([&] {
        const HRESULT planned = m_browser.Record(L"Unadvise", {m_name, std::to_wstring(dwCookie)});
        return FAILED(planned) ? planned : tov::EventConnectionPoint::Unadvise(dwCookie);
    });
}

// ---- Object -------------------------------------------------------------------------------------------

ScriptedBrowser::ScriptedBrowser()
    : m_log(std::make_shared<CallLog>()), m_events(*this, DIID_DWebBrowserEvents, L"DWebBrowserEvents"),
      m_events2(*this, DIID_DWebBrowserEvents2, L"DWebBrowserEvents2")
{
}

tov::ComPtr<ScriptedBrowser> ScriptedBrowser::Create(std::shared_ptr<CallLog> log, FailurePlan plan)
{
    auto browser = CreateStandIn<ScriptedBrowser, IOleObject>(IID_IOleObject);
    if (log) browser->m_log = std::move(log);
    browser->m_plan = std::move(plan);
    return browser;
}

void* ScriptedBrowser::FindInterface(REFIID riid) noexcept
{
    using tov::Entry;
    return Lookup(riid, {
                            Entry<IOleObject>(IID_IOleObject, this),
                            Entry<IOleInPlaceObject>(IID_IOleInPlaceObject, this),
                            Entry<IOleInPlaceActiveObject>(IID_IOleInPlaceActiveObject, this),
                            Entry<IOleInPlaceObject>(IID_IOleWindow, this),
                            Entry<IWebBrowser2>(IID_IWebBrowser2, this),
                            Entry<IWebBrowser2>(IID_IWebBrowserApp, this),
                            Entry<IWebBrowser2>(IID_IWebBrowser, this),
                            Entry<IWebBrowser2>(IID_IDispatch, this),
                            Entry<IOleCommandTarget>(IID_IOleCommandTarget, this),
                            Entry<IConnectionPointContainer>(IID_IConnectionPointContainer, this),
                        });
}

HRESULT ScriptedBrowser::Record(std::wstring name, std::vector<std::wstring> args)
{
    Call call{std::move(name), std::move(args)};
    m_log->Add(call.name, call.args);
    m_ownLog.Add(call.name, call.args);
    if (whileCalled) {
        const auto run = whileCalled; // the handler may replace itself
        run(call);
    }
    return m_plan.Outcome(call);
}

STDMETHODIMP ScriptedBrowser::QueryInterface(REFIID riid, void** ppv)
{
    if (!ppv) return E_POINTER;
    *ppv = nullptr;
    return StandInCall([&] {
        for (const auto& q : kRecordedQueries) {
            if (!IsEqualIID(riid, *q.iid)) continue;
            const HRESULT planned = Record(L"QueryInterface", {q.name});
            if (FAILED(planned)) return planned;
            break;
        }
        return OuterQueryInterface(riid, ppv);
    });
}

ULONG ScriptedBrowser::RefCount()
{
    InternalAddRef();
    return InternalRelease();
}

const tov::EventConnectionPoint* ScriptedBrowser::PointFor(REFIID eventsIid) const
{
    if (IsEqualIID(eventsIid, DIID_DWebBrowserEvents)) return &m_events;
    if (IsEqualIID(eventsIid, DIID_DWebBrowserEvents2)) return &m_events2;
    return nullptr;
}

HRESULT ScriptedBrowser::FireEvent(REFIID eventsIid, DISPID id, std::vector<tov::Variant> args)
{
    const tov::EventConnectionPoint* point = PointFor(eventsIid);
    if (!point) return E_INVALIDARG;
    // A sink may drop the last reference to this browser while it is called.
    tov::ComPtr<IOleObject> self(this);
    // Dispatch wants the last argument first; `args` keeps owning the values.
    std::vector<VARIANTARG> reversed(args.rbegin(), args.rend());
    HRESULT hr = S_OK;
    for (const auto& sink : point->Sinks()) {
        DISPPARAMS params{reversed.empty() ? nullptr : reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
        hr = static_cast<IDispatch*>(sink.Get())->Invoke(id, IID_NULL, 0x400, DISPATCH_METHOD, &params, nullptr, nullptr, nullptr);
    }
    return hr;
}

HRESULT ScriptedBrowser::FireNewWindow2(IDispatch** ppDisp, VARIANT_BOOL* cancel)
{
    std::vector<tov::Variant> args(2);
    args[0].vt = VT_BYREF | VT_DISPATCH;
    args[0].ppdispVal = ppDisp;
    args[1].vt = VT_BYREF | VT_BOOL;
    args[1].pboolVal = cancel;
    return FireEvent(DIID_DWebBrowserEvents2, DISPID_NEWWINDOW2, std::move(args));
}

size_t ScriptedBrowser::SinkCount(REFIID eventsIid) const
{
    const tov::EventConnectionPoint* point = PointFor(eventsIid);
    return point ? point->Sinks().size() : 0;
}

// ---- IOleObject, IOleInPlaceObject --------------------------------------------------------------------

STDMETHODIMP ScriptedBrowser::SetClientSite(IOleClientSite* pClientSite)
{
    return StandInCall([&] {
        const HRESULT hr = Record(L"SetClientSite", {pClientSite ? L"site" : L"null"});
        if (SUCCEEDED(hr)) m_site = pClientSite;
        return hr;
    });
}

STDMETHODIMP ScriptedBrowser::GetClientSite(IOleClientSite** ppClientSite)
{
    if (!ppClientSite) return E_POINTER;
    *ppClientSite = m_site.CopyOut();
    return S_OK;
}

STDMETHODIMP ScriptedBrowser::Close(DWORD dwSaveOption)
{
    return StandInCall([&] {
        const HRESULT hr = Record(L"Close", {std::to_wstring(dwSaveOption)});
        if (FAILED(hr)) return hr;
        m_child.Reset();
        m_site = nullptr;
        return hr;
    });
}

STDMETHODIMP ScriptedBrowser::DoVerb(LONG iVerb, LPMSG, IOleClientSite* pActiveSite, LONG, HWND hwndParent, LPCRECT lprcPosRect)
{
    return StandInCall([&] {
        const HRESULT hr = Record(L"DoVerb", {std::to_wstring(iVerb), HexArg(reinterpret_cast<uintptr_t>(hwndParent)),
                                              RectText(lprcPosRect)});
        if (FAILED(hr) || iVerb != OLEIVERB_INPLACEACTIVATE || !hwndParent || !lprcPosRect) return hr;
        if (m_child) {
            Place(m_child.Get(), *lprcPosRect);
            return hr;
        }
        const RECT& r = *lprcPosRect;
        m_child.Reset(CreateWindowExW(0, L"Static", L"scripted browser", WS_CHILD | WS_VISIBLE, r.left, r.top,
                                      r.right - r.left, r.bottom - r.top, hwndParent, nullptr, GetModuleHandleW(nullptr),
                                      nullptr));
        if (m_child) {
            // Like the platform browser, tell the in-place site that the object is now active in place.
            tov::ComPtr<IOleInPlaceSite> inPlaceSite;
            IOleClientSite* site = pActiveSite ? pActiveSite : m_site.Get();
            if (site && SUCCEEDED(site->QueryInterface(IID_IOleInPlaceSite, inPlaceSite.PutVoid())) &&
                inPlaceSite->CanInPlaceActivate() == S_OK)
                inPlaceSite->OnInPlaceActivate();
            return hr;
        }
        const DWORD error = GetLastError();
        return error ? HRESULT_FROM_WIN32(error) : E_FAIL;
    });
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
    *phwnd = m_child.Get();
    return m_child ? S_OK : E_FAIL;
}

STDMETHODIMP ScriptedBrowser::InPlaceDeactivate()
{
    return StandInCall([&] {
        const HRESULT hr = Record(L"InPlaceDeactivate");
        if (SUCCEEDED(hr)) m_child.Reset();
        return hr;
    });
}

STDMETHODIMP ScriptedBrowser::TranslateAccelerator(LPMSG lpmsg)
{
    return StandInCall([&] {
        const HRESULT hr = Record(L"TranslateAccelerator", {lpmsg ? HexArg(lpmsg->message) : L"<null>",
                                                            lpmsg ? HexArg(lpmsg->wParam) : L"<null>"});
        return FAILED(hr) ? hr : S_FALSE;
    });
}

STDMETHODIMP ScriptedBrowser::UIDeactivate()
{
    return StandInCall([&] { return Record(L"UIDeactivate"); });
}

STDMETHODIMP ScriptedBrowser::SetObjectRects(LPCRECT lprcPosRect, LPCRECT)
{
    return StandInCall([&] {
        const HRESULT hr = Record(L"SetObjectRects", {RectText(lprcPosRect)});
        if (SUCCEEDED(hr) && m_child && lprcPosRect) Place(m_child.Get(), *lprcPosRect);
        return hr;
    });
}

// ---- IWebBrowser2 -------------------------------------------------------------------------------------

STDMETHODIMP ScriptedBrowser::GoBack() { return StandInCall([&] { return Record(L"GoBack"); }); }
STDMETHODIMP ScriptedBrowser::GoForward() { return StandInCall([&] { return Record(L"GoForward"); }); }
STDMETHODIMP ScriptedBrowser::GoHome() { return StandInCall([&] { return Record(L"GoHome"); }); }
STDMETHODIMP ScriptedBrowser::GoSearch() { return StandInCall([&] { return Record(L"GoSearch"); }); }
STDMETHODIMP ScriptedBrowser::Refresh() { return StandInCall([&] { return Record(L"Refresh"); }); }
STDMETHODIMP ScriptedBrowser::Stop() { return StandInCall([&] { return Record(L"Stop"); }); }
STDMETHODIMP ScriptedBrowser::Quit() { return StandInCall([&] { return Record(L"Quit"); }); }

STDMETHODIMP ScriptedBrowser::Refresh2(VARIANT* Level)
{
    return StandInCall([&] { return Record(L"Refresh2", {ArgText(Level)}); });
}

STDMETHODIMP ScriptedBrowser::Navigate(BSTR URL, VARIANT* Flags, VARIANT* TargetFrameName, VARIANT* PostData, VARIANT* Headers)
{
    return StandInCall([&] {
        const HRESULT hr = Record(L"Navigate", {ArgText(URL), ArgText(Flags), ArgText(TargetFrameName), ArgText(PostData),
                                                ArgText(Headers)});
        if (SUCCEEDED(hr)) m_location = LocationText(URL);
        return hr;
    });
}

STDMETHODIMP ScriptedBrowser::Navigate2(VARIANT* URL, VARIANT* Flags, VARIANT* TargetFrameName, VARIANT* PostData, VARIANT* Headers)
{
    return StandInCall([&] {
        const HRESULT hr = Record(L"Navigate2", {ArgText(URL), ArgText(Flags), ArgText(TargetFrameName), ArgText(PostData),
                                                 ArgText(Headers)});
        if (SUCCEEDED(hr) && URL && URL->vt == VT_BSTR) m_location = LocationText(URL->bstrVal);
        return hr;
    });
}

STDMETHODIMP ScriptedBrowser::get_Application(IDispatch** ppDisp)
{
    if (ppDisp) *ppDisp = nullptr;
    return StandInCall([&] {
        const HRESULT hr = Record(L"get_Application");
        if (FAILED(hr)) return hr;
        if (!ppDisp) return E_POINTER;
        *ppDisp = static_cast<IWebBrowser2*>(this);
        AddRef();
        return hr;
    });
}

STDMETHODIMP ScriptedBrowser::get_Document(IDispatch** ppDisp)
{
    if (ppDisp) *ppDisp = nullptr;
    return StandInCall([&] {
        const HRESULT hr = Record(L"get_Document");
        if (FAILED(hr)) return hr;
        if (!ppDisp) return E_POINTER;
        *ppDisp = m_document.CopyOut();
        return hr;
    });
}

STDMETHODIMP ScriptedBrowser::get_LocationURL(BSTR* LocationURL)
{
    if (LocationURL) *LocationURL = nullptr;
    return StandInCall([&] {
        const HRESULT hr = Record(L"get_LocationURL");
        if (FAILED(hr)) return hr;
        if (!LocationURL) return E_POINTER;
        *LocationURL = tov::Bstr(m_location).Detach();
        return hr;
    });
}

STDMETHODIMP ScriptedBrowser::get_HWND(SHANDLE_PTR* pHWND)
{
    if (pHWND) *pHWND = 0;
    return StandInCall([&] {
        const HRESULT hr = Record(L"get_HWND");
        if (FAILED(hr)) return hr;
        if (!pHWND) return E_POINTER;
        *pHWND = m_hwnd;
        return hr;
    });
}

STDMETHODIMP ScriptedBrowser::put_Visible(VARIANT_BOOL Value)
{
    return StandInCall([&] { return Record(L"put_Visible", {BoolText(Value)}); });
}

STDMETHODIMP ScriptedBrowser::ExecWB(OLECMDID cmdID, OLECMDEXECOPT cmdexecopt, VARIANT* pvaIn, VARIANT* pvaOut)
{
    return StandInCall([&] {
        return Record(L"ExecWB", {std::to_wstring(cmdID), std::to_wstring(cmdexecopt), ArgText(pvaIn), ArgText(pvaOut)});
    });
}

STDMETHODIMP ScriptedBrowser::put_RegisterAsDropTarget(VARIANT_BOOL bRegister)
{
    return StandInCall([&] { return Record(L"put_RegisterAsDropTarget", {BoolText(bRegister)}); });
}

// ---- IOleCommandTarget --------------------------------------------------------------------------------

STDMETHODIMP ScriptedBrowser::QueryStatus(const GUID* pguidCmdGroup, ULONG cCmds, OLECMD prgCmds[], OLECMDTEXT*)
{
    return StandInCall([&] {
        std::vector<std::wstring> args{GroupText(pguidCmdGroup)};
        if (!prgCmds) args.push_back(L"<null>");
        for (ULONG i = 0; prgCmds && i < cCmds; ++i) args.push_back(std::to_wstring(prgCmds[i].cmdID));
        const HRESULT hr = Record(L"QueryStatus", std::move(args));
        if (FAILED(hr)) return hr;
        if (!prgCmds) return E_POINTER;
        for (ULONG i = 0; i < cCmds; ++i) prgCmds[i].cmdf = OLECMDF_SUPPORTED | OLECMDF_ENABLED;
        return hr;
    });
}

STDMETHODIMP ScriptedBrowser::Exec(const GUID* pguidCmdGroup, DWORD nCmdID, DWORD nCmdexecopt, VARIANT* pvaIn, VARIANT* pvaOut)
{
    return StandInCall([&] {
        return Record(L"Exec", {GroupText(pguidCmdGroup), std::to_wstring(nCmdID), std::to_wstring(nCmdexecopt),
                                ArgText(pvaIn), ArgText(pvaOut)});
    });
}

} // namespace tovfe
