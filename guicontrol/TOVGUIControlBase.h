#pragma once
// The base every GUI control of the front end shares: the connection to the front end's container and
// the services it hands out. The final class supplies IUnknown.
#include <windows.h>
#include "tov_frontend.h"
#include "framework/com_ptr.h"

class CTOVGUIControlBase : public ITOVGUIControl {
public:
    CTOVGUIControlBase() = default;
    virtual ~CTOVGUIControlBase();

    // ITOVGUIControl
    STDMETHODIMP SetContainer(IUnknown* pContainer) override;
    STDMETHODIMP HandleEvent(LONG lEvent, IUnknown* pParameter) override;
    STDMETHODIMP ForwardToGUIService(LONG lValue) override;

    // The trace service, fetched from the container once and cached; null without a container. No
    // reference is added for the caller.
    ITOVTraceSink* GetTraceSink();
    bool IsConnected() const { return m_bConnected; }

protected:
    virtual LONG OnContainerConnected() { return 0; }
    virtual LONG OnContainerDisconnecting() { return 0; }
    virtual LONG OnTraceSettingsChanged() { return 0; }

    LONG m_bFrontendActive = 1;
    tov::ComPtr<ITOVFrontendContainer> m_pContainer;

private:
    void ReleaseServices();

    tov::ComPtr<ITOVTraceSink> m_pTraceSink;
    bool m_bConnected = false;
};
