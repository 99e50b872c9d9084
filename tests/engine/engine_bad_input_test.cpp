// Real pages that push the limits: 10 MiB of HTML, a form of 100,000 fields, URLs of 100,000
// characters, a page whose script never ends, text that is no valid UTF-8. Nothing crashes, nothing
// hangs past a bounded time, nothing is lost in the provider.
#include "engine/engine_fixture.h"
#include "frontend/table_standin.h"

namespace tovtest {
namespace {

class EngineBadInput : public EngineFixture {
protected:
    static constexpr const char* kButtonStyle = "position:absolute;left:10px;top:10px;width:160px;height:40px";
};

TEST_F(EngineBadInput, HugePagesAndFormsArriveWhole)
{
    std::string text;
    text.reserve(10u << 20);
    while (text.size() < (10u << 20)) text += "0123456789abcdefghijklmnopqrstuvwxyz ";
    PutPage(L"big.htm", "<html><body><p id=\"big\">" + text + "</p></body></html>");
    events.events.clear();
    ASSERT_EQ(0, ShowData(L"big.htm"));
    ASSERT_TRUE(WaitFor([&] { return !Events(2).empty() && DocumentComplete() == 1; }, 60000)) << "10 MiB page loads";
    EXPECT_GT(Html().size(), 10u << 20);

    // 100,000 fields, made by the page itself, posted by a real click.
    PutPage(L"fields.htm", std::string("<html><body><form id=\"f\" method=\"post\" action=\"TOVEVENT:BIG\">"
                                       "<button style=\"") + kButtonStyle + "\">send</button></form><script>"
                           "var f = document.getElementById('f'), html = [];"
                           "for (var i = 0; i < 100000; ++i) html.push('<input type=hidden name=f' + i + ' value=' + i + '>');"
                           "f.insertAdjacentHTML('beforeend', html.join(''));</script></body></html>");
    ShowPage(L"fields.htm");
    const FiredEvent e = ClickForEvent(30, 25, 30000);
    EXPECT_EQ(L"TOVEVENT:BIG", JoinedUrl(e));
    const std::string posted = PostedData();
    EXPECT_EQ(std::to_wstring(posted.size()), e.args.at(1)) << "PostDataLen is what the provider holds";
    EXPECT_EQ(0u, posted.rfind("f0=0&f1=1&", 0));
    EXPECT_EQ(99999, std::count(posted.begin(), posted.end(), '&'));
    EXPECT_TRUE(posted.size() > 12 && posted.compare(posted.size() - 12, 12, "f99999=99999") == 0);
}

TEST_F(EngineBadInput, UrlsOfAHundredThousandCharacters)
{
    PutPage(L"long.htm", std::string("<html><body><a id=\"a\" style=\"display:block;") + kButtonStyle +
                             "\">long</a><script>document.getElementById('a').href = 'TOVEVENT:' + 'y'.repeat(99991);"
                             "</script></body></html>");
    ShowPage(L"long.htm");
    const FiredEvent e = ClickForEvent(30, 25, 30000);
    EXPECT_EQ(100000, Property(&ITOVHTMLControl::get_URLLength));
    EXPECT_EQ(2040u, JoinedUrl(e).size()) << "eight pieces travel";

    // The front end's own long URLs: shown or refused, in bounded time, and the control goes on.
    EXPECT_EQ(0, ShowURL(L"http://127.0.0.1:9/" + std::wstring(100000, L'z')));
    PutPage(std::wstring(100000, L'n') + L".htm", "<html><body>long name</body></html>");
    events.events.clear();
    const LONG code = ShowData(std::wstring(100000, L'n') + L".htm");
    EXPECT_TRUE(code == 0 || code == 5) << code;
    PutPage(L"next.htm", "<html><body>next</body></html>");
    ShowPage(L"next.htm");
    EXPECT_NE(std::wstring::npos, Html().find(L"next"));
}

TEST_F(EngineBadInput, APageThatNeverFinishesDoesNotHoldTheControl)
{
    PutPage(L"spin.htm", "<html><body><p>spin</p><script>for (;;) {}</script></body></html>");
    events.events.clear();
    ASSERT_EQ(0, ShowData(L"spin.htm"));
    Settle(500);
    const ULONGLONG start = GetTickCount64();
    Html(); // the page cannot answer while its script runs: the question ends, the script is stopped
    EXPECT_LT(GetTickCount64() - start, 20000u);
    PutPage(L"calm.htm", "<html><body>calm</body></html>");
    ShowPage(L"calm.htm");
    EXPECT_NE(std::wstring::npos, Html().find(L"calm"));
}

TEST_F(EngineBadInput, TextThatIsNoValidUtf8StillReadsBack)
{
    PutPage(L"bad.htm", "<html><head><meta charset=\"utf-8\"></head><body><p>a\xFF\xFE b\xC3</p></body></html>");
    ShowPage(L"bad.htm");
    EXPECT_NE(std::wstring::npos, Html().find(L"a\uFFFD\uFFFD b\uFFFD")) << "replacement characters";

    const std::string script = "document.body.textContent = 'x\\uD800y';";
    auto table = tovfe::MakeScriptTable({script}, static_cast<LONG>(script.size()));
    ASSERT_EQ(S_OK, control->putref_ScriptText(table.Object()));
    ASSERT_EQ(S_OK, control->ExecuteScript());
    const std::wstring html = Html();
    EXPECT_NE(std::wstring::npos, html.find(L"x")) << "a lone surrogate does not lose the page's text";
    EXPECT_NE(std::wstring::npos, html.find(L"y"));
}

} // namespace
} // namespace tovtest
