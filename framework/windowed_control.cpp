#include "framework/windowed_control.h"
#include <olectl.h>
#include "framework/hresult_error.h"
#include "framework/module.h"

namespace tov {
namespace {

constexpr wchar_t kWindowClass[] = L"TOVHTMLControlWindow";
constexpr DWORD kPersistVersion = 0x00010001;

HINSTANCE ModuleInstance()
{
    return Module::Instance() ? Module::Instance() : GetModuleHandleW(nullptr);
}

LONG PixelsToHimetric(LONG px, int dpi) { return MulDiv(px, 2540, dpi); }

} // namespace

WindowedControlBase::WindowedControlBase()
{
    m_sizeExtent.cx = PixelsToHimetric(300, 96);
    m_sizeExtent.cy = PixelsToHimetric(200, 96);
}

WindowedControlBase::~WindowedControlBase()
{
    DestroyControlWindow();
}

void* WindowedControlBase::FindControlInterface(REFIID riid) noexcept
{
    struct Row {
        const IID* iid;
        void* itf;
    };
    const Row rows[] = {
        {&IID_IOleObject, static_cast<IOleObject*>(this)},
        {&IID_IOleWindow, static_cast<IOleInPlaceObjectWindowless*>(this)},
        {&IID_IOleInPlaceObject, static_cast<IOleInPlaceObjectWindowless*>(this)},
        {&IID_IOleInPlaceObjectWindowless, static_cast<IOleInPlaceObjectWindowless*>(this)},
        {&IID_IOleInPlaceActiveObject, static_cast<IOleInPlaceActiveObject*>(this)},
        {&IID_IViewObject, static_cast<IViewObjectEx*>(this)},
        {&IID_IViewObject2, static_cast<IViewObjectEx*>(this)},
        {&IID_IViewObjectEx, static_cast<IViewObjectEx*>(this)},
        {&IID_IPersist, static_cast<IPersistStreamInit*>(this)},
        {&IID_IPersistStreamInit, static_cast<IPersistStreamInit*>(this)},
        {&IID_IPersistStorage, static_cast<IPersistStorage*>(this)},
        {&IID_IQuickActivate, static_cast<IQuickActivate*>(this)},
        {&IID_IOleControl, static_cast<IOleControl*>(this)},
        {&IID_IDataObject, static_cast<IDataObject*>(this)},
        {&IID_ISpecifyPropertyPages, static_cast<ISpecifyPropertyPages*>(this)},
    };
    for (const Row& r : rows)
        if (IsEqualIID(riid, *r.iid)) return r.itf;
    return nullptr;
}

// ---- IOleObject -------------------------------------------------------------------------------------

STDMETHODIMP WindowedControlBase::SetClientSite(IOleClientSite* pClientSite)
{
    m_pClientSite = pClientSite;
    return S_OK;
}

STDMETHODIMP WindowedControlBase::GetClientSite(IOleClientSite** ppClientSite)
{
    if (!ppClientSite) return E_POINTER;
    *ppClientSite = m_pClientSite.CopyOut();
    return S_OK;
}

STDMETHODIMP WindowedControlBase::Close(DWORD dwSaveOption)
{
    ComPtr<IUnknown> keepAlive(ControlIdentity());
    return GuardedCall([&] { return CloseControl(dwSaveOption); }, *this, "IOleObject::Close");
}

HRESULT WindowedControlBase::StandardClose(DWORD)
{
    // The standard deactivation, not a derived control's override of the interface method.
    WindowedControlBase::InPlaceDeactivate();
    if (m_pOleAdviseHolder) m_pOleAdviseHolder->SendOnClose();
    return S_OK;
}

STDMETHODIMP WindowedControlBase::GetMoniker(DWORD, DWORD, IMoniker** ppmk)
{
    if (ppmk) *ppmk = nullptr;
    return E_NOTIMPL;
}

STDMETHODIMP WindowedControlBase::GetClipboardData(DWORD, IDataObject** ppDataObject)
{
    if (ppDataObject) *ppDataObject = nullptr;
    return E_NOTIMPL;
}

STDMETHODIMP WindowedControlBase::DoVerb(LONG iVerb, LPMSG, IOleClientSite* pActiveSite, LONG, HWND hwndParent,
                                         LPCRECT lprcPosRect)
{
    ComPtr<IUnknown> keepAlive(ControlIdentity());
    if (!m_pClientSite && pActiveSite) m_pClientSite = pActiveSite;
    return GuardedCall(
        [&]() -> HRESULT {
        switch (iVerb) {
        case OLEIVERB_PRIMARY:
        case OLEIVERB_SHOW:
        case OLEIVERB_UIACTIVATE:
            return InPlaceActivate(OLEIVERB_UIACTIVATE, hwndParent, lprcPosRect);
        case OLEIVERB_INPLACEACTIVATE:
            return InPlaceActivate(iVerb, hwndParent, lprcPosRect);
        case OLEIVERB_HIDE:
            UIDeactivate();
            if (m_hWnd) ShowWindow(m_hWnd, SW_HIDE);
            return S_OK;
        case OLEIVERB_OPEN:
        case OLEIVERB_DISCARDUNDOSTATE:
            return E_NOTIMPL;
        default:
            return iVerb < 0 ? E_NOTIMPL : OLEOBJ_S_INVALIDVERB;
        }
        },
        *this, "IOleObject::DoVerb");
}

STDMETHODIMP WindowedControlBase::EnumVerbs(IEnumOLEVERB** ppEnumOleVerb)
{
    if (!ppEnumOleVerb) return E_POINTER;
    return OleRegEnumVerbs(ControlClassId(), ppEnumOleVerb);
}

STDMETHODIMP WindowedControlBase::GetUserClassID(CLSID* pClsid)
{
    if (!pClsid) return E_POINTER;
    *pClsid = ControlClassId();
    return S_OK;
}

STDMETHODIMP WindowedControlBase::GetUserType(DWORD dwFormOfType, LPOLESTR* pszUserType)
{
    if (!pszUserType) return E_POINTER;
    return OleRegGetUserType(ControlClassId(), dwFormOfType, pszUserType);
}

STDMETHODIMP WindowedControlBase::SetExtent(DWORD dwDrawAspect, SIZEL* psizel)
{
    if (dwDrawAspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    if (!psizel) return E_POINTER;
    m_sizeExtent = *psizel;
    m_bDirty = true;
    return S_OK;
}

STDMETHODIMP WindowedControlBase::GetExtent(DWORD dwDrawAspect, SIZEL* psizel)
{
    if (dwDrawAspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    if (!psizel) return E_POINTER;
    *psizel = m_sizeExtent;
    return S_OK;
}

STDMETHODIMP WindowedControlBase::Advise(IAdviseSink* pAdvSink, DWORD* pdwConnection)
{
    if (!pdwConnection) return E_POINTER;
    *pdwConnection = 0;
    if (!m_pOleAdviseHolder) {
        HRESULT hr = CreateOleAdviseHolder(m_pOleAdviseHolder.Put());
        if (FAILED(hr)) return hr;
    }
    return m_pOleAdviseHolder->Advise(pAdvSink, pdwConnection);
}

STDMETHODIMP WindowedControlBase::Unadvise(DWORD dwConnection)
{
    return m_pOleAdviseHolder ? m_pOleAdviseHolder->Unadvise(dwConnection) : OLE_E_NOCONNECTION;
}

STDMETHODIMP WindowedControlBase::EnumAdvise(IEnumSTATDATA** ppenumAdvise)
{
    if (!ppenumAdvise) return E_POINTER;
    *ppenumAdvise = nullptr;
    return m_pOleAdviseHolder ? m_pOleAdviseHolder->EnumAdvise(ppenumAdvise) : E_FAIL;
}

STDMETHODIMP WindowedControlBase::GetMiscStatus(DWORD dwAspect, DWORD* pdwStatus)
{
    if (!pdwStatus) return E_POINTER;
    *pdwStatus = dwAspect == DVASPECT_CONTENT ? ControlMiscStatus() : 0;
    return S_OK;
}

// ---- In-place activation ----------------------------------------------------------------------------

HRESULT WindowedControlBase::InPlaceActivate(LONG verb, HWND hwndParent, LPCRECT lprcPosRect)
{
    if (!m_pClientSite) return E_UNEXPECTED;
    if (!m_bInPlaceActive) {
        m_pInPlaceSite.Reset();
        ThrowIfFailed(m_pClientSite->QueryInterface(IID_IOleInPlaceSite, m_pInPlaceSite.PutVoid()));
        if (m_pInPlaceSite->CanInPlaceActivate() != S_OK) {
            m_pInPlaceSite.Reset();
            return E_FAIL;
        }
        m_bInPlaceActive = true;
        m_pInPlaceSite->OnInPlaceActivate();
    }
    HWND parent = nullptr;
    if (FAILED(m_pInPlaceSite->GetWindow(&parent)) || !parent) parent = hwndParent;
    RECT pos = lprcPosRect ? *lprcPosRect : RECT{0, 0, 300, 200};
    RECT clip = pos;
    OLEINPLACEFRAMEINFO frameInfo{sizeof(frameInfo)};
    m_pFrame.Reset();
    m_pDocWindow.Reset();
    if (FAILED(m_pInPlaceSite->GetWindowContext(m_pFrame.Put(), m_pDocWindow.Put(), &pos, &clip, &frameInfo))) {
        m_pFrame.Reset();
        m_pDocWindow.Reset();
    }
    if (!m_hWnd && !CreateControlWindow(parent, pos)) return E_FAIL;
    if (m_hWnd && GetParent(m_hWnd) != parent) SetParent(m_hWnd, parent);
    SetObjectRects(&pos, &clip);
    ShowWindow(m_hWnd, SW_SHOWNA);
    return verb == OLEIVERB_UIACTIVATE ? UIActivate() : S_OK;
}

HRESULT WindowedControlBase::UIActivate()
{
    if (m_bUIActive) return S_OK;
    m_bUIActive = true;
    if (m_pInPlaceSite) m_pInPlaceSite->OnUIActivate();
    if (m_pFrame) m_pFrame->SetActiveObject(static_cast<IOleInPlaceActiveObject*>(this), nullptr);
    if (m_pDocWindow) m_pDocWindow->SetActiveObject(static_cast<IOleInPlaceActiveObject*>(this), nullptr);
    if (m_pFrame) m_pFrame->SetBorderSpace(nullptr);
    if (m_hWnd) SetFocus(m_hWnd);
    return S_OK;
}

STDMETHODIMP WindowedControlBase::UIDeactivate()
{
    if (!m_bUIActive) return S_OK;
    m_bUIActive = false;
    if (m_pFrame) m_pFrame->SetActiveObject(nullptr, nullptr);
    if (m_pDocWindow) m_pDocWindow->SetActiveObject(nullptr, nullptr);
    if (m_pInPlaceSite) m_pInPlaceSite->OnUIDeactivate(FALSE);
    return S_OK;
}

STDMETHODIMP WindowedControlBase::InPlaceDeactivate()
{
    ComPtr<IUnknown> keepAlive(ControlIdentity());
    if (!m_bInPlaceActive) return S_OK;
    UIDeactivate();
    m_bInPlaceActive = false;
    DestroyControlWindow();
    ComPtr<IOleInPlaceSite> site = std::move(m_pInPlaceSite);
    m_pInPlaceSite.Reset();
    m_pFrame.Reset();
    m_pDocWindow.Reset();
    if (site) site->OnInPlaceDeactivate();
    return S_OK;
}

STDMETHODIMP WindowedControlBase::GetWindow(HWND* phwnd)
{
    if (!phwnd) return E_POINTER;
    *phwnd = m_hWnd;
    return m_hWnd ? S_OK : E_FAIL;
}

STDMETHODIMP WindowedControlBase::SetObjectRects(LPCRECT lprcPosRect, LPCRECT lprcClipRect)
{
    if (!lprcPosRect) return E_POINTER;
    m_rcPos = *lprcPosRect;
    if (m_hWnd) {
        MoveWindow(m_hWnd, m_rcPos.left, m_rcPos.top, m_rcPos.right - m_rcPos.left, m_rcPos.bottom - m_rcPos.top, TRUE);
        RECT clip{};
        if (lprcClipRect && IntersectRect(&clip, lprcPosRect, lprcClipRect) && !EqualRect(&clip, lprcPosRect)) {
            OffsetRect(&clip, -m_rcPos.left, -m_rcPos.top);
            SetWindowRgn(m_hWnd, CreateRectRgnIndirect(&clip), TRUE); // the window owns the region
        } else {
            SetWindowRgn(m_hWnd, nullptr, TRUE);
        }
    }
    return S_OK;
}

STDMETHODIMP WindowedControlBase::OnWindowMessage(UINT, WPARAM, LPARAM, LRESULT* plResult)
{
    if (plResult) *plResult = 0;
    return S_FALSE; // the control has a window of its own
}

STDMETHODIMP WindowedControlBase::GetDropTarget(IDropTarget** ppDropTarget)
{
    if (ppDropTarget) *ppDropTarget = nullptr;
    return E_NOTIMPL;
}

// ---- The control's window ---------------------------------------------------------------------------

bool WindowedControlBase::CreateControlWindow(HWND parent, const RECT& pos)
{
    WNDCLASSEXW wc{sizeof(wc)};
    if (!GetClassInfoExW(ModuleInstance(), kWindowClass, &wc)) {
        wc = WNDCLASSEXW{sizeof(wc)};
        wc.style = CS_DBLCLKS;
        wc.lpfnWndProc = &WindowedControlBase::WindowProc;
        wc.hInstance = ModuleInstance();
        wc.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
        wc.lpszClassName = kWindowClass;
        if (!RegisterClassExW(&wc) && GetLastError() != ERROR_CLASS_ALREADY_EXISTS) return false;
    }
    m_hWnd = CreateWindowExW(0, kWindowClass, L"", WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, pos.left, pos.top,
                             pos.right - pos.left, pos.bottom - pos.top, parent, nullptr, ModuleInstance(), this);
    if (!m_hWnd) return false;
    OnWindowCreated();
    return true;
}

void WindowedControlBase::UnregisterWindowClass() noexcept
{
    UnregisterClassW(kWindowClass, ModuleInstance());
}

void WindowedControlBase::DestroyControlWindow()
{
    if (HWND hwnd = m_hWnd) {
        if (IsWindow(hwnd)) DestroyWindow(hwnd);
        m_hWnd = nullptr;
    }
}

bool WindowedControlBase::OnMessage(UINT, WPARAM, LPARAM, LRESULT&)
{
    return false;
}

LRESULT CALLBACK WindowedControlBase::WindowProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam)
{
    if (msg == WM_NCCREATE) {
        auto* cs = reinterpret_cast<CREATESTRUCTW*>(lParam);
        SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(cs->lpCreateParams));
    }
    auto* self = reinterpret_cast<WindowedControlBase*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
    if (self) {
        if (msg == WM_DESTROY) {
            try {
                self->OnWindowDestroying();
            } catch (...) {
                ReportCaught(*self, "WM_DESTROY");
            }
        }
        if (msg == WM_NCDESTROY) {
            SetWindowLongPtrW(hwnd, GWLP_USERDATA, 0);
            if (self->m_hWnd == hwnd) self->m_hWnd = nullptr;
        } else {
            LRESULT result = 0;
            bool handled = false;
            try {
                handled = self->OnMessage(msg, wParam, lParam, result);
            } catch (...) {
                ReportCaught(*self, "the control's window procedure");
                handled = false;
            }
            if (handled) return result;
        }
    }
    if (msg == WM_PAINT) {
        PAINTSTRUCT ps;
        BeginPaint(hwnd, &ps);
        EndPaint(hwnd, &ps);
        return 0;
    }
    return DefWindowProcW(hwnd, msg, wParam, lParam);
}

// ---- IViewObjectEx ----------------------------------------------------------------------------------

STDMETHODIMP WindowedControlBase::Draw(DWORD dwDrawAspect, LONG, void*, DVTARGETDEVICE*, HDC, HDC hdcDraw,
                                       LPCRECTL lprcBounds, LPCRECTL, BOOL(STDMETHODCALLTYPE*)(ULONG_PTR), ULONG_PTR)
{
    if (dwDrawAspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    if (!hdcDraw) return E_INVALIDARG;
    // What the control shows lives in child windows; a drawing of it is its background.
    if (lprcBounds) {
        RECT rc{lprcBounds->left, lprcBounds->top, lprcBounds->right, lprcBounds->bottom};
        FillRect(hdcDraw, &rc, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    }
    return S_OK;
}

STDMETHODIMP WindowedControlBase::GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, HDC, LOGPALETTE** ppColorSet)
{
    if (ppColorSet) *ppColorSet = nullptr;
    return S_FALSE;
}

STDMETHODIMP WindowedControlBase::Freeze(DWORD, LONG, void*, DWORD* pdwFreeze)
{
    if (pdwFreeze) *pdwFreeze = 0;
    return E_NOTIMPL;
}

STDMETHODIMP WindowedControlBase::SetAdvise(DWORD aspects, DWORD advf, IAdviseSink* pAdvSink)
{
    m_viewAspects = aspects;
    m_viewAdvf = advf;
    m_pViewSink = pAdvSink;
    return S_OK;
}

STDMETHODIMP WindowedControlBase::GetAdvise(DWORD* pAspects, DWORD* pAdvf, IAdviseSink** ppAdvSink)
{
    if (pAspects) *pAspects = m_viewAspects;
    if (pAdvf) *pAdvf = m_viewAdvf;
    if (ppAdvSink) *ppAdvSink = m_pViewSink.CopyOut();
    return S_OK;
}

STDMETHODIMP WindowedControlBase::GetExtent(DWORD dwDrawAspect, LONG, DVTARGETDEVICE*, LPSIZEL lpsizel)
{
    return GetExtent(dwDrawAspect, lpsizel);
}

STDMETHODIMP WindowedControlBase::GetRect(DWORD dwAspect, LPRECTL pRect)
{
    if (!pRect) return E_POINTER;
    if (dwAspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    *pRect = RECTL{0, 0, m_sizeExtent.cx, m_sizeExtent.cy};
    return S_OK;
}

STDMETHODIMP WindowedControlBase::GetViewStatus(DWORD* pdwStatus)
{
    if (!pdwStatus) return E_POINTER;
    *pdwStatus = VIEWSTATUS_OPAQUE | VIEWSTATUS_SOLIDBKGND;
    return S_OK;
}

STDMETHODIMP WindowedControlBase::QueryHitPoint(DWORD dwAspect, LPCRECT pRectBounds, POINT ptlLoc, LONG, DWORD* pHitResult)
{
    if (!pHitResult || !pRectBounds) return E_POINTER;
    if (dwAspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    *pHitResult = PtInRect(pRectBounds, ptlLoc) ? HITRESULT_HIT : HITRESULT_OUTSIDE;
    return S_OK;
}

STDMETHODIMP WindowedControlBase::QueryHitRect(DWORD dwAspect, LPCRECT pRectBounds, LPCRECT pRectLoc, LONG, DWORD* pHitResult)
{
    if (!pHitResult || !pRectBounds || !pRectLoc) return E_POINTER;
    if (dwAspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    RECT r;
    *pHitResult = IntersectRect(&r, pRectBounds, pRectLoc) ? HITRESULT_HIT : HITRESULT_OUTSIDE;
    return S_OK;
}

// ---- Persistence: a versioned record with the extent --------------------------------------------------

STDMETHODIMP WindowedControlBase::GetClassID(CLSID* pClassID)
{
    if (!pClassID) return E_POINTER;
    *pClassID = ControlClassId();
    return S_OK;
}

STDMETHODIMP WindowedControlBase::Load(LPSTREAM pStm)
{
    if (!pStm) return E_POINTER;
    DWORD record[3] = {};
    ULONG read = 0;
    // An empty stream is a control saved before it had properties: keep the defaults.
    if (FAILED(pStm->Read(record, sizeof(record), &read)) || read == 0) return S_OK;
    if (read != sizeof(record) || record[0] != kPersistVersion) return E_FAIL;
    m_sizeExtent.cx = static_cast<LONG>(record[1]);
    m_sizeExtent.cy = static_cast<LONG>(record[2]);
    m_bDirty = false;
    return S_OK;
}

STDMETHODIMP WindowedControlBase::Save(LPSTREAM pStm, BOOL fClearDirty)
{
    if (!pStm) return E_POINTER;
    const DWORD record[3] = {kPersistVersion, static_cast<DWORD>(m_sizeExtent.cx), static_cast<DWORD>(m_sizeExtent.cy)};
    ULONG written = 0;
    HRESULT hr = pStm->Write(record, sizeof(record), &written);
    if (SUCCEEDED(hr) && fClearDirty) m_bDirty = false;
    return hr;
}

STDMETHODIMP WindowedControlBase::GetSizeMax(ULARGE_INTEGER* pCbSize)
{
    if (!pCbSize) return E_POINTER;
    pCbSize->QuadPart = 3 * sizeof(DWORD);
    return S_OK;
}

STDMETHODIMP WindowedControlBase::InitNew()
{
    m_bDirty = false;
    return S_OK;
}

STDMETHODIMP WindowedControlBase::InitNew(IStorage*)
{
    return InitNew();
}

STDMETHODIMP WindowedControlBase::Load(IStorage* pStg)
{
    if (!pStg) return E_POINTER;
    ComPtr<IStream> stream;
    if (FAILED(pStg->OpenStream(L"Contents", nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, stream.Put()))) return S_OK;
    return Load(stream.Get());
}

STDMETHODIMP WindowedControlBase::Save(IStorage* pStgSave, BOOL)
{
    if (!pStgSave) return E_POINTER;
    ComPtr<IStream> stream;
    HRESULT hr = pStgSave->CreateStream(L"Contents", STGM_WRITE | STGM_CREATE | STGM_SHARE_EXCLUSIVE, 0, 0, stream.Put());
    return SUCCEEDED(hr) ? Save(stream.Get(), TRUE) : hr;
}

// ---- IQuickActivate, IOleControl, IDataObject, ISpecifyPropertyPages -------------------------------

STDMETHODIMP WindowedControlBase::QuickActivate(QACONTAINER* pQaContainer, QACONTROL* pQaControl)
{
    if (!pQaContainer || !pQaControl) return E_POINTER;
    if (pQaContainer->cbSize < sizeof(QACONTAINER) || pQaControl->cbSize < sizeof(QACONTROL)) return E_INVALIDARG;
    SetClientSite(pQaContainer->pClientSite);
    if (pQaContainer->pAdviseSink) SetAdvise(DVASPECT_CONTENT, 0, pQaContainer->pAdviseSink);
    const ULONG cbSize = pQaControl->cbSize;
    *pQaControl = QACONTROL{};
    pQaControl->cbSize = cbSize;
    pQaControl->dwMiscStatus = ControlMiscStatus();
    GetViewStatus(&pQaControl->dwViewStatus);
    if (pQaContainer->pUnkEventSink && !IsEqualIID(DefaultSourceIid(), IID_NULL)) {
        ComPtr<IConnectionPointContainer> cpc;
        ComPtr<IConnectionPoint> point;
        if (SUCCEEDED(ControlIdentity()->QueryInterface(IID_IConnectionPointContainer, cpc.PutVoid())) &&
            SUCCEEDED(cpc->FindConnectionPoint(DefaultSourceIid(), point.Put())))
            point->Advise(pQaContainer->pUnkEventSink, &pQaControl->dwEventCookie);
    }
    return S_OK;
}

STDMETHODIMP WindowedControlBase::SetContentExtent(LPSIZEL pSizel)
{
    return SetExtent(DVASPECT_CONTENT, pSizel);
}

STDMETHODIMP WindowedControlBase::GetContentExtent(LPSIZEL pSizel)
{
    return GetExtent(DVASPECT_CONTENT, pSizel);
}

STDMETHODIMP WindowedControlBase::GetControlInfo(CONTROLINFO* pCI)
{
    if (!pCI) return E_POINTER;
    pCI->cb = sizeof(CONTROLINFO);
    pCI->hAccel = nullptr;
    pCI->cAccel = 0;
    pCI->dwFlags = 0;
    return S_OK;
}

STDMETHODIMP WindowedControlBase::GetCanonicalFormatEtc(FORMATETC*, FORMATETC* pOut)
{
    if (pOut) pOut->ptd = nullptr;
    return E_NOTIMPL;
}

STDMETHODIMP WindowedControlBase::EnumFormatEtc(DWORD, IEnumFORMATETC** ppEnum)
{
    if (ppEnum) *ppEnum = nullptr;
    return E_NOTIMPL;
}

STDMETHODIMP WindowedControlBase::DAdvise(FORMATETC* pformatetc, DWORD advf, IAdviseSink* pAdvSink, DWORD* pdwConnection)
{
    if (!pdwConnection) return E_POINTER;
    *pdwConnection = 0;
    if (!m_pDataAdviseHolder) {
        HRESULT hr = CreateDataAdviseHolder(m_pDataAdviseHolder.Put());
        if (FAILED(hr)) return hr;
    }
    return m_pDataAdviseHolder->Advise(static_cast<IDataObject*>(this), pformatetc, advf, pAdvSink, pdwConnection);
}

STDMETHODIMP WindowedControlBase::DUnadvise(DWORD dwConnection)
{
    return m_pDataAdviseHolder ? m_pDataAdviseHolder->Unadvise(dwConnection) : OLE_E_NOCONNECTION;
}

STDMETHODIMP WindowedControlBase::EnumDAdvise(IEnumSTATDATA** ppenumAdvise)
{
    if (!ppenumAdvise) return E_POINTER;
    *ppenumAdvise = nullptr;
    return m_pDataAdviseHolder ? m_pDataAdviseHolder->EnumAdvise(ppenumAdvise) : E_FAIL;
}

STDMETHODIMP WindowedControlBase::GetPages(CAUUID* pPages)
{
    if (!pPages) return E_POINTER;
    pPages->cElems = 0;
    pPages->pElems = nullptr;
    return S_OK;
}

} // namespace tov
