#pragma once
// A control made from the built OCX, connected to a front-end container whose trace sink collects lines.
#include <gtest/gtest.h>
#include <string>
#include <vector>
#include "frontend/frontend_container.h"
#include "support/ocx.h"
#include "tov_frontend.h"

namespace tovtest {

class ControlFixture : public testing::Test {
protected:
    void SetUp() override
    {
        control = ocx.CreateControl();
        ASSERT_TRUE(control);
        tovfe::MakeFrontend(container, sink);
        ASSERT_TRUE(container && sink);
    }
    void TearDown() override
    {
        control.Reset();
        EXPECT_EQ(S_OK, ocx.CanUnloadNow()) << "every control object is gone";
    }

    // Connects the control to the front end with the trace level given.
    void Connect(ULONG level)
    {
        sink->SetLevel(level);
        tov::ComPtr<ITOVGUIControl> gui;
        ASSERT_EQ(S_OK, control->QueryInterface(IID_ITOVGUIControl, gui.PutVoid()));
        ASSERT_EQ(S_OK, gui->SetContainer(container.Get()));
    }
    std::vector<std::string> Lines() const { return sink->Lines(); }
    void ClearLines() { sink->ClearLines(); }

    static const std::string& Hashes()
    {
        static const std::string h(45, '#');
        return h;
    }

    Ocx ocx;
    tov::ComPtr<ITOVHTMLControl> control;
    tov::ComPtr<tovfe::FrontendContainer> container;
    tov::ComPtr<tovfe::TraceSinkStandIn> sink;
};

} // namespace tovtest
