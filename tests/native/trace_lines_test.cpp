// Trace line logic: entry/exit lines by depth, message blocks by kind and level.
#include <gtest/gtest.h>
#include <string>
#include <vector>
#include "control/trace_lines.h"

namespace {

using Lines = std::vector<std::string>;
const std::string kHashes(45, '#');
const std::string kDashes(45, '-');

class TraceLines : public testing::Test {
protected:
    tov::trace::TraceLines t;
    Lines lines;
    const tov::trace::LineWriter write = [this](const std::string& l) { lines.push_back(l); };
};

} // namespace

TEST_F(TraceLines, NestedScopesWriteArrowsByDepthAndKeepTheirDecisionWhenTheLevelChanges)
{
    size_t d[4] = {};
    const auto silent = t.Open("Silent", 1, true, write, d[0]); // level 0: nothing, and no depth
    t.SetLevel(1);
    const auto a = t.Open("GoBack", 1, true, write, d[1]);
    const auto b = t.Open("CreateTempFile", 1, true, write, d[2]);
    const auto c = t.Open("CheckMetaTag", 1, true, write, d[3]);
    EXPECT_EQ("===", t.Depth());
    t.SetLevel(0);
    t.Close(c, d[3], write);
    t.Close(b, d[2], write);
    t.Close(a, d[1], write);
    t.Close(silent, d[0], write);
    EXPECT_EQ((Lines{"=> GoBack", "==> CreateTempFile", "===> CheckMetaTag", "<=== CheckMetaTag", "<== CreateTempFile",
                     "<= GoBack"}),
              lines);
    EXPECT_EQ("", t.Depth());
}

TEST_F(TraceLines, LevelZeroOrNoSinkWritesNoScopeLines)
{
    size_t d = 7;
    EXPECT_EQ("", t.Open("GoBack", 1, true, write, d));
    EXPECT_EQ(0u, d);
    t.SetLevel(3);
    EXPECT_EQ("", t.Open("GoBack", 1, false, write, d));
    EXPECT_EQ("", t.Open("Deep", 4, true, write, d)) << "scope level above the trace level";
    EXPECT_TRUE(lines.empty());
    EXPECT_EQ("", t.Depth());
}

TEST_F(TraceLines, MessageKindsByLevel)
{
    const std::string failure = "GoBack: m_pWebBrowser->GoBack";
    const struct { unsigned level; const char* scope; std::string text; int kind; Lines written; } cases[] = {
        // Level 0: a failure block still appears, without the (empty) entry line; details are dropped.
        {0, "", failure, 2, {kHashes, failure, kHashes}}, {0, "", "detail", 0, {}},
        {1, "=> GoBack", failure, 2, {kHashes, "=> GoBack", failure, kHashes}}, {1, "=> GoBack", "detail", 0, {}},
        {1, "=> GoBack", "notice", 1, {kDashes, "=> GoBack", "notice", kDashes}}, {2, "=> GoBack", "detail", 0, {"detail"}},
    };
    for (const auto& c : cases) {
        lines.clear();
        t.SetLevel(c.level);
        t.Write(c.scope, c.text, c.kind, write);
        EXPECT_EQ(c.written, lines) << "level " << c.level << ", " << c.text;
    }
}

TEST_F(TraceLines, CaughtFailuresOnlyFromTheirOwnLevel)
{
    for (unsigned level : {0u, 1u, 2u}) {
        t.SetLevel(level);
        t.CaughtFailure(0x8007000E, "CTOVHTMLControl::ShowURL", write);
    }
    EXPECT_TRUE(lines.empty()) << "levels 0 to 2 keep their lines as they are";
    t.SetLevel(tov::trace::kCaughtFailureLevel);
    t.CaughtFailure(0x8007000E, "CTOVHTMLControl::ShowURL", write);
    t.CaughtFailure(0x1, "WM_SIZE", write);
    EXPECT_EQ((Lines{kHashes, "Caught failure 0x8007000E in CTOVHTMLControl::ShowURL", kHashes,
                     kHashes, "Caught failure 0x00000001 in WM_SIZE", kHashes}),
              lines);
}
