// Scripts from the front end's tables run in the page: ExecuteScript through the document's window, the
// text converted with the front end's code page, the trace texts of each failing step.
#include <functional>
#include "support/page_fixture.h"
#include "frontend/table_standin.h"

using tov::ComPtr;
using tovfe::MakeScriptTable;
using tovfe::TableShape;

namespace {

const std::vector<std::wstring> kNoScripts;

std::vector<std::wstring> ScriptTexts(const tovfe::ScriptedPage& page)
{
    std::vector<std::wstring> out;
    for (const auto& s : page.scripts) out.push_back(s.text);
    return out;
}

} // namespace

class ScriptExecution : public tovtest::PageFixture {
protected:
    void SetScript(std::vector<std::string> lines, LONG width)
    {
        auto table = MakeScriptTable(std::move(lines), width);
        ASSERT_EQ(S_OK, control->putref_ScriptText(table.Object()));
    }
};

TEST_F(ScriptExecution, TableScriptRunsAsJavaScriptInThePageWindow)
{
    Connect(1);
    auto table = MakeScriptTable({"alert('He", std::string("llo');\0\0\0", 9)}, 9);
    EXPECT_EQ(S_OK, control->putref_ScriptText(table.Object()));
    EXPECT_EQ((std::vector<std::string>{"=> GetScriptFromITab", "<= GetScriptFromITab"}), Lines());
    EXPECT_TRUE(Page().scripts.empty()) << "setting the script runs nothing";

    ClearLines();
    EXPECT_EQ(S_OK, control->ExecuteScript());
    ASSERT_EQ(1u, Page().scripts.size());
    EXPECT_EQ(L"alert('Hello');", Page().scripts[0].text);
    EXPECT_EQ(L"JavaScript", Page().scripts[0].language);
    EXPECT_EQ((std::vector<std::wstring>{L"get_Document()"}), browser->Log().Texts());
    EXPECT_EQ((std::vector<std::wstring>{L"get_parentWindow()", L"execScript(alert('Hello');, JavaScript)"}),
              document->Log().Texts());
    EXPECT_EQ((std::vector<std::string>{"=> ExecuteScript", "==> InternalExecuteScript", "<== InternalExecuteScript",
                                        "<= ExecuteScript"}),
              Lines());

    EXPECT_EQ(S_OK, control->ExecuteScript());
    EXPECT_EQ((std::vector<std::wstring>{L"alert('Hello');", L"alert('Hello');"}), ScriptTexts(Page()))
        << "each call runs the script again";
}

TEST_F(ScriptExecution, NationalCharactersArriveThroughTheFrontEndsCodePage)
{
    struct Case {
        UINT codePage;
        std::vector<std::string> lines;
        LONG width;
    };
    // The same script in UTF-8 (a character split across two lines) and in windows-1252.
    const Case cases[] = {
        {65001, {"alert('Gr\xC3", "\xBC\xC3\x9F" "e \xE2\x82", "\xAC');"}, 10},
        {1252, {"alert('Gr\xFC\xDF" "e \x80');"}, 40},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.codePage);
        services.gui->Child().codePage = c.codePage;
        Page().scripts.clear();
        SetScript(c.lines, c.width);
        EXPECT_EQ(S_OK, control->ExecuteScript());
        EXPECT_EQ((std::vector<std::wstring>{L"alert('Gr\u00FC\u00DFe \u20AC');"}), ScriptTexts(Page()));
    }
    EXPECT_GE(services.gui->Log().Count(L"GetCodePage"), 2u) << "the code page is asked at each run";
}

