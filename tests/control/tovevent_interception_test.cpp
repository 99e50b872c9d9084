// TOVEVENT links and forms: recognised in any letter case, cancelled, unescaped, cut into eight pieces
// and delivered to the front end; other URLs go on unless the navigation style blocks or re-issues them.
#include "support/back_channel_fixture.h"

using tovtest::BackChannelFixture;

class TovEventInterception : public BackChannelFixture {};

TEST_F(TovEventInterception, PrefixInAnyLetterCaseIsAnEventAndIsCancelled)
{
    for (const wchar_t* url : {L"TOVEVENT:Click", L"tovevent:Click", L"TovEvent:Click"}) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(url)));
        sink.events.clear();
        const auto outcome = browser->ClickLink(url);
        EXPECT_EQ(1, outcome.cancel) << "the value 1, not VARIANT_TRUE";
        ASSERT_EQ(1u, BeforeNavigates().size());
        EXPECT_EQ((std::vector<std::wstring>{L"", L"0", url, L"<null>", L"<null>", L"<null>", L"<null>", L"<null>",
                                             L"<null>", L"<null>"}),
                  BeforeNavigates()[0].args);
    }
    sink.events.clear();
    EXPECT_EQ(0, browser->ClickLink(L"TOVEVENT").cancel);
    EXPECT_EQ(0, browser->ClickLink(L"http://example.com/TOVEVENT:x").cancel);
    EXPECT_TRUE(sink.events.empty()) << "no colon, or not at the start: an ordinary link";
}

TEST_F(TovEventInterception, UrlIsUnescapedKeepingFormSeparatorsEscaped)
{
    const struct {
        const wchar_t* link;
        const wchar_t* delivered;
    } cases[] = {
        {L"TOVEVENT:a%3Db%26c%3Fd", L"TOVEVENT:a%3Db%26c%3Fd"},
        {L"TOVEVENT:x%2520", L"TOVEVENT:x%20"},
        {L"TOVEVENT:a+b", L"TOVEVENT:a b"},
        {L"TOVEVENT%3AClick", L"TOVEVENT:Click"},
        {L"TOVEVENT:%26%2365%3Bx", L"TOVEVENT:Ax"},
    };
    for (const auto& c : cases) {
        sink.events.clear();
        EXPECT_EQ(1, browser->ClickLink(c.link).cancel);
        ASSERT_EQ(1u, BeforeNavigates().size());
        EXPECT_EQ(c.delivered, JoinedUrl(BeforeNavigates()[0]));
    }
}

TEST_F(TovEventInterception, UrlTravelsInEightPiecesOf255Characters)
{
    for (size_t length : {255u, 256u, 3000u}) {
        SCOPED_TRACE(length);
        std::wstring url = L"TOVEVENT:";
        while (url.size() < length) url += static_cast<wchar_t>(L'a' + url.size() % 26);
        sink.events.clear();
        browser->ClickLink(url);
        ASSERT_EQ(1u, BeforeNavigates().size());
        const auto pieces = Pieces(BeforeNavigates()[0]);
        ASSERT_EQ(8u, pieces.size());
        for (size_t i = 0; i < 8; ++i) {
            const size_t from = i * 255;
            if (from < length) EXPECT_EQ(url.substr(from, 255), pieces[i]) << i;
            else EXPECT_EQ(L"<null>", pieces[i]) << i;
        }
        EXPECT_EQ(static_cast<LONG>(length), Property(&ITOVHTMLControl::get_URLLength));
    }
}

TEST_F(TovEventInterception, FrameNameHeadersAndLengthsStayForTheFrontEnd)
{
    tov::Bstr url(L"TOVEVENT:Save"), frame(L"left%20frame"), headers(L"X-Test: 1\r\n");
    const auto outcome = browser->FireBeforeNavigate(url.Get(), 0, frame.Get(), nullptr, headers.Get(), true);
    EXPECT_EQ(1, outcome.cancel);
    ASSERT_EQ(1u, BeforeNavigates().size());
    EXPECT_EQ(L"left%20frame", BeforeNavigates()[0].args[0]) << "the frame name as the browser gave it";
    EXPECT_EQ(L"left%20frame", Property(&ITOVHTMLControl::get_TargetFrame));
    EXPECT_EQ(L"X-Test: 1\r\n", Property(&ITOVHTMLControl::get_Headers));
    EXPECT_EQ(13, Property(&ITOVHTMLControl::get_URLLength));

    // An ordinary navigation leaves every property of the last event alone.
    browser->ClickLink(L"http://example.com/other", L"right");
    EXPECT_EQ(L"left%20frame", Property(&ITOVHTMLControl::get_TargetFrame));
    EXPECT_EQ(13, Property(&ITOVHTMLControl::get_URLLength));
}

