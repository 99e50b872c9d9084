// Completion of pages: NavigateComplete for the page and each frame unless the page is internal, held or
// the front end is not ready; the marker script in every such page; DocumentComplete follows the top document.
#include "support/back_channel_fixture.h"
#include "frontend/scripted_document.h"

using tovtest::BackChannelFixture;

namespace {
const std::string kMarker = "tovHtmlControl  = \"TRUE\"";
}

class PageCompletion : public BackChannelFixture {
protected:
    // The front end shows a page of its own: the page is no longer an internal one.
    void ShowPage(const wchar_t* url)
    {
        tov::Bstr u(url);
        LONG code = -1;
        control->ShowURL(u.Get(), nullptr, &code);
        ASSERT_EQ(0, code);
    }
    // Scripts the control ran, one per "InternalExecuteScript" scope, each inside the marker's scope.
    size_t MarkerRuns() const
    {
        size_t runs = 0;
        const auto lines = Lines();
        for (size_t i = 0; i + 1 < lines.size(); ++i)
            if (lines[i].find("> SetScriptVariableInHTMLDocument") != std::string::npos &&
                lines[i + 1].find("> InternalExecuteScript") != std::string::npos)
                ++runs;
        return runs;
    }
};

TEST_F(PageCompletion, PageWithTwoFramesGivesThreeNavigateCompletes)
{
    ShowPage(L"http://app/page.htm");
    Connect(2);
    ClearLines();
    const auto outcome = browser->LoadPage(L"http://app/page.htm", {L"http://app/left.htm", L"http://app/right.htm"});
    EXPECT_EQ(0, outcome.cancel);
    EXPECT_EQ((std::vector<std::wstring>{L"http://app/page.htm", L"http://app/left.htm", L"http://app/right.htm"}),
              NavigateCompleteUrls());
    EXPECT_EQ(3u, MarkerRuns());
    EXPECT_EQ(1, Property(&ITOVHTMLControl::get_DocumentComplete));
}

TEST_F(PageCompletion, MarkerScriptIsTheTwentyFourCharacterLine)
{
    auto document = tovfe::ScriptedDocument::Create();
    browser->SetDocument(document->AsDispatch());
    ShowPage(L"http://app/page.htm");
    Connect(2);
    ClearLines();
    browser->CompleteTopNavigation(L"http://app/page.htm");
    const auto lines = Lines();
    const auto scope = std::find(lines.begin(), lines.end(), "==> SetScriptVariableInHTMLDocument");
    ASSERT_NE(lines.end(), scope);
    ASSERT_LT(scope + 1, lines.end());
    EXPECT_EQ("===> InternalExecuteScript", *(scope + 1));
    const auto& scripts = document->Page().scripts;
    ASSERT_EQ(1u, scripts.size());
    EXPECT_EQ(std::wstring(kMarker.begin(), kMarker.end()), scripts[0].text);
    EXPECT_EQ(L"JavaScript", scripts[0].language);
    EXPECT_EQ(L"TRUE", document->Page().variables[L"tovHtmlControl"]);
    EXPECT_EQ(24u, kMarker.size());
}

TEST_F(PageCompletion, DocumentCompleteStaysFalseWhileOnlyFramesCompleted)
{
    ShowPage(L"http://app/page.htm");
    browser->CompleteTopDocument(L"http://app/page.htm");
    EXPECT_EQ(1, Property(&ITOVHTMLControl::get_DocumentComplete));
    browser->ClickLink(L"http://app/next.htm");
    EXPECT_EQ(0, Property(&ITOVHTMLControl::get_DocumentComplete)) << "a top-level navigation clears it";
    browser->CompleteTopNavigation(L"http://app/next.htm");
    browser->CompleteFrame(0, L"http://app/f0.htm");
    EXPECT_EQ(0, Property(&ITOVHTMLControl::get_DocumentComplete));
    browser->CompleteFrame(1, L"http://app/f1.htm");
    EXPECT_EQ(0, Property(&ITOVHTMLControl::get_DocumentComplete));
    browser->CompleteTopDocument(L"http://app/next.htm");
    EXPECT_EQ(1, Property(&ITOVHTMLControl::get_DocumentComplete));
    // A frame's navigation leaves it alone; its completion clears it.
    browser->ClickLink(L"http://app/f2.htm", L"left");
    EXPECT_EQ(1, Property(&ITOVHTMLControl::get_DocumentComplete));
    browser->CompleteFrame(0, L"http://app/f2.htm");
    EXPECT_EQ(0, Property(&ITOVHTMLControl::get_DocumentComplete));
}

TEST_F(PageCompletion, InternalPagesAreNotReported)
{
    Connect(2);
    ClearLines();
    browser->LoadPage(L"about:blank", {L"about:blank"});
    EXPECT_TRUE(NavigateCompleteUrls().empty());
    EXPECT_EQ(0u, MarkerRuns()) << "no tovHtmlControl variable in an internal page";
    EXPECT_EQ(1, Property(&ITOVHTMLControl::get_DocumentComplete)) << "the property follows internal pages too";
}

TEST_F(PageCompletion, HeldOrNotReadyFrontEndHearsNothingButPagesAreMarked)
{
    ShowPage(L"http://app/page.htm");
    Connect(2);
    for (auto [ready, hold] : {std::pair{true, true}, std::pair{false, false}}) {
        SetReady(ready, hold);
        ClearLines();
        browser->LoadPage(L"http://app/page.htm", {L"http://app/f.htm"});
        EXPECT_TRUE(NavigateCompleteUrls().empty());
        EXPECT_EQ(2u, MarkerRuns());
    }
    SetReady(true, false);
    browser->CompleteTopNavigation(L"http://app/page.htm");
    EXPECT_EQ(1u, NavigateCompleteUrls().size());
}

TEST_F(PageCompletion, TovEventProducesNoCompletion)
{
    ShowPage(L"http://app/page.htm");
    const auto outcome = browser->LoadPage(L"TOVEVENT:Click", {L"http://app/f.htm"});
    EXPECT_EQ(1, outcome.cancel);
    EXPECT_TRUE(NavigateCompleteUrls().empty());
    EXPECT_EQ(1u, BeforeNavigates().size());
}

TEST_F(PageCompletion, DocumentInspectionFailuresAreTraced)
{
    Connect(2);
    ClearLines();
    browser->CompleteTopNavigation(L"about:blank");
    EXPECT_EQ((std::vector<std::string>{"=> NavigateComplete", "about:blank", "CComQIPtr<IHTMLDocument2...> failed",
                                        "<= NavigateComplete"}),
              Lines())
        << "a document that is no HTML document";
    browser->FailCall(L"get_Document", E_FAIL);
    ClearLines();
    browser->CompleteTopNavigation(L"about:blank");
    EXPECT_EQ((std::vector<std::string>{"=> NavigateComplete", "about:blank", "get_Document() failed", "<= NavigateComplete"}),
              Lines());
    browser->ClearFailures();

    ClearLines();
    browser->CompleteFrame(0, L"about:blank");
    EXPECT_EQ((std::vector<std::string>{"=> FrameNavigateComplete", "about:blank", "<= FrameNavigateComplete"}), Lines());
}
