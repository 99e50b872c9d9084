#include "events/browser_event_sinks.h"
#include "control/TOVHTMLControl.h"

// References held on the sinks are the browser's (see CBrowserSite::AddRef).

STDMETHODIMP CBrowserEventsSink::QueryInterface(REFIID riid, void** ppv) { return m_control.ControllingUnknown()->QueryInterface(riid, ppv); }
STDMETHODIMP_(ULONG) CBrowserEventsSink::AddRef() { return ++m_control.m_cBrowserHeldRefs; }
STDMETHODIMP_(ULONG) CBrowserEventsSink::Release() { return m_control.ReleaseBrowserHeld(); }

STDMETHODIMP CBrowserEventsSink::BeforeNavigate(BSTR URL, LONG Flags, BSTR TargetFrameName, VARIANT* PostData, BSTR Headers,
                                                VARIANT_BOOL* Cancel)
{
    return m_control.HandleBrowserCall([&] {
        return m_control.OnTopLevelBeforeNavigate(URL, Flags, TargetFrameName, PostData, Headers, Cancel);
    }, Cancel);
}
STDMETHODIMP CBrowserEventsSink::NavigateComplete(BSTR URL)
{
    return m_control.HandleBrowserCall([&] { m_control.OnNavigateComplete(URL); return S_OK; });
}
STDMETHODIMP CBrowserEventsSink::FrameBeforeNavigate(BSTR URL, LONG Flags, BSTR TargetFrameName, VARIANT* PostData,
                                                     BSTR Headers, VARIANT_BOOL* Cancel)
{
    return m_control.HandleBrowserCall([&] {
        return m_control.OnFrameBeforeNavigate(URL, Flags, TargetFrameName, PostData, Headers, Cancel);
    }, Cancel);
}
STDMETHODIMP CBrowserEventsSink::FrameNavigateComplete(BSTR URL)
{
    return m_control.HandleBrowserCall([&] { m_control.OnFrameNavigateComplete(URL); return S_OK; });
}

STDMETHODIMP CBrowserEvents2Sink::QueryInterface(REFIID riid, void** ppv) { return m_control.ControllingUnknown()->QueryInterface(riid, ppv); }
STDMETHODIMP_(ULONG) CBrowserEvents2Sink::AddRef() { return ++m_control.m_cBrowserHeldRefs; }
STDMETHODIMP_(ULONG) CBrowserEvents2Sink::Release() { return m_control.ReleaseBrowserHeld(); }

STDMETHODIMP CBrowserEvents2Sink::DocumentComplete(IDispatch* frame, VARIANT)
{
    return m_control.HandleBrowserCall([&] { m_control.OnDocumentComplete(frame); return S_OK; });
}
STDMETHODIMP CBrowserEvents2Sink::NewWindow2(IDispatch** ppDisp, VARIANT_BOOL* Cancel)
{
    return m_control.HandleBrowserCall([&] { return m_control.NewWindow2(ppDisp, Cancel); }, Cancel);
}
