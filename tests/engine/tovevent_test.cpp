// The back channel on real pages: links and forms aimed at TOVEVENT, clicked with the mouse, encoded by
// the engine, turned into the front end's BeforeNavigate with the post data in its provider.
#include "engine/engine_fixture.h"

namespace tovtest {
namespace {

class Tovevent : public EngineFixture {
protected:
    // The page is still there after the event (the navigation was cancelled).
    void ExpectStillOn(const std::wstring& marker)
    {
        EXPECT_NE(std::wstring::npos, Html().find(marker)) << "the browser stayed on the page";
        EXPECT_TRUE(Events(2).empty()) << "no page completed";
    }

    static std::string Button(const char* label)
    {
        return std::string("<button id=\"send\" name=\"btn\" value=\"ok\" style=\"position:absolute;left:10px;top:10px;"
                           "width:160px;height:40px\">") +
               label + "</button>";
    }
    // An order form: every field the engine must encode, in the page's own charset.
    static std::string OrderForm(const std::string& charset, const std::string& name, const std::string& amount)
    {
        return "<html><head><meta charset=\"" + charset + "\"><title>Order</title></head><body>"
               "<form method=\"post\" action=\"TOVEVENT:SUBMIT?form=order\">"
               "<input type=\"hidden\" name=\"name\" value=\"" + name + "\">"
               "<input type=\"hidden\" name=\"amt\" value=\"" + amount + "\">"
               "<textarea name=\"ta\" style=\"display:none\">line1\nline2</textarea>"
               "<input type=\"hidden\" name=\"plus\" value=\"+\"><input type=\"hidden\" name=\"eq\" value=\"=\">"
               "<input type=\"hidden\" name=\"omega\" value=\"&#937;\"><input type=\"hidden\" name=\"nichi\" value=\"&#26085;\">" +
               Button("Send") + "</form></body></html>";
    }
};

TEST_F(Tovevent, FormPostsReachTheProviderAsTheEngineEncodedThem)
{
    struct Row {
        const char* page;
        std::string html;
        std::string stored; // the control's unescaping of the engine's bytes
    } rows[] = {
        // windows-1252: ü is FC, € is 80; what the charset cannot hold comes as references, which the
        // control turns into the ANSI form the platform gives (its best fit "O" for Ω), a blank for 日.
        {"cp1252.htm", OrderForm("windows-1252", "M\xFCller &amp; S\xF6hne", "\x80 100%"),
         "name=M\xFCller %26 S\xF6hne&amt=\x80 100%&ta=line1\r\nline2&plus=+&eq=%3D&omega=O&nichi= &btn=ok"},
        {"utf8.htm", OrderForm("utf-8", "M\xC3\xBCller &amp; S\xC3\xB6hne", "\xE2\x82\xAC 100%"),
         "name=M\xC3\xBCller %26 S\xC3\xB6hne&amt=\xE2\x82\xAC 100%&ta=line1\r\nline2&plus=+&eq=%3D&omega=\xCE\xA9"
         "&nichi=\xE6\x97\xA5&btn=ok"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.page);
        const std::wstring name(row.page, row.page + strlen(row.page));
        PutPage(name, row.html);
        ShowPage(name);
        const FiredEvent e = ClickForEvent(30, 25);
        ASSERT_EQ(10u, e.args.size());
        EXPECT_EQ(L"TOVEVENT:SUBMIT?form=order", JoinedUrl(e));
        EXPECT_EQ(std::to_wstring(row.stored.size()), e.args[1]) << "PostDataLen";
        EXPECT_EQ(row.stored, PostedData());
        ExpectStillOn(L"TOVEVENT:SUBMIT?form=order");
    }
}

TEST_F(Tovevent, LongLinksScriptNavigationsAndFramesCarryTheirUrlAndFrame)
{
    const std::string longTail(291, 'x');
    PutPage(L"links.htm", "<html><body>"
                          "<a href=\"TOVEVENT:" + longTail + "\" style=\"position:absolute;left:10px;top:10px;"
                          "width:200px;height:30px;display:block\">long</a>"
                          "<button onclick=\"location.href='TOVEVENT:script?x=1'\" style=\"position:absolute;"
                          "left:10px;top:60px;width:200px;height:30px\">script</button></body></html>");
    ShowPage(L"links.htm");

    FiredEvent e = ClickForEvent(20, 20);
    EXPECT_EQ(L"TOVEVENT:" + std::wstring(longTail.begin(), longTail.end()), JoinedUrl(e));
    EXPECT_EQ(255u, e.args.at(2).size()) << "the first piece";
    EXPECT_EQ(300, Property(&ITOVHTMLControl::get_URLLength));
    EXPECT_EQ(L"0", e.args.at(1)) << "a link posts nothing";

    // A script's own navigation is seen with the engine's reading of the URL: the scheme in lower case.
    e = ClickForEvent(20, 70);
    EXPECT_EQ(L"tovevent:script?x=1", JoinedUrl(e));

    // Inside a named frame: the frame's name travels with the event, for a link and for a form.
    PutPage(L"left.htm", "<html><body><a href=\"TOVEVENT:FRAMELINK\" style=\"position:absolute;left:5px;top:5px;"
                         "width:100px;height:20px;display:block\">in frame</a>"
                         "<form method=\"post\" action=\"TOVEVENT:FRAMEFORM\"><input type=\"hidden\" name=\"f\" value=\"1\">"
                         "<button style=\"position:absolute;left:5px;top:50px;width:100px;height:30px\">go</button>"
                         "</form></body></html>");
    PutPage(L"right.htm", "<html><body>right</body></html>");
    PutPage(L"frames.htm", "<html><frameset cols=\"300,*\"><frame name=\"left\" src=\"left.htm\">"
                           "<frame name=\"right\" src=\"right.htm\"></frameset></html>");
    ShowPage(L"frames.htm");
    EXPECT_EQ(3u, Events(2).size()) << "the top document and each frame completed";

    e = ClickForEvent(15, 10);
    EXPECT_EQ(L"left", e.args.at(0));
    EXPECT_EQ(L"TOVEVENT:FRAMELINK", JoinedUrl(e));
    e = ClickForEvent(15, 60);
    EXPECT_EQ(L"left", e.args.at(0));
    EXPECT_EQ(L"TOVEVENT:FRAMEFORM", JoinedUrl(e));
    EXPECT_EQ("f=1", PostedData());
}

TEST_F(Tovevent, AFrontEndThatReadsThePageInsideTheEventGetsItsAnswer)
{
    // The engine's request for the link waits until the browser ends it; a page answers no script
    // meanwhile. What the front end asks inside its handler must find the request already ended.
    PutPage(L"read.htm", "<html><body><p id=\"m\">marker 4711</p><a href=\"TOVEVENT:READ\" style=\"position:absolute;"
                         "left:10px;top:40px;width:200px;height:30px;display:block\">read</a></body></html>");
    ShowPage(L"read.htm");
    std::vector<std::wstring> read;
    events.onEvent = [&](const FiredEvent& e) {
        if (e.id == 1) read.push_back(Html());
    };
    for (int i = 0; i < 2; ++i) {
        FiredEvent e = ClickForEvent(20, 50);
        EXPECT_EQ(L"TOVEVENT:READ", JoinedUrl(e));
    }
    events.onEvent = nullptr;
    ASSERT_EQ(2u, read.size());
    for (const auto& html : read) EXPECT_NE(std::wstring::npos, html.find(L"marker 4711")) << "the page answered inside the event";
    ExpectStillOn(L"marker 4711");
}

} // namespace
} // namespace tovtest
