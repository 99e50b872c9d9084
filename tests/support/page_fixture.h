#pragma once
// A control in a real container with its scripted browser initialised, the browser showing a scripted
// document, and the front end connected with its GUI services (code page 1252 unless a test changes it).
#include "support/atl_host.h"
#include "support/control_fixture.h"
#include "frontend/gui_service_standin.h"
#include "frontend/scripted_browser.h"
#include "frontend/scripted_document.h"

namespace tovtest {

class PageFixture : public ControlFixture {
protected:
    void SetUp() override
    {
        ControlFixture::SetUp();
        services = tovfe::AddGUIServices(*container.Get(), 1252);
        Connect(0);
        ASSERT_EQ(S_OK, browsers.Register());
        ASSERT_EQ(S_OK, host.Attach(control.Get()));
        LONG code = -1;
        control->InitControl(&code);
        ASSERT_EQ(0, code);
        browser = browsers.Last();
        ASSERT_NE(nullptr, browser);
        document = tovfe::ScriptedDocument::Create();
        browser->SetDocument(document->AsDispatch());
        browser->Log().Clear();
    }
    void TearDown() override
    {
        host.Destroy();
        if (browser) browser->SetDocument(nullptr);
        ControlFixture::TearDown();
    }

    tovfe::ScriptedPage& Page() { return document->Page(); }
    // The level-2 lines the control wrote, without scope entries and exits.
    std::vector<std::string> DetailLines() const
    {
        std::vector<std::string> out;
        for (const auto& l : Lines())
            if (l.rfind("=", 0) != 0 && l.rfind("<=", 0) != 0) out.push_back(l);
        return out;
    }

    tovfe::GUIServices services;
    tovfe::ScriptedBrowserClass browsers;
    AtlHost host;
    tovfe::ScriptedBrowser* browser = nullptr;
    tov::ComPtr<tovfe::ScriptedDocument> document;
};

} // namespace tovtest
