// The back channel's URL rules: event prefix, eight-piece packing, restricted scheme guard.
#include <gtest/gtest.h>
#include <string>
#include "navigation/url_packing.h"

using namespace tov::url;

TEST(EventUrl, PrefixInAnyLetterCaseWithColon)
{
    using namespace std::literals;
    for (auto url : {L"TOVEVENT:Click"sv, L"tovevent:Click"sv, L"TovEvent:"sv})
        EXPECT_TRUE(IsEventUrl(url)) << std::wstring(url);
    for (auto url : {L"TOVEVENT"sv, L"TOVEVENTClick"sv, L" TOVEVENT:x"sv, L"http://x/TOVEVENT:"sv, L"TOVEV\0NT:x"sv, L""sv})
        EXPECT_FALSE(IsEventUrl(url)) << std::wstring(url);
}

TEST(UrlPacking, PiecesOf255CharactersAndNothingPast2040)
{
    struct Case { size_t length, pieces, lastPiece; };
    for (const Case& c : {Case{0, 0, 0}, Case{1, 1, 1}, Case{255, 1, 255}, Case{256, 2, 1}, Case{510, 2, 255},
                          Case{2040, 8, 255}, Case{2041, 8, 255}, Case{3000, 8, 255}}) {
        SCOPED_TRACE(c.length);
        std::wstring url;
        for (size_t i = 0; i < c.length; ++i) url += static_cast<wchar_t>(L'a' + i % 26);
        const UrlPieces pieces = PackUrl(url);
        size_t present = 0;
        std::wstring joined;
        for (size_t i = 0; i < kPieceCount; ++i) {
            if (!pieces[i]) continue;
            EXPECT_EQ(i, present) << "pieces are contiguous from the first";
            ++present;
            joined += *pieces[i];
        }
        EXPECT_EQ(c.pieces, present);
        if (present) EXPECT_EQ(c.lastPiece, pieces[present - 1]->size());
        EXPECT_EQ(url.substr(0, kPackedLength), joined);
    }
}

TEST(UrlPacking, SurrogatePairsAreCutLikeAnyOtherCharacter)
{
    std::wstring url(254, L'x');
    url += L"\xD83D\xDE00"; // one pair across the first boundary
    const UrlPieces pieces = PackUrl(url);
    ASSERT_TRUE(pieces[0] && pieces[1]);
    EXPECT_EQ(L'\xD83D', pieces[0]->back());
    EXPECT_EQ(std::wstring(L"\xDE00"), std::wstring(*pieces[1]));
}

TEST(RestrictedSchemes, OwnSchemesAndColonlessUrlsPassOthersAreBlocked)
{
    for (const wchar_t* allowed : {L"tovq5:/a/b.htm", L"TOVQ5:/a", L"mk:@TOVHTML://x/page.htm", L"tovhtmlp://1a2b/p",
                                   L"x-tovq5:abc", L"page.htm", L"relative/path/x", L"abcdefghijk:later", L""})
        EXPECT_TRUE(SchemeAllowedWhenRestricted(allowed)) << std::wstring(allowed).size();
    for (const wchar_t* blocked : {L"http://x", L"https://x/y", L"file:///c:/x", L"javascript:alert(1)",
                                   L"about:blank", L"Tovq5:/a", L"TOVHTMLP://x", L"mk:@tovhtml://x"})
        EXPECT_FALSE(SchemeAllowedWhenRestricted(blocked));
    // Only the first 11 characters count, and they end at a zero character.
    EXPECT_FALSE(SchemeAllowedWhenRestricted(L"mailto:aaaatovq5:"));
    EXPECT_TRUE(SchemeAllowedWhenRestricted(std::wstring(L"abc\0http://x", 12)));
}
