// The control's internal pages: the error page that names the failing method and its URL, the blank page
// after a failed ShowData; both zoomed first, and neither reported to the front end as a completed page.
#include <algorithm>
#include "support/browser_fixture.h"
#include "framework/bstr.h"

using tov::Bstr;
using tovtest::BrowserFixture;

namespace {

std::wstring ErrorPage(const std::wstring& method, const std::wstring& url)
{
    return L"Navigate(about:TOVHTML_E_CALL_METHOD_FAILED: " + method + L"(\"" + url +
           L"\"), <null>, <null>, <null>, <null>)";
}

// The calls from the last zoom command on: the internal page's own.
std::vector<std::wstring> LastTwo(const std::vector<std::wstring>& calls)
{
    return calls.size() < 2 ? calls : std::vector<std::wstring>(calls.end() - 2, calls.end());
}

} // namespace

using InternalPages = BrowserFixture;

TEST_F(InternalPages, AFailingShowURLShowsTheErrorPageAfterTheZoom)
{
    browser->FailCall(L"Navigate", E_FAIL);
    LONG code = -1;
    ASSERT_EQ(S_OK, control->ShowURL(Bstr(L"abc").Get(), nullptr, &code));
    EXPECT_EQ(5, code);
    EXPECT_EQ((std::vector<std::wstring>{ZoomCall(), ErrorPage(L"ShowUrl", L"abc")}), LastTwo(Calls()))
        << "the method's name as ShowURL has always given it, the zoom before the page";
    browser->ClearFailures();
}

TEST_F(InternalPages, TheErrorPageCarriesTheURLAsItIs)
{
    browser->FailCall(L"Navigate", E_FAIL);
    struct Case {
        BSTR url;
        std::wstring shown;
    };
    Bstr quoted(L"x\"y%s%d%%z"), withZero(std::wstring_view(L"ab\0cd", 5)), longUrl(std::wstring(3000, L'u'));
    const Case cases[] = {
        {quoted.Get(), L"x\"y%s%d%%z"},
        {withZero.Get(), L"ab"},
        {longUrl.Get(), std::wstring(3000, L'u')},
        {nullptr, L""},
    };
    for (const Case& c : cases) {
        browser->Log().Clear();
        LONG code = -1;
        ASSERT_EQ(S_OK, control->ShowURL(c.url, nullptr, &code));
        EXPECT_EQ(5, code);
        EXPECT_EQ(ErrorPage(L"ShowUrl", c.shown), Calls().back());
    }
    browser->ClearFailures();
}

TEST_F(InternalPages, TheErrorPageIsTraced)
{
    browser->FailCall(L"Navigate", E_FAIL);
    Connect(2);
    ClearLines();
    LONG code = -1;
    control->ShowURL(Bstr(L"abc").Get(), nullptr, &code);
    const auto lines = Lines();
    const auto at = std::find(lines.begin(), lines.end(), "==> ShowErrorMessage");
    ASSERT_NE(lines.end(), at);
    ASSERT_GE(lines.end() - at, 7);
    EXPECT_EQ((std::vector<std::string>{"==> ShowErrorMessage", "ShowUrl", "abc", "===> ExecuteWB", "Command ID: 63",
                                        "<=== ExecuteWB", "<== ShowErrorMessage"}),
              std::vector<std::string>(at, at + 7));
    browser->ClearFailures();
}

TEST_F(InternalPages, AShowDataWithoutItsDataShowsTheBlankPage)
{
    Connect(2);
    ClearLines();
    LONG code = -1;
    ASSERT_EQ(S_OK, control->ShowData(Bstr(L"tovq5:missing").Get(), nullptr, 0, &code));
    EXPECT_EQ(5, code);
    EXPECT_EQ((std::vector<std::wstring>{ZoomCall(), L"Navigate(about:blank, <null>, <null>, <null>, <null>)"}),
              LastTwo(Calls()));
    const auto lines = Lines();
    const auto at = std::find(lines.begin(), lines.end(), "==> ShowBlankPageOnAccessDenied");
    ASSERT_NE(lines.end(), at);
    ASSERT_GE(lines.end() - at, 4);
    EXPECT_EQ((std::vector<std::string>{"==> ShowBlankPageOnAccessDenied", "Access denied while creating file", "ShowData",
                                        "tovq5:missing"}),
              std::vector<std::string>(at, at + 4));
}

// The front end hears of completed pages, except of internal ones.
TEST_F(InternalPages, AreNotReportedAsCompletedPages)
{
    Advise();
    LONG code = -1;
    control->ShowURL(Bstr(L"https://example.invalid/a").Get(), nullptr, &code);
    if (CompletionsReported(L"https://example.invalid/a") == 0)
        GTEST_SKIP() << "this build does not report completed pages to the front end";
    browser->FailCall(L"Navigate(abc, I4:0, BSTR:<null>, <null>, <null>)", E_FAIL);
    control->ShowURL(Bstr(L"abc").Get(), nullptr, &code);
    EXPECT_EQ(0u, CompletionsReported(L"about:TOVHTML_E_CALL_METHOD_FAILED: ShowUrl(\"abc\")"));
    control->ShowData(Bstr(L"tovq5:missing").Get(), nullptr, 0, &code);
    EXPECT_EQ(0u, CompletionsReported(L"about:blank"));
    control->ShowURL(Bstr(L"https://example.invalid/b").Get(), nullptr, &code);
    EXPECT_EQ(1u, CompletionsReported(L"https://example.invalid/b")) << "the next navigation clears the mark";
    browser->ClearFailures();
}
