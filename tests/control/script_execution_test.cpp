// Scripts from the front end's tables run in the page: ExecuteScript through the document's window, the
// text converted with the front end's code page, the trace texts of each failing step.
#include <functional>
#include "support/page_fixture.h"
#include "frontend/table_standin.h"

using tovfe::MakeScriptTable;

class ScriptExecution : public tovtest::PageFixture {
protected:
    void SetScript(std::vector<std::string> lines, LONG width)
    {
        auto table = MakeScriptTable(std::move(lines), width);
        ASSERT_EQ(S_OK, control->putref_ScriptText(table.Object()));
    }
    std::vector<std::wstring> Scripts() const
    {
        std::vector<std::wstring> out;
        for (const auto& s : document->Page().scripts) out.push_back(s.text);
        return out;
    }
};

TEST_F(ScriptExecution, TableScriptRunsAsJavaScriptInThePageWindowAtEachCall)
{
    SetScript({"alert('He", std::string("llo');\0\0\0", 9)}, 9);
    EXPECT_TRUE(Scripts().empty()) << "setting the script runs nothing";
    EXPECT_EQ(S_OK, control->ExecuteScript());
    EXPECT_EQ((std::vector<std::wstring>{L"get_Document()"}), browser->Log().Texts());
    EXPECT_EQ((std::vector<std::wstring>{L"get_parentWindow()", L"execScript(alert('Hello');, JavaScript)"}),
              document->Log().Texts());
    EXPECT_EQ(S_OK, control->ExecuteScript());
    EXPECT_EQ((std::vector<std::wstring>{L"alert('Hello');", L"alert('Hello');"}), Scripts());
}

TEST_F(ScriptExecution, NationalCharactersArriveThroughTheFrontEndsCodePage)
{
    // The same script in UTF-8 (a character split across two lines) and in windows-1252.
    const struct {
        UINT codePage;
        std::vector<std::string> lines;
        LONG width;
    } cases[] = {
        {65001, {"alert('Gr\xC3", "\xBC\xC3\x9F" "e \xE2\x82", "\xAC');"}, 10},
        {1252, {"alert('Gr\xFC\xDF" "e \x80');"}, 40},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.codePage);
        services.gui->Child().codePage = c.codePage;
        Page().scripts.clear();
        SetScript(c.lines, c.width);
        EXPECT_EQ(S_OK, control->ExecuteScript());
        EXPECT_EQ((std::vector<std::wstring>{L"alert('Gr\u00FC\u00DFe \u20AC');"}), Scripts());
    }
}

// An object that answers neither table interface is rejected like a null object.
TEST_F(ScriptExecution, ObjectsWithoutTableKeepThePreviousScript)
{
    SetScript({"keep();"}, 7);
    Connect(2);
    ClearLines();
    auto neither = MakeScriptTable({"other();"}, 8, tovfe::TableShape::Neither);
    EXPECT_EQ(S_OK, control->putref_ScriptText(neither.Object()));
    EXPECT_EQ(std::vector<std::string>{"GetScriptFromITab: invalid LPDISPATCH"}, DetailLines());
    EXPECT_EQ(S_OK, control->ExecuteScript());
    EXPECT_EQ((std::vector<std::wstring>{L"keep();"}), Scripts());
}

// The general script runs through ExecuteScript, the completion script when the back end reports
// completion (event 102); neither replaces the other. (The submitted-data script: with the TOVEVENT tests.)
TEST_F(ScriptExecution, EachScriptRunsAtItsOwnTime)
{
    auto gui = tov::QueryAs<ITOVGUIControl>(control.Get(), IID_ITOVGUIControl);
    auto completed = MakeScriptTable({"completed();"}, 12);
    ASSERT_EQ(S_OK, control->putref_ScriptOnBRELCompleted(completed.Object()));
    SetScript({"general();"}, 10);
    gui->HandleEvent(102, nullptr);
    EXPECT_EQ(S_OK, control->ExecuteScript());
    EXPECT_EQ((std::vector<std::wstring>{L"completed();", L"general();"}), Scripts());
}

TEST_F(ScriptExecution, EmptyScriptsRunNothingAndLargeOnesRunWhole)
{
    auto negative = MakeScriptTable({"x();"}, 4);
    negative.reader->reportedCount = -5;
    EXPECT_EQ(S_OK, control->putref_ScriptText(negative.Object()));
    EXPECT_EQ(S_OK, control->ExecuteScript());
    EXPECT_TRUE(browser->Log().Calls().empty()) << "an empty script does not even look for the page";
    SetScript(std::vector<std::string>(10000, std::string(100, 'a')), 100);
    EXPECT_EQ(S_OK, control->ExecuteScript());
    EXPECT_EQ(std::vector<std::wstring>{std::wstring(1000000, L'a')}, Scripts());
}

TEST_F(ScriptExecution, EachFailingStepIsTracedAndEndsTheRun)
{
    SetScript({"run();"}, 6);
    const struct {
        const char* name;
        std::function<void()> arrange;
        const char* trace;
    } cases[] = {
        {"get_Document fails", [&] { browser->FailCall(L"get_Document", E_FAIL); }, "get_Document() failed"},
        {"no window", [&] { Page().nullWindow = true; }, "CComPtr<IHTMLWindow2> failed"},
        {"execScript fails", [&] { document->Plan().Fail(L"execScript", DISP_E_EXCEPTION); }, "pWindow->execScript() failed"},
    };
    Connect(2);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        c.arrange();
        ClearLines();
        EXPECT_EQ(S_OK, control->ExecuteScript());
        EXPECT_EQ(std::vector<std::string>{c.trace}, DetailLines());
        EXPECT_TRUE(Page().scripts.empty());
        browser->ClearFailures();
        document->Plan().Clear();
        Page().nullWindow = false;
    }
    document->Plan().Throw(L"execScript");
    EXPECT_EQ(S_OK, control->ExecuteScript()) << "an exception in the page stays in the control";
}
