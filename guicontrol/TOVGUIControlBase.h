#pragma once
// The base every GUI control of the front end shares: the connection to the front end's container and
// the services it hands out. The final class supplies IUnknown.
#include <windows.h>
#include <array>
#include "tov_frontend.h"
#include "framework/com_ptr.h"

class CTOVGUIControlBase : public ITOVGUIControl {
public:
    // The front-end services, in the order of the cache.
    enum class Service : size_t {
        TraceSink,
        GUIService,
        GUIServiceChild,
        ContextMenu,
        FrontendInfo,
        ControlPlugin,
        Service7,
        Service8,
        Service9,
        Service10,
        Service11,
        Count
    };

    CTOVGUIControlBase() = default;
    virtual ~CTOVGUIControlBase();
    CTOVGUIControlBase(const CTOVGUIControlBase&) = delete;
    CTOVGUIControlBase& operator=(const CTOVGUIControlBase&) = delete;

    // ITOVGUIControl
    STDMETHODIMP SetContainer(IUnknown* pContainer) override;
    STDMETHODIMP HandleEvent(LONG lEvent, IUnknown* pParameter) override;
    STDMETHODIMP ForwardToGUIService(LONG lValue) override;

    // Service getters: fetched from the container on first use and cached until the container changes;
    // null when the front end does not offer the service. No reference is added for the caller.
    ITOVTraceSink* GetTraceSink();
    ITOVGUIService* GetGUIService();              // created directly when there is no container
    ITOVGUIServiceChild* GetGUIServiceChild();    // from the GUI service (position 12)
    ITOVContextMenuService* GetContextMenuService();
    ITOVFrontendInfoService* GetFrontendInfoService();
    IUnknown* GetCachedService(Service which);    // the five services only cached, by their interface

    // The front end's code page from the GUI service child; `fallback` when it cannot be had.
    UINT FrontendCodePage(UINT fallback = CP_ACP);

    bool IsConnected() const { return m_bConnected; }

protected:
    virtual LONG OnContainerConnected() { return 0; }
    virtual LONG OnContainerDisconnecting() { return 0; }
    virtual LONG OnTraceSettingsChanged() { return 0; }

    LONG m_bFrontendActive = 1;
    tov::ComPtr<ITOVFrontendContainer> m_pContainer;

private:
    void ReleaseServices();
    // The cache entry of a service offered by the container under `sid`, narrowed to `iid`.
    IUnknown* FetchService(Service which, REFGUID sid, REFIID iid);

    std::array<tov::ComPtr<IUnknown>, static_cast<size_t>(Service::Count)> m_services;
    bool m_bConnected = false;
};
