// Reading a script from the front end's table: how lines are joined, which objects lead to a line
// reader, and which script of the three a kind replaces.
#include <gtest/gtest.h>
#include <climits>
#include <functional>
#include "events/script_table.h"
#include "frontend/table_standin.h"

using tov::scripts::ReadScriptTable;
using tov::scripts::ScriptSlots;
using tov::scripts::TableRead;
using tovfe::MakeScriptTable;
using tovfe::TableShape;

namespace {

struct Scripts {
    std::string general = "general();";
    std::string onCompleted = "completed();";
    std::string onDataSubmitted = "submitted();";
    ScriptSlots Slots() { return {&general, &onCompleted, &onDataSubmitted}; }
};

ULONG Refs(IUnknown* p)
{
    p->AddRef();
    return p->Release();
}

// The general script read from a table of `lines` with `width`.
std::string Read(std::vector<std::string> lines, LONG width, tovfe::ScriptTable* keep = nullptr)
{
    auto table = MakeScriptTable(std::move(lines), width);
    Scripts s;
    EXPECT_EQ(TableRead::Read, ReadScriptTable(table.Object(), 1, s.Slots()));
    if (keep) *keep = table;
    return s.general;
}

} // namespace

TEST(ScriptTable, LinesAreJoinedWithNothingBetweenThem)
{
    tovfe::ScriptTable table;
    EXPECT_EQ("alert('Hello');", Read({"alert('He", std::string("llo');\0\0\0", 9)}, 9, &table));
    EXPECT_EQ((std::vector<std::wstring>{L"GetDataObject()", L"GetLineReader()", L"GetLineWidth()", L"GetLineCount()",
                                         L"CopyLine(1, 9)", L"CopyLine(2, 9)"}),
              table.rec->log.Texts());
    EXPECT_EQ("var a = 1;  var b;", Read({"var a = 1;  ", "var b;"}, 12)) << "blanks up to the width are kept";
    EXPECT_EQ("f(); g();", Read({std::string("f();\0junk", 9), " g();"}, 9)) << "a line ends at its first zero byte";
    EXPECT_EQ("abcdef", Read({"abcXYZ", "defXYZ"}, 3)) << "the reader copies the width, no more";
    EXPECT_EQ("", Read({"abc", "def"}, 0));
    EXPECT_EQ("", Read({}, 9));
}

TEST(ScriptTable, FailingLinesAreSkipped)
{
    auto table = MakeScriptTable({"one();", "two();", "three();"}, 8);
    table.rec->plan.Fail(L"CopyLine(2, 8)", E_FAIL);
    Scripts s;
    EXPECT_EQ(TableRead::Read, ReadScriptTable(table.Object(), 1, s.Slots()));
    EXPECT_EQ("one();three();", s.general);

    table.reader->reportedCount = 5; // lines 4 and 5 do not exist: the reader refuses them
    EXPECT_EQ(TableRead::Read, ReadScriptTable(table.Object(), 1, s.Slots()));
    EXPECT_EQ("one();three();", s.general);
}

TEST(ScriptTable, NegativeOrFailingWidthAndCountReadNoLines)
{
    for (auto setup : std::vector<std::function<void(tovfe::ScriptTable&)>>{
             [](tovfe::ScriptTable& t) { t.reader->reportedWidth = -1; },
             [](tovfe::ScriptTable& t) { t.reader->reportedWidth = LONG_MIN; },
             [](tovfe::ScriptTable& t) { t.reader->reportedCount = -3; },
             [](tovfe::ScriptTable& t) { t.rec->plan.Fail(L"GetLineWidth", E_FAIL); },
             [](tovfe::ScriptTable& t) { t.rec->plan.Fail(L"GetLineCount", E_FAIL); },
         }) {
        auto table = MakeScriptTable({"x();"}, 4);
        setup(table);
        Scripts s;
        EXPECT_EQ(TableRead::Read, ReadScriptTable(table.Object(), 1, s.Slots()));
        EXPECT_EQ("", s.general);
        EXPECT_EQ(0u, table.rec->log.Count(L"CopyLine"));
    }
}