TEST_F(TovEventInterception, NotReadyForInputDropsTheEventButStillCancels)
{
    SetReady(false);
    EXPECT_EQ(1, browser->ClickLink(L"TOVEVENT:Click").cancel);
    EXPECT_TRUE(sink.events.empty());
    EXPECT_EQ(14, Property(&ITOVHTMLControl::get_URLLength)) << "the event was handled all the same";
    SetReady(true);
    browser->ClickLink(L"TOVEVENT:Click");
    EXPECT_EQ(1u, BeforeNavigates().size());
}

TEST_F(TovEventInterception, TwoSinksReceiveTheEventInSlotOrder)
{
    tovtest::RecordingEventSink second;
    std::vector<int> order;
    sink.onEvent = [&](const tovtest::FiredEvent&) { order.push_back(1); };
    second.onEvent = [&](const tovtest::FiredEvent&) { order.push_back(2); };
    const DWORD secondCookie = Advise(second);
    browser->ClickLink(L"TOVEVENT:Both");
    EXPECT_EQ((std::vector<int>{1, 2}), order);
    EXPECT_EQ(sink.events.at(0).args, second.events.at(0).args);
    Unadvise(secondCookie);
}

TEST_F(TovEventInterception, RestrictedStyleBlocksForeignSchemes)
{
    SetNavigationStyle(L"C");
    for (const wchar_t* url : {L"http://x", L"file:///c:/x", L"javascript:alert(1)", L"about:blank"})
        EXPECT_EQ(1, browser->ClickLink(url).cancel) << std::wstring(url).size();
    for (const wchar_t* url : {L"tovq5:/a/b.htm", L"TOVQ5:/a/b.htm", L"mk:@TOVHTML://x/p.htm", L"tovhtmlp://x/p.htm",
                               L"x-tovq5:abc", L"page.htm"})
        EXPECT_EQ(0, browser->ClickLink(url).cancel) << std::wstring(url).size();
    EXPECT_TRUE(sink.events.empty());
    EXPECT_EQ(1, browser->ClickLink(L"http://x", L"frame").cancel) << "frames are guarded too";

    SetNavigationStyle(L"");
    EXPECT_EQ(0, browser->ClickLink(L"about:blank").cancel);
}

TEST_F(TovEventInterception, NewWindowStyleReissuesTopLevelLinksOnly)
{
    SetNavigationStyle(L"B");
    browser->Log().Clear();
    // The page's own top-level link: re-issued with the new-window flag, zoom first; this page stays.
    tov::Bstr url(L"http://example.com/a"), frame(L"_blank"), headers(L"H: 1\r\n");
    const auto outcome = browser->FireBeforeNavigate(url.Get(), 0, frame.Get(), nullptr, headers.Get(), false);
    EXPECT_EQ(1, outcome.cancel);
    std::vector<std::wstring> calls;
    for (const auto& c : browser->Log().Texts())
        if (c.rfind(L"ExecWB(63", 0) == 0 || c.rfind(L"Navigate(", 0) == 0) calls.push_back(c);
    ASSERT_EQ(2u, calls.size());
    EXPECT_EQ(0u, calls[0].rfind(L"ExecWB(63, 0", 0));
    // Headers go in the post-data position and the event's post data in the headers position.
    EXPECT_EQ(L"Navigate(http://example.com/a, I4:1, BSTR:_blank, BSTR:H: 1\r\n, <empty>)", calls[1]);

    // A frame's link, and a navigation with flags, navigate in place.
    browser->Log().Clear();
    EXPECT_EQ(0, browser->ClickLink(L"http://example.com/b", L"left").cancel);
    tov::Bstr other(L"http://example.com/c");
    EXPECT_EQ(0, browser->FireBeforeNavigate(other.Get(), 4, nullptr, nullptr, nullptr, false).cancel);
    EXPECT_EQ(0u, browser->Log().Count(L"Navigate"));

    // The front end's own ShowURL navigates in place: its BeforeNavigate is not re-issued.
    tov::Bstr shown(L"http://example.com/shown");
    LONG code = -1;
    control->ShowURL(shown.Get(), nullptr, &code);
    browser->Log().Clear();
    EXPECT_EQ(0, browser->ClickLink(L"http://example.com/shown").cancel);
    EXPECT_EQ(0u, browser->Log().Count(L"Navigate"));
    // ... and only that one: the next foreign link is re-issued again.
    EXPECT_EQ(1, browser->ClickLink(L"http://example.com/next").cancel);
    EXPECT_EQ(1u, browser->Log().Count(L"Navigate"));

    // A TOVEVENT is never re-issued.
    browser->Log().Clear();
    EXPECT_EQ(1, browser->ClickLink(L"TOVEVENT:Click").cancel);
    EXPECT_EQ(0u, browser->Log().Count(L"Navigate"));
}

