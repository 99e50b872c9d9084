// Trace line logic: entry/exit lines by depth, message blocks by kind and level.
#include <gtest/gtest.h>
#include <string>
#include <vector>
#include "control/trace_lines.h"

using tov::trace::TraceLines;

namespace {

struct Collector {
    std::vector<std::string> lines;
    tov::trace::LineWriter writer() { return [this](const std::string& l) { lines.push_back(l); }; }
};

const std::string kHashes(45, '#');
const std::string kDashes(45, '-');

} // namespace

TEST(TraceLines, NestedScopesWriteArrowsByDepth)
{
    TraceLines t;
    t.SetLevel(1);
    Collector c;
    size_t dA = 0, dB = 0, dC = 0;
    auto a = t.Open("GoBack", 1, true, c.writer(), dA);
    auto b = t.Open("CreateTempFile", 1, true, c.writer(), dB);
    auto cc = t.Open("CheckMetaTag", 1, true, c.writer(), dC);
    EXPECT_EQ("===", t.Depth());
    t.Close(cc, dC, c.writer());
    t.Close(b, dB, c.writer());
    t.Close(a, dA, c.writer());
    EXPECT_EQ((std::vector<std::string>{"=> GoBack", "==> CreateTempFile", "===> CheckMetaTag", "<=== CheckMetaTag",
                                        "<== CreateTempFile", "<= GoBack"}),
              c.lines);
    EXPECT_EQ("", t.Depth());
}

TEST(TraceLines, LevelZeroOrNoSinkWritesNoScopeLines)
{
    TraceLines t;
    Collector c;
    size_t d = 7;
    EXPECT_EQ("", t.Open("GoBack", 1, true, c.writer(), d));
    EXPECT_EQ(0u, d);
    t.SetLevel(3);
    EXPECT_EQ("", t.Open("GoBack", 1, false, c.writer(), d));
    EXPECT_EQ("", t.Open("Deep", 4, true, c.writer(), d)) << "scope level above the trace level";
    EXPECT_TRUE(c.lines.empty());
    EXPECT_EQ("", t.Depth());
}

TEST(TraceLines, MessageKindsByLevel)
{
    TraceLines t;
    Collector c;
    // Level 0: a failure block still appears, without the (empty) entry line; details are dropped.
    t.Write("", "GoBack: m_pWebBrowser->GoBack", 2, c.writer());
    t.Write("", "detail", 0, c.writer());
    EXPECT_EQ((std::vector<std::string>{kHashes, "GoBack: m_pWebBrowser->GoBack", kHashes}), c.lines);

    c.lines.clear();
    t.SetLevel(1);
    t.Write("=> GoBack", "GoBack: m_pWebBrowser->GoBack", 2, c.writer());
    t.Write("=> GoBack", "detail", 0, c.writer());
    t.Write("=> GoBack", "notice", 1, c.writer());
    EXPECT_EQ((std::vector<std::string>{kHashes, "=> GoBack", "GoBack: m_pWebBrowser->GoBack", kHashes, kDashes,
                                        "=> GoBack", "notice", kDashes}),
              c.lines);

    c.lines.clear();
    t.SetLevel(2);
    t.Write("=> GoBack", "detail", 0, c.writer());
    EXPECT_EQ((std::vector<std::string>{"detail"}), c.lines);
}

TEST(TraceLines, ScopesKeepTheirDecisionWhenTheLevelChanges)
{
    TraceLines t;
    Collector c;
    size_t dA = 0, dB = 0;
    auto a = t.Open("A", 1, true, c.writer(), dA); // level 0: nothing
    t.SetLevel(1);
    auto b = t.Open("B", 1, true, c.writer(), dB);
    t.SetLevel(0);
    t.Close(b, dB, c.writer());
    t.Close(a, dA, c.writer());
    EXPECT_EQ((std::vector<std::string>{"=> B", "<= B"}), c.lines);
    EXPECT_EQ("", t.Depth());
}