TEST_F(ScriptExecution, ObjectsWithoutTableKeepThePreviousScript)
{
    SetScript({"keep();"}, 7);
    Connect(2);
    auto neither = MakeScriptTable({"other();"}, 8, TableShape::Neither);
    auto noData = MakeScriptTable({"other();"}, 8);
    noData.table->withoutData = true;
    for (IDispatch* object : {static_cast<IDispatch*>(nullptr), neither.Object(), noData.Object()}) {
        ClearLines();
        EXPECT_EQ(S_OK, control->putref_ScriptText(object));
        EXPECT_EQ((std::vector<std::string>{"GetScriptFromITab: invalid LPDISPATCH"}), DetailLines());
    }
    auto noReader = MakeScriptTable({"other();"}, 8);
    noReader.data->withoutReader = true;
    ClearLines();
    EXPECT_EQ(S_OK, control->putref_ScriptText(noReader.Object()));
    EXPECT_TRUE(DetailLines().empty());

    EXPECT_EQ(S_OK, control->ExecuteScript());
    EXPECT_EQ((std::vector<std::wstring>{L"keep();"}), ScriptTexts(Page()));

    auto dataOnly = MakeScriptTable({"data();"}, 7, TableShape::DataObject);
    EXPECT_EQ(S_OK, control->putref_ScriptText(dataOnly.Object()));
    EXPECT_EQ(S_OK, control->ExecuteScript());
    EXPECT_EQ((std::vector<std::wstring>{L"keep();", L"data();"}), ScriptTexts(Page()));
}

TEST_F(ScriptExecution, TheOtherTwoScriptsDoNotReplaceTheGeneralOne)
{
    SetScript({"general();"}, 10);
    auto completed = MakeScriptTable({"completed();"}, 12);
    auto submitted = MakeScriptTable({"submitted();"}, 12);
    EXPECT_EQ(S_OK, control->putref_ScriptOnBRELCompleted(completed.Object()));
    EXPECT_EQ(S_OK, control->putref_ScriptOnDataSubmitted(submitted.Object()));
    EXPECT_EQ(S_OK, control->putref_ScriptOnBRELCompleted(nullptr));
    EXPECT_EQ(S_OK, control->putref_ScriptOnDataSubmitted(nullptr));
    EXPECT_EQ(1u, completed.rec->log.Count(L"CopyLine"));
    EXPECT_EQ(1u, submitted.rec->log.Count(L"CopyLine"));
    EXPECT_EQ(S_OK, control->ExecuteScript());
    EXPECT_EQ((std::vector<std::wstring>{L"general();"}), ScriptTexts(Page()));
}

TEST_F(ScriptExecution, TablesWithBadLinesOrSizes)
{
    auto table = MakeScriptTable({"a();", "BAD", "b();"}, 4);
    table.rec->plan.Fail(L"CopyLine(2, 4)", E_FAIL);
    EXPECT_EQ(S_OK, control->putref_ScriptText(table.Object()));
    EXPECT_EQ(S_OK, control->ExecuteScript());
    EXPECT_EQ((std::vector<std::wstring>{L"a();b();"}), ScriptTexts(Page()));

    // A reader reporting a negative width or count leaves an empty script, and an empty script runs nothing.
    for (int i = 0; i < 2; ++i) {
        auto bad = MakeScriptTable({"x();"}, 4);
        (i == 0 ? bad.reader->reportedWidth : bad.reader->reportedCount) = -5;
        EXPECT_EQ(S_OK, control->putref_ScriptText(bad.Object()));
        document->Log().Clear();
        browser->Log().Clear();
        EXPECT_EQ(S_OK, control->ExecuteScript());
        EXPECT_TRUE(document->Log().Calls().empty());
        EXPECT_TRUE(browser->Log().Calls().empty());
    }
    EXPECT_EQ(1u, Page().scripts.size());

    auto throwing = MakeScriptTable({"x();"}, 4);
    throwing.rec->plan.Throw(L"GetLineCount");
    EXPECT_NE(S_OK, control->putref_ScriptText(throwing.Object())) << "an exception from the table is an error";
}

