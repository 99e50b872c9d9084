#pragma once
// A control in a real container with its scripted browser initialised, the browser showing a scripted
// document, and the front end connected with its GUI services (code page 1252 unless a test changes it).
#include "support/initialized_control_fixture.h"
#include "frontend/gui_service_standin.h"
#include "frontend/scripted_document.h"

namespace tovtest {

class PageFixture : public InitializedControlFixture {
protected:
    void SetUp() override
    {
        InitializedControlFixture::SetUp();
        services = tovfe::AddGUIServices(*container.Get(), 1252);
        Init(0);
        document = tovfe::ScriptedDocument::Create();
        browser->SetDocument(document->AsDispatch());
    }
    void TearDown() override
    {
        host.Destroy();
        if (browser) browser->SetDocument(nullptr);
        InitializedControlFixture::TearDown();
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
    tov::ComPtr<tovfe::ScriptedDocument> document;
};

} // namespace tovtest
