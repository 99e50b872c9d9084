// Script errors reported by the browser through its site's command target: the five error properties
// are read late-bound from the page window's event object, nothing is shown, the page keeps running.
#include "support/page_fixture.h"

using tov::ComPtr;

namespace {
// {F38BC242-B950-11D1-8918-00C04FC2C836}
constexpr GUID kDocHostCommandHandler = {0xf38bc242, 0xb950, 0x11d1, {0x89, 0x18, 0x00, 0xc0, 0x4f, 0xc2, 0xc8, 0x36}};
constexpr DWORD kShowScriptError = 40;
} // namespace

class ScriptErrorCommand : public tovtest::PageFixture {
protected:
    void SetUp() override
    {
        PageFixture::SetUp();
        ASSERT_NE(nullptr, browser->Site());
        ASSERT_EQ(S_OK, browser->Site()->QueryInterface(IID_IOleCommandTarget, target.PutVoid()));
        document->Log().Clear();
    }
    void TearDown() override
    {
        target.Reset();
        PageFixture::TearDown();
    }

    // Exec 40 with the document as the in-argument; the out-argument must say "keep running scripts".
    HRESULT ReportScriptError()
    {
        VARIANT in;
        in.vt = VT_UNKNOWN;
        in.punkVal = document->AsDispatch();
        tov::Variant out;
        const HRESULT hr = target->Exec(&kDocHostCommandHandler, kShowScriptError, 0, &in, &out);
        EXPECT_EQ(VT_BOOL, out.vt);
        EXPECT_EQ(VARIANT_TRUE, out.boolVal);
        return hr;
    }

    ComPtr<IOleCommandTarget> target;
};

TEST_F(ScriptErrorCommand, TheFiveErrorPropertiesAreReadInOrder)
{
    Connect(2);
    EXPECT_EQ(S_OK, ReportScriptError());
    std::vector<std::wstring> expected = {L"get_parentWindow()", L"get_event()"};
    for (const wchar_t* name : {L"errorLine", L"errorCharacter", L"errorCode", L"errorMessage", L"errorUrl"}) {
        expected.push_back(std::wstring(L"GetIDsOfNames(") + name + L", 0x800)");
        expected.push_back(std::wstring(L"Invoke(") + name + L", 0x800, 2, 0)");
    }
    EXPECT_EQ(expected, document->Log().Texts());
    EXPECT_TRUE(Lines().empty()) << "nothing is traced";
    EXPECT_TRUE(Page().scripts.empty());
}

TEST_F(ScriptErrorCommand, ResultIsTheLastCallsResult)
{
    // An event object without errorUrl: its name lookup is the last call.
    auto& props = Page().eventProperties;
    props.pop_back();
    EXPECT_EQ(DISP_E_UNKNOWNNAME, ReportScriptError());
    EXPECT_EQ(4u, document->Log().Count(L"Invoke")) << "a missing property does not stop the others";

    tov::Variant url;
    url.vt = VT_BSTR;
    url.bstrVal = SysAllocString(L"page.htm");
    Page().SetEventProperty(L"errorUrl", url);
    document->Log().Clear();
    document->Plan().Fail(L"Invoke(errorLine, 0x800, 2, 0)", DISP_E_EXCEPTION);
    EXPECT_EQ(S_OK, ReportScriptError());
    EXPECT_EQ(5u, document->Log().Count(L"Invoke")) << "an unreadable value does not stop the others";
}

TEST_F(ScriptErrorCommand, MissingStepsEndTheReadingEarly)
{
    Page().nullEvent = true;
    EXPECT_EQ(S_OK, ReportScriptError());
    EXPECT_EQ((std::vector<std::wstring>{L"get_parentWindow()", L"get_event()"}), document->Log().Texts());

    document->Log().Clear();
    Page().nullEvent = false;
    document->Plan().Fail(L"get_event", E_ACCESSDENIED);
    EXPECT_EQ(E_ACCESSDENIED, ReportScriptError());
    EXPECT_EQ(0u, document->Log().Count(L"GetIDsOfNames"));

    document->Log().Clear();
    document->Plan().Fail(L"get_parentWindow", E_FAIL);
    EXPECT_EQ(E_FAIL, ReportScriptError());
    EXPECT_EQ(0u, document->Log().Count(L"get_event"));

    Page().withoutDocument2 = true;
    EXPECT_EQ(E_NOINTERFACE, ReportScriptError());
}
