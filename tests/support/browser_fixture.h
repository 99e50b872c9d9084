#pragma once
// A control in the platform's ATL container, with the scripted browser as its WebBrowser class and
// InitControl done: the browser holds the control as its client site.
#include <string>
#include <vector>
#include "support/atl_host.h"
#include "support/control_fixture.h"
#include "support/event_sink.h"
#include "frontend/scripted_browser.h"

namespace tovtest {

class BrowserFixture : public ControlFixture {
protected:
    void SetUp() override
    {
        ControlFixture::SetUp();
        ASSERT_EQ(S_OK, browsers.Register());
        ASSERT_EQ(S_OK, host.Attach(control.Get()));
        LONG code = -1;
        ASSERT_EQ(S_OK, control->InitControl(&code));
        ASSERT_EQ(0, code);
        browser = browsers.Last();
        ASSERT_NE(nullptr, browser);
        ASSERT_NE(nullptr, browser->Site());
        browser->Log().Clear();
    }
    void TearDown() override
    {
        Unadvise();
        host.Destroy();
        ControlFixture::TearDown();
    }

    // The control's own window, as its container sees it.
    HWND Window() const
    {
        tov::ComPtr<IOleWindow> window;
        HWND hwnd = nullptr;
        if (SUCCEEDED(control->QueryInterface(IID_IOleWindow, window.PutVoid()))) window->GetWindow(&hwnd);
        return hwnd;
    }
    // Logical pixels per inch of the control window's screen, and the zoom command every own navigation
    // starts with, as the browser records it.
    int Dpi() const
    {
        HDC dc = GetDC(Window());
        const int dpi = (GetDeviceCaps(dc, LOGPIXELSX) + GetDeviceCaps(dc, LOGPIXELSY)) / 2;
        ReleaseDC(Window(), dc);
        return dpi;
    }
    std::wstring ZoomCall() const
    {
        const int dpi = Dpi();
        return L"ExecWB(63, 0, I4:" + std::to_wstring(dpi > 100 ? dpi + 5 : 100) + L", <null>)";
    }
    // The browser's calls since the last clear, without the interface queries.
    std::vector<std::wstring> Calls() const
    {
        std::vector<std::wstring> calls;
        for (const auto& c : browser->Log().Calls())
            if (c.name != L"QueryInterface") calls.push_back(c.Text());
        return calls;
    }

    // The browser reports that `url` has been loaded; the number of NavigateComplete events the front
    // end's sink received for it.
    size_t CompletionsReported(const wchar_t* url)
    {
        const size_t before = events.events.size();
        tov::Variant arg;
        arg.vt = VT_BSTR;
        arg.bstrVal = SysAllocString(url);
        browser->FireEvent(DIID_DWebBrowserEvents, 101, {arg});
        size_t n = 0;
        for (size_t i = before; i < events.events.size(); ++i)
            if (events.events[i].id == 2) ++n;
        return n;
    }

    // Connects `events` as the front end's sink for the control's outgoing events.
    void Advise()
    {
        tov::ComPtr<IConnectionPointContainer> container;
        ASSERT_EQ(S_OK, control->QueryInterface(IID_IConnectionPointContainer, container.PutVoid()));
        ASSERT_EQ(S_OK, container->FindConnectionPoint(DIID__TOVHTMLControlEvents, point.Put()));
        ASSERT_EQ(S_OK, point->Advise(&events, &cookie));
    }
    void Unadvise()
    {
        if (point && cookie) point->Unadvise(cookie);
        cookie = 0;
        point.Reset();
    }

    tovfe::ScriptedBrowserClass browsers;
    AtlHost host;
    tovfe::ScriptedBrowser* browser = nullptr;
    RecordingEventSink events;
    tov::ComPtr<IConnectionPoint> point;
    DWORD cookie = 0;
};

} // namespace tovtest
