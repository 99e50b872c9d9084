#include "engine/engine_browser.h"
#include <exdispid.h>
#include "engine/browser_events.h"
#include "engine/engine_document.h"
#include "engine/engine_frame.h"
#include "engine/engine_registration.h"
#include "engine/text.h"
#include "framework/bstr.h"
#include "framework/hresult_error.h"

namespace tovengine {
namespace {

// The value behind a VARIANT argument, through any by-reference and variant-in-variant wrapping.
const VARIANT* Unwrap(const VARIANT* v)
{
    for (int depth = 0; v && depth < 4; ++depth) {
        if (v->vt == (VT_VARIANT | VT_BYREF)) v = v->pvarVal;
        else return v;
    }
    return v;
}

std::wstring TextArgument(const VARIANT* v)
{
    v = Unwrap(v);
    if (!v) return {};
    if (v->vt == VT_BSTR) return std::wstring(tov::BstrView(v->bstrVal));
    if (v->vt == (VT_BSTR | VT_BYREF) && v->pbstrVal) return std::wstring(tov::BstrView(*v->pbstrVal));
    return {};
}

long LongArgument(const VARIANT* v)
{
    v = Unwrap(v);
    if (!v) return 0;
    VARIANT converted;
    VariantInit(&converted);
    long value = 0;
    if (SUCCEEDED(VariantChangeType(&converted, const_cast<VARIANT*>(v), 0, VT_I4))) value = converted.lVal;
    VariantClear(&converted);
    return value;
}

// Post data: the bytes of a one-dimensional array of any element type.
std::optional<std::string> BytesArgument(const VARIANT* v)
{
    v = Unwrap(v);
    if (!v || !(v->vt & VT_ARRAY)) return std::nullopt;
    SAFEARRAY* array = (v->vt & VT_BYREF) ? (v->pparray ? *v->pparray : nullptr) : v->parray;
    if (!array || SafeArrayGetDim(array) != 1) return std::nullopt;
    LONG lower = 0, upper = -1;
    SafeArrayGetLBound(array, 1, &lower);
    SafeArrayGetUBound(array, 1, &upper);
    const size_t size = static_cast<size_t>(upper - lower + 1) * SafeArrayGetElemsize(array);
    void* data = nullptr;
    if (upper < lower || FAILED(SafeArrayAccessData(array, &data))) return std::string();
    std::string bytes(static_cast<const char*>(data), size);
    SafeArrayUnaccessData(array);
    return bytes;
}

// Post data as the platform browser hands it to BeforeNavigate: VT_ARRAY | VT_UI1.
void PostDataVariant(const std::optional<std::string>& bytes, VARIANT& out)
{
    VariantInit(&out);
    if (!bytes) return;
    SAFEARRAY* array = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes->size()));
    if (!array) return;
    void* data = nullptr;
    if (SUCCEEDED(SafeArrayAccessData(array, &data))) {
        memcpy(data, bytes->data(), bytes->size());
        SafeArrayUnaccessData(array);
    }
    out.vt = VT_ARRAY | VT_UI1;
    out.parray = array;
}

HRESULT CopyText(const std::wstring& text, BSTR* out)
{
    if (!out) return E_POINTER;
    *out = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *out ? S_OK : E_OUTOFMEMORY;
}

} // namespace

CEngineBrowser::CEngineBrowser()
    : m_events(*static_cast<IOleObject*>(this), *this, DIID_DWebBrowserEvents),
      m_events2(*static_cast<IOleObject*>(this), *this, DIID_DWebBrowserEvents2), m_view(*this)
{
    m_extent = {21167, 15875}; // 800 x 600 pixels at 96 dpi, in HIMETRIC
}

CEngineBrowser::~CEngineBrowser()
{
    for (auto& [id, frame] : m_frames) frame->Detach();
    ClosePage();
    m_view.Destroy();
}

void CEngineBrowser::FinalConstruct()
{
    try {
        m_page = Page::Create(*this, 800, 600);
    } catch (...) {
        // The reason reaches the creator as error information; the code fails the creation.
        tov::ComPtr<ICreateErrorInfo> info;
        if (SUCCEEDED(CreateErrorInfo(info.Put()))) {
            const std::wstring why = EngineHost::LastFailure().empty() ? L"the engine gave no page" : EngineHost::LastFailure();
            info->SetDescription(const_cast<LPOLESTR>(why.c_str()));
            info->SetSource(const_cast<LPOLESTR>(L"TOVENGINE"));
            tov::ComPtr<IErrorInfo> error;
            if (SUCCEEDED(info.As(IID_IErrorInfo, error))) SetErrorInfo(0, error.Get());
        }
        throw;
    }
}

