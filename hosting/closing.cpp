// Taking the browser down: the container's Close and in-place deactivation.
#include "control/automation_call.h"

using namespace tov;

HRESULT CTOVHTMLControl::CloseControl(DWORD dwSaveOption)
{
    try {
        CTraceScope scope(m_trace, TraceSinkRef(), "Close");
        if (m_pWebBrowser) {
            DisconnectBrowserEvents();
            m_pWebBrowser->Stop();
            m_pWebBrowser->Quit();
        }
        if (m_pOleObject) {
            ComPtr<IOleInPlaceObject> inPlace;
            m_pOleObject->QueryInterface(IID_IOleInPlaceObject, inPlace.PutVoid());
            if (inPlace) {
                inPlace->UIDeactivate();
                inPlace->InPlaceDeactivate();
            }
            m_pOleObject->SetClientSite(nullptr);
            m_pOleObject->Close(OLECLOSE_NOSAVE);
        }
        CloseBrowserWindows();
        DeleteTempFiles();
    } catch (...) {
        // The steps end where the failure happened; the standard close still runs.
    }
    return StandardClose(dwSaveOption);
}

STDMETHODIMP CTOVHTMLControl::InPlaceDeactivate()
{
    ComPtr<IUnknown> keepAlive(ControllingUnknown());
    try {
        CTraceScope scope(m_trace, TraceSinkRef(), "InPlaceDeactivate");
        if (m_pOleObject) {
            ComPtr<IOleInPlaceObject> inPlace;
            m_pOleObject->QueryInterface(IID_IOleInPlaceObject, inPlace.PutVoid());
            DisconnectBrowserEvents();
            m_pOleObject->SetClientSite(nullptr);
            if (inPlace) inPlace->InPlaceDeactivate();
        }
    } catch (...) {
    }
    return WindowedControlBase::InPlaceDeactivate();
}
