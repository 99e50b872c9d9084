// Reading a script from the front end's table: how lines are joined, which objects lead to a line reader,
// and which script of the three a kind replaces.
#include <gtest/gtest.h>
#include <climits>
#include <functional>
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
std::string Read(std::vector<std::string> lines, LONG width) { return Read(MakeScriptTable(std::move(lines), width)); }

} // namespace

TEST(ScriptTable, LinesAreJoinedWithNothingBetweenThem)
{
    const auto table = MakeScriptTable({"alert('He", std::string("llo');\0\0\0", 9)}, 9);
    EXPECT_EQ("alert('Hello');", Read(table));
    EXPECT_EQ((std::vector<std::wstring>{L"GetDataObject()", L"GetLineReader()", L"GetLineWidth()", L"GetLineCount()",
                                         L"CopyLine(1, 9)", L"CopyLine(2, 9)"}),
              table.rec->log.Texts());
    EXPECT_EQ("var a = 1;  var b;", Read({"var a = 1;  ", "var b;"}, 12)) << "blanks up to the width are kept";
    EXPECT_EQ("f(); g();", Read({std::string("f();\0junk", 9), " g();"}, 9)) << "a line ends at its first zero byte";
    EXPECT_EQ("abcdef", Read({"abcXYZ", "defXYZ"}, 3)) << "the reader copies the width, no more";
    EXPECT_EQ("", Read({"abc", "def"}, 0));
    EXPECT_EQ("f();", Read(MakeScriptTable({"f();"}, 4, TableShape::DataObject))) << "the data interface alone is read too";
}

TEST(ScriptTable, FailingLinesAreSkippedAndBadSizesReadNothing)
{
    auto table = MakeScriptTable({"one();", "two();", "three();"}, 8);
    table.rec->plan.Fail(L"CopyLine(2, 8)", E_FAIL);
    table.reader->reportedCount = 5; // lines 4 and 5 do not exist: the reader refuses them
    EXPECT_EQ("one();three();", Read(table));
    for (auto setup : std::vector<std::function<void(ScriptTable&)>>{
             [](ScriptTable& t) { t.reader->reportedWidth = -1; },
             [](ScriptTable& t) { t.reader->reportedWidth = LONG_MIN; },
             [](ScriptTable& t) { t.reader->reportedCount = -3; },
             [](ScriptTable& t) { t.rec->plan.Fail(L"GetLineWidth", E_FAIL); },
             [](ScriptTable& t) { t.rec->plan.Fail(L"GetLineCount", E_FAIL); },
         }) {
        auto bad = MakeScriptTable({"x();"}, 4);
        setup(bad);
        EXPECT_EQ("", Read(bad));
        EXPECT_EQ(0u, bad.rec->log.Count(L"CopyLine"));
    }
}

TEST(ScriptTable, EachKindReplacesItsOwnScriptAnotherKindNothingAndNoReferenceIsKept)
{
    for (int kind : {1, 2, 3, 0, 4, -1}) {
        SCOPED_TRACE(kind);
        const auto table = MakeScriptTable({"new();"}, 6);
        auto refs = [&] {
            return std::tuple{Refs(static_cast<ITOVTable*>(table.table.Get())), Refs(static_cast<ITOVTableData*>(table.data.Get())),
                              Refs(static_cast<ITOVTableLineReader*>(table.reader.Get()))};
        };
        const auto before = refs();
        const bool known = kind >= 1 && kind <= 3;
        Scripts s;
        EXPECT_EQ(known ? TableRead::Read : TableRead::UnknownKind, ReadScriptTable(table.Object(), kind, s.Slots()));
        EXPECT_EQ(kind == 1 ? "new();" : "general();", s.general);
        EXPECT_EQ(kind == 2 ? "new();" : "completed();", s.onCompleted);
        EXPECT_EQ(kind == 3 ? "new();" : "submitted();", s.onDataSubmitted);
        EXPECT_EQ(known ? 1u : 0u, table.rec->log.Count(L"GetLineWidth"));
        EXPECT_EQ(before, refs());
    }
}

TEST(ScriptTable, ObjectsThatLeadToNoReaderChangeNothing)
{
    Scripts s;
    EXPECT_EQ(TableRead::InvalidObject, ReadScriptTable(nullptr, 1, s.Slots()));
    struct Case {
        const char* name;
        TableShape shape;
        std::function<void(ScriptTable&)> setup;
        TableRead expected;
    };
    const Case cases[] = {
        {"neither table interface", TableShape::Neither, [](ScriptTable&) {}, TableRead::InvalidObject},
        {"table without data object", TableShape::Table, [](ScriptTable& t) { t.table->withoutData = true; }, TableRead::InvalidObject},
        {"failing data object", TableShape::Table, [](ScriptTable& t) { t.rec->plan.Fail(L"GetDataObject", E_FAIL); },
         TableRead::InvalidObject},
        {"data without reader", TableShape::Table, [](ScriptTable& t) { t.data->withoutReader = true; }, TableRead::NoReader},
        {"failing reader", TableShape::DataObject, [](ScriptTable& t) { t.rec->plan.Fail(L"GetLineReader", E_FAIL); },
         TableRead::NoReader},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        auto table = MakeScriptTable({"new();"}, 6, c.shape);
        c.setup(table);
        EXPECT_EQ(c.expected, ReadScriptTable(table.Object(), 1, s.Slots()));
        EXPECT_EQ("general();", s.general);
        EXPECT_EQ(0u, table.rec->log.Count(L"CopyLine"));
    }
}
