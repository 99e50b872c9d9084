// TOVEVENT links and forms: recognised in any letter case, cancelled, unescaped, cut into eight pieces
// and delivered to the front end; other URLs go on unless the navigation style blocks or re-issues them. (The
// prefix, unescaping and packing rules themselves: tests/native.)
#include <new>
#include "support/back_channel_fixture.h"
#include "frontend/scripted_document.h"
#include "frontend/table_standin.h"
#include "framework/simple_object.h"

class TovEventInterception : public tovtest::BackChannelFixture {
protected:
    // The URL the front end received for a click on `link`.
    std::wstring Delivered(const std::wstring& link)
    {
        sink.events.clear();
        EXPECT_EQ(1, browser->ClickLink(link).cancel);
        return BeforeNavigates().size() == 1 ? JoinedUrl(BeforeNavigates()[0]) : L"<not delivered>";
    }
    // Navigations and zoom commands the browser received since the last clear.
    std::vector<std::wstring> Reissued() const
    {
        std::vector<std::wstring> calls;
        for (const auto& c : browser->Log().Texts())
            if (c.rfind(L"ExecWB(63", 0) == 0 || c.rfind(L"Navigate(", 0) == 0) calls.push_back(c);
        return calls;
    }
};

TEST_F(TovEventInterception, PrefixInAnyLetterCaseIsAnEventAndIsCancelled)
{
    const auto outcome = browser->ClickLink(L"tovEvent:Click");
    EXPECT_EQ(1, outcome.cancel) << "the value 1, not VARIANT_TRUE";
    ASSERT_EQ(1u, BeforeNavigates().size());
    EXPECT_EQ((std::vector<std::wstring>{L"", L"0", L"tovEvent:Click", L"<null>", L"<null>", L"<null>", L"<null>", L"<null>",
                                         L"<null>", L"<null>"}),
              BeforeNavigates()[0].args);
}

TEST_F(TovEventInterception, FrameNameAndHeadersStayForTheFrontEnd)
{
    tov::Bstr url(L"TOVEVENT:Save"), frame(L"left%20frame"), headers(L"X-Test: 1\r\n");
    EXPECT_EQ(1, browser->FireBeforeNavigate(url.Get(), 0, frame.Get(), nullptr, headers.Get(), true).cancel);
    EXPECT_EQ(L"left%20frame", BeforeNavigates().at(0).args[0]) << "the frame name as the browser gave it";
    EXPECT_EQ(L"left%20frame", Property(&ITOVHTMLControl::get_TargetFrame));
    EXPECT_EQ(L"X-Test: 1\r\n", Property(&ITOVHTMLControl::get_Headers));
    EXPECT_EQ(13, Property(&ITOVHTMLControl::get_URLLength));
}

// An unready front end gets no event; after an event it received, the script set for submitted data runs.
TEST_F(TovEventInterception, OnlyDeliveredEventsRunTheSubmittedDataScript)
{
    auto document = tovfe::ScriptedDocument::Create();
    browser->SetDocument(document->AsDispatch());
    auto table = tovfe::MakeScriptTable({"submitted();"}, 12);
    ASSERT_EQ(S_OK, control->putref_ScriptOnDataSubmitted(table.Object()));
    browser->ClickLink(L"http://example.com/x");
    SetReady(false);
    EXPECT_EQ(1, browser->ClickLink(L"TOVEVENT:Click").cancel) << "not ready: no event, still cancelled";
    EXPECT_TRUE(sink.events.empty());
    EXPECT_EQ(14, Property(&ITOVHTMLControl::get_URLLength)) << "the event was handled all the same";
    EXPECT_TRUE(document->Page().scripts.empty());
    SetReady(true);
    browser->SubmitForm(L"TOVEVENT:Save", "a=1");
    ASSERT_EQ(1u, document->Page().scripts.size());
    EXPECT_EQ(L"submitted();", document->Page().scripts[0].text);
    browser->SetDocument(nullptr);
}

