#pragma once
// Every operation of IWebBrowser2 answering E_NOTIMPL (out pointers cleared); a browser class overrides
// the ones it offers. IUnknown and IDispatch are left to the final class.
#include <windows.h>
#include <exdisp.h>
#include "framework/hresult_error.h"

namespace tov {

class WebBrowser2Stubs : public IWebBrowser2 {
public:
    STDMETHODIMP GoBack() override { return E_NOTIMPL; }
    STDMETHODIMP GoForward() override { return E_NOTIMPL; }
    STDMETHODIMP GoHome() override { return E_NOTIMPL; }
    STDMETHODIMP GoSearch() override { return E_NOTIMPL; }
    STDMETHODIMP Navigate(BSTR, VARIANT*, VARIANT*, VARIANT*, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP Refresh() override { return E_NOTIMPL; }
    STDMETHODIMP Refresh2(VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP Stop() override { return E_NOTIMPL; }
    STDMETHODIMP get_Application(IDispatch** p) override { return NotImplemented(p); }
    STDMETHODIMP get_Parent(IDispatch** p) override { return NotImplemented(p); }
    STDMETHODIMP get_Container(IDispatch** p) override { return NotImplemented(p); }
    STDMETHODIMP get_Document(IDispatch** p) override { return NotImplemented(p); }
    STDMETHODIMP get_TopLevelContainer(VARIANT_BOOL* p) override { return NotImplemented(p); }
    STDMETHODIMP get_Type(BSTR* p) override { return NotImplemented(p); }
    STDMETHODIMP get_Left(LONG* p) override { return NotImplemented(p); }
    STDMETHODIMP put_Left(LONG) override { return E_NOTIMPL; }
    STDMETHODIMP get_Top(LONG* p) override { return NotImplemented(p); }
    STDMETHODIMP put_Top(LONG) override { return E_NOTIMPL; }
    STDMETHODIMP get_Width(LONG* p) override { return NotImplemented(p); }
    STDMETHODIMP put_Width(LONG) override { return E_NOTIMPL; }
    STDMETHODIMP get_Height(LONG* p) override { return NotImplemented(p); }
    STDMETHODIMP put_Height(LONG) override { return E_NOTIMPL; }
    STDMETHODIMP get_LocationName(BSTR* p) override { return NotImplemented(p); }
    STDMETHODIMP get_LocationURL(BSTR* p) override { return NotImplemented(p); }
    STDMETHODIMP get_Busy(VARIANT_BOOL* p) override { return NotImplemented(p); }
    STDMETHODIMP Quit() override { return E_NOTIMPL; }
    STDMETHODIMP ClientToWindow(int*, int*) override { return E_NOTIMPL; }
    STDMETHODIMP PutProperty(BSTR, VARIANT) override { return E_NOTIMPL; }
    STDMETHODIMP GetProperty(BSTR, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Name(BSTR* p) override { return NotImplemented(p); }
    STDMETHODIMP get_HWND(SHANDLE_PTR* p) override { return NotImplemented(p); }
    STDMETHODIMP get_FullName(BSTR* p) override { return NotImplemented(p); }
    STDMETHODIMP get_Path(BSTR* p) override { return NotImplemented(p); }
    STDMETHODIMP get_Visible(VARIANT_BOOL* p) override { return NotImplemented(p); }
    STDMETHODIMP put_Visible(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_StatusBar(VARIANT_BOOL* p) override { return NotImplemented(p); }
    STDMETHODIMP put_StatusBar(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_StatusText(BSTR* p) override { return NotImplemented(p); }
    STDMETHODIMP put_StatusText(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_ToolBar(int* p) override { return NotImplemented(p); }
    STDMETHODIMP put_ToolBar(int) override { return E_NOTIMPL; }
    STDMETHODIMP get_MenuBar(VARIANT_BOOL* p) override { return NotImplemented(p); }
    STDMETHODIMP put_MenuBar(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_FullScreen(VARIANT_BOOL* p) override { return NotImplemented(p); }
    STDMETHODIMP put_FullScreen(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP Navigate2(VARIANT*, VARIANT*, VARIANT*, VARIANT*, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP QueryStatusWB(OLECMDID, OLECMDF* p) override { return NotImplemented(p); }
    STDMETHODIMP ExecWB(OLECMDID, OLECMDEXECOPT, VARIANT*, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP ShowBrowserBar(VARIANT*, VARIANT*, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP get_ReadyState(READYSTATE* p) override { return NotImplemented(p); }
    STDMETHODIMP get_Offline(VARIANT_BOOL* p) override { return NotImplemented(p); }
    STDMETHODIMP put_Offline(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_Silent(VARIANT_BOOL* p) override { return NotImplemented(p); }
    STDMETHODIMP put_Silent(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_RegisterAsBrowser(VARIANT_BOOL* p) override { return NotImplemented(p); }
    STDMETHODIMP put_RegisterAsBrowser(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_RegisterAsDropTarget(VARIANT_BOOL* p) override { return NotImplemented(p); }
    STDMETHODIMP put_RegisterAsDropTarget(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_TheaterMode(VARIANT_BOOL* p) override { return NotImplemented(p); }
    STDMETHODIMP put_TheaterMode(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_AddressBar(VARIANT_BOOL* p) override { return NotImplemented(p); }
    STDMETHODIMP put_AddressBar(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_Resizable(VARIANT_BOOL* p) override { return NotImplemented(p); }
    STDMETHODIMP put_Resizable(VARIANT_BOOL) override { return E_NOTIMPL; }
};

} // namespace tov
