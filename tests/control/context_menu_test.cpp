// The application's context menu in the page: the browser's request, placing and showing the front
// end's menu, and the chosen entry's function code coming back as an event.
#include <mshtmhst.h>
#include "support/control_fixture.h"
#include "support/event_sink.h"
#include "frontend/context_menu_standin.h"
#include "frontend/plugin_service_standin.h"

using tov::ComPtr;
using tovtest::ControlFixture;
using tovtest::RecordingEventSink;

namespace {

class ContextMenu : public ControlFixture {
protected:
    void SetUp() override
    {
        ControlFixture::SetUp();
        ComPtr<IConnectionPointContainer> points;
        ASSERT_EQ(S_OK, control->QueryInterface(IID_IConnectionPointContainer, points.PutVoid()));
        ASSERT_EQ(S_OK, points->FindConnectionPoint(DIID__TOVHTMLControlEvents, point.Put()));
        ASSERT_EQ(S_OK, point->Advise(&events, &cookie));
        service = tovfe::ContextMenuServiceStandIn::Create(rec);
        container->AddService(SID_TOVContextMenuService, static_cast<ITOVContextMenuService*>(service.Get()));
        menu = tovfe::ContextMenuStandIn::Create({{L"FC_OPEN", L"FC_SAVE"}, 1}, rec);
        // A known cursor position; the desktop may move it a little, so tests read it back.
        SetCursorPos(123, 45);
    }
    void TearDown() override
    {
        if (point) point->Unadvise(cookie);
        point.Reset();
        ControlFixture::TearDown();
        EXPECT_EQ(1u, events.m_refs) << "the control let go of the front end's sink";
    }

    HRESULT BrowserAsksForMenu()
    {
        ComPtr<IDocHostUIHandler> host;
        EXPECT_EQ(S_OK, control->QueryInterface(IID_IDocHostUIHandler, host.PutVoid()));
        POINT browserPoint{5, 6};
        return host ? host->ShowContextMenu(CONTEXT_MENU_DEFAULT, &browserPoint, nullptr, nullptr) : E_FAIL;
    }
    static std::wstring Cursor(bool y)
    {
        POINT pt{};
        GetCursorPos(&pt);
        return std::to_wstring(y ? pt.y : pt.x);
    }
    IDispatch* Menu() const { return static_cast<ITOVContextMenu*>(menu.Get()); }
    HRESULT SelectFromFrontEnd(IUnknown* parameter)
    {
        ComPtr<ITOVGUIControl> gui;
        EXPECT_EQ(S_OK, control->QueryInterface(IID_ITOVGUIControl, gui.PutVoid()));
        return gui->HandleEvent(300, parameter);
    }

    RecordingEventSink events;
    ComPtr<IConnectionPoint> point;
    DWORD cookie = 0;
    std::shared_ptr<tovfe::Recorder> rec = std::make_shared<tovfe::Recorder>();
    ComPtr<tovfe::ContextMenuServiceStandIn> service;
    ComPtr<tovfe::ContextMenuStandIn> menu;
};

} // namespace

TEST_F(ContextMenu, BrowserRequestBecomesAnEventOnlyWithBitTwo)
{
    for (LONG flag : {0L, 1L, 4L, 0x400000L}) {
        SCOPED_TRACE(flag);
        control->put_UIFlag(flag);
        EXPECT_EQ(E_NOTIMPL, BrowserAsksForMenu()) << "the browser shows its own menu";
    }
    EXPECT_TRUE(events.events.empty());

    control->put_UIFlag(0x400002);
    EXPECT_EQ(S_OK, BrowserAsksForMenu()) << "the browser's menu is suppressed";
    ASSERT_EQ(1u, events.events.size());
    EXPECT_EQ(4, events.events[0].id);
    // The cursor's screen position, not the point the browser passed.
    EXPECT_EQ((std::vector<std::wstring>{Cursor(false), Cursor(true)}), events.events[0].args);
}

TEST_F(ContextMenu, ZeroZeroPlacesTheMenuAtTheCursor)
{
    Connect(1);
    const std::wstring x = Cursor(false), y = Cursor(true);
    EXPECT_EQ(S_OK, control->TrackContextMenu(Menu(), 0, 0));
    EXPECT_EQ((std::vector<std::wstring>{L"put_PosX(" + x + L")", L"put_PosY(" + y + L")", L"ShowContextMenu(menu)"}),
              rec->log.Texts());
    EXPECT_EQ((std::vector<std::string>{"=> TrackContextMenu", "<= TrackContextMenu"}), Lines());
}

TEST_F(ContextMenu, AnyOtherPositionIsTakenAsGiven)
{
    Connect(0);
    EXPECT_EQ(S_OK, control->TrackContextMenu(Menu(), 0, 5));
    EXPECT_EQ(S_OK, control->TrackContextMenu(Menu(), -20, 0));
    EXPECT_EQ((std::vector<std::wstring>{L"put_PosX(0)", L"put_PosY(5)", L"ShowContextMenu(menu)", L"put_PosX(-20)",
                                         L"put_PosY(0)", L"ShowContextMenu(menu)"}),
              rec->log.Texts());
}

