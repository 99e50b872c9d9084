#pragma once
// The least a container can be: a client site that activates a control in place in a window of the
// test's own and never closes it. The front end's last release is then the only way the control goes,
// which the platform's container (it always closes first) cannot show.
#include <windows.h>
#include <ole2.h>
#include "framework/com_ptr.h"
#include "framework/hresult_error.h"
#include "framework/simple_object.h"

namespace tovtest {

class BareSite : public tov::SimpleObject<BareSite, tov::Lifetime::CountOnly,
                                          tov::Implements<IOleClientSite, IID_IOleClientSite>,
                                          tov::Implements<IOleInPlaceSite, IID_IOleInPlaceSite, IID_IOleWindow>> {
public:
    BareSite()
    {
        m_window = CreateWindowExW(0, L"STATIC", L"bare site", WS_OVERLAPPEDWINDOW, 0, 0, 400, 300, nullptr, nullptr,
                                   GetModuleHandleW(nullptr), nullptr);
    }
    ~BareSite()
    {
        if (m_window) DestroyWindow(m_window);
    }

    // Gives the control this site and activates it in place in the site's window.
    HRESULT Activate(IUnknown* control)
    {
        tov::ComPtr<IOleObject> object;
        HRESULT hr = control->QueryInterface(IID_IOleObject, object.PutVoid());
        if (FAILED(hr)) return hr;
        if (FAILED(hr = object->SetClientSite(static_cast<IOleClientSite*>(this)))) return hr;
        RECT rc{0, 0, 400, 300};
        return object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, static_cast<IOleClientSite*>(this), 0, m_window, &rc);
    }
    HWND Window() const { return m_window; }

    // IOleClientSite
    STDMETHODIMP SaveObject() override { return S_OK; }
    STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker** ppmk) override { return tov::NotImplemented(ppmk); }
    STDMETHODIMP GetContainer(IOleContainer** ppContainer) override { return tov::NotImplemented(ppContainer); }
    STDMETHODIMP ShowObject() override { return S_OK; }
    STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
    STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }
    // IOleInPlaceSite
    STDMETHODIMP GetWindow(HWND* phwnd) override
    {
        if (!phwnd) return E_POINTER;
        *phwnd = m_window;
        return S_OK;
    }
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP CanInPlaceActivate() override { return S_OK; }
    STDMETHODIMP OnInPlaceActivate() override { return S_OK; }
    STDMETHODIMP OnUIActivate() override { return S_OK; }
    STDMETHODIMP GetWindowContext(IOleInPlaceFrame** ppFrame, IOleInPlaceUIWindow** ppDoc, LPRECT, LPRECT,
                                  LPOLEINPLACEFRAMEINFO) override
    {
        if (ppFrame) *ppFrame = nullptr;
        if (ppDoc) *ppDoc = nullptr;
        return E_NOTIMPL;
    }
    STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
    STDMETHODIMP OnUIDeactivate(BOOL) override { return S_OK; }
    STDMETHODIMP OnInPlaceDeactivate() override { return S_OK; }
    STDMETHODIMP DiscardUndoState() override { return E_NOTIMPL; }
    STDMETHODIMP DeactivateAndUndo() override { return E_NOTIMPL; }
    STDMETHODIMP OnPosRectChange(LPCRECT) override { return S_OK; }

private:
    HWND m_window = nullptr;
};

} // namespace tovtest
