// Browser information and commands: ExecuteWB with its command ranges and the zoom, printing, the
// browser's version, string and handle, the navigation style and drop targets.
#include <algorithm>
#include "support/browser_fixture.h"
#include "support/registry_helpers.h"
#include "framework/bstr.h"
#include "framework/handles.h"

using tov::Bstr;
using tov::ComPtr;
using tovtest::BrowserFixture;
using tovtest::ControlFixture;

namespace {

// {EAB22AC3-30C1-11CF-A7EB-0000C05BAE0B}: the first browser generation's class.
const CLSID kWebBrowserV1 = {0xeab22ac3, 0x30c1, 0x11cf, {0xa7, 0xeb, 0x00, 0x00, 0xc0, 0x5b, 0xae, 0x0b}};

const wchar_t kIeKey[] = L"Software\\Microsoft\\Internet Explorer";

bool Contains(const std::vector<std::string>& lines, const std::string& line)
{
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

// Sets a string value of HKLM for the lifetime of the object and puts the old one back.
class ScopedHklmString {
public:
    ScopedHklmString(const wchar_t* path, const wchar_t* name, const wchar_t* value)
        : m_path(path), m_name(name), m_old(tovtest::ReadString(HKEY_LOCAL_MACHINE, path, name))
    {
        Write(value);
    }
    ~ScopedHklmString()
    {
        if (m_old) {
            Write(m_old->c_str());
        } else {
            RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, m_path.c_str(), m_name.c_str());
        }
    }
    void Write(const wchar_t* value) const
    {
        RegSetKeyValueW(HKEY_LOCAL_MACHINE, m_path.c_str(), m_name.c_str(), REG_SZ, value,
                        static_cast<DWORD>((wcslen(value) + 1) * sizeof(wchar_t)));
    }

private:
    std::wstring m_path;
    std::wstring m_name;
    std::optional<std::wstring> m_old;
};

} // namespace

using BrowserCommands = BrowserFixture;

TEST_F(BrowserCommands, PrintGoesThroughTheCommandTargetOnly)
{
    Connect(2);
    ClearLines();
    EXPECT_EQ(S_OK, control->ExecuteWB(OLECMDID_PRINT, OLECMDEXECOPT_PROMPTUSER));
    EXPECT_EQ(std::vector<std::wstring>{L"Exec(null, 6, 0, <null>, <null>)"}, Calls())
        << "the default option, whatever the caller asked for, and no ExecWB";
    const auto lines = Lines();
    EXPECT_TRUE(Contains(lines, "Command ID: 6"));
    EXPECT_TRUE(Contains(lines, "==> PrintDocument")) << "inside the scope of ExecuteWB";
}

TEST_F(BrowserCommands, ClassicCommandsPassNoInputAndTheRestPassTheZoom)
{
    const std::wstring zoom = ZoomCall().substr(14); // "I4:<zoom>, <null>)"
    control->ExecuteWB(OLECMDID_SELECTALL, OLECMDEXECOPT_DONTPROMPTUSER);
    control->ExecuteWB(1, 0);
    control->ExecuteWB(30, 1);
    control->ExecuteWB(63, 0);
    control->ExecuteWB(31, 2);
    control->ExecuteWB(0, 0);
    control->ExecuteWB(-4, 3);
    EXPECT_EQ((std::vector<std::wstring>{
                  L"ExecWB(17, 2, <null>, <null>)",
                  L"ExecWB(1, 0, <null>, <null>)",
                  L"ExecWB(30, 1, <null>, <null>)",
                  L"ExecWB(63, 0, " + zoom,
                  L"ExecWB(31, 2, " + zoom,
                  L"ExecWB(0, 0, " + zoom,
                  L"ExecWB(-4, 3, " + zoom,
              }),
              Calls());
}

TEST_F(BrowserCommands, TheCommandsOwnResultIsNotReported)
{
    browser->FailCall(L"ExecWB", E_ACCESSDENIED);
    browser->FailCall(L"Exec", E_FAIL);
    EXPECT_EQ(S_OK, control->ExecuteWB(63, 0));
    EXPECT_EQ(S_OK, control->ExecuteWB(6, 0));
    browser->ClearFailures();
    browser->ThrowOn(L"ExecWB");
    EXPECT_EQ(S_OK, control->ExecuteWB(17, 0)) << "an exception inside stays inside";
    browser->ClearFailures();
}

TEST_F(ControlFixture, ExecuteWBBeforeInitControlOnlyTraces)
{
    tovfe::ScriptedBrowserClass browsers;
    ASSERT_EQ(S_OK, browsers.Register());
    Connect(2);
    ClearLines();
    EXPECT_EQ(S_OK, control->ExecuteWB(63, 0));
    EXPECT_EQ(S_OK, control->ExecuteWB(6, 0));
    EXPECT_EQ((std::vector<std::string>{"=> ExecuteWB", "Command ID: 63", "<= ExecuteWB", "=> ExecuteWB", "Command ID: 6",
                                        "<= ExecuteWB"}),
              Lines());
    EXPECT_TRUE(browsers.Log().Calls().empty()) << "no browser is made or called";
}