TEST_F(TovEventInterception, HistoryMethodsCountAsOwnNavigationsEvenWhenTheyFail)
{
    SetNavigationStyle(L"B");
    for (const wchar_t* method : {L"GoBack", L"GoForward"}) {
        SCOPED_TRACE(testing::Message() << "failing " << method);
        browser->FailCall(method, E_FAIL);
        LONG code = -1;
        if (std::wstring(method) == L"GoBack") control->GoBack(&code);
        else control->GoForward(&code);
        EXPECT_EQ(5, code);
        browser->Log().Clear();
        // The history navigation's own BeforeNavigate is not re-issued in a new window.
        EXPECT_EQ(0, browser->ClickLink(L"http://example.com/history").cancel);
        EXPECT_EQ(0u, browser->Log().Count(L"Navigate"));
        browser->ClearFailures();
    }
}

TEST_F(TovEventInterception, BothStylesBlockAndStillReissue)
{
    SetNavigationStyle(L"BC");
    browser->Log().Clear();
    EXPECT_EQ(1, browser->ClickLink(L"http://foreign/x").cancel);
    EXPECT_EQ(1u, browser->Log().Count(L"Navigate"));
}

TEST_F(TovEventInterception, TracesTheUrlAndFrameAtLevelTwo)
{
    Connect(2);
    ClearLines();
    browser->ClickLink(L"TOVEVENT:a+b", L"f1");
    const auto lines = Lines();
    const std::vector<std::string> expectedStart = {"=> FrameBeforeNavigate", "==> OnBeforeNavigate", "TOVEVENT:a+b", "f1"};
    ASSERT_GE(lines.size(), expectedStart.size());
    EXPECT_EQ(expectedStart, std::vector<std::string>(lines.begin(), lines.begin() + 4));
    EXPECT_EQ("<= FrameBeforeNavigate", lines.back());

    ClearLines();
    browser->ClickLink(L"http://x/");
    EXPECT_EQ((std::vector<std::string>{"=> BeforeNavigate", "http://x/", "==> OnBeforeNavigate", "http://x/", "",
                                        "<== OnBeforeNavigate", "<= BeforeNavigate"}),
              Lines());
}

class TovEventCodePages : public TovEventInterception {
protected:
    void UseFrontEnd(UINT codePage, const wchar_t* language)
    {
        services.gui->Child().codePage = codePage;
        services.info->languageKey = language;
    }
};

TEST_F(TovEventCodePages, JapaneseWithUtf8ReadsTheUrlBytesAgainAsUtf8)
{
    UseFrontEnd(65001, L"JA");
    // "TOVEVENT:" and U+3042 sent as UTF-8 escapes: unescaped through the ANSI code page they are three
    // Western characters, which the UTF-8 reading turns back into one.
    browser->ClickLink(L"TOVEVENT:%E3%81%82");
    ASSERT_EQ(1u, BeforeNavigates().size());
    EXPECT_EQ(L"TOVEVENT:\x3042", JoinedUrl(BeforeNavigates()[0]));
}

TEST_F(TovEventCodePages, Utf8WithAnotherLanguageKeepsTheAnsiReading)
{
    UseFrontEnd(65001, L"DE");
    browser->ClickLink(L"TOVEVENT:%E4%F6+%FC");
    ASSERT_EQ(1u, BeforeNavigates().size());
    EXPECT_EQ(L"TOVEVENT:\x00E4\x00F6 \x00FC", JoinedUrl(BeforeNavigates()[0]));
}

TEST_F(TovEventCodePages, WesternCodePageKeepsTheAnsiReadingEvenForJapanese)
{
    UseFrontEnd(1252, L"JA");
    browser->ClickLink(L"TOVEVENT:%E4%F6+%FC");
    ASSERT_EQ(1u, BeforeNavigates().size());
    EXPECT_EQ(L"TOVEVENT:\x00E4\x00F6 \x00FC", JoinedUrl(BeforeNavigates()[0]));
}

TEST_F(TovEventCodePages, LanguageKeyIsFetchedOnce)
{
    services.gui->Log().Clear();
    browser->ClickLink(L"TOVEVENT:1");
    browser->ClickLink(L"TOVEVENT:2");
    browser->ClickLink(L"http://x");
    EXPECT_EQ(1u, services.info->Log().Count(L"GetLanguageKey"));
    EXPECT_EQ(3u, services.gui->Log().Count(L"GetCodePage")) << "the code page is asked every time";
}