void* CEngineBrowser::FindInterface(REFIID riid) noexcept
{
    using tov::Entry;
    return Lookup(riid, {
                            Entry<IOleObject>(IID_IOleObject, this),
                            Entry<IWebBrowser2>(IID_IWebBrowser2, this),
                            Entry<IWebBrowser2>(IID_IWebBrowserApp, this),
                            Entry<IWebBrowser2>(IID_IWebBrowser, this),
                            Entry<IWebBrowser2>(IID_IDispatch, this),
                            Entry<IOleInPlaceObject>(IID_IOleInPlaceObject, this),
                            Entry<IOleInPlaceObject>(IID_IOleWindow, this),
                            Entry<IOleInPlaceActiveObject>(IID_IOleInPlaceActiveObject, this),
                            Entry<IOleCommandTarget>(IID_IOleCommandTarget, this),
                            Entry<IConnectionPointContainer>(IID_IConnectionPointContainer, this),
                        });
}

Page* CEngineBrowser::EnsurePage()
{
    // An engine that went away (crashed, killed) takes this browser's page with it: the browser refuses
    // from then on, and a new browser object starts a new engine.
    if (m_closed || !m_page || !m_page->Alive()) return nullptr;
    return m_page.get();
}

void CEngineBrowser::ClosePage() noexcept
{
    if (m_page) {
        m_page->Close();
        m_page.reset();
    }
}

IDispatch* CEngineBrowser::FrameDispatch(const std::string& frameId)
{
    if (frameId.empty()) return static_cast<IWebBrowser2*>(this);
    auto& frame = m_frames[frameId];
    if (!frame) frame = CEngineFrame::Create(*this, frameId);
    return frame ? static_cast<IWebBrowser2*>(frame.Get()) : nullptr;
}

// ---- IOleObject ----------------------------------------------------------------------------------------

STDMETHODIMP CEngineBrowser::SetClientSite(IOleClientSite* pClientSite)
{
    m_site = pClientSite;
    return S_OK;
}

STDMETHODIMP CEngineBrowser::GetClientSite(IOleClientSite** ppClientSite)
{
    if (!ppClientSite) return E_POINTER;
    *ppClientSite = m_site.CopyOut();
    return S_OK;
}

STDMETHODIMP CEngineBrowser::Close(DWORD)
{
    tov::ComPtr<IUnknown> keep(ControllingUnknown());
    InPlaceDeactivate();
    m_closed = true;
    for (auto& [id, frame] : m_frames) frame->Detach();
    m_frames.clear();
    ClosePage();
    m_view.Destroy();
    return S_OK;
}

void CEngineBrowser::Activate(HWND parent, LPCRECT rect)
{
    RECT position{0, 0, 800, 600};
    tov::ComPtr<IOleInPlaceSite> inPlace;
    if (m_site) m_site->QueryInterface(IID_IOleInPlaceSite, inPlace.PutVoid());
    if (!parent && inPlace) inPlace->GetWindow(&parent);
    if (rect) position = *rect;
    if (!m_view.Window() && parent) {
        if (inPlace) inPlace->OnInPlaceActivate();
        m_view.Create(parent, position, false);
    }
    if (m_page && m_view.Window()) {
        const SIZE size = m_view.ClientSize();
        m_page->Resize(size.cx, size.cy);
    }
}

STDMETHODIMP CEngineBrowser::DoVerb(LONG iVerb, LPMSG, IOleClientSite* pActiveSite, LONG, HWND hwndParent, LPCRECT lprcPosRect)
{
    return tov::GuardedCall([&] {
        if (m_closed) return E_UNEXPECTED;
        if (!m_site && pActiveSite) m_site = pActiveSite;
        switch (iVerb) {
        case OLEIVERB_PRIMARY:
        case OLEIVERB_SHOW:
        case OLEIVERB_INPLACEACTIVATE:
        case OLEIVERB_UIACTIVATE:
            if (m_application) return put_Visible(VARIANT_TRUE);
            Activate(hwndParent, lprcPosRect);
            if (m_view.Window()) ShowWindow(m_view.Window(), SW_SHOW);
            return m_view.Window() ? S_OK : E_FAIL;
        case OLEIVERB_HIDE:
            if (m_view.Window()) ShowWindow(m_view.Window(), SW_HIDE);
            return S_OK;
        default:
            return OLEOBJ_S_INVALIDVERB;
        }
    });
}

