// Taking the browser down: the container's Close and in-place deactivation.
#include "control/automation_call.h"

using namespace tov;

HRESULT CTOVHTMLControl::CloseControl(DWORD dwSaveOption)
{
    try {
        CTraceScope scope(m_trace, TraceSinkRef(), "Close");
        TakeDown(TakeDownKind::ContainerClose);
    } catch (...) {
        // The steps end where the failure happened; the standard close still runs.
        ReportCaught(Failures(), "Close");
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
        ReportCaught(Failures(), "InPlaceDeactivate");
    }
    return WindowedControlBase::InPlaceDeactivate();
}
