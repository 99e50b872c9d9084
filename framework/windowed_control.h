#pragma once
// What a real ActiveX container needs from a control that always owns its window: OLE object, in-place
// activation, view, persistence of its extent, quick activation, control and data-object basics. The
// final class supplies IUnknown and lists these interfaces in its table through FindControlInterface.
#include <windows.h>
#include <ocidl.h>
#include <oleidl.h>
#include "framework/com_ptr.h"
#include "framework/hresult_error.h"

namespace tov {

class WindowedControlBase : public IOleObject,
                            public IOleInPlaceObjectWindowless,
                            public IOleInPlaceActiveObject,
                            public IViewObjectEx,
                            public IPersistStreamInit,
                            public IPersistStorage,
                            public IQuickActivate,
                            public IOleControl,
                            public IDataObject,
                            public ISpecifyPropertyPages,
                            public FailureReport {
public:
    WindowedControlBase();
    virtual ~WindowedControlBase();

    // The interface of these bases for `riid` (no reference added), or null.
    void* FindControlInterface(REFIID riid) noexcept;

    HWND ControlWindow() const { return m_hWnd; }
    IOleClientSite* ClientSite() const { return m_pClientSite.Get(); }
    IOleInPlaceSite* InPlaceSite() const { return m_pInPlaceSite.Get(); }
    bool InPlaceActive() const { return m_bInPlaceActive; }
    // The module unregisters the controls' window class when it is unloaded: a class registered by a DLL
    // outlives it and would point a later load at a procedure that is gone.
    static void UnregisterWindowClass() noexcept;

    // IOleObject
    STDMETHODIMP SetClientSite(IOleClientSite* pClientSite) override;
    STDMETHODIMP GetClientSite(IOleClientSite** ppClientSite) override;
    STDMETHODIMP SetHostNames(LPCOLESTR, LPCOLESTR) override { return S_OK; }
    STDMETHODIMP Close(DWORD dwSaveOption) override;
    STDMETHODIMP SetMoniker(DWORD, IMoniker*) override { return E_NOTIMPL; }
    STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker** ppmk) override;
    STDMETHODIMP InitFromData(IDataObject*, BOOL, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP GetClipboardData(DWORD, IDataObject** ppDataObject) override;
    STDMETHODIMP DoVerb(LONG iVerb, LPMSG lpmsg, IOleClientSite* pActiveSite, LONG lindex, HWND hwndParent,
                        LPCRECT lprcPosRect) override;
    STDMETHODIMP EnumVerbs(IEnumOLEVERB** ppEnumOleVerb) override;
    STDMETHODIMP Update() override { return S_OK; }
    STDMETHODIMP IsUpToDate() override { return S_OK; }
    STDMETHODIMP GetUserClassID(CLSID* pClsid) override;
    STDMETHODIMP GetUserType(DWORD dwFormOfType, LPOLESTR* pszUserType) override;
    STDMETHODIMP SetExtent(DWORD dwDrawAspect, SIZEL* psizel) override;
    STDMETHODIMP GetExtent(DWORD dwDrawAspect, SIZEL* psizel) override;
    STDMETHODIMP Advise(IAdviseSink* pAdvSink, DWORD* pdwConnection) override;
    STDMETHODIMP Unadvise(DWORD dwConnection) override;
    STDMETHODIMP EnumAdvise(IEnumSTATDATA** ppenumAdvise) override;
    STDMETHODIMP GetMiscStatus(DWORD dwAspect, DWORD* pdwStatus) override;
    STDMETHODIMP SetColorScheme(LOGPALETTE*) override { return E_NOTIMPL; }

    // IOleWindow, IOleInPlaceObject(Windowless)
    STDMETHODIMP GetWindow(HWND* phwnd) override;
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP InPlaceDeactivate() override;
    STDMETHODIMP UIDeactivate() override;
    STDMETHODIMP SetObjectRects(LPCRECT lprcPosRect, LPCRECT lprcClipRect) override;
    STDMETHODIMP ReactivateAndUndo() override { return E_NOTIMPL; }
    STDMETHODIMP OnWindowMessage(UINT, WPARAM, LPARAM, LRESULT* plResult) override;
    STDMETHODIMP GetDropTarget(IDropTarget** ppDropTarget) override;

    // IOleInPlaceActiveObject
    STDMETHODIMP TranslateAccelerator(LPMSG) override { return S_FALSE; }
    STDMETHODIMP OnFrameWindowActivate(BOOL) override { return S_OK; }
    STDMETHODIMP OnDocWindowActivate(BOOL) override { return S_OK; }
    STDMETHODIMP ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) override { return S_OK; }
    STDMETHODIMP EnableModeless(BOOL) override { return S_OK; }