STDMETHODIMP CEngineBrowser::GetUserClassID(CLSID* pClsid)
{
    if (!pClsid) return E_POINTER;
    *pClsid = m_application ? kBrowserApplicationClass : kWebBrowserClass;
    return S_OK;
}

STDMETHODIMP CEngineBrowser::SetExtent(DWORD, SIZEL* size)
{
    if (!size) return E_POINTER;
    m_extent = *size;
    return S_OK;
}

STDMETHODIMP CEngineBrowser::GetExtent(DWORD, SIZEL* size)
{
    if (!size) return E_POINTER;
    *size = m_extent;
    return S_OK;
}

STDMETHODIMP CEngineBrowser::GetMiscStatus(DWORD, DWORD* status)
{
    if (!status) return E_POINTER;
    *status = OLEMISC_SETCLIENTSITEFIRST | OLEMISC_ACTIVATEWHENVISIBLE | OLEMISC_INSIDEOUT | OLEMISC_CANTLINKINSIDE |
              OLEMISC_RECOMPOSEONRESIZE;
    return S_OK;
}

// ---- In place ------------------------------------------------------------------------------------------

STDMETHODIMP CEngineBrowser::GetWindow(HWND* phwnd)
{
    if (!phwnd) return E_POINTER;
    *phwnd = m_view.Window();
    return *phwnd ? S_OK : E_FAIL;
}

STDMETHODIMP CEngineBrowser::InPlaceDeactivate()
{
    if (m_application || !m_view.Window()) return S_OK;
    m_view.Destroy();
    tov::ComPtr<IOleInPlaceSite> inPlace;
    if (m_site && SUCCEEDED(m_site->QueryInterface(IID_IOleInPlaceSite, inPlace.PutVoid())) && inPlace)
        inPlace->OnInPlaceDeactivate();
    return S_OK;
}

STDMETHODIMP CEngineBrowser::SetObjectRects(LPCRECT lprcPosRect, LPCRECT)
{
    if (!lprcPosRect) return E_POINTER;
    m_view.Move(*lprcPosRect);
    return S_OK;
}

STDMETHODIMP CEngineBrowser::TranslateAccelerator(LPMSG)
{
    // Keys reach the view's window as ordinary messages; nothing is translated on the way.
    return S_FALSE;
}

// ---- Navigation ----------------------------------------------------------------------------------------

HRESULT CEngineBrowser::NavigateFrame(const std::string& frameId, BSTR url, VARIANT* flags, VARIANT* targetFrame,
                                      VARIANT* postData, VARIANT* headers)
{
    return tov::GuardedCall([&]() -> HRESULT {
        if (!url) return E_INVALIDARG;
        tov::ComPtr<IUnknown> keep(ControllingUnknown());
        Page* page = EnsurePage();
        if (!page) return E_FAIL;
        Navigation nav;
        nav.url = std::wstring(tov::BstrView(url));
        nav.flags = LongArgument(flags);
        nav.targetName = TextArgument(targetFrame);
        nav.postData = BytesArgument(postData);
        nav.headers = TextArgument(headers);
        nav.frameId = frameId;
        const std::wstring& target = nav.targetName;
        if (nav.frameId.empty() && !target.empty() && target != L"_self" && target != L"_top" && target != L"_parent" &&
            target != L"_blank")
            nav.frameId = page->FrameByName(target);
        // Asked for a window of its own: the new window's browser announces and loads it.
        if (nav.flags & navOpenInNewWindow) return OpenInNewWindow(nav);
        if (OnBeforeNavigate(nav)) return S_OK;
        page = m_page.get();
        if (!page || m_closed) return E_FAIL;
        return page->Navigate(nav.url, nav.frameId, nav.postData, nav.headers);
    });
}

