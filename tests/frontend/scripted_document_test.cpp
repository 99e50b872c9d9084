// The scripted document as a page author's script sees it: scripts of the form name = "text" set page
// variables, other scripts are only recorded; a table's line reader pads to the width with zero bytes.
#include <gtest/gtest.h>
#include <cstring>
#include "framework/bstr.h"
#include "frontend/scripted_document.h"
#include "frontend/table_standin.h"

using tov::Bstr;
using tov::ComPtr;

TEST(ScriptedDocument, ExecScriptRecordsScriptsAndSetsPageVariables)
{
    auto document = tovfe::ScriptedDocument::Create();
    ComPtr<IHTMLWindow2> window;
    ASSERT_EQ(S_OK, document->get_parentWindow(window.Put()));
    Bstr language(L"JavaScript");
    for (const wchar_t* script : {L"tovHtmlControl  = \"TRUE\"", L"alert('x');", L" a_1 = 'two' ; ", L"a b = \"no\"",
                                  L"x = \"unclosed"}) {
        Bstr text(script);
        tov::Variant result;
        EXPECT_EQ(S_OK, window->execScript(text.Get(), language.Get(), &result));
    }
    EXPECT_EQ(5u, document->Page().scripts.size());
    EXPECT_EQ((std::map<std::wstring, std::wstring>{{L"tovHtmlControl", L"TRUE"}, {L"a_1", L"two"}}),
              document->Page().variables);
}

TEST(TableStandIn, CopiedLinesArePaddedWithZeroBytesToTheWidth)
{
    auto table = tovfe::MakeScriptTable({"ab", "abcdef"}, 4);
    char buffer[6];
    std::memset(buffer, 'x', sizeof buffer);
    EXPECT_EQ(S_OK, table.reader->CopyLine(1, 4, buffer));
    EXPECT_EQ(0, std::memcmp(buffer, "ab\0\0xx", 6));
    EXPECT_EQ(S_OK, table.reader->CopyLine(2, 4, buffer));
    EXPECT_EQ(0, std::memcmp(buffer, "abcdxx", 6));
    EXPECT_EQ(E_INVALIDARG, table.reader->CopyLine(3, 4, buffer));
    EXPECT_EQ(E_POINTER, table.reader->CopyLine(1, 4, nullptr));
}
