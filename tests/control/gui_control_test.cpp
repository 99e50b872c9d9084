// The control as one of the front end's GUI controls: one identity for the common interfaces, the trace
// level on connection and on event 103, the completion event 102, the personalisation property "url"
// and the browser version read once.
#include "support/browser_fixture.h"
#include "support/import_hook.h"
#include "framework/bstr.h"

using tov::ComPtr;
using tovtest::ControlFixture;

namespace {

ComPtr<IUnknown> Identity(IUnknown* p)
{
    ComPtr<IUnknown> unknown;
    p->QueryInterface(IID_IUnknown, unknown.PutVoid());
    return unknown;
}

int g_browserKeyOpens = 0;
LSTATUS WINAPI CountingRegOpenKeyExA(HKEY root, LPCSTR path, DWORD options, REGSAM access, PHKEY key)
{
    if (path && lstrcmpiA(path, "Software\\Microsoft\\Internet Explorer") == 0) ++g_browserKeyOpens;
    return RegOpenKeyExA(root, path, options, access, key);
}

} // namespace

class GUIControl : public ControlFixture {
protected:
    ComPtr<ITOVGUIControl> Gui()
    {
        ComPtr<ITOVGUIControl> gui;
        EXPECT_EQ(S_OK, control->QueryInterface(IID_ITOVGUIControl, gui.PutVoid()));
        return gui;
    }
};

TEST_F(GUIControl, CommonInterfacesLeadToTheControlsOneIdentity)
{
    ComPtr<ITOVGUIControl> gui;
    ComPtr<ITOVGUITessarilControl> tessaril;
    ComPtr<_ITOVDataProviderEvents> dataEvents;
    ASSERT_EQ(S_OK, control->QueryInterface(IID_ITOVGUIControl, gui.PutVoid()));
    ASSERT_EQ(S_OK, control->QueryInterface(IID_ITOVGUITessarilControl, tessaril.PutVoid()));
    ASSERT_EQ(S_OK, control->QueryInterface(IID__ITOVDataProviderEvents, dataEvents.PutVoid()));
    const auto identity = Identity(control.Get());
    EXPECT_EQ(identity.Get(), Identity(gui.Get()).Get());
    EXPECT_EQ(identity.Get(), Identity(tessaril.Get()).Get());
    EXPECT_EQ(identity.Get(), Identity(dataEvents.Get()).Get());
    ComPtr<ITOVHTMLControl> back;
    EXPECT_EQ(S_OK, dataEvents->QueryInterface(IID_ITOVHTMLControl, back.PutVoid()));
}

TEST_F(GUIControl, ConnectionReadsTheTraceLevelAndEvent103ReadsItAgain)
{
    // An object that is no container: unconnected, no level read, no trace.
    EXPECT_EQ(S_OK, Gui()->SetContainer(static_cast<ITOVTraceSink*>(sink.Get())));
    control->put_ScriptRecording(1);
    EXPECT_EQ(0, sink->LevelQueries());
    EXPECT_TRUE(Lines().empty());

    sink->SetLevel(1);
    EXPECT_EQ(S_OK, Gui()->SetContainer(container.Get()));
    EXPECT_EQ(1, sink->LevelQueries());
    control->put_ScriptRecording(1);
    EXPECT_EQ((std::vector<std::string>{"=> put_ScriptRecording", "<= put_ScriptRecording"}), Lines());

    ClearLines();
    sink->FailGetLevel(E_FAIL);
    EXPECT_EQ(1, Gui()->HandleEvent(103, nullptr));
    EXPECT_EQ(2, sink->LevelQueries());
    control->put_ScriptRecording(1);
    EXPECT_TRUE(Lines().empty()) << "a failed level read means level 0";

    sink->FailGetLevel(S_OK);
    EXPECT_EQ(1, Gui()->HandleEvent(103, nullptr));
    control->put_ScriptRecording(1);
    EXPECT_EQ(2u, Lines().size());

    ClearLines();
    EXPECT_EQ(S_OK, Gui()->SetContainer(nullptr));
    control->put_ScriptRecording(1);
    EXPECT_TRUE(Lines().empty()) << "disconnected: nothing traced";
}

TEST_F(GUIControl, CompletionEventWithoutAScriptRunsNothing)
{
    Connect(2);
    EXPECT_EQ(1, Gui()->HandleEvent(102, nullptr));
    EXPECT_EQ(1, Gui()->HandleEvent(101, nullptr));
    EXPECT_TRUE(Lines().empty()) << "no script set: InternalExecuteScript is not entered";
}

