#pragma once
// The control, unchanged, in a real container with the engine's browser behind it: TOVENGINE.DLL as this
// process's WebBrowser and browser application classes, the front end's data provider and its protocol
// handler for provider URLs, GUI services, and a sink for the control's events. What a test checks is
// what the front end receives and what the page shows.
#include <gtest/gtest.h>
#include <functional>
#include <string>
#include <vector>
#include "support/atl_host.h"
#include "support/control_fixture.h"
#include "frontend/data_provider_standin.h"
#include "frontend/engine_classes.h"
#include "frontend/gui_service_standin.h"
#include "frontend/provider_protocol.h"
#include "framework/bstr.h"

namespace tovtest {

// Pumps this thread's messages until `done` holds or `timeoutMs` pass; whether it held.
bool PumpUntil(const std::function<bool()>& done, DWORD timeoutMs = 15000);

// Engine folders of this process, or of process `pid` (Z:\tmp\tovengine-<pid>-...): the engine's
// launcher removes its folder only once the engine has ended, so none is left when no engine runs.
std::vector<std::wstring> EngineFolders(DWORD pid = GetCurrentProcessId());
std::string ReadSmallFile(const std::wstring& path);
// The pages the running engine holds, asked of the engine itself (its target list over HTTP); -1 when
// no engine or more than one runs.
int EnginePages();
// Visible stand-alone browser windows of the engine on this thread, and a window's title.
using tovfe::EngineTopWindows;
std::wstring WindowTitle(HWND window);

class EngineFixture : public ControlFixture {
protected:
    void SetUp() override;
    void TearDown() override;

    // Pumps this thread's messages until `done` holds or `timeoutMs` pass; whether it held.
    static bool WaitFor(const std::function<bool()>& done, DWORD timeoutMs = 15000);
    // Pumps messages for a while without waiting for anything.
    static void Settle(DWORD ms);

    // A real click at x, y of the browser window and the one BeforeNavigate the front end received for it;
    // fails the test when none or more than one came.
    FiredEvent ClickForEvent(int x, int y, DWORD timeoutMs = 15000);

    // Data the front end's provider holds under the control's local prefix.
    void PutPage(const std::wstring& name, const std::string& bytes, const std::wstring& subtype = L"html");
    LONG ShowData(const std::wstring& name, LONG local = 1);
    LONG ShowURL(const std::wstring& url);
    // Shows provider data and waits until the front end has NavigateComplete for it and the browser's top
    // document is complete.
    void ShowPage(const std::wstring& name);

    std::wstring Html() const;
    std::wstring Charset() const;
    LONG DocumentComplete() const { return Property(&ITOVHTMLControl::get_DocumentComplete); }
    // The control's events the front end received with `id` (1 BeforeNavigate, 2 NavigateComplete ...).
    std::vector<FiredEvent> Events(DISPID id) const;
    static std::wstring JoinedUrl(const FiredEvent& e);
    // What the front end's provider holds as the last TOVEVENT's post data.
    std::string PostedData() const;

    // The browser's window inside the control's window, and mouse input into it at client coordinates.
    HWND BrowserWindow() const;
    void Click(int x, int y, bool right = false) const;

    tovfe::EngineClasses engine;
    tovfe::DataProviderRegistration provider;
    tovfe::ProviderProtocolRegistration protocol;
    tovfe::GUIServices services;
    tovfe::DataProviderStandIn* postData = nullptr;
    RecordingEventSink events;
    DWORD cookie = 0;
    AtlHost host{800, 600};
};

} // namespace tovtest
