#pragma once
// A control made from the built OCX, connected to a front-end container whose trace sink collects lines.
#include <gtest/gtest.h>
#include <algorithm>
#include <string>
#include <vector>
#include "frontend/frontend_container.h"
#include "support/event_sink.h"
#include "support/ocx.h"
#include "framework/bstr.h"
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
    bool HasLine(const std::string& line) const
    {
        const auto lines = Lines();
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }
    // The lines that contain `text`.
    size_t LinesWith(const std::string& text) const
    {
        size_t n = 0;
        for (const auto& line : Lines()) n += line.find(text) != std::string::npos;
        return n;
    }

    static const std::string& Hashes()
    {
        static const std::string h(45, '#');
        return h;
    }
    // The trace block of a failure inside `scope`, at level 1 or more.
    static std::vector<std::string> FailureBlock(const std::string& scope, const std::string& text)
    {
        return {"=> " + scope, Hashes(), "=> " + scope, text, Hashes(), "<= " + scope};
    }

    static bool FileExists(const std::wstring& path)
    {
        return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    }
    // A property as its getter answers it; a null string as "<null>".
    LONG Property(HRESULT (STDMETHODCALLTYPE ITOVHTMLControl::*get)(LONG*)) const
    {
        LONG value = -12345;
        (control.Get()->*get)(&value);
        return value;
    }
    std::wstring Property(HRESULT (STDMETHODCALLTYPE ITOVHTMLControl::*get)(BSTR*)) const
    {
        tov::Bstr value;
        (control.Get()->*get)(value.Put());
        return value.IsNull() ? L"<null>" : std::wstring(value.View());
    }
    // The control's own window, as its container sees it.
    HWND Window() const
    {
        HWND hwnd = nullptr;
        if (auto window = tov::QueryAs<IOleWindow>(control.Get(), IID_IOleWindow)) window->GetWindow(&hwnd);
        return hwnd;
    }

    // Connects `s` as a front end's sink for the outgoing events of the control (or of `other`); the
    // cookie, 0 when refused.
    DWORD Advise(RecordingEventSink& s, ITOVHTMLControl* other = nullptr)
    {
        DWORD c = 0;
        if (auto point = EventsPoint(other ? other : control.Get())) point->Advise(&s, &c);
        return c;
    }
    void Unadvise(DWORD c)
    {
        if (auto point = EventsPoint(control.Get())) point->Unadvise(c);
    }

    Ocx ocx;
    tov::ComPtr<ITOVHTMLControl> control;
    tov::ComPtr<tovfe::FrontendContainer> container;
    tov::ComPtr<tovfe::TraceSinkStandIn> sink;

private:
    static tov::ComPtr<IConnectionPoint> EventsPoint(ITOVHTMLControl* of)
    {
        tov::ComPtr<IConnectionPoint> point;
        if (auto cpc = tov::QueryAs<IConnectionPointContainer>(of, IID_IConnectionPointContainer))
            cpc->FindConnectionPoint(DIID__TOVHTMLControlEvents, point.Put());
        return point;
    }
};

} // namespace tovtest