TEST_F(BrowserCommands, NavigationStyleSwitchesModeAndReadsBackTheTargetFrame)
{
    Bstr frame(L"_main"), style(L"AC");
    ASSERT_EQ(S_OK, control->put_TargetFrame(frame.Get()));
    ASSERT_EQ(S_OK, control->put_NavigationStyle(style.Get()));
    Bstr prefix, read;
    control->get_URLPrefixGlobal(prefix.Put());
    EXPECT_EQ(L"tovhtmlp://", prefix.View()) << "A selects the pluggable protocol";
    ASSERT_EQ(S_OK, control->get_NavigationStyle(read.Put()));
    EXPECT_EQ(L"_main", read.View()) << "the getter answers with the target frame, not the style";

    Bstr lower(L"a");
    ASSERT_EQ(S_OK, control->put_NavigationStyle(lower.Get()));
    control->get_URLPrefixGlobal(prefix.Put());
    EXPECT_EQ(L"@TOVHTML://", prefix.View()) << "letters are case-sensitive: a is not A";

    ASSERT_EQ(S_OK, control->put_NavigationStyle(Bstr(L"xyzBCA").Get()));
    control->get_URLPrefixGlobal(prefix.Put());
    EXPECT_EQ(L"tovhtmlp://", prefix.View()) << "any order, among other characters";

    Bstr afterZero(std::wstring_view(L"b\0A", 3));
    ASSERT_EQ(S_OK, control->put_NavigationStyle(afterZero.Get()));
    control->get_URLPrefixGlobal(prefix.Put());
    EXPECT_EQ(L"@TOVHTML://", prefix.View()) << "the style ends at its first zero";
}

TEST_F(BrowserCommands, NavigationStyleWithBadValuesNeverCrashes)
{
    Bstr prefix, read;
    ASSERT_EQ(S_OK, control->put_NavigationStyle(Bstr(L"A").Get()));
    EXPECT_EQ(S_OK, control->put_NavigationStyle(Bstr(L"0123456789A").Get()));
    control->get_URLPrefixGlobal(prefix.Put());
    EXPECT_EQ(L"@TOVHTML://", prefix.View()) << "more than nine characters read as no style";
    ASSERT_EQ(S_OK, control->put_NavigationStyle(Bstr(L"A").Get()));
    EXPECT_EQ(S_OK, control->put_NavigationStyle(nullptr));
    control->get_URLPrefixGlobal(prefix.Put());
    EXPECT_EQ(L"@TOVHTML://", prefix.View());
    EXPECT_EQ(S_OK, control->put_TargetFrame(nullptr));
    ASSERT_EQ(S_OK, control->get_NavigationStyle(read.Put()));
    EXPECT_FALSE(read.IsNull()) << "a null target frame reads as an empty string";
    EXPECT_EQ(0u, read.Length());
    EXPECT_EQ(E_POINTER, control->get_NavigationStyle(nullptr));
}

TEST_F(BrowserCommands, NavigationStyleIsTraced)
{
    Connect(1);
    ClearLines();
    control->put_NavigationStyle(Bstr(L"B").Get());
    Bstr read;
    control->get_NavigationStyle(read.Put());
    // put_NavigationStyle also sets the prefixes of the mode it selects.
    const auto lines = Lines();
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ("=> put_NavigationStyle", lines.front());
    EXPECT_TRUE(Contains(lines, "<= put_NavigationStyle"));
    EXPECT_EQ("<= get_NavigationStyle", lines.back());
}

TEST_F(BrowserCommands, DropTargetFollowsTheValue)
{
    EXPECT_EQ(S_OK, control->DropAcceptFiles(5));
    EXPECT_EQ(S_OK, control->DropAcceptFiles(0));
    EXPECT_EQ(S_OK, control->DropAcceptFiles(-1));
    EXPECT_EQ((std::vector<std::wstring>{L"put_RegisterAsDropTarget(true)", L"put_RegisterAsDropTarget(false)",
                                         L"put_RegisterAsDropTarget(true)"}),
              Calls());
    browser->FailCall(L"put_RegisterAsDropTarget", E_FAIL);
    EXPECT_EQ(S_OK, control->DropAcceptFiles(1)) << "the browser's answer is ignored";
    browser->ClearFailures();
}

TEST_F(BrowserCommands, BrowserHandleIsTheHostedBrowser)
{
    ComPtr<IDispatch> handle;
    ASSERT_EQ(S_OK, control->get_BrowserHandle(handle.Put()));
    ASSERT_TRUE(handle);
    ComPtr<IUnknown> a, b;
    handle->QueryInterface(IID_IUnknown, a.PutVoid());
    browser->QueryInterface(IID_IUnknown, b.PutVoid());
    EXPECT_EQ(a.Get(), b.Get());
    EXPECT_EQ(S_OK, control->get_BrowserHandle(nullptr));
}

