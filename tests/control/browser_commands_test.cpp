// Browser information and commands: ExecuteWB with its command ranges and the zoom, printing, the
// browser's version, string and handle, the navigation style and drop targets.
#include <algorithm>
#include "support/browser_fixture.h"
#include "support/registry_helpers.h"
#include "framework/bstr.h"

using tov::Bstr;
using tov::ComPtr;
using tovtest::ControlFixture;

namespace {

// {EAB22AC3-30C1-11CF-A7EB-0000C05BAE0B}: the first browser generation's class.
const CLSID kWebBrowserV1 = {0xeab22ac3, 0x30c1, 0x11cf, {0xa7, 0xeb, 0x00, 0x00, 0xc0, 0x5b, 0xae, 0x0b}};
const wchar_t kIeKey[] = L"Software\\Microsoft\\Internet Explorer";

// Sets the browser's version value for the lifetime of the object and puts the old one back.
class ScopedVersion {
public:
    ScopedVersion() : m_old(tovtest::ReadString(HKEY_LOCAL_MACHINE, kIeKey, L"Version")) {}
    ~ScopedVersion() { m_old ? Write(m_old->c_str()) : void(RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kIeKey, L"Version")); }
    static void Write(const wchar_t* value)
    {
        RegSetKeyValueW(HKEY_LOCAL_MACHINE, kIeKey, L"Version", REG_SZ, value, static_cast<DWORD>((wcslen(value) + 1) * 2));
    }

private:
    std::optional<std::wstring> m_old;
};

} // namespace

using BrowserCommands = tovtest::BrowserFixture;

TEST_F(BrowserCommands, PrintGoesThroughTheCommandTargetClassicCommandsPassNoInputTheRestTheZoom)
{
    const std::wstring zoom = ZoomCall().substr(14); // "I4:<zoom>, <null>)"
    const std::pair<LONG, LONG> commands[] = {{OLECMDID_PRINT, OLECMDEXECOPT_PROMPTUSER}, {1, 0}, {30, 1}, {31, 2}, {0, 0}};
    for (const auto& [id, option] : commands) EXPECT_EQ(S_OK, control->ExecuteWB(id, option));
    EXPECT_EQ((std::vector<std::wstring>{L"Exec(null, 6, 0, <null>, <null>)", L"ExecWB(1, 0, <null>, <null>)",
                                         L"ExecWB(30, 1, <null>, <null>)", L"ExecWB(31, 2, " + zoom, L"ExecWB(0, 0, " + zoom}),
              Calls())
        << "printing with the default option whatever the caller asked for, and never through ExecWB";
    EXPECT_TRUE(HasLine("==> PrintDocument")) << "inside ExecuteWB's scope";

    browser->FailCall(L"ExecWB", E_ACCESSDENIED);
    EXPECT_EQ(S_OK, control->ExecuteWB(63, 0)) << "the command's own result is not reported";
    browser->ClearFailures();
    browser->ThrowOn(L"ExecWB");
    EXPECT_EQ(S_OK, control->ExecuteWB(17, 0)) << "an exception inside stays inside";
    browser->ClearFailures();
}

TEST_F(BrowserCommands, NavigationStyleSwitchesModeAndReadsBackTheTargetFrame)
{
    const std::pair<std::wstring_view, const wchar_t*> cases[] = {{L"AC", L"tovhtmlp://"},       {L"a", L"@TOVHTML://"},
                                                                   {L"xyzBCA", L"tovhtmlp://"},   {{L"b\0A", 3}, L"@TOVHTML://"},
                                                                   {L"A", L"tovhtmlp://"},        {L"0123456789A", L"@TOVHTML://"}};
    for (const auto& [text, globalPrefix] : cases) {
        SCOPED_TRACE(testing::Message() << "style of " << text.size() << " characters");
        EXPECT_EQ(S_OK, control->put_NavigationStyle(Bstr(text).Get()));
        EXPECT_EQ(globalPrefix, Property(&ITOVHTMLControl::get_URLPrefixGlobal))
            << "A anywhere in the first nine characters, before a zero";
    }
    control->put_TargetFrame(Bstr(L"_main").Get());
    EXPECT_EQ(L"_main", Property(&ITOVHTMLControl::get_NavigationStyle)) << "the getter answers with the target frame";
    control->put_TargetFrame(nullptr);
    EXPECT_EQ(L"", Property(&ITOVHTMLControl::get_NavigationStyle)) << "a null target frame reads as an empty string";
}

