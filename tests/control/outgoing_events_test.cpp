// The control's outgoing events as the Do methods fire them: every sink in slot order, arguments in
// dispatch order, the user's default locale, unconditionally, and safely when handlers unadvise.
#include "support/back_channel_fixture.h"

using tovtest::BackChannelFixture;
using tovtest::FiredEvent;
using tovtest::RecordingEventSink;

class OutgoingEvents : public BackChannelFixture {
protected:
    void FireAll()
    {
        tov::Bstr frame(L"main"), u1(L"TOVEVENT:a"), u2(L"b"), url(L"http://x/"), code(L"F01");
        control->DoTOVEVENT(frame.Get(), 42, u1.Get(), u2.Get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
        control->DoNavigateComplete(url.Get());
        control->DoContextMenuSelected(code.Get());
        control->DoContextMenuRequest(3, -4);
    }
};

TEST_F(OutgoingEvents, EveryEventReachesEverySinkInSlotOrderWithItsArguments)
{
    RecordingEventSink second;
    const DWORD secondCookie = Advise(second);
    std::vector<std::pair<int, DISPID>> order;
    sink.onEvent = [&](const FiredEvent& e) { order.push_back({1, e.id}); };
    second.onEvent = [&](const FiredEvent& e) { order.push_back({2, e.id}); };
    FireAll();
    EXPECT_EQ((std::vector<std::pair<int, DISPID>>{{1, 1}, {2, 1}, {1, 2}, {2, 2}, {1, 3}, {2, 3}, {1, 4}, {2, 4}}), order);
    for (RecordingEventSink* s : {&sink, &second}) {
        ASSERT_EQ(4u, s->events.size());
        EXPECT_EQ((std::vector<std::wstring>{L"main", L"42", L"TOVEVENT:a", L"b", L"<null>", L"<null>", L"<null>",
                                             L"<null>", L"<null>", L"<null>"}),
                  s->events[0].args);
        EXPECT_EQ(std::vector<std::wstring>{L"http://x/"}, s->events[1].args);
        EXPECT_EQ(std::vector<std::wstring>{L"F01"}, s->events[2].args);
        EXPECT_EQ((std::vector<std::wstring>{L"3", L"-4"}), s->events[3].args);
        EXPECT_EQ(std::vector<LCID>(4, 0x400), s->locales);
    }
    Unadvise(secondCookie);
}

TEST_F(OutgoingEvents, WithoutSinksEveryDoMethodSucceeds)
{
    Unadvise(cookie);
    cookie = 0;
    tov::Bstr url(L"x");
    EXPECT_EQ(S_OK, control->DoTOVEVENT(nullptr, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(S_OK, control->DoNavigateComplete(url.Get()));
    EXPECT_EQ(S_OK, control->DoContextMenuSelected(nullptr));
    EXPECT_EQ(S_OK, control->DoContextMenuRequest(0, 0));
    EXPECT_TRUE(sink.events.empty());
}

TEST_F(OutgoingEvents, DoMethodsFireEvenWhenTheFrontEndIsNotReady)
{
    SetReady(false, true);
    FireAll();
    EXPECT_EQ(4u, sink.events.size());
}

TEST_F(OutgoingEvents, FailingSinkDoesNotStopTheOthers)
{
    RecordingEventSink second;
    sink.answer = E_FAIL;
    const DWORD secondCookie = Advise(second);
    FireAll();
    EXPECT_EQ(4u, second.events.size());
    Unadvise(secondCookie);
}

TEST_F(OutgoingEvents, HandlerMayUnadviseItselfOrALaterSink)
{
    RecordingEventSink second, third;
    const DWORD secondCookie = Advise(second);
    const DWORD thirdCookie = Advise(third);
    // The first sink drops itself and the third one during the first event.
    sink.onEvent = [&](const FiredEvent&) {
        if (sink.events.size() > 1) return;
        Unadvise(cookie);
        Unadvise(thirdCookie);
    };
    tov::Bstr url(L"u");
    control->DoNavigateComplete(url.Get());
    EXPECT_EQ(1u, sink.events.size());
    EXPECT_EQ(1u, second.events.size());
    EXPECT_TRUE(third.events.empty()) << "an unadvised slot is skipped";
    control->DoNavigateComplete(url.Get());
    EXPECT_EQ(1u, sink.events.size());
    EXPECT_EQ(2u, second.events.size());
    cookie = 0;
    Unadvise(secondCookie);
}

TEST_F(OutgoingEvents, DoMethodsOpenTheirTraceScopes)
{
    Connect(1);
    ClearLines();
    FireAll();
    EXPECT_EQ((std::vector<std::string>{"=> DoTOVEVENT", "<= DoTOVEVENT", "=> DoNavigateComplete", "<= DoNavigateComplete",
                                        "=> DoContextMenuSelected", "<= DoContextMenuSelected", "=> DoContextMenuRequest",
                                        "<= DoContextMenuRequest"}),
              Lines());
}

TEST_F(OutgoingEvents, HandlerMayDropEveryReferenceToTheControl)
{
    ITOVHTMLControl* raw = control.Get();
    sink.onEvent = [&](const FiredEvent&) {
        Unadvise(cookie);
        cookie = 0;
        control->put_PostData(nullptr);
        host.Destroy();
        control.Reset();
    };
    EXPECT_EQ(S_OK, raw->DoContextMenuRequest(1, 2));
    EXPECT_EQ(1u, sink.events.size());
    EXPECT_FALSE(control);
}
