// Reading a script from the front end's table: how lines are joined, which objects lead to a line reader,
// and which script of the three a kind replaces.
#include <gtest/gtest.h>
#include <tuple>
#include "events/script_table.h"
#include "frontend/table_standin.h"

using tov::scripts::ReadScriptTable;
using tov::scripts::TableRead;
using tovfe::MakeScriptTable;
using tovfe::ScriptTable;
using tovfe::TableShape;

namespace {

struct Scripts {
    std::string general = "general();", onCompleted = "completed();", onDataSubmitted = "submitted();";
    tov::scripts::ScriptSlots Slots() { return {&general, &onCompleted, &onDataSubmitted}; }
};

ULONG Refs(IUnknown* p)
{
    p->AddRef();
    return p->Release();
}

// The general script read from `table`.
std::string Read(const ScriptTable& table)
{
    Scripts s;
    EXPECT_EQ(TableRead::Read, ReadScriptTable(table.Object(), 1, s.Slots()));
    return s.general;
}

} // namespace

TEST(ScriptTable, LinesAreJoinedWithNothingBetweenThemFailingOnesSkipped)
{
    const auto table = MakeScriptTable({"alert('He", std::string("llo');\0\0\0", 9)}, 9);
    EXPECT_EQ("alert('Hello');", Read(table));
    EXPECT_EQ((std::vector<std::wstring>{L"GetDataObject()", L"GetLineReader()", L"GetLineWidth()", L"GetLineCount()",
                                         L"CopyLine(1, 9)", L"CopyLine(2, 9)"}),
              table.rec->log.Texts());
    EXPECT_EQ("var a = 1;  f(); g();", Read(MakeScriptTable({"var a = 1;  ", std::string("f();\0junk", 9), " g();"}, 12)))
        << "blanks up to the width kept, a line ends at its first zero byte";
    EXPECT_EQ("f();", Read(MakeScriptTable({"f();"}, 4, TableShape::DataObject))) << "the data interface alone is read too";
    auto failing = MakeScriptTable({"one();", "two();", "three();"}, 8);
    failing.rec->plan.Fail(L"CopyLine(2, 8)", E_FAIL);
    EXPECT_EQ("one();three();", Read(failing));
    auto negative = MakeScriptTable({"x();"}, 4);
    negative.reader->reportedWidth = -1;
    EXPECT_EQ("", Read(negative));
    EXPECT_EQ(0u, negative.rec->log.Count(L"CopyLine"));
}

TEST(ScriptTable, EachKindReplacesItsOwnScriptAnotherKindNothingAndNoReferenceIsKept)
{
    for (int kind : {1, 2, 3, 4}) {
        SCOPED_TRACE(kind);
        const auto table = MakeScriptTable({"new();"}, 6);
        auto refs = [&] {
            return std::tuple{Refs(static_cast<ITOVTable*>(table.table.Get())), Refs(static_cast<ITOVTableData*>(table.data.Get())),
                              Refs(static_cast<ITOVTableLineReader*>(table.reader.Get()))};
        };
        const auto before = refs();
        Scripts s;
        EXPECT_EQ(kind <= 3 ? TableRead::Read : TableRead::UnknownKind, ReadScriptTable(table.Object(), kind, s.Slots()));
        EXPECT_EQ(kind == 1 ? "new();" : "general();", s.general);
        EXPECT_EQ(kind == 2 ? "new();" : "completed();", s.onCompleted);
        EXPECT_EQ(kind == 3 ? "new();" : "submitted();", s.onDataSubmitted);
        EXPECT_EQ(before, refs());
    }
}

TEST(ScriptTable, ObjectsThatLeadToNoReaderChangeNothing)
{
    Scripts s;
    EXPECT_EQ(TableRead::InvalidObject, ReadScriptTable(nullptr, 1, s.Slots()));
    EXPECT_EQ(TableRead::InvalidObject, ReadScriptTable(MakeScriptTable({"new();"}, 6, TableShape::Neither).Object(), 1, s.Slots()));
    auto noReader = MakeScriptTable({"new();"}, 6, TableShape::Table);
    noReader.data->withoutReader = true;
    EXPECT_EQ(TableRead::NoReader, ReadScriptTable(noReader.Object(), 1, s.Slots()));
    EXPECT_EQ("general();", s.general);
}