STDMETHODIMP CEngineBrowser::Navigate(BSTR URL, VARIANT* Flags, VARIANT* TargetFrameName, VARIANT* PostData, VARIANT* Headers)
{
    return NavigateFrame({}, URL, Flags, TargetFrameName, PostData, Headers);
}

STDMETHODIMP CEngineBrowser::Navigate2(VARIANT* URL, VARIANT* Flags, VARIANT* TargetFrameName, VARIANT* PostData, VARIANT* Headers)
{
    const std::wstring url = TextArgument(URL);
    if (!Unwrap(URL) || (Unwrap(URL)->vt != VT_BSTR && Unwrap(URL)->vt != (VT_BSTR | VT_BYREF))) return E_INVALIDARG;
    tov::Bstr text(url);
    return NavigateFrame({}, text.Get(), Flags, TargetFrameName, PostData, Headers);
}

STDMETHODIMP CEngineBrowser::GoBack()
{
    Page* page = EnsurePage();
    if (!page) return E_FAIL;
    const auto url = page->HistoryEntry(-1);
    if (!url) return E_FAIL;
    Navigation nav;
    nav.url = *url;
    if (OnBeforeNavigate(nav)) return S_OK;
    return m_page ? m_page->GoHistory(-1) : E_FAIL;
}

STDMETHODIMP CEngineBrowser::GoForward()
{
    Page* page = EnsurePage();
    if (!page) return E_FAIL;
    const auto url = page->HistoryEntry(+1);
    if (!url) return E_FAIL;
    Navigation nav;
    nav.url = *url;
    if (OnBeforeNavigate(nav)) return S_OK;
    return m_page ? m_page->GoHistory(+1) : E_FAIL;
}

STDMETHODIMP CEngineBrowser::GoHome()
{
    tov::Bstr home(L"about:blank");
    return Navigate(home.Get(), nullptr, nullptr, nullptr, nullptr);
}

STDMETHODIMP CEngineBrowser::Refresh()
{
    Page* page = EnsurePage();
    return page ? page->Reload() : E_FAIL;
}

STDMETHODIMP CEngineBrowser::Stop()
{
    if (m_closed) return S_OK;
    return m_page && m_page->Alive() ? m_page->StopLoading() : S_OK;
}

// ---- Properties ----------------------------------------------------------------------------------------

STDMETHODIMP CEngineBrowser::get_Application(IDispatch** ppDisp)
{
    if (!ppDisp) return E_POINTER;
    *ppDisp = static_cast<IWebBrowser2*>(this);
    AddRef();
    return S_OK;
}

STDMETHODIMP CEngineBrowser::get_Document(IDispatch** ppDisp)
{
    if (!ppDisp) return E_POINTER;
    *ppDisp = nullptr;
    if (!m_page || !m_page->Alive()) return E_FAIL;
    return tov::GuardedCall([&] { return CEngineDocument::Create(m_page, {}, ppDisp); });
}

STDMETHODIMP CEngineBrowser::get_TopLevelContainer(VARIANT_BOOL* p)
{
    if (!p) return E_POINTER;
    *p = VARIANT_TRUE;
    return S_OK;
}

STDMETHODIMP CEngineBrowser::get_Type(BSTR* p)
{
    return CopyText(L"HTML Document", p);
}

STDMETHODIMP CEngineBrowser::get_LocationName(BSTR* p)
{
    return CopyText(m_title, p);
}

STDMETHODIMP CEngineBrowser::get_LocationURL(BSTR* LocationURL)
{
    if (!LocationURL) return E_POINTER;
    return CopyText(m_page ? m_page->FrameUrl({}) : std::wstring(), LocationURL);
}

