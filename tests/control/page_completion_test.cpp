// Completion of pages: NavigateComplete for the page and each frame unless held or the front end is not
// ready; the marker script in every such page; DocumentComplete follows the top document.
#include "support/back_channel_fixture.h"
#include "frontend/scripted_document.h"

class PageCompletion : public tovtest::BackChannelFixture {
protected:
    // The front end shows a page of its own: the page is no longer an internal one.
    void ShowPage()
    {
        ASSERT_EQ(0, ShowURL(L"http://app/page.htm"));
        Connect(2);
        ClearLines();
    }
    // Marker scripts the control ran: an "InternalExecuteScript" scope right inside the marker's scope.
    size_t MarkerRuns() const
    {
        size_t runs = 0;
        const auto lines = Lines();
        for (size_t i = 0; i + 1 < lines.size(); ++i)
            runs += lines[i].find("> SetScriptVariableInHTMLDocument") != std::string::npos &&
                    lines[i + 1].find("> InternalExecuteScript") != std::string::npos;
        return runs;
    }
    LONG DocumentComplete() { return Property(&ITOVHTMLControl::get_DocumentComplete); }
};

TEST_F(PageCompletion, PageWithTwoFramesGivesThreeMarkedNavigateCompletes)
{
    ShowPage();
    EXPECT_EQ(0, browser->LoadPage(L"http://app/page.htm", {L"http://app/left.htm", L"http://app/right.htm"}).cancel);
    EXPECT_EQ((std::vector<std::wstring>{L"http://app/page.htm", L"http://app/left.htm", L"http://app/right.htm"}),
              NavigateCompleteUrls());
    EXPECT_EQ(3u, MarkerRuns());
    EXPECT_EQ(1, DocumentComplete());
}

TEST_F(PageCompletion, InternalPagesAreNotReportedUntilTheNextNavigation)
{
    browser->FailCall(L"Navigate(abc, I4:0, BSTR:<null>, <null>, <null>)", E_FAIL);
    ShowURL(L"abc");
    browser->CompleteTopNavigation(L"about:TOVHTML_E_CALL_METHOD_FAILED: ShowUrl(\"abc\")");
    ShowData(L"tovq5:missing", nullptr, 0);
    browser->CompleteTopNavigation(L"about:blank");
    EXPECT_TRUE(NavigateCompleteUrls().empty()) << "the error page and the blank page";
    ShowURL(L"https://example.invalid/b");
    browser->CompleteTopNavigation(L"https://example.invalid/b");
    EXPECT_EQ(std::vector<std::wstring>{L"https://example.invalid/b"}, NavigateCompleteUrls());
}

TEST_F(PageCompletion, TheMarkerIsAJavaScriptLineSettingTheControlsVariable)
{
    auto document = tovfe::ScriptedDocument::Create();
    browser->SetDocument(document->AsDispatch());
    ShowPage();
    browser->CompleteTopNavigation(L"http://app/page.htm");
    ASSERT_EQ(1u, document->Page().scripts.size());
    EXPECT_EQ(L"tovHtmlControl  = \"TRUE\"", document->Page().scripts[0].text);
    EXPECT_EQ(L"JavaScript", document->Page().scripts[0].language);
    EXPECT_TRUE(HasLine("Encoding of HTML page: utf-8")) << "the charset trace";
}

TEST_F(PageCompletion, DocumentCompleteStaysFalseWhileOnlyFramesCompleted)
{
    ShowPage();
    browser->CompleteTopDocument(L"http://app/page.htm");
    EXPECT_EQ(1, DocumentComplete());
    browser->ClickLink(L"http://app/next.htm");
    EXPECT_EQ(0, DocumentComplete()) << "a top-level navigation clears it";
    browser->CompleteTopNavigation(L"http://app/next.htm");
    browser->CompleteFrame(0, L"http://app/f0.htm");
    browser->CompleteFrame(1, L"http://app/f1.htm");
    EXPECT_EQ(0, DocumentComplete());
    browser->CompleteTopDocument(L"http://app/next.htm");
    EXPECT_EQ(1, DocumentComplete());
    browser->CompleteFrame(0, L"http://app/f2.htm");
    EXPECT_EQ(0, DocumentComplete()) << "a frame's completion clears it";
}

TEST_F(PageCompletion, HeldOrNotReadyFrontEndHearsNothingButPagesAreMarked)
{
    ShowPage();
    for (auto [ready, hold] : {std::pair{true, true}, std::pair{false, false}}) {
        SetReady(ready, hold);
        ClearLines();
        browser->LoadPage(L"http://app/page.htm", {L"http://app/f.htm"});
        EXPECT_TRUE(NavigateCompleteUrls().empty());
        EXPECT_EQ(2u, MarkerRuns());
    }
    EXPECT_EQ(0, SendMessageW(Window(), RegisterWindowMessageA("TOV_CM_READY_FOR_INPUT"), 0, 0)) << "a null record";
    SetReady(true);
    browser->CompleteTopNavigation(L"http://app/page.htm");
    EXPECT_EQ(1u, NavigateCompleteUrls().size());
}

TEST_F(PageCompletion, DocumentInspectionFailuresAreTraced)
{
    Connect(2);
    ClearLines();
    browser->CompleteTopNavigation(L"about:blank");
    browser->FailCall(L"get_Document", E_FAIL);
    browser->CompleteTopNavigation(L"about:blank");
    browser->ClearFailures();
    browser->CompleteFrame(0, L"about:blank");
    EXPECT_EQ((std::vector<std::string>{"=> NavigateComplete", "about:blank", "CComQIPtr<IHTMLDocument2...> failed",
                                        "<= NavigateComplete", "=> NavigateComplete", "about:blank", "get_Document() failed",
                                        "<= NavigateComplete", "=> FrameNavigateComplete", "about:blank",
                                        "<= FrameNavigateComplete"}),
              Lines());
}
