// The application's context menu in the page: the browser's request, placing and showing the front
// end's menu, and the chosen entry's function code coming back as an event.
#include <mshtmhst.h>
#include "support/control_fixture.h"
#include "support/event_sink.h"
#include "frontend/context_menu_standin.h"

using tov::ComPtr;

namespace {

class ContextMenu : public tovtest::ControlFixture {
protected:
    void SetUp() override
    {
        ControlFixture::SetUp();
        cookie = Advise(sink);
        ASSERT_NE(0u, cookie);
        service = tovfe::ContextMenuServiceStandIn::Create(rec);
        container->AddService(SID_TOVContextMenuService, static_cast<ITOVContextMenuService*>(service.Get()));
        menu = tovfe::ContextMenuStandIn::Create({{L"FC_OPEN", L"FC_SAVE"}, 1}, rec);
        Connect(0);
        SetCursorPos(123, 45); // the desktop may move it a little: tests read it back
    }
    void TearDown() override
    {
        if (cookie) Unadvise(cookie);
        ControlFixture::TearDown();
        EXPECT_EQ(1u, sink.RefCount()) << "the control let go of the front end's sink";
    }
    static std::vector<std::wstring> Cursor()
    {
        POINT pt{};
        GetCursorPos(&pt);
        return {std::to_wstring(pt.x), std::to_wstring(pt.y)};
    }
    // Runs `act` until the cursor, which every program on the display shares, stood still across it;
    // answers where it stood.
    template <class Act> std::vector<std::wstring> AtStillCursor(Act&& act)
    {
        for (int attempt = 1;; ++attempt) {
            const auto before = Cursor();
            act();
            if (before == Cursor() || attempt == 5) return before;
        }
    }
    IDispatch* Menu() const { return static_cast<ITOVContextMenu*>(menu.Get()); }
    LONG Select(IUnknown* parameter)
    {
        return tov::QueryAs<ITOVGUIControl>(control.Get(), IID_ITOVGUIControl)->HandleEvent(300, parameter);
    }

    tovtest::RecordingEventSink sink;
    DWORD cookie = 0;
    std::shared_ptr<tovfe::Recorder> rec = std::make_shared<tovfe::Recorder>();
    ComPtr<tovfe::ContextMenuServiceStandIn> service;
    ComPtr<tovfe::ContextMenuStandIn> menu;
};

} // namespace

TEST_F(ContextMenu, BrowserRequestBecomesAnEventAtTheCursorOnlyWithBitTwo)
{
    auto host = tov::QueryAs<IDocHostUIHandler>(control.Get(), IID_IDocHostUIHandler);
    POINT browserPoint{5, 6};
    for (LONG flag : {0L, 4L, 0x400000L}) {
        control->put_UIFlag(flag);
        EXPECT_EQ(E_NOTIMPL, host->ShowContextMenu(CONTEXT_MENU_DEFAULT, &browserPoint, nullptr, nullptr)) << flag;
    }
    EXPECT_TRUE(sink.events.empty()) << "the browser shows its own menu";
    control->put_UIFlag(0x400002);
    const auto at = AtStillCursor([&] {
        sink.events.clear();
        EXPECT_EQ(S_OK, host->ShowContextMenu(CONTEXT_MENU_DEFAULT, &browserPoint, nullptr, nullptr));
    });
    ASSERT_EQ(1u, sink.events.size());
    EXPECT_EQ(4, sink.events[0].id);
    EXPECT_EQ(at, sink.events[0].args) << "not the browser's point";
}

TEST_F(ContextMenu, TrackPlacesTheMenuWhereToldOrAtTheCursorForZeroZero)
{
    const auto at = AtStillCursor([&] {
        rec->log.Clear();
        EXPECT_EQ(S_OK, control->TrackContextMenu(Menu(), 0, 0));
    });
    EXPECT_EQ(S_OK, control->TrackContextMenu(Menu(), 0, 5));
    EXPECT_EQ((std::vector<std::wstring>{L"put_PosX(" + at[0] + L")", L"put_PosY(" + at[1] + L")", L"ShowContextMenu(menu)",
                                         L"put_PosX(0)", L"put_PosY(5)", L"ShowContextMenu(menu)"}),
              rec->log.Texts());

    rec->plan.Throw(L"ShowContextMenu");
    EXPECT_EQ(S_OK, control->TrackContextMenu(Menu(), 3, 4)) << "nothing is thrown back to the front end";
}

TEST_F(ContextMenu, WithoutMenuOrMenuServiceNothingIsShown)
{
    EXPECT_EQ(S_OK, control->TrackContextMenu(nullptr, 0, 5));
    container->AddService(SID_TOVContextMenuService, nullptr);
    Connect(0);
    EXPECT_EQ(S_OK, control->TrackContextMenu(Menu(), 0, 5));
    EXPECT_TRUE(rec->log.Calls().empty()) << "the menu is not even placed";
}

TEST_F(ContextMenu, FrontEndMayLetGoOfTheControlWhileTheMenuRuns)
{
    ITOVHTMLControl* raw = control.Get();
    service->whileShowing = [&] {
        tov::QueryAs<ITOVGUIControl>(control.Get(), IID_ITOVGUIControl)->SetContainer(nullptr);
        control.Reset();
    };
    Unadvise(cookie);
    cookie = 0;
    EXPECT_EQ(S_OK, raw->TrackContextMenu(Menu(), 1, 2));
    EXPECT_EQ(S_OK, ocx.CanUnloadNow()) << "the control went away after the call";
    EXPECT_EQ(1u, rec->log.Count(L"ShowContextMenu"));
}

TEST_F(ContextMenu, ChosenEntryComesBackAsItsFunctionCodeAnUnreadableOneNotAtAll)
{
    EXPECT_EQ(1, Select(Menu()));
    ASSERT_EQ(1u, sink.events.size());
    EXPECT_EQ(3, sink.events[0].id);
    EXPECT_EQ(std::vector<std::wstring>{L"FC_SAVE"}, sink.events[0].args);

    Connect(1);
    rec->plan.Fail(L"GetFunctionCode", E_FAIL);
    EXPECT_EQ(1, Select(Menu()));
    EXPECT_EQ(1, Select(nullptr));
    EXPECT_EQ(1u, sink.events.size()) << "no entry, no event";
    EXPECT_TRUE(Lines().empty()) << "and no trace";
}
