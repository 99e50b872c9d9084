// InitControl against the scripted browser: the calls it makes, in order, and its failure codes.
#include "support/atl_host.h"
#include "support/control_fixture.h"
#include "support/registry_helpers.h"
#include "frontend/scripted_browser.h"

using tov::ComPtr;
using tovtest::AtlHost;
using tovtest::ControlFixture;

namespace {

std::wstring Hex(HWND h)
{
    wchar_t buf[32];
    swprintf(buf, 32, L"0x%llx", static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(h)));
    return buf;
}

const wchar_t kAdminKey[] = L"Software\\Classes\\TOVHTTPPROXY\\admin";
const wchar_t kOutputKey[] = L"Software\\Classes\\TOV.HTMLControl\\EnableOutputFile";

} // namespace

class InitControl : public ControlFixture {
protected:
    void SetUp() override
    {
        ControlFixture::SetUp();
        ASSERT_EQ(S_OK, browsers.Register());
        ASSERT_EQ(S_OK, host.Attach(control.Get()));
        ASSERT_EQ(S_OK, control->QueryInterface(IID_IOleWindow, window.PutVoid()));
        ASSERT_EQ(S_OK, window->GetWindow(&hwnd));
        ASSERT_TRUE(IsWindow(hwnd));
    }
    void TearDown() override
    {
        window.Reset();
        host.Destroy();
        ControlFixture::TearDown();
        browsers.Revoke();
        tovtest::DeleteTree(HKEY_CURRENT_USER, L"Software\\Classes\\TOVHTTPPROXY");
        tovtest::DeleteTree(HKEY_LOCAL_MACHINE, L"Software\\Classes\\TOV.HTMLControl");
    }

    tovfe::ScriptedBrowserClass browsers;
    AtlHost host;
    ComPtr<IOleWindow> window;
    HWND hwnd = nullptr;
};

TEST_F(InitControl, CreatesActivatesConnectsAndShowsTheBlankPage)
{
    RECT rc{};
    GetClientRect(hwnd, &rc);
    LONG code = -1;
    EXPECT_EQ(S_OK, control->InitControl(&code));
    EXPECT_EQ(0, code);
    ASSERT_EQ(1u, browsers.Created().size());
    std::vector<std::wstring> calls;
    for (const auto& c : browsers.Log().Texts())
        if (c != L"QueryInterface(IConnectionPointContainer)") calls.push_back(c);
    const std::wstring rect = std::to_wstring(rc.left) + L"," + std::to_wstring(rc.top) + L"," +
                              std::to_wstring(rc.right) + L"," + std::to_wstring(rc.bottom);
    EXPECT_EQ((std::vector<std::wstring>{
                  L"CoCreateInstance(WebBrowser)",
                  L"SetClientSite(site)",
                  L"DoVerb(-5, " + Hex(hwnd) + L", " + rect + L")",
                  L"QueryInterface(IWebBrowser)",
                  L"Advise(DWebBrowserEvents)",
                  L"Advise(DWebBrowserEvents2)",
                  L"QueryInterface(IOleCommandTarget)",
                  L"Navigate(about:blank, <null>, <null>, <null>, <null>)",
              }),
              calls);
    auto browser = browsers.Last();
    EXPECT_EQ(1u, browser->SinkCount(DIID_DWebBrowserEvents));
    EXPECT_EQ(1u, browser->SinkCount(DIID_DWebBrowserEvents2));
    ComPtr<IOleClientSite> site;
    ASSERT_EQ(S_OK, control->QueryInterface(IID_IOleClientSite, site.PutVoid()));
    EXPECT_EQ(site.Get(), browser->Site()) << "the control is its browser's site";
}

TEST_F(InitControl, SecondCallDoesNothing)
{
    LONG code = -1;
    control->InitControl(&code);
    const size_t calls = browsers.Log().Calls().size();
    code = -1;
    EXPECT_EQ(S_OK, control->InitControl(&code));
    EXPECT_EQ(0, code);
    EXPECT_EQ(calls, browsers.Log().Calls().size());
}

TEST_F(InitControl, CreationFailureGivesCodeFourAndLaterMethodsCodeThree)
{
    Connect(1);
    browsers.FailCreate(REGDB_E_CLASSNOTREG);
    LONG code = -1;
    EXPECT_EQ(S_OK, control->InitControl(&code));
    EXPECT_EQ(4, code);
    const auto lines = Lines();
    const std::string scope = "=> InitControl: TOV HTML control supports Microsoft Internet Explorer.";
    EXPECT_EQ((std::vector<std::string>{scope, Hashes(), scope, "InitControl: m_pOleObject->QueryInterface(IID_IWebBrowser...)",
                                        Hashes(), Hashes(), scope, "InitControl: AtlAdvise(m_pWebBrowser...)", Hashes(),
                                        "<= InitControl: TOV HTML control supports Microsoft Internet Explorer."}),
              lines);
    code = -1;
    control->GoBack(&code);
    EXPECT_EQ(3, code);
}

TEST_F(InitControl, FailingSiteOrActivationOrSecondAdviseGivesCodeFour)
{
    for (const wchar_t* failing : {L"SetClientSite", L"DoVerb", L"Advise(DWebBrowserEvents2)"}) {
        SCOPED_TRACE(failing);
        auto other = ocx.CreateControl();
        AtlHost otherHost;
        ASSERT_EQ(S_OK, otherHost.Attach(other.Get()));
        browsers.ClearFailurePlan();
        browsers.FailCallOnNext(failing, E_FAIL);
        LONG code = -1;
        EXPECT_EQ(S_OK, other->InitControl(&code));
        EXPECT_EQ(4, code);
        otherHost.Destroy();
        other.Reset();
    }
    // A failure of the first connection alone goes unnoticed.
    auto other = ocx.CreateControl();
    AtlHost otherHost;
    ASSERT_EQ(S_OK, otherHost.Attach(other.Get()));
    browsers.ClearFailurePlan();
    browsers.FailCallOnNext(L"Advise(DWebBrowserEvents)", E_FAIL);
    LONG code = -1;
    other->InitControl(&code);
    EXPECT_EQ(0, code);
}

TEST_F(InitControl, ReadsTheProxyConditionAndTheOutputSwitch)
{
    HKEY key = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_LOCAL_MACHINE, kOutputKey, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr));
    RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(L"1"), 4);
    RegCloseKey(key);
    LONG code = -1;
    control->InitControl(&code);
    EXPECT_EQ(0, code);
    // The switches are internal state; what they change is observed by the navigation tests.
}