TEST_F(ContextMenu, WithoutMenuOrServiceNothingIsShown)
{
    Connect(1);
    EXPECT_EQ(S_OK, control->TrackContextMenu(nullptr, 0, 5));
    auto notAMenu = tovfe::CacheOnlyServiceStandIn::Create(IID_ITOVService7);
    EXPECT_EQ(S_OK, control->TrackContextMenu(notAMenu.Get(), 10, 10));
    EXPECT_TRUE(rec->log.Calls().empty());
    EXPECT_EQ((std::vector<std::string>{"=> TrackContextMenu", "<= TrackContextMenu", "=> TrackContextMenu",
                                        "<= TrackContextMenu"}),
              Lines())
        << "nothing reported";

    container->AddService(SID_TOVContextMenuService, nullptr);
    ComPtr<ITOVGUIControl> gui;
    control->QueryInterface(IID_ITOVGUIControl, gui.PutVoid());
    gui->SetContainer(container.Get());
    EXPECT_EQ(S_OK, control->TrackContextMenu(Menu(), 0, 5));
    EXPECT_TRUE(rec->log.Calls().empty()) << "no service: the menu is not even placed";

    gui->SetContainer(nullptr);
    EXPECT_EQ(S_OK, control->TrackContextMenu(Menu(), 0, 5)) << "no container at all";
    EXPECT_TRUE(rec->log.Calls().empty());
}

TEST_F(ContextMenu, FailingMenuOrServiceStillAnswersSOk)
{
    Connect(0);
    rec->plan.Fail(L"put_PosX", E_FAIL);
    rec->plan.Fail(L"ShowContextMenu", E_ACCESSDENIED);
    EXPECT_EQ(S_OK, control->TrackContextMenu(Menu(), 3, 4));
    EXPECT_EQ((std::vector<std::wstring>{L"put_PosX(3)", L"put_PosY(4)", L"ShowContextMenu(menu)"}), rec->log.Texts());
    rec->plan.Clear();
    rec->plan.Throw(L"ShowContextMenu");
    EXPECT_EQ(S_OK, control->TrackContextMenu(Menu(), 3, 4)) << "nothing is thrown back to the front end";
}

TEST_F(ContextMenu, FrontEndMayLetGoOfTheControlWhileTheMenuRuns)
{
    Connect(0);
    ComPtr<ITOVHTMLControl> held = control;
    service->whileShowing = [&] {
        ComPtr<ITOVGUIControl> gui;
        held->QueryInterface(IID_ITOVGUIControl, gui.PutVoid());
        gui->SetContainer(nullptr);
        gui.Reset();
        held.Reset();
        control.Reset();
    };
    ITOVHTMLControl* raw = control.Get();
    point->Unadvise(cookie);
    point.Reset();
    EXPECT_EQ(S_OK, raw->TrackContextMenu(Menu(), 1, 2));
    EXPECT_EQ(S_OK, ocx.CanUnloadNow()) << "the control went away after the call";
    EXPECT_EQ(1u, rec->log.Count(L"ShowContextMenu"));
}

TEST_F(ContextMenu, ChosenEntryComesBackAsItsFunctionCode)
{
    EXPECT_EQ(1, SelectFromFrontEnd(Menu()));
    ASSERT_EQ(1u, events.events.size());
    EXPECT_EQ(3, events.events[0].id);
    EXPECT_EQ(std::vector<std::wstring>{L"FC_SAVE"}, events.events[0].args);
    EXPECT_EQ((std::vector<std::wstring>{L"GetSelectedIndex()", L"GetItem(1)", L"GetFunctionCode(FC_SAVE)"}), rec->log.Texts());

    // A front-end handler may let go of the control inside the event.
    ComPtr<ITOVHTMLControl> extra = control;
    events.onEvent = [&](const tovtest::FiredEvent&) { extra.Reset(); };
    EXPECT_EQ(1, SelectFromFrontEnd(Menu()));
    EXPECT_EQ(2u, events.events.size());
    events.onEvent = nullptr;
}

TEST_F(ContextMenu, UnreadableSelectionIsDroppedSilently)
{
    Connect(1);
    rec->plan.Fail(L"GetFunctionCode", E_FAIL);
    EXPECT_EQ(1, SelectFromFrontEnd(Menu()));
    auto outside = tovfe::ContextMenuStandIn::Create({{L"FC_ONLY"}, 3});
    EXPECT_EQ(1, SelectFromFrontEnd(static_cast<ITOVContextMenu*>(outside.Get())));
    auto empty = tovfe::ContextMenuStandIn::Create({});
    EXPECT_EQ(1, SelectFromFrontEnd(static_cast<ITOVContextMenu*>(empty.Get())));
    EXPECT_EQ(1, SelectFromFrontEnd(nullptr));
    auto notAMenu = tovfe::CacheOnlyServiceStandIn::Create(IID_ITOVService7);
    EXPECT_EQ(1, SelectFromFrontEnd(notAMenu.Get()));
    EXPECT_TRUE(events.events.empty());
    EXPECT_TRUE(Lines().empty()) << "no trace";
}