TEST_F(ScriptExecution, EachFailingStepIsTracedAndEndsTheRun)
{
    SetScript({"run();"}, 6);
    struct Case {
        const char* name;
        std::function<void()> arrange;
        const char* trace;
    };
    const Case cases[] = {
        {"no document", [&] { browser->SetDocument(nullptr); }, "get_Document() failed"},
        {"get_Document fails", [&] { browser->FailCall(L"get_Document", E_FAIL); }, "get_Document() failed"},
        {"no IHTMLDocument2", [&] { Page().withoutDocument2 = true; }, "CComQIPtr<IHTMLDocument2...> failed"},
        {"get_parentWindow fails", [&] { document->Plan().Fail(L"get_parentWindow", E_ACCESSDENIED); },
         "CComPtr<IHTMLWindow2> failed"},
        {"no window", [&] { Page().nullWindow = true; }, "CComPtr<IHTMLWindow2> failed"},
        {"execScript fails", [&] { document->Plan().Fail(L"execScript", DISP_E_EXCEPTION); }, "pWindow->execScript() failed"},
    };
    Connect(2);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        c.arrange();
        ClearLines();
        EXPECT_EQ(S_OK, control->ExecuteScript());
        EXPECT_EQ(std::vector<std::string>{c.trace}, DetailLines());
        EXPECT_TRUE(Page().scripts.empty());
        browser->ClearFailures();
        browser->SetDocument(document->AsDispatch());
        document->Plan().Clear();
        Page().withoutDocument2 = Page().nullWindow = false;
    }

    document->Plan().Throw(L"execScript");
    EXPECT_EQ(S_OK, control->ExecuteScript()) << "an exception in the page stays in the control";
    document->Plan().Clear();
    EXPECT_EQ(S_OK, control->ExecuteScript());
    EXPECT_EQ((std::vector<std::wstring>{L"run();"}), ScriptTexts(Page()));
}

TEST_F(ScriptExecution, LateBoundScriptTextAndExecuteScript)
{
    ComPtr<IDispatch> disp;
    ASSERT_EQ(S_OK, control->QueryInterface(IID_IDispatch, disp.PutVoid()));
    auto table = MakeScriptTable({"late();"}, 7);
    VARIANT arg;
    arg.vt = VT_DISPATCH;
    arg.pdispVal = table.Object();
    DISPID named = DISPID_PROPERTYPUT;
    DISPPARAMS put{&arg, &named, 1, 1};
    ASSERT_EQ(S_OK, disp->Invoke(19, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUTREF, &put, nullptr, nullptr, nullptr));
    DISPPARAMS none{};
    ASSERT_EQ(S_OK, disp->Invoke(20, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr));
    EXPECT_EQ((std::vector<std::wstring>{L"late();"}), ScriptTexts(Page()));
}

using ScriptsWithoutBrowser = tovtest::ControlFixture;

TEST_F(ScriptsWithoutBrowser, ScriptsAreKeptAndNothingRuns)
{
    Connect(2);
    auto table = MakeScriptTable({"x();"}, 4);
    EXPECT_EQ(S_OK, control->putref_ScriptText(table.Object()));
    EXPECT_EQ(1u, table.rec->log.Count(L"CopyLine"));
    ClearLines();
    EXPECT_EQ(S_OK, control->ExecuteScript());
    EXPECT_EQ((std::vector<std::string>{"=> ExecuteScript", "==> InternalExecuteScript", "<== InternalExecuteScript",
                                        "<= ExecuteScript"}),
              Lines());
}

TEST_F(ScriptExecution, UnknownCodePageRunsNothingAndLargeScriptsRunWhole)
{
    SetScript({"x();"}, 4);
    services.gui->Child().codePage = 54321;
    EXPECT_EQ(S_OK, control->ExecuteScript()) << "the conversion fails inside the control";
    EXPECT_EQ(0u, document->Log().Count(L"execScript"));

    services.gui->Child().codePage = 1252;
    const std::string line(100, 'a');
    std::vector<std::string> lines(10000, line);
    SetScript(lines, 100);
    EXPECT_EQ(S_OK, control->ExecuteScript());
    ASSERT_EQ(1u, Page().scripts.size());
    EXPECT_EQ(std::wstring(1000000, L'a'), Page().scripts[0].text);
}

TEST_F(ScriptExecution, BackEndCompletionRunsItsScriptOnlyWhenOneIsSet)
{
    Connect(1);
    ComPtr<ITOVGUIControl> gui;
    ASSERT_EQ(S_OK, control->QueryInterface(IID_ITOVGUIControl, gui.PutVoid()));
    gui->HandleEvent(102, nullptr);
    EXPECT_TRUE(Page().scripts.empty()) << "no completion script set";

    auto table = MakeScriptTable({"done();"}, 7);
    ASSERT_EQ(S_OK, control->putref_ScriptOnBRELCompleted(table.Object()));
    gui->HandleEvent(102, nullptr);
    EXPECT_EQ((std::vector<std::wstring>{L"done();"}), ScriptTexts(Page()));
    EXPECT_EQ(S_OK, control->ExecuteScript());
    EXPECT_EQ(1u, Page().scripts.size()) << "the general script is still empty and runs nothing";
}