TEST(ScriptTable, EachKindReplacesItsOwnScript)
{
    for (int kind : {1, 2, 3}) {
        auto table = MakeScriptTable({"new();"}, 6);
        Scripts s;
        EXPECT_EQ(TableRead::Read, ReadScriptTable(table.Object(), kind, s.Slots()));
        EXPECT_EQ(kind == 1 ? "new();" : "general();", s.general);
        EXPECT_EQ(kind == 2 ? "new();" : "completed();", s.onCompleted);
        EXPECT_EQ(kind == 3 ? "new();" : "submitted();", s.onDataSubmitted);
    }
}

TEST(ScriptTable, AnotherKindChangesNothingAndReleasesTheReader)
{
    for (int kind : {0, 4, -1}) {
        auto table = MakeScriptTable({"new();"}, 6);
        const ULONG before = Refs(static_cast<ITOVTableLineReader*>(table.reader.Get()));
        Scripts s;
        EXPECT_EQ(TableRead::UnknownKind, ReadScriptTable(table.Object(), kind, s.Slots()));
        EXPECT_EQ("general();", s.general);
        EXPECT_EQ("completed();", s.onCompleted);
        EXPECT_EQ("submitted();", s.onDataSubmitted);
        EXPECT_EQ(0u, table.rec->log.Count(L"GetLineWidth"));
        EXPECT_EQ(before, Refs(static_cast<ITOVTableLineReader*>(table.reader.Get())));
    }
}

TEST(ScriptTable, TheDataObjectAloneIsReadToo)
{
    auto table = MakeScriptTable({"f();"}, 4, TableShape::DataObject);
    Scripts s;
    EXPECT_EQ(TableRead::Read, ReadScriptTable(table.Object(), 1, s.Slots()));
    EXPECT_EQ("f();", s.general);
    EXPECT_EQ(0u, table.rec->log.Count(L"GetDataObject"));
}

TEST(ScriptTable, ObjectsThatLeadToNoReaderChangeNothing)
{
    Scripts s;
    EXPECT_EQ(TableRead::InvalidObject, ReadScriptTable(nullptr, 1, s.Slots()));

    struct Case {
        const char* name;
        TableShape shape;
        std::function<void(tovfe::ScriptTable&)> setup;
        TableRead expected;
    };
    const Case cases[] = {
        {"neither table interface", TableShape::Neither, [](tovfe::ScriptTable&) {}, TableRead::InvalidObject},
        {"table without data object", TableShape::Table, [](tovfe::ScriptTable& t) { t.table->withoutData = true; },
         TableRead::InvalidObject},
        {"failing data object", TableShape::Table, [](tovfe::ScriptTable& t) { t.rec->plan.Fail(L"GetDataObject", E_FAIL); },
         TableRead::InvalidObject},
        {"data without reader", TableShape::Table, [](tovfe::ScriptTable& t) { t.data->withoutReader = true; },
         TableRead::NoReader},
        {"failing reader", TableShape::DataObject, [](tovfe::ScriptTable& t) { t.rec->plan.Fail(L"GetLineReader", E_FAIL); },
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

TEST(ScriptTable, NoReferenceIsKept)
{
    auto table = MakeScriptTable({"a", "b"}, 1);
    const ULONG t = Refs(static_cast<ITOVTable*>(table.table.Get()));
    const ULONG d = Refs(static_cast<ITOVTableData*>(table.data.Get()));
    const ULONG r = Refs(static_cast<ITOVTableLineReader*>(table.reader.Get()));
    Scripts s;
    EXPECT_EQ(TableRead::Read, ReadScriptTable(table.Object(), 2, s.Slots()));
    EXPECT_EQ("ab", s.onCompleted);
    EXPECT_EQ(t, Refs(static_cast<ITOVTable*>(table.table.Get())));
    EXPECT_EQ(d, Refs(static_cast<ITOVTableData*>(table.data.Get())));
    EXPECT_EQ(r, Refs(static_cast<ITOVTableLineReader*>(table.reader.Get())));
}
