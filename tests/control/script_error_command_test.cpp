// Script errors reported by the browser through its site's command target: the five error properties are
// read late-bound from the page window's event object, nothing is shown, the page keeps running.
#include <functional>
#include "support/page_fixture.h"

class ScriptErrorCommand : public tovtest::PageFixture {
protected:
    // Exec 40 of the document host's group with the document as the in-argument; the out-argument must
    // always say "keep running scripts".
    HRESULT ReportScriptError()
    {
        static constexpr GUID kDocHostCommands = {0xf38bc242, 0xb950, 0x11d1, {0x89, 0x18, 0x00, 0xc0, 0x4f, 0xc2, 0xc8, 0x36}};
        auto target = browser->SiteAs<IOleCommandTarget>(IID_IOleCommandTarget);
        tov::Variant in, out;
        in.vt = VT_UNKNOWN;
        in.punkVal = document->AsDispatch();
        in.punkVal->AddRef();
        const HRESULT hr = target->Exec(&kDocHostCommands, 40, 0, &in, &out);
        EXPECT_EQ(VT_BOOL, out.vt);
        EXPECT_EQ(VARIANT_TRUE, out.boolVal);
        return hr;
    }
};

TEST_F(ScriptErrorCommand, TheFiveErrorPropertiesAreReadInOrder)
{
    Connect(2);
    document->Log().Clear();
    EXPECT_EQ(S_OK, ReportScriptError());
    std::vector<std::wstring> expected = {L"get_parentWindow()", L"get_event()"};
    for (const wchar_t* name : {L"errorLine", L"errorCharacter", L"errorCode", L"errorMessage", L"errorUrl"}) {
        expected.push_back(std::wstring(L"GetIDsOfNames(") + name + L", 0x800)");
        expected.push_back(std::wstring(L"Invoke(") + name + L", 0x800, 2, 0)");
    }
    EXPECT_EQ(expected, document->Log().Texts());
    EXPECT_TRUE(Lines().empty()) << "nothing is traced";
}

// The result is the last call's; a property that cannot be read does not stop the others, a missing step
// ends the reading.
TEST_F(ScriptErrorCommand, FailingStepsAndTheirResults)
{
    const auto allProperties = Page().eventProperties;
    const struct {
        const char* name;
        std::function<void()> arrange;
        HRESULT result;
        size_t events, invokes;
    } cases[] = {
        {"no errorUrl", [&] { Page().eventProperties.pop_back(); }, DISP_E_UNKNOWNNAME, 1, 4},
        {"unreadable errorLine", [&] { document->Plan().Fail(L"Invoke(errorLine, 0x800, 2, 0)", DISP_E_EXCEPTION); }, S_OK, 1, 5},
        {"get_parentWindow fails", [&] { document->Plan().Fail(L"get_parentWindow", E_FAIL); }, E_FAIL, 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        c.arrange();
        document->Log().Clear();
        EXPECT_EQ(c.result, ReportScriptError());
        EXPECT_EQ(c.events, document->Log().Count(L"get_event"));
        EXPECT_EQ(c.invokes, document->Log().Count(L"Invoke"));
        document->Plan().Clear();
        Page().eventProperties = allProperties;
    }
}
