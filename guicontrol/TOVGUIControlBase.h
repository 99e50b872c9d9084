#pragma once
// The base every GUI control of the front end shares: the connection to the front end's container and
// the services it hands out, the front end's numbered framework events, personalisation and the data
// provider's notifications. The final class supplies IUnknown; its behaviour enters through the hooks.
#include <windows.h>
#include <objidl.h>
#include <array>
#include <string>
#include "tov_frontend.h"
#include "framework/com_ptr.h"
#include "framework/hresult_error.h"

// The numbers of a DPI change (framework event 106); -1 where the record does not give one.
struct TOVDpiRecord {
    LONG dpi = -1;
    LONG scalingFactorX = -1;
    LONG scalingFactorY = -1;
};

class CTOVGUIControlBase : public ITOVGUIControl,
                           public ITOVGUITessarilControl,
                           public _ITOVDataProviderEvents,
                           public tov::FailureReport {
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
    // First of the virtual table's own entries; releases the cached services and the container.
    virtual ~CTOVGUIControlBase();
    CTOVGUIControlBase(const CTOVGUIControlBase&) = delete;
    CTOVGUIControlBase& operator=(const CTOVGUIControlBase&) = delete;

    // ITOVGUIControl
    STDMETHODIMP SetContainer(IUnknown* pContainer) override;
    STDMETHODIMP HandleEvent(LONG lEvent, IUnknown* pParameter) override;
    STDMETHODIMP ForwardToGUIService(LONG lValue) override;

protected:
    // Hooks, in the order of the virtual table after the destructor; the defaults do nothing. Declared
    // before the other interfaces' methods, which take virtual-table entries of their own.

    // Anything but 1 is taken as the event's result and ends its handling.
    virtual LONG PreHandleEvent(LONG lEvent, IUnknown* pParameter) { return 1; }
    virtual LONG OnContainerConnected() { return 0; }
    virtual LONG OnContainerDisconnecting() { return 0; }
    virtual LONG OnTraceSettingsChanged() { return 0; }
    virtual LONG OnEvent101() { return 0; }
    virtual LONG OnEvent102() { return 0; }
    virtual LONG OnEvent105() { return 0; }
    virtual LONG OnEvent106(IUnknown* pParameter) { return 0; }
    // 1: not handled.
    virtual LONG OnContextMenuItemSelected(IUnknown* pMenu, IUnknown* pItem) { return 1; }
    virtual LONG OnEvent301(IUnknown* pParameter) { return 0; }
    virtual LONG OnEvent302(IUnknown* pParameter) { return 0; }
    // The 400 range: `data` is the drag's data object (may be null), `firstFile` the first file of its
    // file list (empty when it has none).
    virtual LONG OnDragEvent(LONG lEvent, IDataObject* data, const std::wstring& firstFile) { return 1; }
    virtual LONG OnEvent5xx(LONG lEvent, IUnknown* pParameter) { return 1; }
    virtual LONG OnEvent104() { return 0; }
    virtual LONG OnEvent101WithParameter(IUnknown* pParameter) { return 0; }
    virtual LONG OnDataEvent3(IUnknown* provider) { return 0; }
    virtual LONG OnDataEvent5(IUnknown* provider, LPCWSTR url, LONG kind, LONG value) { return 0; }
    virtual LONG OnDataEvent6(IUnknown* provider) { return 0; }
    virtual LONG OnSetTessarilProperty(LPCWSTR name, LPCWSTR value) { return 0; }
    virtual LONG OnTessarilMethod4(LPCWSTR name, LONG kind, VARIANT* value, LONG* result) { return 0; }
    virtual LONG OnResetTessarilProperty() { return 0; }
    virtual LONG OnTessarilMethod6(LPCWSTR name) { return 0; }
    virtual LONG OnTessarilMethod7(LPCWSTR name, VARIANT* value) { return 0; }
    virtual LONG OnTessarilMethod8(IUnknown* tool) { return 0; }

public:
    // ITOVGUITessarilControl: each forwards to its hook.
    STDMETHODIMP SetTessarilProperty(LPCWSTR name, LPCWSTR value) override;
    STDMETHODIMP TessarilMethod4(LPCWSTR name, LONG kind, VARIANT* value, LONG* result) override;
    STDMETHODIMP ResetTessarilProperty() override;
    STDMETHODIMP TessarilMethod6(LPCWSTR name) override;
    STDMETHODIMP TessarilMethod7(LPCWSTR name, VARIANT* value) override;
    STDMETHODIMP TessarilMethod8(IUnknown* tool) override;

    // _ITOVDataProviderEvents
    STDMETHODIMP DataEvent3(IUnknown* provider) override;
    STDMETHODIMP DataEvent4(LONG) override { return S_OK; }
    STDMETHODIMP DataEvent5(IUnknown* provider, LPCWSTR url, LONG kind, LONG value) override;
    STDMETHODIMP DataEvent6(IUnknown* provider) override;
    STDMETHODIMP DataEvent7(LONG) override { return S_OK; }
    STDMETHODIMP DataEvent8(LONG) override { return S_OK; }
    STDMETHODIMP DataEvent9(LONG) override { return S_OK; }

    // Service getters: fetched from the container on first use and cached until the container changes;
    // null when the front end does not offer the service. No reference is added for the caller.
    ITOVTraceSink* GetTraceSink();
    ITOVGUIService* GetGUIService();              // created directly when there is no container
    ITOVGUIServiceChild* GetGUIServiceChild();    // from the GUI service (position 12)
    ITOVContextMenuService* GetContextMenuService();
    ITOVFrontendInfoService* GetFrontendInfoService();
    IUnknown* GetCachedService(Service which);    // the five services only cached, by their interface
    // Null unless the registry switch is on; a newly fetched service is connected first.
    ITOVControlPluginService* GetControlPluginService();

    // The front end's code page from the GUI service child; `fallback` when it cannot be had.
    UINT FrontendCodePage(UINT fallback = CP_ACP);

    bool IsConnected() const { return m_bConnected; }

    // The DPI record of an event-106 parameter (child "dpi_change"); null or incomplete parameters give -1.
    static TOVDpiRecord ReadDpiRecord(IUnknown* pParameter);

protected:
    LONG m_bFrontendActive = 1;
    tov::ComPtr<ITOVFrontendContainer> m_pContainer;

private:
    void ReleaseServices();
    // The cache entry of a service offered by the container under `sid`, narrowed to `iid`.
    IUnknown* FetchService(Service which, REFGUID sid, REFIID iid);
    LONG DispatchEvent(LONG lEvent, IUnknown* pParameter);
    LONG ContextMenuEvent(IUnknown* pParameter);
    LONG DragEvent(LONG lEvent, IUnknown* pParameter);

    std::array<tov::ComPtr<IUnknown>, static_cast<size_t>(Service::Count)> m_services;

protected:
    tov::ComPtr<IDataObject> m_pDragData;

private:
    bool m_bConnected = false;
};