STDMETHODIMP CEngineBrowser::get_Busy(VARIANT_BOOL* p)
{
    if (!p) return E_POINTER;
    *p = m_page && m_page->Loading() ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

STDMETHODIMP CEngineBrowser::get_ReadyState(READYSTATE* p)
{
    if (!p) return E_POINTER;
    *p = !m_page ? READYSTATE_UNINITIALIZED : m_page->Loading() ? READYSTATE_LOADING : READYSTATE_COMPLETE;
    return S_OK;
}

STDMETHODIMP CEngineBrowser::get_Name(BSTR* p)
{
    return CopyText(L"TOV engine browser", p);
}

STDMETHODIMP CEngineBrowser::get_HWND(SHANDLE_PTR* pHWND)
{
    if (!pHWND) return E_POINTER;
    *pHWND = reinterpret_cast<SHANDLE_PTR>(m_view.Window());
    return m_view.Window() ? S_OK : E_FAIL;
}

STDMETHODIMP CEngineBrowser::get_Visible(VARIANT_BOOL* p)
{
    if (!p) return E_POINTER;
    *p = m_view.Window() && IsWindowVisible(m_view.Window()) ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

STDMETHODIMP CEngineBrowser::put_Visible(VARIANT_BOOL Value)
{
    return tov::GuardedCall([&] {
        if (m_closed) return E_FAIL;
        if (!m_application) {
            if (m_view.Window()) ShowWindow(m_view.Window(), Value ? SW_SHOW : SW_HIDE);
            return S_OK;
        }
        if (Value && !m_view.Window()) {
            const RECT where{CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT + 820, CW_USEDEFAULT + 640};
            if (!m_view.Create(nullptr, where, true)) return E_FAIL;
            RECT r{80, 60, 900, 700};
            m_view.Move(r);
            if (m_page) {
                const SIZE size = m_view.ClientSize();
                m_page->Resize(size.cx, size.cy);
            }
            m_view.SetTitle(m_title);
        }
        if (m_view.Window()) ShowWindow(m_view.Window(), Value ? SW_SHOW : SW_HIDE);
        // A shown browser window lives until its user or its host closes it.
        if (Value && !m_visible) AddRef();
        if (!Value && m_visible) Release();
        m_visible = Value != VARIANT_FALSE;
        return S_OK;
    });
}

STDMETHODIMP CEngineBrowser::Quit()
{
    if (!m_application) return S_OK;
    tov::ComPtr<IUnknown> keep(ControllingUnknown());
    FireEvent(m_events2, DISPID_ONQUIT, {});
    m_view.Destroy();
    ClosePage();
    m_closed = true;
    if (m_visible) {
        m_visible = false;
        Release();
    }
    return S_OK;
}

void CEngineBrowser::ViewClosedByUser()
{
    Quit();
}

STDMETHODIMP CEngineBrowser::get_Silent(VARIANT_BOOL* p)
{
    if (!p) return E_POINTER;
    *p = VARIANT_TRUE;
    return S_OK;
}

STDMETHODIMP CEngineBrowser::get_RegisterAsBrowser(VARIANT_BOOL* p)
{
    if (!p) return E_POINTER;
    *p = VARIANT_FALSE;
    return S_OK;
}

STDMETHODIMP CEngineBrowser::get_RegisterAsDropTarget(VARIANT_BOOL* p)
{
    if (!p) return E_POINTER;
    *p = m_dropTarget ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

STDMETHODIMP CEngineBrowser::put_RegisterAsDropTarget(VARIANT_BOOL value)
{
    m_dropTarget = value != VARIANT_FALSE;
    return S_OK;
}

// ---- Commands ------------------------------------------------------------------------------------------

STDMETHODIMP CEngineBrowser::ExecWB(OLECMDID cmdID, OLECMDEXECOPT cmdexecopt, VARIANT* pvaIn, VARIANT* pvaOut)
{
    return Exec(nullptr, static_cast<DWORD>(cmdID), static_cast<DWORD>(cmdexecopt), pvaIn, pvaOut);
}

STDMETHODIMP CEngineBrowser::QueryStatusWB(OLECMDID cmdID, OLECMDF* pcmdf)
{
    if (!pcmdf) return E_POINTER;
    OLECMD command{static_cast<ULONG>(cmdID), 0};
    const HRESULT hr = QueryStatus(nullptr, 1, &command, nullptr);
    *pcmdf = static_cast<OLECMDF>(command.cmdf);
    return hr;
}

STDMETHODIMP CEngineBrowser::QueryStatus(const GUID* pguidCmdGroup, ULONG cCmds, OLECMD prgCmds[], OLECMDTEXT*)
{
    if (pguidCmdGroup) return OLECMDERR_E_UNKNOWNGROUP;
    if (!prgCmds) return E_POINTER;
    for (ULONG i = 0; i < cCmds; ++i) {
        switch (prgCmds[i].cmdID) {
        case OLECMDID_OPTICAL_ZOOM:
        case OLECMDID_PRINT:
        case OLECMDID_REFRESH:
        case OLECMDID_STOP:
        case OLECMDID_SELECTALL:
        case OLECMDID_COPY:
            prgCmds[i].cmdf = OLECMDF_SUPPORTED | OLECMDF_ENABLED;
            break;
        default:
            prgCmds[i].cmdf = 0;
        }
    }
    return S_OK;
}

STDMETHODIMP CEngineBrowser::Exec(const GUID* pguidCmdGroup, DWORD nCmdID, DWORD, VARIANT* pvaIn, VARIANT* pvaOut)
{
    if (pguidCmdGroup) return OLECMDERR_E_UNKNOWNGROUP;
    return tov::GuardedCall([&]() -> HRESULT {
        switch (nCmdID) {
        case OLECMDID_OPTICAL_ZOOM: {
            const VARIANT* in = Unwrap(pvaIn);
            if (in && in->vt != VT_EMPTY && m_page) m_page->Zoom(LongArgument(in));
            if (pvaOut) {
                VariantClear(pvaOut);
                pvaOut->vt = VT_I4;
                pvaOut->lVal = in && in->vt != VT_EMPTY ? LongArgument(in) : 100;
            }
            return S_OK;
        }
        case OLECMDID_PRINT:
        case OLECMDID_PRINTPREVIEW:
        case OLECMDID_PAGESETUP:
            // Nothing to print on: the command is taken and done.
            return S_OK;
        case OLECMDID_REFRESH:
            return Refresh();
        case OLECMDID_STOP:
            return Stop();
        case OLECMDID_SELECTALL:
            if (m_page) m_page->EvaluateLater({}, "document.execCommand('selectAll')");
            return S_OK;
        case OLECMDID_COPY:
            if (m_page) m_page->EvaluateLater({}, "document.execCommand('copy')");
            return S_OK;
        default:
            return OLECMDERR_E_NOTSUPPORTED;
        }
    });
}

// ---- Page events, fired as the platform browser fires them ---------------------------------------------

bool CEngineBrowser::OnBeforeNavigate(const Navigation& nav)
{
    tov::ComPtr<IUnknown> keep(ControllingUnknown());
    tov::Bstr url(nav.url);
    tov::Bstr target(nav.targetName);
    tov::Bstr headers(nav.headers);
    VARIANT post;
    PostDataVariant(nav.postData, post);
    VARIANT_BOOL cancel = VARIANT_FALSE;

    VARIANT urlValue = BstrArg(url.Get()), flagsValue = LongArg(nav.flags), targetValue = BstrArg(target.Get()),
            headersValue = BstrArg(headers.Get()), postRef = ByRef(&post);
    IDispatch* frame = FrameDispatch(nav.frameId);
    FireEvent(m_events2, DISPID_BEFORENAVIGATE2,
              {DispatchArg(frame), ByRef(&urlValue), ByRef(&flagsValue), ByRef(&targetValue), ByRef(&postRef),
               ByRef(&headersValue), BoolRef(&cancel)});
    if (!cancel && !m_closed) {
        FireEvent(m_events, nav.frameId.empty() ? DISPID_BEFORENAVIGATE : DISPID_FRAMEBEFORENAVIGATE,
                  {BstrArg(url.Get()), LongArg(nav.flags), BstrArg(target.Get()), ByRef(&post), BstrArg(headers.Get()),
                   BoolRef(&cancel)});
    }
    VariantClear(&post);
    return cancel != VARIANT_FALSE;
}

void CEngineBrowser::OnNavigateComplete(const std::string& frameId, const std::wstring& url)
{
    tov::ComPtr<IUnknown> keep(ControllingUnknown());
    if (frameId.empty()) {
        // A new top document: the frames of the old one are gone.
        for (auto& [id, frame] : m_frames) frame->Detach();
        m_frames.clear();
    }
    tov::Bstr text(url);
    VARIANT urlValue = BstrArg(text.Get());
    FireEvent(m_events2, DISPID_NAVIGATECOMPLETE2, {DispatchArg(FrameDispatch(frameId)), ByRef(&urlValue)});
    if (m_closed) return;
    FireEvent(m_events, frameId.empty() ? DISPID_NAVIGATECOMPLETE : DISPID_FRAMENAVIGATECOMPLETE, {BstrArg(text.Get())});
}

void CEngineBrowser::OnDocumentComplete(const std::string& frameId, const std::wstring& url)
{
    tov::ComPtr<IUnknown> keep(ControllingUnknown());
    tov::Bstr text(url);
    VARIANT urlValue = BstrArg(text.Get());
    FireEvent(m_events2, DISPID_DOCUMENTCOMPLETE, {DispatchArg(FrameDispatch(frameId)), ByRef(&urlValue)});
}

void CEngineBrowser::OnTitleChange(const std::wstring& title)
{
    tov::ComPtr<IUnknown> keep(ControllingUnknown());
    m_title = title;
    m_view.SetTitle(title);
    tov::Bstr text(title);
    FireEvent(m_events2, DISPID_TITLECHANGE, {BstrArg(text.Get())});
    if (!m_closed) FireEvent(m_events, DISPID_TITLECHANGE, {BstrArg(text.Get())});
}

void CEngineBrowser::OnDownloadBegin()
{
    tov::ComPtr<IUnknown> keep(ControllingUnknown());
    FireEvent(m_events2, DISPID_DOWNLOADBEGIN, {});
    if (!m_closed) FireEvent(m_events, DISPID_DOWNLOADBEGIN, {});
}

void CEngineBrowser::OnDownloadComplete()
{
    tov::ComPtr<IUnknown> keep(ControllingUnknown());
    FireEvent(m_events2, DISPID_DOWNLOADCOMPLETE, {});
    if (!m_closed) FireEvent(m_events, DISPID_DOWNLOADCOMPLETE, {});
}

HRESULT CEngineBrowser::OpenInNewWindow(const Navigation& nav)
{
    void* made = nullptr;
    HRESULT hr = tov::ObjectRoot::CreateInstance<CEngineApplication>(nullptr, IID_IWebBrowser2, &made);
    if (FAILED(hr)) return hr;
    tov::ComPtr<IWebBrowser2> other;
    other.Attach(static_cast<IWebBrowser2*>(made));
    hr = other->put_Visible(VARIANT_TRUE);
    if (FAILED(hr)) return hr;
    tov::Bstr url(nav.url);
    VARIANT post;
    PostDataVariant(nav.postData, post);
    tov::Bstr headers(nav.headers);
    VARIANT headerValue = BstrArg(headers.Get());
    hr = other->Navigate(url.Get(), nullptr, nullptr, nav.postData ? &post : nullptr, nav.headers.empty() ? nullptr : &headerValue);
    VariantClear(&post);
    return hr;
}

void CEngineBrowser::OnNewWindow(const std::wstring& url)
{
    tov::ComPtr<IUnknown> keep(ControllingUnknown());
    IDispatch* browser = nullptr;
    VARIANT_BOOL cancel = VARIANT_FALSE;
    FireEvent(m_events2, DISPID_NEWWINDOW2, {DispatchRef(&browser), BoolRef(&cancel)});
    tov::ComPtr<IDispatch> given;
    given.Attach(browser);
    if (cancel || m_closed) return;
    tov::ComPtr<IWebBrowser2> other;
    if (given && SUCCEEDED(given.As(IID_IWebBrowser2, other)) && other) {
        // The host gave the browser the new window's page goes to.
        tov::Bstr target(url);
        other->Navigate(target.Get(), nullptr, nullptr, nullptr, nullptr);
        return;
    }
    // Nobody took it: a browser window of its own, as the platform browser opens one.
    Navigation nav;
    nav.url = url;
    OpenInNewWindow(nav);
}

void CEngineBrowser::OnFrame(const std::string& picture)
{
    m_view.ShowPicture(picture);
}

void CEngineBrowser::OnContextMenu(int x, int y)
{
    tov::ComPtr<IUnknown> keep(ControllingUnknown());
    tov::ComPtr<IDocHostUIHandler> handler;
    if (!m_site || FAILED(m_site->QueryInterface(IID_IDocHostUIHandler, handler.PutVoid())) || !handler) return;
    POINT pt{x, y};
    if (m_view.Window()) ClientToScreen(m_view.Window(), &pt);
    handler->ShowContextMenu(CONTEXT_MENU_DEFAULT, &pt, static_cast<IOleCommandTarget*>(this), nullptr);
}

void CEngineBrowser::OnEngineGone()
{
    // Nothing to do at once: the page answers no more, so every later call is refused.
}

} // namespace tovengine