// The front end's answer counts only as a number or an error code: a failure stops the script, anything
// else (an object, whatever its pointer's bits, or nothing) lets it run.
TEST_F(TovEventInterception, OnlyANumberOrAnErrorCodeAnswerStopsTheSubmittedDataScript)
{
    auto document = tovfe::ScriptedDocument::Create();
    browser->SetDocument(document->AsDispatch());
    auto table = tovfe::MakeScriptTable({"submitted();"}, 12);
    ASSERT_EQ(S_OK, control->putref_ScriptOnDataSubmitted(table.Object()));

    // An object whose pointer's low half reads as a failure code: placed at such an address.
    struct Placed final : tov::SimpleObject<Placed, tov::Lifetime::CountOnly, tov::Implements<IUnknown>> {};
    void* place = nullptr;
    for (ULONG_PTR at = 0x180000000ull; !place && at < 0x800000000ull; at += 0x100000000ull)
        place = VirtualAlloc(reinterpret_cast<void*>(at), 0x10000, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    ASSERT_NE(nullptr, place) << "no address whose low half is negative was free";
    ASSERT_LT(static_cast<LONG>(reinterpret_cast<ULONG_PTR>(place)), 0);
    Placed* object = new (place) Placed();

    struct Case {
        const char* what;
        VARIANT answer;
        bool runs;
    };
    std::vector<Case> cases(4);
    cases[0] = {"a negative number", {}, false};
    cases[0].answer.vt = VT_I4;
    cases[0].answer.lVal = E_FAIL;
    cases[1] = {"an error code", {}, false};
    cases[1].answer.vt = VT_ERROR;
    cases[1].answer.scode = DISP_E_EXCEPTION;
    cases[2] = {"an object", {}, true};
    cases[2].answer.vt = VT_UNKNOWN;
    cases[2].answer.punkVal = object;
    cases[3] = {"nothing", {}, true};
    for (const Case& c : cases) {
        document->Page().scripts.clear();
        sink.answerVariant = &c.answer;
        EXPECT_EQ(1, browser->SubmitForm(L"TOVEVENT:Save", "a=1").cancel) << c.what;
        EXPECT_EQ(c.runs ? 1u : 0u, document->Page().scripts.size()) << c.what;
    }
    sink.answerVariant = nullptr;
    browser->SetDocument(nullptr);
    EXPECT_EQ(1u, object->RefCount()) << "the control released the answer it got";
    VirtualFree(place, 0, MEM_RELEASE);
}

TEST_F(TovEventInterception, RestrictedStyleBlocksForeignSchemesInPagesAndFrames)
{
    control->put_NavigationStyle(tov::Bstr(L"C").Get());
    for (const wchar_t* url : {L"http://x", L"about:blank"}) EXPECT_EQ(1, browser->ClickLink(url).cancel) << url;
    for (const wchar_t* url : {L"TOVQ5:/a/b.htm", L"x-tovq5:abc", L"page.htm"})
        EXPECT_EQ(0, browser->ClickLink(url).cancel) << url;
    EXPECT_EQ(1, browser->ClickLink(L"http://x", L"frame").cancel);
    EXPECT_TRUE(sink.events.empty());
}

TEST_F(TovEventInterception, NewWindowStyleReissuesForeignTopLevelLinksOnly)
{
    control->put_NavigationStyle(tov::Bstr(L"B").Get());
    browser->Log().Clear();
    tov::Bstr url(L"http://example.com/a"), frame(L"_blank"), headers(L"H: 1\r\n");
    EXPECT_EQ(1, browser->FireBeforeNavigate(url.Get(), 0, frame.Get(), nullptr, headers.Get(), false).cancel);
    const auto calls = Reissued();
    ASSERT_EQ(2u, calls.size());
    EXPECT_EQ(0u, calls[0].rfind(L"ExecWB(63, 0", 0)) << "zoom first";
    // Headers go in the post-data position and the event's post data in the headers position.
    EXPECT_EQ(L"Navigate(http://example.com/a, I4:1, BSTR:_blank, BSTR:H: 1\r\n, <empty>)", calls[1]);

    browser->Log().Clear();
    EXPECT_EQ(0, browser->ClickLink(L"http://example.com/b", L"left").cancel) << "a frame's link";
    EXPECT_TRUE(Reissued().empty());

    // The control's own navigations (ShowURL, and history moves even when they fail) go on in place, once.
    browser->FailCall(L"GoBack", E_FAIL);
    control->GoBack(nullptr);
    EXPECT_EQ(0, browser->ClickLink(L"http://example.com/history").cancel);
    ShowURL(L"http://example.com/shown");
    browser->Log().Clear();
    EXPECT_EQ(0, browser->ClickLink(L"http://example.com/shown").cancel);
    EXPECT_TRUE(Reissued().empty());
    EXPECT_EQ(1, browser->ClickLink(L"http://example.com/next").cancel) << "the own navigation was used up";

    // A TOVEVENT handled in a frame is an own navigation too: the next top-level link goes on in place.
    EXPECT_EQ(1, browser->ClickLink(L"TOVEVENT:Pick", L"left").cancel);
    EXPECT_EQ(0, browser->ClickLink(L"http://example.com/after-event").cancel);
    EXPECT_EQ(1, browser->ClickLink(L"http://example.com/later").cancel);
}

// "JA" with UTF-8 reads the unescaped bytes again as UTF-8; any other pair keeps the ANSI reading. The
// language key is fetched once, the code page at every navigation.
TEST_F(TovEventInterception, JapaneseWithUtf8ReadsTheUrlBytesAgainAsUtf8)
{
    services.gui->Log().Clear();
    services.info->languageKey = L"JA";
    services.gui->Child().codePage = 1252;
    EXPECT_EQ(L"TOVEVENT:\x00E4\x00F6 \x00FC", Delivered(L"TOVEVENT:%E4%F6+%FC"));
    services.gui->Child().codePage = 65001;
    // U+3042 as UTF-8 escapes: three Western characters through the ANSI code page, one through UTF-8.
    EXPECT_EQ(L"TOVEVENT:\x3042", Delivered(L"TOVEVENT:%E3%81%82"));
    services.info->languageKey = L"DE";
    EXPECT_EQ(L"TOVEVENT:\x3042", Delivered(L"TOVEVENT:%E3%81%82")) << "the key is not asked again";
    EXPECT_EQ(1u, services.info->Log().Count(L"GetLanguageKey"));
    EXPECT_EQ(3u, services.gui->Log().Count(L"GetCodePage"));
}
