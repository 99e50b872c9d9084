#pragma once
// The demo's front end with the real engine: the control, created by its ProgID (or from the TOVHTML.OCX
// beside this program when none is registered), in a container window; the engine's browser behind it;
// the data provider serving a folder under the control's local prefix through the front end's protocol
// handler; the front end's services, its menu and a sink that prints every event of the control. Shared
// by the demo session and the page author's workbench.
#include <windows.h>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>
#include "TOVHTML_h.h"
#include "framework/com_ptr.h"
#include "frontend/class_registration.h"
#include "frontend/container_window.h"
#include "frontend/context_menu_standin.h"
#include "frontend/data_provider_standin.h"
#include "frontend/engine_classes.h"
#include "frontend/event_printer.h"
#include "frontend/frontend_container.h"
#include "frontend/gui_service_standin.h"
#include "frontend/provider_protocol.h"

namespace tovfe {

class EngineFrontEnd {
public:
    EngineFrontEnd(int width, int height, const wchar_t* title);
    ~EngineFrontEnd();
    EngineFrontEnd(const EngineFrontEnd&) = delete;
    EngineFrontEnd& operator=(const EngineFrontEnd&) = delete;

    // Registers the engine and the handlers, creates and initialises the control and serves `folder`;
    // prints why and answers false when something is missing.
    bool Start(const std::wstring& folder);
    // Gives the control back to the container, closes the window and waits until the engine is gone.
    void Close();

    ITOVHTMLControl* Control() const { return m_control.Get(); }
    HWND Frame() const { return m_window.Frame(); }
    // The engine's view inside the control's window: where mouse input for the page goes.
    HWND BrowserWindow() const;
    bool WindowOpen() const { return IsWindow(m_window.Frame()) != FALSE; }

    // Pumps messages until `done` holds, the window closes or `ms` pass; whether `done` held.
    bool WaitFor(const std::function<bool()>& done, DWORD ms);
    // Shows provider data by its name and waits for the page; the control's return code (-1: the page
    // did not complete in time).
    LONG ShowData(const std::wstring& name);
    bool PageComplete() const;
    // The centre of the element with `id` in the page, or in the frame named `frame`, in the browser
    // window's coordinates; asked of the page through the control's own script and HTML methods.
    std::optional<POINT> Locate(const std::wstring& id, const std::wstring& frame = {});
    // A real click (or right click) at a point of the browser window, as mouse messages into it.
    void Click(POINT at, bool right = false);
    // Events the front end has received so far, by name.
    size_t EventCount(const std::wstring& name) const;

    // Runs after each event has been printed (and its post data read from the provider).
    std::function<void(const std::wstring& name)> onEvent;
    // The entries of the front end's context menu and the one the user picks when one is asked for.
    ContextMenuDescription menu{{L"FC_OPEN", L"FC_PRINT", L"FC_PROPERTIES"}, 1};

private:
    void OnEvent(const std::wstring& name, const std::vector<VARIANT>& args);
    void PrintPostData();
    void AnswerMenuRequest();
    HRESULT CreateControl(IUnknown** control);

    ContainerWindow m_window;
    EngineClasses m_engine;
    ProviderProtocolRegistration m_protocol;
    DataProviderRegistration m_provider;
    RegisteredClass m_ocxClass;
    HMODULE m_ocx = nullptr;
    tov::ComPtr<FrontendContainer> m_container;
    tov::ComPtr<TraceSinkStandIn> m_trace;
    GUIServices m_services;
    std::shared_ptr<Recorder> m_menuCalls = std::make_shared<Recorder>();
    tov::ComPtr<ContextMenuServiceStandIn> m_menuService;
    tov::ComPtr<ITOVHTMLControl> m_control;
    tov::ComPtr<EventPrinter> m_printer;
    tov::ComPtr<IConnectionPoint> m_point;
    DWORD m_cookie = 0;
    DataProviderStandIn* m_postData = nullptr; // held by the control once handed over
    std::vector<std::wstring> m_events;
    bool m_menuAsked = false;
    bool m_closed = false;
};

// The Windows code page of a charset name as pages state it ("windows-1252", "utf-8", ...); 1252 when
// the name is not known.
UINT CodePageOfCharset(const std::wstring& charset);

} // namespace tovfe
