// The control's outgoing events as the Do methods fire them: every sink in slot order, arguments in
// declaration order, the user's default locale, unconditionally. Front-end handlers run inside them (and
// inside the browser's BeforeNavigate) and may unadvise, call back into the control, swap its post-data
// object, fire further events or let go of the control.
#include <mshtmhst.h>
#include "support/back_channel_fixture.h"
#include "support/bare_site.h"
#include "frontend/scripted_document.h"
#include "frontend/table_standin.h"

using tovtest::FiredEvent;
using tovtest::RecordingEventSink;

using OutgoingEvents = tovtest::BackChannelFixture;
using BackChannelReentrancy = tovtest::BackChannelFixture;

namespace {

// What a browser being taken down still does from inside Stop, Quit and Close: asks for a context menu
// through its site while it has one, follows a TOVEVENT link, posts a TOVEVENT form and completes a page.
struct CallsWhileTakenDown {
    std::vector<std::wstring> during;  // the browser's methods they came from
    std::vector<HRESULT> menuAnswers;  // the site's answers
    std::vector<VARIANT_BOOL> cancels; // Cancel as the control left it, link and post
};

void CallWhileTakenDown(tovfe::ScriptedBrowser* taken, CallsWhileTakenDown& calls)
{
    taken->whileCalled = [taken, &calls](const tovfe::Call& c) {
        if (c.name != L"Stop" && c.name != L"Quit" && c.name != L"Close") return;
        calls.during.push_back(c.name);
        POINT pt{5, 5};
        if (taken->Site()) calls.menuAnswers.push_back(taken->CallShowContextMenu(CONTEXT_MENU_DEFAULT, &pt));
        calls.cancels.push_back(taken->ClickLink(L"TOVEVENT:Late").cancel);
        calls.cancels.push_back(taken->SubmitForm(L"TOVEVENT:LatePost", "a=1").cancel);
        taken->CompleteTopNavigation(L"http://x/late.htm");
        taken->CompleteTopDocument(L"http://x/late.htm");
    };
}

} // namespace

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

TEST_F(OutgoingEvents, HandlerMayUnadviseALaterSink)
{
    RecordingEventSink second, third;
    const DWORD secondCookie = Advise(second);
    const DWORD thirdCookie = Advise(third);
    sink.onEvent = [&](const FiredEvent&) { Unadvise(thirdCookie); };
    control->DoNavigateComplete(tov::Bstr(L"u").Get());
    EXPECT_EQ(1u, second.events.size());
    EXPECT_TRUE(third.events.empty()) << "an unadvised slot is skipped";
    Unadvise(secondCookie);
}

TEST_F(BackChannelReentrancy, HandlerShowsTheNextPage)
{
    LONG code = -1;
    sink.onEvent = [&](const FiredEvent& e) {
        if (e.id != 1) return;
        tov::Bstr next(L"http://app/next.htm");
        control->ShowURL(next.Get(), nullptr, &code);
    };
    browser->Log().Clear();
    EXPECT_EQ(1, browser->ClickLink(L"TOVEVENT:Next").cancel);
    EXPECT_EQ(0, code);
    EXPECT_EQ(1u, browser->Log().Count(L"Navigate"));
    // The page the front end showed then completes and is reported.
    browser->LoadPage(L"http://app/next.htm");
    EXPECT_EQ(std::vector<std::wstring>{L"http://app/next.htm"}, NavigateCompleteUrls());
}

TEST_F(BackChannelReentrancy, HandlerReplacesThePostDataObject)
{
    auto* first = GivePostDataProvider();
    first->AddRef(); // the test reads it after the control let it go
    tovfe::DataProviderStandIn* second = nullptr;
    sink.onEvent = [&](const FiredEvent&) {
        if (!second) second = GivePostDataProvider();
    };
    browser->SubmitForm(L"TOVEVENT:Save", "a=1");
    EXPECT_EQ("a=1", Stored(first)) << "the event's data went to the object set when it arrived";
    ASSERT_NE(nullptr, second);
    EXPECT_EQ("<nothing>", Stored(second));
    browser->SubmitForm(L"TOVEVENT:Save", "b=2");
    EXPECT_EQ("b=2", Stored(second));
    EXPECT_EQ("a=1", Stored(first));
    first->Release();
}