TEST_F(BrowserCommands, DropTargetHandleAndVersionOfTheHostedBrowser)
{
    for (LONG value : {5, 0}) EXPECT_EQ(S_OK, control->DropAcceptFiles(value));
    browser->FailCall(L"put_RegisterAsDropTarget", E_FAIL);
    EXPECT_EQ(S_OK, control->DropAcceptFiles(1)) << "the browser's answer is ignored";
    browser->ClearFailures();
    EXPECT_EQ((std::vector<std::wstring>{L"put_RegisterAsDropTarget(true)", L"put_RegisterAsDropTarget(false)",
                                         L"put_RegisterAsDropTarget(true)"}),
              Calls());

    ComPtr<IDispatch> handle;
    ASSERT_EQ(S_OK, control->get_BrowserHandle(handle.Put()));
    EXPECT_EQ(tov::QueryAs<IUnknown>(handle.Get(), IID_IUnknown).Get(),
              tov::QueryAs<IUnknown>(static_cast<IWebBrowser2*>(browser), IID_IUnknown).Get());

    tovfe::ScriptedBrowserClass v1;
    ASSERT_EQ(S_OK, v1.Register(kWebBrowserV1));
    LONG version = 0;
    EXPECT_EQ(S_OK, control->get_BrowserVersion(&version));
    EXPECT_EQ(4, version);
    EXPECT_TRUE(v1.Created().empty()) << "the hosted browser answers; nothing is made";
}

TEST_F(ControlFixture, BrowserInformationBeforeInitControl)
{
    tovfe::ScriptedBrowserClass browsers, v1;
    ASSERT_EQ(S_OK, browsers.Register());
    ASSERT_EQ(S_OK, v1.Register(kWebBrowserV1));
    Connect(2);
    ClearLines();
    EXPECT_EQ(S_OK, control->ExecuteWB(6, 0));
    EXPECT_EQ((std::vector<std::string>{"=> ExecuteWB", "Command ID: 6", "<= ExecuteWB"}), Lines());
    EXPECT_TRUE(browsers.Log().Calls().empty()) << "no browser is made or called";
    IDispatch* handle = reinterpret_cast<IDispatch*>(1);
    EXPECT_EQ(S_OK, control->get_BrowserHandle(&handle));
    EXPECT_EQ(nullptr, handle);

    // The version from a first-generation object the control makes and keeps, by the interfaces it offers.
    LONG version = 0;
    EXPECT_EQ(S_OK, control->get_BrowserVersion(&version));
    EXPECT_EQ(S_OK, control->get_BrowserVersion(&version));
    EXPECT_EQ(4, version);
    ASSERT_EQ(1u, v1.Created().size()) << "made once and kept";
    const std::pair<const wchar_t*, LONG> cases[] = {{L"QueryInterface(IWebBrowser2)", 3}, {L"QueryInterface(IWebBrowser)", -1}};
    for (const auto& [refused, expected] : cases) {
        v1.FailCallOnNext(refused, E_NOINTERFACE);
        EXPECT_EQ(S_OK, ocx.CreateControl()->get_BrowserVersion(&version));
        EXPECT_EQ(expected, version);
    }
    EXPECT_EQ(1u, v1.Created().back()->RefCount()) << "an object that offers neither is not kept";
    v1.FailCreate(REGDB_E_CLASSNOTREG);
    EXPECT_EQ(S_OK, ocx.CreateControl()->get_BrowserVersion(&version));
    EXPECT_EQ(-2, version) << "no object could be made";
    control.Reset();
    EXPECT_EQ(1u, v1.Created()[0]->RefCount()) << "the kept object goes with the control";
}

TEST_F(ControlFixture, BrowserStringFromTheRegistry)
{
    ScopedVersion value;
    RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kIeKey, L"Version");
    Connect(2);
    BSTR none = nullptr;
    EXPECT_EQ(E_FAIL, control->get_BrowserString(&none));
    EXPECT_EQ(nullptr, none);
    EXPECT_TRUE(HasLine("RegQueryValueEx() failed"));

    ScopedVersion::Write(L"9.11.1234.5");
    Bstr text;
    ASSERT_EQ(S_OK, ocx.CreateControl()->get_BrowserString(text.Put()));
    EXPECT_EQ(L"MSIE-9.11.1234.5", text.View());
}
