// CloseDocument closes exactly one thing: the detached window used last (with its map entry), else the
// control's own document by the blank page. (The Simple Browse dialog case is with the dialog's tests.)
#include "support/initialized_control_fixture.h"

using tov::Bstr;
using tovtest::InitializedControlFixture;

namespace {
const std::wstring kBlank = L"Navigate(about:blank, <null>, <null>, <null>, <null>)";
}

class CloseDocument : public InitializedControlFixture {
protected:
    LONG InBrowser(const wchar_t* url)
    {
        Bstr u(url);
        LONG code = -1;
        EXPECT_EQ(S_OK, control->ShowURLInBrowser(u.Get(), &code));
        return code;
    }
};

TEST_F(CloseDocument, WithoutWindowsTheOwnPageBecomesBlankWithoutZoom)
{
    Init(1);
    EXPECT_EQ(S_OK, control->CloseDocument());
    EXPECT_EQ(std::vector<std::wstring>{kBlank}, BrowserCalls());
    EXPECT_EQ((std::vector<std::string>{"=> CloseDocument", "<= CloseDocument"}), Lines());
}

TEST_F(CloseDocument, ClosesTheDetachedWindowUsedLastThenTheOwnPage)
{
    Init(1);
    ASSERT_EQ(0, InBrowser(L"http://example.invalid/one"));
    ASSERT_EQ(0, InBrowser(L"http://example.invalid/two"));
    tovfe::ScriptedBrowser* one = applications.Created().at(0).Get();
    tovfe::ScriptedBrowser* two = applications.Created().at(1).Get();
    one->OwnLog().Clear();
    two->OwnLog().Clear();
    browser->OwnLog().Clear();

    EXPECT_EQ(S_OK, control->CloseDocument());
    EXPECT_EQ((std::vector<std::wstring>{L"Stop()", L"Quit()"}), WithoutQueries(two->OwnLog()));
    EXPECT_TRUE(one->OwnLog().Texts().empty());
    EXPECT_EQ(1u, two->RefCount()) << "its map entry is gone too";
    EXPECT_EQ(0u, browser->OwnLog().Count(L"Navigate"));

    // Nothing names a detached window any more: the own page goes next, "one" stays.
    EXPECT_EQ(S_OK, control->CloseDocument());
    EXPECT_EQ(kBlank, BrowserCalls().back());
    EXPECT_TRUE(one->OwnLog().Texts().empty());

    // The closed URL opens a new window; "one" is reused.
    ASSERT_EQ(0, InBrowser(L"http://example.invalid/two"));
    ASSERT_EQ(0, InBrowser(L"http://example.invalid/one"));
    EXPECT_EQ(3u, applications.Created().size());
}

TEST_F(CloseDocument, ShowDataAndShowURLOfProviderDataTurnItBackToTheOwnPage)
{
    Init(1);
    tovfe::DataStore::Instance().Put(LocalPrefix() + L"page.htm", "<html></html>", L"html");
    tovfe::DataStore::Instance().Put(L"tovq5:/p.htm", "<html></html>", L"html");
    for (int step = 0; step < 2; ++step) {
        SCOPED_TRACE(step);
        ASSERT_EQ(0, InBrowser(L"http://example.invalid/w"));
        Bstr url(step == 0 ? L"page.htm" : L"tovq5:/p.htm");
        LONG code = -1;
        if (step == 0)
            control->ShowData(url.Get(), nullptr, 1, &code);
        else
            control->ShowURL(url.Get(), nullptr, &code);
        ASSERT_EQ(0, code);
        browser->OwnLog().Clear();
        EXPECT_EQ(S_OK, control->CloseDocument());
        EXPECT_EQ(std::vector<std::wstring>{kBlank}, BrowserCalls());
        EXPECT_EQ(0u, applications.Last()->OwnLog().Count(L"Quit"));
    }
}

TEST_F(CloseDocument, BeforeInitControlNothingHappens)
{
    Connect(1);
    EXPECT_EQ(S_OK, control->CloseDocument());
    EXPECT_EQ((std::vector<std::string>{"=> CloseDocument", "<= CloseDocument"}), Lines());
}
