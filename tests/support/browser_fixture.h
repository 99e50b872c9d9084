#pragma once
// A control hosted in a real container and initialised with a scripted browser.
#include "support/atl_host.h"
#include "support/control_fixture.h"
#include "frontend/scripted_browser.h"

namespace tovtest {

class ControlWithBrowserFixture : public ControlFixture {
protected:
    void SetUp() override
    {
        ControlFixture::SetUp();
        ASSERT_EQ(S_OK, browsers.Register());
        ASSERT_EQ(S_OK, host.Attach(control.Get()));
        LONG code = -1;
        control->InitControl(&code);
        ASSERT_EQ(0, code);
        browser = browsers.Last();
        ASSERT_NE(nullptr, browser);
    }
    void TearDown() override
    {
        host.Destroy();
        ControlFixture::TearDown();
    }

    tovfe::ScriptedBrowserClass browsers;
    AtlHost host;
    tovfe::ScriptedBrowser* browser = nullptr;
};

} // namespace tovtest
