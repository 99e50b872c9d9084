// The control's outgoing events as the Do methods fire them: every sink in slot order, arguments in
// declaration order, the user's default locale, unconditionally, and safely when handlers unadvise.
#include "support/back_channel_fixture.h"

using tovtest::FiredEvent;
using tovtest::RecordingEventSink;

using OutgoingEvents = tovtest::BackChannelFixture;

TEST_F(OutgoingEvents, EveryEventReachesEverySinkInSlotOrderPastAFailingOne)
{
    RecordingEventSink second;
    const DWORD secondCookie = Advise(second);
    sink.answer = E_FAIL;
    SetReady(false, true); // the Do methods fire whatever the front end's readiness
    std::vector<std::pair<int, DISPID>> order;
    sink.onEvent = [&](const FiredEvent& e) { order.push_back({1, e.id}); };
    second.onEvent = [&](const FiredEvent& e) { order.push_back({2, e.id}); };
    tov::Bstr frame(L"main"), u1(L"TOVEVENT:a"), u2(L"b"), url(L"http://x/"), code(L"F01");
    EXPECT_EQ(S_OK, control->DoTOVEVENT(frame.Get(), 42, u1.Get(), u2.Get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(S_OK, control->DoNavigateComplete(url.Get()));
    EXPECT_EQ(S_OK, control->DoContextMenuSelected(code.Get()));
    EXPECT_EQ(S_OK, control->DoContextMenuRequest(3, -4));
    EXPECT_EQ((std::vector<std::pair<int, DISPID>>{{1, 1}, {2, 1}, {1, 2}, {2, 2}, {1, 3}, {2, 3}, {1, 4}, {2, 4}}), order);
    EXPECT_EQ((std::vector<std::wstring>{L"main", L"42", L"TOVEVENT:a", L"b", L"<null>", L"<null>", L"<null>", L"<null>",
                                         L"<null>", L"<null>"}),
              second.events.at(0).args);
    EXPECT_EQ(std::vector<std::wstring>{L"http://x/"}, second.events.at(1).args);
    EXPECT_EQ(std::vector<std::wstring>{L"F01"}, second.events.at(2).args);
    EXPECT_EQ((std::vector<std::wstring>{L"3", L"-4"}), second.events.at(3).args);
    EXPECT_EQ(std::vector<LCID>(4, 0x400), second.locales);
    Unadvise(secondCookie);
}

TEST_F(OutgoingEvents, HandlerMayUnadviseALaterSinkOrDropEveryReferenceToTheControl)
{
    RecordingEventSink second, third;
    const DWORD secondCookie = Advise(second);
    const DWORD thirdCookie = Advise(third);
    sink.onEvent = [&](const FiredEvent&) { Unadvise(thirdCookie); };
    control->DoNavigateComplete(tov::Bstr(L"u").Get());
    EXPECT_EQ(1u, second.events.size());
    EXPECT_TRUE(third.events.empty()) << "an unadvised slot is skipped";
    Unadvise(secondCookie);

    ITOVHTMLControl* raw = control.Get();
    sink.onEvent = [&](const FiredEvent&) {
        Unadvise(cookie);
        cookie = 0;
        control->put_PostData(nullptr);
        host.Destroy();
        control.Reset();
    };
    EXPECT_EQ(S_OK, raw->DoContextMenuRequest(1, 2));
    EXPECT_FALSE(control);
}
