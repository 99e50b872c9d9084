// The control's internal pages: the error page that names the failing method and its URL, the blank page
// after a failed ShowData; both zoomed first, traced, and neither reported to the front end as a completed
// page (that part: page_completion_test.cpp). (The error page of each show method: show_methods_test.cpp
// and detached_browsers_test.cpp.)
#include <algorithm>
#include "support/browser_fixture.h"
#include "framework/bstr.h"

using tov::Bstr;

namespace {

std::wstring ErrorPage(const std::wstring& url)
{
    return L"Navigate(about:TOVHTML_E_CALL_METHOD_FAILED: ShowUrl(\"" + url + L"\"), <null>, <null>, <null>, <null>)";
}

// `n` lines from `first` on, or fewer at the end.
std::vector<std::string> From(const std::vector<std::string>& all, const std::string& first, size_t n)
{
    const auto at = std::find(all.begin(), all.end(), first);
    return std::vector<std::string>(at, at + std::min<size_t>(n, all.end() - at));
}
// The internal page's own calls: the last two.
std::vector<std::wstring> LastTwo(const std::vector<std::wstring>& c)
{
    return c.size() < 2 ? c : std::vector<std::wstring>(c.end() - 2, c.end());
}

} // namespace

using InternalPages = tovtest::BrowserFixture;

TEST_F(InternalPages, AFailingShowURLShowsTheErrorPageAfterTheZoomWithTheUrlAsItIs)
{
    browser->FailCall(L"Navigate", E_FAIL);
    EXPECT_EQ(5, ShowURL(L"abc"));
    EXPECT_EQ((std::vector<std::wstring>{ZoomCall(), ErrorPage(L"abc")}), LastTwo(Calls()))
        << "the method's name as ShowURL has always given it, the zoom before the page";
    EXPECT_EQ((std::vector<std::string>{"==> ShowErrorMessage", "ShowUrl", "abc", "===> ExecuteWB", "Command ID: 63",
                                        "<=== ExecuteWB", "<== ShowErrorMessage"}),
              From(Lines(), "==> ShowErrorMessage", 7));

    Bstr quoted(L"x\"y%s%d%%z"), withZero(std::wstring_view(L"ab\0cd", 5));
    const std::pair<BSTR, std::wstring> cases[] = {{quoted.Get(), L"x\"y%s%d%%z"}, {withZero.Get(), L"ab"}, {nullptr, L""}};
    for (const auto& [url, shown] : cases) {
        LONG code = -1;
        ASSERT_EQ(S_OK, control->ShowURL(url, nullptr, &code));
        EXPECT_EQ(5, code);
        EXPECT_EQ(ErrorPage(shown), Calls().back());
    }
    browser->ClearFailures();
}

TEST_F(InternalPages, AShowDataWithoutItsDataShowsTheBlankPageAfterTheZoom)
{
    EXPECT_EQ(5, ShowData(L"tovq5:missing", nullptr, 0));
    EXPECT_EQ((std::vector<std::wstring>{ZoomCall(), kBlank}), LastTwo(Calls()));
    EXPECT_EQ((std::vector<std::string>{"==> ShowBlankPageOnAccessDenied", "Access denied while creating file", "ShowData",
                                        "tovq5:missing"}),
              From(Lines(), "==> ShowBlankPageOnAccessDenied", 4));
    EXPECT_TRUE(HasLine("GetDataSubtype: GetDataSubtype() failed"));
    EXPECT_TRUE(HasLine("ShowData: m_pWebBrowser->Navigate() failed"));
}