TEST_F(ControlFixture, BrowserHandleBeforeInitControlIsNull)
{
    IDispatch* handle = reinterpret_cast<IDispatch*>(1);
    EXPECT_EQ(S_OK, control->get_BrowserHandle(&handle));
    EXPECT_EQ(nullptr, handle);
}

TEST_F(BrowserCommands, BrowserVersionOfTheHostedBrowserCreatesNothing)
{
    tovfe::ScriptedBrowserClass v1;
    ASSERT_EQ(S_OK, v1.Register(kWebBrowserV1));
    Connect(1);
    ClearLines();
    LONG version = 0;
    EXPECT_EQ(S_OK, control->get_BrowserVersion(&version));
    EXPECT_EQ(4, version);
    EXPECT_TRUE(v1.Created().empty());
    EXPECT_EQ((std::vector<std::string>{"=> get_BrowserVersion", "<= get_BrowserVersion"}), Lines());
    EXPECT_EQ(S_OK, control->get_BrowserVersion(nullptr));
}

TEST_F(ControlFixture, BrowserVersionBeforeInitControlMakesAndKeepsAFirstGenerationObject)
{
    tovfe::ScriptedBrowserClass v1;
    ASSERT_EQ(S_OK, v1.Register(kWebBrowserV1));
    LONG version = 0;
    EXPECT_EQ(S_OK, control->get_BrowserVersion(&version));
    EXPECT_EQ(4, version);
    EXPECT_EQ(S_OK, control->get_BrowserVersion(&version));
    EXPECT_EQ(4, version);
    ASSERT_EQ(1u, v1.Created().size()) << "made once and kept";
    EXPECT_EQ(2u, v1.Created()[0]->RefCount()) << "the control holds the object it made";
    control.Reset();
    EXPECT_EQ(1u, v1.Created()[0]->RefCount()) << "and lets it go with the control";
}

TEST_F(ControlFixture, BrowserVersionAnswersByTheInterfacesOffered)
{
    tovfe::ScriptedBrowserClass v1;
    ASSERT_EQ(S_OK, v1.Register(kWebBrowserV1));
    v1.FailCallOnNext(L"QueryInterface(IWebBrowser2)", E_NOINTERFACE);
    LONG version = 0;
    EXPECT_EQ(S_OK, control->get_BrowserVersion(&version));
    EXPECT_EQ(3, version) << "only the first generation's interface";

    auto second = ocx.CreateControl();
    v1.FailCallOnNext(L"QueryInterface(IWebBrowser)", E_NOINTERFACE);
    EXPECT_EQ(S_OK, second->get_BrowserVersion(&version));
    EXPECT_EQ(-1, version) << "neither interface";
    ASSERT_EQ(2u, v1.Created().size());
    EXPECT_EQ(1u, v1.Created()[1]->RefCount()) << "an object that offers neither is not kept";
    second.Reset();

    v1.FailCreate(REGDB_E_CLASSNOTREG);
    auto third = ocx.CreateControl();
    EXPECT_EQ(S_OK, third->get_BrowserVersion(&version));
    EXPECT_EQ(-2, version) << "no object could be made";
}

TEST_F(ControlFixture, BrowserStringIsReadOnceFromTheRegistry)
{
    ScopedHklmString value(kIeKey, L"Version", L"9.11.1234.5");
    Connect(2);
    ClearLines();
    Bstr first, second;
    ASSERT_EQ(S_OK, control->get_BrowserString(first.Put()));
    EXPECT_EQ(L"MSIE-9.11.1234.5", first.View());
    value.Write(L"11.0");
    ASSERT_EQ(S_OK, control->get_BrowserString(second.Put()));
    EXPECT_EQ(L"MSIE-9.11.1234.5", second.View()) << "the cached answer, the registry is not read again";
    EXPECT_NE(first.Get(), second.Get()) << "each caller owns what it is handed";
    EXPECT_EQ((std::vector<std::string>{"=> get_BrowserString", "<= get_BrowserString", "=> get_BrowserString",
                                        "<= get_BrowserString"}),
              Lines());
    EXPECT_EQ(S_OK, control->get_BrowserString(nullptr));
}

TEST_F(ControlFixture, BrowserStringWithoutAVersionValueFails)
{
    ScopedHklmString value(kIeKey, L"Version", L"restored afterwards");
    ASSERT_EQ(ERROR_SUCCESS, RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kIeKey, L"Version"));
    Connect(2);
    ClearLines();
    BSTR out = nullptr;
    EXPECT_EQ(E_FAIL, control->get_BrowserString(&out));
    EXPECT_EQ(nullptr, out);
    EXPECT_TRUE(Contains(Lines(), "RegQueryValueEx() failed"));
}
