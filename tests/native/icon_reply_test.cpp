// The icon reply text and the recognition of an icon's children.
#include <gtest/gtest.h>
#include "hosting/icon_reply.h"

using namespace tov::icons;

TEST(IconReply, ChildrenAreRecognisedByBaseNameInAnyLetterCase)
{
    for (const wchar_t* name : {L"Icon_Name", L"ICON_NAME", L"icon_name", L"iCoN_nAmE"})
        EXPECT_EQ(IconField::Name, ClassifyIconChild(name));
    for (const wchar_t* size : {L"Font_Size", L"FONT_SIZE", L"font_size"})
        EXPECT_EQ(IconField::Size, ClassifyIconChild(size));
    for (const wchar_t* other : {L"", L"Icon", L"IconName", L"Icon_Name ", L" Font_Size", L"Font_Sizes", L"Icon-Name",
                                 L"x:Icon_Name"})
        EXPECT_EQ(IconField::Other, ClassifyIconChild(other)) << "not an icon field";
    // Only ASCII letters fold: the long s does not stand for "s".
    EXPECT_EQ(IconField::Other, ClassifyIconChild(L"Font_\u017fize"));
    EXPECT_EQ(IconField::Other, ClassifyIconChild(std::wstring_view(L"Icon_Name\0", 10)));
}

TEST(IconReply, ConcatenatesWithoutSeparatorsOrEscaping)
{
    IconReply reply;
    EXPECT_TRUE(reply.Empty());
    reply.Open();
    reply.AddIcon(L"S1", L"12", L"<Desc glyph=\"&#xE001;\"/>");
    reply.AddIcon(L"a<b&c", L"", L"");
    reply.Close();
    EXPECT_EQ(L"<Icons>"
              L"<Icon><Icon_Name>S1</Icon_Name><Font_Size>12</Font_Size><Desc glyph=\"&#xE001;\"/></Icon>"
              L"<Icon><Icon_Name>a<b&c</Icon_Name><Font_Size></Font_Size></Icon>"
              L"</Icons>",
              reply.Text());
}

TEST(IconReply, OpenAndCloseAloneAnAnswerCutShortAndValuesWithNulsAndLength)
{
    IconReply none, cut, raw;
    none.Open();
    none.Close();
    EXPECT_EQ(L"<Icons></Icons>", none.Text());
    cut.Open();
    cut.AddIcon(L"", L"", L"");
    EXPECT_EQ(L"<Icons><Icon><Icon_Name></Icon_Name><Font_Size></Font_Size></Icon>", cut.Text());
    EXPECT_FALSE(cut.Empty());
    const std::wstring name(L"a\0b", 3), big(1 << 20, L'x');
    raw.AddIcon(name, big, L"");
    EXPECT_EQ(L"<Icon><Icon_Name>" + name + L"</Icon_Name><Font_Size>" + big + L"</Font_Size></Icon>", raw.Text());
}
