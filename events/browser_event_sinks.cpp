#include "events/browser_event_sinks.h"
#include "control/TOVHTMLControl.h"

// References held on the sinks are the browser's (see CBrowserSite::AddRef).

STDMETHODIMP CBrowserEventsSink::QueryInterface(REFIID riid, void** ppv) { return m_control.ControllingUnknown()->QueryInterface(riid, ppv); }
STDMETHODIMP_(ULONG) CBrowserEventsSink::AddRef() { return ++m_control.m_cBrowserHeldRefs; }
STDMETHODIMP_(ULONG) CBrowserEventsSink::Release() { return --m_control.m_cBrowserHeldRefs; }

// The handlers of the back channel are not built yet: the events are accepted and change nothing.
STDMETHODIMP CBrowserEventsSink::BeforeNavigate(BSTR, LONG, BSTR, VARIANT*, BSTR, VARIANT_BOOL*) { return S_OK; }
STDMETHODIMP CBrowserEventsSink::NavigateComplete(BSTR) { return S_OK; }
STDMETHODIMP CBrowserEventsSink::FrameBeforeNavigate(BSTR, LONG, BSTR, VARIANT*, BSTR, VARIANT_BOOL*) { return S_OK; }
STDMETHODIMP CBrowserEventsSink::FrameNavigateComplete(BSTR) { return S_OK; }

STDMETHODIMP CBrowserEvents2Sink::QueryInterface(REFIID riid, void** ppv) { return m_control.ControllingUnknown()->QueryInterface(riid, ppv); }
STDMETHODIMP_(ULONG) CBrowserEvents2Sink::AddRef() { return ++m_control.m_cBrowserHeldRefs; }
STDMETHODIMP_(ULONG) CBrowserEvents2Sink::Release() { return --m_control.m_cBrowserHeldRefs; }

STDMETHODIMP CBrowserEvents2Sink::DocumentComplete(IDispatch*, VARIANT) { return S_OK; }
STDMETHODIMP CBrowserEvents2Sink::NewWindow2(IDispatch** ppDisp, VARIANT_BOOL* Cancel) { return m_control.NewWindow2(ppDisp, Cancel); }