TEST_F(BackChannelReentrancy, HandlerFiresAnEventOfItsOwn)
{
    sink.onEvent = [&](const FiredEvent& e) {
        if (sink.events.size() > 1) return;
        tov::Bstr u(L"TOVEVENT:Inner");
        control->DoTOVEVENT(nullptr, 5, u.Get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(1, browser->ClickLink(L"TOVEVENT:Outer").cancel);
    ASSERT_EQ(2u, sink.events.size());
    EXPECT_EQ(L"TOVEVENT:Outer", sink.events[0].args[2]);
    EXPECT_EQ(L"TOVEVENT:Inner", sink.events[1].args[2]);
}

TEST_F(BackChannelReentrancy, HandlerReleasesItsReferenceToTheControl)
{
    auto* provider = GivePostDataProvider();
    sink.onEvent = [&](const FiredEvent&) { control.Reset(); };
    ITOVHTMLControl* raw = control.Get();
    raw->AddRef(); // stands for the container's own reference
    const auto outcome = browser->SubmitForm(L"TOVEVENT:Bye", "x=%41");
    EXPECT_EQ(1, outcome.cancel);
    EXPECT_EQ("x=A", Stored(provider));
    control.Attach(raw);

    // The window closes on a click and the front end lets go of its last reference. The browser holds
    // the control's sink until it has called its other listeners, so the control's memory must stay.
    RecordingEventSink later;
    later.iid = DIID_DWebBrowserEvents;
    HRESULT unloadable = S_OK;
    later.onEvent = [&](const FiredEvent&) { unloadable = ocx.CanUnloadNow(); };
    tov::ComPtr<IConnectionPointContainer> points;
    tov::ComPtr<IConnectionPoint> pagePoint;
    DWORD laterCookie = 0;
    browser->QueryInterface(IID_IConnectionPointContainer, points.PutVoid());
    ASSERT_EQ(S_OK, points->FindConnectionPoint(DIID_DWebBrowserEvents, pagePoint.Put()));
    ASSERT_EQ(S_OK, pagePoint->Advise(&later, &laterCookie));
    sink.onEvent = [&](const FiredEvent&) {
        host.Destroy();
        control.Reset();
    };
    EXPECT_EQ(1, browser->ClickLink(L"TOVEVENT:Close").cancel);
    EXPECT_EQ(S_FALSE, unloadable) << "the control was freed while the browser still held its sink";
    EXPECT_EQ(S_OK, ocx.CanUnloadNow()) << "the control is gone";
    pagePoint->Unadvise(laterCookie);
}

// The browser fires its events from inside the methods the control calls; a front end may let go of the
// control in a handler there. The control holds itself until its own method has returned.
TEST_F(BackChannelReentrancy, AFrontEndThatLetsGoInsideShowURLShowDataOrGoBack)
{
    tovfe::DataStore::Instance().Put(L"http://srv/app/page.htm", "<html></html>", L"html");
    // The browser fires a TOVEVENT click from inside whichever of its methods the control calls first.
    for (const std::wstring method : {L"ShowURL", L"ShowData", L"GoBack"}) {
        SCOPED_TRACE(testing::Message() << "during " << testing::PrintToString(method));
        auto other = ocx.CreateControl();
        tovtest::AtlHost otherHost;
        ASSERT_EQ(S_OK, otherHost.Attach(other.Get()));
        LONG code = -1;
        ASSERT_EQ(S_OK, other->InitControl(&code));
        other->put_URLPrefixLocal(tov::Bstr(L"http://srv/app/").Get());
        LONG record[10] = {};
        record[6] = 1; // ready for input
        HWND otherWindow = nullptr;
        if (auto window = tov::QueryAs<IOleWindow>(other.Get(), IID_IOleWindow)) window->GetWindow(&otherWindow);
        SendMessageW(otherWindow, RegisterWindowMessageA("TOV_CM_READY_FOR_INPUT"), 0, reinterpret_cast<LPARAM>(record));
        RecordingEventSink dropping;
        ASSERT_NE(0u, Advise(dropping, other.Get()));
        dropping.onEvent = [&](const FiredEvent& e) {
            if (e.id != 1) return;
            otherHost.Destroy();
            other.Reset();
        };
        tovfe::ScriptedBrowser* otherBrowser = browsers.Last();
        ULONG afterEvent = 0;
        otherBrowser->whileCalled = [&](const tovfe::Call& c) {
            if (c.name != L"Navigate" && c.name != L"Navigate2" && c.name != L"GoBack") return;
            otherBrowser->whileCalled = nullptr;
            otherBrowser->ClickLink(L"TOVEVENT:Leave");
            afterEvent = otherBrowser->RefCount(); // the event has returned, the browser's method has not
        };
        ITOVHTMLControl* raw = other.Get();
        code = -1;
        if (method == L"ShowURL") raw->ShowURL(tov::Bstr(L"http://srv/app/page.htm").Get(), nullptr, &code);
        else if (method == L"ShowData") raw->ShowData(tov::Bstr(L"page.htm").Get(), nullptr, 1, &code);
        else raw->GoBack(&code);
        EXPECT_FALSE(other) << "the front end let go inside the event";
        EXPECT_GT(afterEvent, 1u) << "the control lived on, holding its browser, while its method ran";
        EXPECT_EQ(1u, otherBrowser->RefCount()) << "and went when the method returned";
        EXPECT_EQ(0, code);
    }
}

// The browser keeps calling while the control takes it down: from inside Stop, Quit and Close, through its
// site while it still has one and through any sink still connected. Nothing reaches the front end or runs
// a script, and what the site is asked is answered.
TEST_F(BackChannelReentrancy, WhatTheBrowserDoesWhileTakenDownReachesNoOne)
{
    auto document = tovfe::ScriptedDocument::Create();
    browser->SetDocument(document->AsDispatch());
    auto table = tovfe::MakeScriptTable({"submitted();"}, 12);
    ASSERT_EQ(S_OK, control->putref_ScriptOnDataSubmitted(table.Object()));
    ASSERT_EQ(S_OK, control->put_UIFlag(2)); // the front end would be asked for its context menu
    CallsWhileTakenDown late;
    tovfe::ScriptedBrowser* taken = browser;
    CallWhileTakenDown(taken, late);
    sink.events.clear();
    host.Destroy(); // the container's Close, then its release
    const size_t afterClose = late.during.size();
    control.Reset(); // the front end's last reference
    taken->whileCalled = nullptr;
    EXPECT_EQ(3u, afterClose) << "Stop, Quit and Close of the container's Close";
    EXPECT_EQ(6u, late.during.size()) << "and again from the last release";
    ASSERT_FALSE(late.menuAnswers.empty()) << "the browser still had its site inside Stop";
    for (HRESULT hr : late.menuAnswers) EXPECT_EQ(S_OK, hr) << "answered: the browser shows no menu of its own";
    EXPECT_TRUE(sink.events.empty()) << "nothing reached the front end";
    EXPECT_TRUE(document->Page().scripts.empty()) << "no script ran";
}

// The same when the container never closes the control and the front end lets go of it: the last release
// alone silences the browser, from its first step on.
TEST_F(BackChannelReentrancy, ALastReleaseWithoutCloseAlsoSilencesTheBrowser)
{
    tovtest::BareSite site;
    auto other = ocx.CreateControl();
    ASSERT_TRUE(other);
    tov::ComPtr<ITOVGUIControl> gui;
    ASSERT_EQ(S_OK, other->QueryInterface(IID_ITOVGUIControl, gui.PutVoid()));
    ASSERT_EQ(S_OK, gui->SetContainer(container.Get()));
    gui.Reset();
    ASSERT_EQ(S_OK, site.Activate(other.Get()));
    LONG code = -1;
    ASSERT_EQ(S_OK, other->InitControl(&code));
    ASSERT_EQ(0, code);
    tovfe::ScriptedBrowser* taken = browsers.Last();
    ASSERT_TRUE(taken && taken != browser);
    RecordingEventSink heard;
    ASSERT_NE(0u, Advise(heard, other.Get()));
    auto document = tovfe::ScriptedDocument::Create();
    taken->SetDocument(document->AsDispatch());
    auto table = tovfe::MakeScriptTable({"submitted();"}, 12);
    ASSERT_EQ(S_OK, other->putref_ScriptOnDataSubmitted(table.Object()));
    ASSERT_EQ(S_OK, other->put_UIFlag(2));
    ASSERT_EQ(1, taken->ClickLink(L"TOVEVENT:Before").cancel);
    ASSERT_EQ(1u, heard.events.size()) << "heard while alive";
    heard.events.clear();
    ASSERT_EQ(S_OK, taken->CompleteTopDocument(L"http://x/alive.htm"));
    ASSERT_FALSE(document->Page().scripts.empty()) << "scripts ran while alive";
    document->Page().scripts.clear();

    CallsWhileTakenDown late;
    CallWhileTakenDown(taken, late);
    other.Reset(); // the front end's last reference; no Close came before it
    taken->whileCalled = nullptr;
    EXPECT_EQ((std::vector<std::wstring>{L"Stop", L"Quit", L"Close"}), late.during);
    ASSERT_FALSE(late.menuAnswers.empty()) << "the browser still had its site inside Stop";
    for (HRESULT hr : late.menuAnswers) EXPECT_EQ(S_OK, hr);
    for (VARIANT_BOOL cancel : late.cancels) EXPECT_NE(0, cancel) << "answered with Cancel while silenced";
    EXPECT_TRUE(heard.events.empty()) << "nothing reached the front end";
    EXPECT_TRUE(document->Page().scripts.empty()) << "no script ran: " << testing::PrintToString(document->Page().scripts.size());
    taken->SetDocument(nullptr);
}
