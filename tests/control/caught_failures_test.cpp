// Failures that the control's boundaries catch (an exception turned into an HRESULT or a return code)
// leave one failure block in the trace, from the level for them on; below it the trace stays as it was.
#include <algorithm>
#include <functional>
#include "support/page_fixture.h"
#include "frontend/table_standin.h"

namespace {

const std::string kHashes(45, '#');

class CaughtFailures : public tovtest::PageFixture {
protected:
    // The texts of the caught-failure blocks among the lines, each checked to stand between separators.
    std::vector<std::string> CaughtBlocks() const
    {
        const auto lines = Lines();
        std::vector<std::string> texts;
        for (size_t i = 0; i < lines.size(); ++i) {
            if (lines[i].rfind("Caught failure ", 0) != 0) continue;
            EXPECT_TRUE(i > 0 && i + 1 < lines.size() && lines[i - 1] == kHashes && lines[i + 1] == kHashes) << lines[i];
            texts.push_back(lines[i]);
        }
        return texts;
    }
    void SetScript(const std::string& line)
    {
        auto table = tovfe::MakeScriptTable({line}, static_cast<LONG>(line.size()));
        ASSERT_EQ(S_OK, control->putref_ScriptText(table.Object()));
    }
};

} // namespace

TEST_F(CaughtFailures, OneBlockFromTheirLevelOnAndNothingBelowIt)
{
    SetScript("run();");
    document->Plan().Throw(L"execScript");
    Connect(2);
    ClearLines();
    EXPECT_EQ(S_OK, control->ExecuteScript());
    const auto levelTwo = Lines();
    EXPECT_TRUE(CaughtBlocks().empty());

    Connect(3);
    ClearLines();
    EXPECT_EQ(S_OK, control->ExecuteScript());
    EXPECT_EQ(std::vector<std::string>{"Caught failure 0x8000FFFF in CTOVHTMLControl::ExecuteScript"}, CaughtBlocks());
    // Every other line is the one level 2 wrote.
    auto rest = Lines();
    const auto text = std::find(rest.begin(), rest.end(), "Caught failure 0x8000FFFF in CTOVHTMLControl::ExecuteScript");
    ASSERT_TRUE(text != rest.end() && text != rest.begin());
    rest.erase(text - 1, text + 2);
    EXPECT_EQ(levelTwo, rest);
}

TEST_F(CaughtFailures, EachKindOfBoundaryNamesItself)
{
    Connect(3);
    const struct {
        const char* name;
        std::function<void()> act;
        const char* text;
    } cases[] = {
        {"an automation method", [&] { LONG code = 0; browser->ThrowOn(L"GoBack"); control->GoBack(&code); EXPECT_EQ(1, code); },
         "Caught failure 0x8000FFFF in GoBack"},
        {"a method with an HRESULT", [&] {
             browser->ThrowOn(L"get_Document");
             BSTR html = nullptr;
             EXPECT_EQ(E_UNEXPECTED, control->GetHTMLSourceContent(&html));
             SysFreeString(html);
         },
         "Caught failure 0x8000FFFF in CTOVHTMLControl::GetHTMLSourceContent"},
        {"a script the front end's code page cannot read", [&] {
             services.gui->Child().codePage = 12345;
             SetScript("run();");
             control->ExecuteScript();
         },
         "Caught failure 0x80070057 in CTOVHTMLControl::ExecuteScript"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        ClearLines();
        c.act();
        EXPECT_EQ(std::vector<std::string>{c.text}, CaughtBlocks());
        browser->ClearFailures();
        services.gui->Child().codePage = 1252;
    }
}

TEST_F(CaughtFailures, TheContainersCloseReportsWhereItsStepsEnded)
{
    Connect(3);
    browser->ThrowOn(L"Stop");
    ClearLines();
    tov::ComPtr<IOleObject> object = tov::QueryAs<IOleObject>(control.Get(), IID_IOleObject);
    EXPECT_EQ(S_OK, object->Close(OLECLOSE_NOSAVE));
    browser->ClearFailures();
    EXPECT_EQ(std::vector<std::string>{"Caught failure 0x8000FFFF in Close"}, CaughtBlocks());
}
