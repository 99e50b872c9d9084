// The charset a page declares in a meta tag, found the way the control always found it.
#include <gtest/gtest.h>
#include "navigation/meta_charset.h"

using tov::meta::FindMetaCharset;

TEST(MetaCharset, ContentAndCharsetAttributes)
{
    EXPECT_EQ("iso-8859-1", FindMetaCharset(R"(<HTML><HEAD><META HTTP-EQUIV="Content-Type" CONTENT="text/html; charset=ISO-8859-1"></HEAD>)"));
    EXPECT_EQ("\"utf-8", FindMetaCharset(R"(<meta charset="utf-8">)")) << "a quoted attribute keeps its opening quote";
    EXPECT_EQ("utf-", FindMetaCharset("<meta charset=utf-8>")) << "the last character is always dropped";
    EXPECT_EQ("charse", FindMetaCharset("<meta charset>")) << "no = : the text from charset on, less one";
}

TEST(MetaCharset, LaterTagsAreFoundThroughTheShortNeedle)
{
    EXPECT_EQ("utf-8", FindMetaCharset(R"(<meta name="a" content="b"><p>x<meta content="text/html; charset=utf-8">)"));
    EXPECT_EQ("'koi8-r", FindMetaCharset(R"(<meta name="x"><mark charset='koi8-r'>)")) << "every tag beginning <m counts";
    EXPECT_EQ(std::nullopt, FindMetaCharset("<meta charset=utf-8")) << "a tag without > is skipped";
    EXPECT_EQ(std::nullopt, FindMetaCharset("<html><body>charset=x</body></html>"));
    EXPECT_EQ(std::nullopt, FindMetaCharset(std::string_view("<html>\0<meta charset=x>", 24))) << "the page ends at a zero byte";
    EXPECT_EQ(std::nullopt, FindMetaCharset(""));
}

TEST(MetaCharset, ManyUnclosedTagsDoNotTakeQuadraticTime)
{
    std::string page = "<meta";
    page.reserve(8u << 20);
    while (page.size() < (8u << 20)) page += "<m";
    // A quadratic scan of this page would run for hours and hit the test time-out; bench/ measures it.
    EXPECT_EQ(std::nullopt, FindMetaCharset(page));
    page += "<meta charset=x;>";
    EXPECT_EQ("x", FindMetaCharset(page));
}