class Personalisation : public tovtest::BrowserFixture {
protected:
    void SetUp() override
    {
        BrowserFixture::SetUp();
        ASSERT_EQ(S_OK, control->QueryInterface(IID_ITOVGUITessarilControl, tessaril.PutVoid()));
        browser->Log().Clear();
    }
    void TearDown() override
    {
        tessaril.Reset();
        BrowserFixture::TearDown();
    }
    static std::wstring Navigate(const std::wstring& url) { return L"Navigate(" + url + L", <null>, <null>, <null>, <null>)"; }

    ComPtr<ITOVGUITessarilControl> tessaril;
};

TEST_F(Personalisation, UrlNavigatesAndTheResetGoesBack)
{
    EXPECT_EQ(S_OK, tessaril->SetTessarilProperty(L"url", L"https://example.invalid/custom"));
    EXPECT_EQ((std::vector<std::wstring>{L"get_LocationURL()", Navigate(L"https://example.invalid/custom")}),
              browser->Log().Texts());
    browser->Log().Clear();
    EXPECT_EQ(S_OK, tessaril->ResetTessarilProperty());
    EXPECT_EQ(std::vector<std::wstring>{Navigate(L"about:blank")}, browser->Log().Texts()) << "back to the page shown before";
}

TEST_F(Personalisation, NameIsMatchedWithoutCaseButTheResetComparesExactly)
{
    EXPECT_EQ(S_OK, tessaril->SetTessarilProperty(L"URL", L"https://example.invalid/upper"));
    EXPECT_EQ(Navigate(L"https://example.invalid/upper"), browser->Log().Texts().back());
    browser->Log().Clear();
    EXPECT_EQ(S_OK, tessaril->ResetTessarilProperty());
    EXPECT_TRUE(browser->Log().Calls().empty()) << "the remembered name \"URL\" is not \"url\"";

    EXPECT_EQ(S_OK, tessaril->SetTessarilProperty(L"Url", L"https://example.invalid/mixed"));
    EXPECT_EQ(2u, browser->Log().Calls().size());
}

TEST_F(Personalisation, OtherNamesAndResetWithoutSetDoNothing)
{
    EXPECT_EQ(S_OK, tessaril->ResetTessarilProperty());
    EXPECT_EQ(S_OK, tessaril->SetTessarilProperty(L"urls", L"https://example.invalid/"));
    EXPECT_EQ(S_OK, tessaril->SetTessarilProperty(L"", L"https://example.invalid/"));
    EXPECT_EQ(S_OK, tessaril->SetTessarilProperty(nullptr, L"https://example.invalid/"));
    EXPECT_EQ(S_OK, tessaril->ResetTessarilProperty());
    EXPECT_TRUE(browser->Log().Calls().empty());

    // A null value navigates to nothing rather than crashing.
    EXPECT_EQ(S_OK, tessaril->SetTessarilProperty(L"url", nullptr));
    EXPECT_EQ(Navigate(L""), browser->Log().Texts().back());
}

TEST_F(GUIControl, PersonalisationWithoutABrowserDoesNothing)
{
    Connect(2);
    ComPtr<ITOVGUITessarilControl> tessaril;
    ASSERT_EQ(S_OK, control->QueryInterface(IID_ITOVGUITessarilControl, tessaril.PutVoid()));
    EXPECT_EQ(S_OK, tessaril->SetTessarilProperty(L"url", L"https://example.invalid/"));
    EXPECT_EQ(S_OK, tessaril->ResetTessarilProperty());
    tov::Bstr url;
    EXPECT_EQ(S_OK, control->GetCurrentURL(url.Put()));
    EXPECT_EQ(0u, url.Length());
    EXPECT_TRUE(Lines().empty());
}

TEST_F(GUIControl, BrowserStringReadsTheRegistryOnce)
{
    g_browserKeyOpens = 0;
    tov::Bstr first, second;
    {
        tovtest::ImportHook hook(ocx.Handle(), "advapi32.dll", "RegOpenKeyExA", reinterpret_cast<void*>(&CountingRegOpenKeyExA));
        ASSERT_TRUE(hook.Installed());
        ASSERT_EQ(S_OK, control->get_BrowserString(first.Put()));
        ASSERT_EQ(S_OK, control->get_BrowserString(second.Put()));
    }
    EXPECT_EQ(1, g_browserKeyOpens);
    EXPECT_EQ(L"MSIE-", first.View().substr(0, 5));
    EXPECT_GT(first.Length(), 5u);
    EXPECT_EQ(first.View(), second.View());
    EXPECT_NE(first.Get(), second.Get()) << "each caller gets a copy of its own";
}