    // IViewObject, IViewObject2, IViewObjectEx
    STDMETHODIMP Draw(DWORD dwDrawAspect, LONG lindex, void* pvAspect, DVTARGETDEVICE* ptd, HDC hdcTargetDev, HDC hdcDraw,
                      LPCRECTL lprcBounds, LPCRECTL lprcWBounds, BOOL (STDMETHODCALLTYPE* pfnContinue)(ULONG_PTR),
                      ULONG_PTR dwContinue) override;
    STDMETHODIMP GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, HDC, LOGPALETTE** ppColorSet) override;
    STDMETHODIMP Freeze(DWORD, LONG, void*, DWORD* pdwFreeze) override;
    STDMETHODIMP Unfreeze(DWORD) override { return S_OK; }
    STDMETHODIMP SetAdvise(DWORD aspects, DWORD advf, IAdviseSink* pAdvSink) override;
    STDMETHODIMP GetAdvise(DWORD* pAspects, DWORD* pAdvf, IAdviseSink** ppAdvSink) override;
    STDMETHODIMP GetExtent(DWORD dwDrawAspect, LONG lindex, DVTARGETDEVICE* ptd, LPSIZEL lpsizel) override;
    STDMETHODIMP GetRect(DWORD dwAspect, LPRECTL pRect) override;
    STDMETHODIMP GetViewStatus(DWORD* pdwStatus) override;
    STDMETHODIMP QueryHitPoint(DWORD dwAspect, LPCRECT pRectBounds, POINT ptlLoc, LONG lCloseHint, DWORD* pHitResult) override;
    STDMETHODIMP QueryHitRect(DWORD dwAspect, LPCRECT pRectBounds, LPCRECT pRectLoc, LONG lCloseHint, DWORD* pHitResult) override;
    STDMETHODIMP GetNaturalExtent(DWORD, LONG, DVTARGETDEVICE*, HDC, DVEXTENTINFO*, LPSIZEL) override { return E_NOTIMPL; }

    // IPersist, IPersistStreamInit, IPersistStorage
    STDMETHODIMP GetClassID(CLSID* pClassID) override;
    STDMETHODIMP IsDirty() override { return m_bDirty ? S_OK : S_FALSE; }
    STDMETHODIMP Load(LPSTREAM pStm) override;
    STDMETHODIMP Save(LPSTREAM pStm, BOOL fClearDirty) override;
    STDMETHODIMP GetSizeMax(ULARGE_INTEGER* pCbSize) override;
    STDMETHODIMP InitNew() override;
    STDMETHODIMP InitNew(IStorage* pStg) override;
    STDMETHODIMP Load(IStorage* pStg) override;
    STDMETHODIMP Save(IStorage* pStgSave, BOOL fSameAsLoad) override;
    STDMETHODIMP SaveCompleted(IStorage*) override { return S_OK; }
    STDMETHODIMP HandsOffStorage() override { return S_OK; }

    // IQuickActivate
    STDMETHODIMP QuickActivate(QACONTAINER* pQaContainer, QACONTROL* pQaControl) override;
    STDMETHODIMP SetContentExtent(LPSIZEL pSizel) override;
    STDMETHODIMP GetContentExtent(LPSIZEL pSizel) override;

    // IOleControl
    STDMETHODIMP GetControlInfo(CONTROLINFO* pCI) override;
    STDMETHODIMP OnMnemonic(MSG*) override { return S_OK; }
    STDMETHODIMP OnAmbientPropertyChange(DISPID) override { return S_OK; }
    STDMETHODIMP FreezeEvents(BOOL) override { return S_OK; }

    // IDataObject
    STDMETHODIMP GetData(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
    STDMETHODIMP GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
    STDMETHODIMP QueryGetData(FORMATETC*) override { return E_NOTIMPL; }
    STDMETHODIMP GetCanonicalFormatEtc(FORMATETC*, FORMATETC* pOut) override;
    STDMETHODIMP SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP EnumFormatEtc(DWORD, IEnumFORMATETC** ppEnum) override;
    STDMETHODIMP DAdvise(FORMATETC* pformatetc, DWORD advf, IAdviseSink* pAdvSink, DWORD* pdwConnection) override;
    STDMETHODIMP DUnadvise(DWORD dwConnection) override;
    STDMETHODIMP EnumDAdvise(IEnumSTATDATA** ppenumAdvise) override;

    // ISpecifyPropertyPages
    STDMETHODIMP GetPages(CAUUID* pPages) override;

protected:
    virtual const CLSID& ControlClassId() const = 0;
    virtual DWORD ControlMiscStatus() const = 0;
    // The controlling unknown, kept alive across calls in which the container may release the control.
    virtual IUnknown* ControlIdentity() = 0;
    // Messages of the control's window before the default handling; true when handled.
    virtual bool OnMessage(UINT msg, WPARAM wParam, LPARAM lParam, LRESULT& result);
    virtual void OnWindowCreated() {}
    virtual void OnWindowDestroying() {}
    // IOleObject::Close goes through here; the standard steps are StandardClose.
    virtual HRESULT CloseControl(DWORD dwSaveOption) { return StandardClose(dwSaveOption); }
    HRESULT StandardClose(DWORD dwSaveOption);
    // The outgoing interface the container connects in QuickActivate (IID_NULL: none).
    virtual const IID& DefaultSourceIid() const { return IID_NULL; }

private:
    HRESULT InPlaceActivate(LONG verb, HWND hwndParent, LPCRECT lprcPosRect);
    HRESULT UIActivate();
    bool CreateControlWindow(HWND parent, const RECT& pos);
    void DestroyControlWindow();
    static LRESULT CALLBACK WindowProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam);

    HWND m_hWnd = nullptr;
    ComPtr<IOleClientSite> m_pClientSite;
    ComPtr<IOleInPlaceSite> m_pInPlaceSite;
    ComPtr<IOleInPlaceFrame> m_pFrame;
    ComPtr<IOleInPlaceUIWindow> m_pDocWindow;
    ComPtr<IOleAdviseHolder> m_pOleAdviseHolder;
    ComPtr<IDataAdviseHolder> m_pDataAdviseHolder;
    ComPtr<IAdviseSink> m_pViewSink;
    DWORD m_viewAspects = 0;
    DWORD m_viewAdvf = 0;
    SIZEL m_sizeExtent{};
    RECT m_rcPos{};
    bool m_bInPlaceActive = false;
    bool m_bUIActive = false;
    bool m_bDirty = false;
};

} // namespace tov
