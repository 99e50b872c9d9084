// The engine's URLs for the browser's: served URLs both ways, URLs the engine loads itself, event URLs.
#include <gtest/gtest.h>
#include "engine/engine_urls.h"

using namespace tovengine::urls;

TEST(EngineUrls, ServedUrlsGoToTheEngineAndComeBack)
{
    const struct { const char* url; const char* engine; const char* back; } cases[] = {
        {"mk:@TOVHTML://1a2b/page.htm", "http://tovurl.invalid/mk%3A%40TOVHTML%3A//1a2b/page.htm", nullptr},
        {"tovhtmlp://1a2b/dir/x y%20z.htm", "http://tovurl.invalid/tovhtmlp%3A//1a2b/dir/x%20y%2520z.htm", nullptr},
        {"tovq5:abc", "http://tovurl.invalid/tovq5%3Aabc", nullptr},
        {"tovq5:/a/M\xC3\xBCller \xE2\x82\xAC.gif?x=\"1\"", "http://tovurl.invalid/tovq5%3A/a/M%C3%BCller%20%E2%82%AC.gif?x=%221%22",
         nullptr},
        {"about:tovhtml", "http://tovurl.invalid/about%3Atovhtml", nullptr},
        {"about:blankx", "http://tovurl.invalid/about%3Ablankx", nullptr},
        {"C:\\Users\\x\\Temp\\a b.gif", "http://tovurl.invalid/file%3A///C:/Users/x/Temp/a%20b.gif",
         "file:///C:/Users/x/Temp/a b.gif"},
        {"\\\\server\\share\\f.htm", "http://tovurl.invalid/file%3A//server/share/f.htm", "file://server/share/f.htm"},
        {"/top", "http://tovurl.invalid/%2F/top", nullptr},
        {"%2F/top", "http://tovurl.invalid/%252F/top", nullptr},
        {"", "http://tovurl.invalid/%2F", nullptr},
    };
    for (const auto& c : cases) {
        const std::string engine = ToEngine(c.url);
        EXPECT_EQ(c.engine, engine) << c.url;
        EXPECT_FALSE(EngineLoadsItself(c.url)) << c.url;
        EXPECT_TRUE(IsServed(engine) && !IsEvent(engine)) << c.url;
        EXPECT_EQ(c.back ? c.back : c.url, FromEngine(engine)) << c.url;
    }
    EXPECT_EQ("tovhtmlp://1a2b/x.htm#Top%20part", FromEngine("http://tovurl.invalid/tovhtmlp%3A//1a2b/x.htm#Top%20part"))
        << "the fragment is the engine's, as it stands";
}

TEST(EngineUrls, RelativeLinksResolveInsideTheServedUrl)
{
    std::string engine = ToEngine("mk:@TOVHTML://1a2b/page.htm");
    engine.replace(engine.rfind('/') + 1, std::string::npos, "form.htm");
    EXPECT_EQ("mk:@TOVHTML://1a2b/form.htm", FromEngine(engine));
    engine = ToEngine("tovhtmlp://1a2b/dir/x.htm");
    engine.replace(engine.rfind('/') + 1, std::string::npos, "%C3%A4%20b.gif");
    EXPECT_EQ("tovhtmlp://1a2b/dir/\xC3\xA4 b.gif", FromEngine(engine));
}

TEST(EngineUrls, UrlsTheEngineLoadsPassUnchanged)
{
    for (const char* url : {"http://example.com/a%20b", "HTTPS://example.com/", "data:text/html,<b>x</b>", "about:blank",
                            "about:blank#top", "blob:http://example.com/1"}) {
        EXPECT_TRUE(EngineLoadsItself(url)) << url;
        EXPECT_EQ(url, ToEngine(url));
        EXPECT_EQ(url, FromEngine(url));
    }
}

TEST(EngineUrls, EventUrlsGiveBackTheOriginal)
{
    const struct { const char* engine; const char* url; } cases[] = {
        {"http://tovevent.invalid/tovevent%3AGo1%3Fa%3D1%26b", "tovevent:Go1?a=1&b"},
        {"http://tovevent.invalid/tovevent%3AGo1#frag", "tovevent:Go1"},
        // A form sent with GET: its fields replace the action's own query, and its fragment.
        {"http://tovevent.invalid/tovevent%3AGet1%3Fignored%3D1%23frag?name=M%FCller+%26", "tovevent:Get1?name=M%FCller+%26"},
        {"http://tovevent.invalid/tovevent%3AGet1%23frag?name=x#frag2", "tovevent:Get1?name=x"},
        {"http://tovevent.invalid/tovevent%3AGet1?", "tovevent:Get1?"},
    };
    for (const auto& c : cases) {
        EXPECT_TRUE(IsEvent(c.engine) && !IsServed(c.engine)) << c.engine;
        EXPECT_EQ(c.url, FromEngine(c.engine)) << c.engine;
    }
}

TEST(EngineUrls, PercentDecodeKeepsInvalidEscapes)
{
    const struct { const char* text; std::string decoded; } cases[] = {
        {"a%20b%2fc", "a b/c"}, {"%e2%82%AC", "\xE2\x82\xAC"}, {"%00", std::string(1, '\0')}, {"%4", "%4"},
        {"100%", "100%"}, {"%zz%41", "%zzA"}, {"%%41", "%A"}, {"%4%41", "%4A"}, {"%2541", "%41"},
    };
    for (const auto& c : cases) EXPECT_EQ(c.decoded, PercentDecode(c.text)) << c.text;
}
