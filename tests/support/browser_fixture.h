#pragma once
// A control in the platform's ATL container, with the scripted browser as its WebBrowser class and
// InitControl done, connected to a front end tracing at level 2: the browser holds the control as its client
// site.
#include <string>
#include <vector>
#include "support/initialized_control_fixture.h"
#include "framework/handles.h"

namespace tovtest {

class BrowserFixture : public InitializedControlFixture {
protected:
    BrowserFixture() : InitializedControlFixture(2) {}
    void SetUp() override
    {
        InitializedControlFixture::SetUp();
        ASSERT_TRUE(browser && browser->Site());
    }

    // The zoom command every own navigation starts with, as the browser records it, for the logical pixels
    // per inch of the control window's screen.
    std::wstring ZoomCall() const
    {
        const tov::WindowDc dc(Window());
        const int dpi = (GetDeviceCaps(dc.Get(), LOGPIXELSX) + GetDeviceCaps(dc.Get(), LOGPIXELSY)) / 2;
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
};

} // namespace tovtest
