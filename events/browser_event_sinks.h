#pragma once
// The control's two sinks for its hosted browser's events. Each is a part of the control object (its
// IUnknown is the control's) with a dispatch of its own, so the browser's Invoke reaches the right type
// description. Handled events go to the control; the others answer E_NOTIMPL.
#include <windows.h>
#include "TOVHTML_h.h"
#include "framework/dispatch_impl.h"

class CTOVHTMLControl;

class CBrowserEventsSink : public tov::DispatchImpl<IWebBrowserEvents, &IID_IWebBrowserEvents> {
public:
    explicit CBrowserEventsSink(CTOVHTMLControl& control) : m_control(control) {}

    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;

    STDMETHODIMP BeforeNavigate(BSTR URL, LONG Flags, BSTR TargetFrameName, VARIANT* PostData, BSTR Headers,
                                VARIANT_BOOL* Cancel) override;
    STDMETHODIMP NavigateComplete(BSTR URL) override;
    STDMETHODIMP StatusTextChange(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP ProgressChange(LONG, LONG) override { return E_NOTIMPL; }
    STDMETHODIMP DownloadComplete() override { return E_NOTIMPL; }
    STDMETHODIMP CommandStateChange(LONG, VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP DownloadBegin() override { return E_NOTIMPL; }
    STDMETHODIMP NewWindow(BSTR, LONG, BSTR, VARIANT*, BSTR, VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP TitleChange(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP FrameBeforeNavigate(BSTR URL, LONG Flags, BSTR TargetFrameName, VARIANT* PostData, BSTR Headers,
                                     VARIANT_BOOL* Cancel) override;
    STDMETHODIMP FrameNavigateComplete(BSTR URL) override;
    STDMETHODIMP FrameNewWindow(BSTR, LONG, BSTR, VARIANT*, BSTR, VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP Quit(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP WindowMove() override { return E_NOTIMPL; }
    STDMETHODIMP WindowResize() override { return E_NOTIMPL; }
    STDMETHODIMP WindowActivate() override { return E_NOTIMPL; }
    STDMETHODIMP PropertyChange(BSTR) override { return E_NOTIMPL; }

private:
    CTOVHTMLControl& m_control;
};

class CBrowserEvents2Sink : public tov::DispatchImpl<IWebBrowserEvents2, &IID_IWebBrowserEvents2> {
public:
    explicit CBrowserEvents2Sink(CTOVHTMLControl& control) : m_control(control) {}

    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;

    STDMETHODIMP DocumentComplete(IDispatch* frame, VARIANT pURL) override;
    STDMETHODIMP NewWindow2(IDispatch** ppDisp, VARIANT_BOOL* Cancel) override;

private:
    CTOVHTMLControl& m_control;
};
