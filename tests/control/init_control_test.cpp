// InitControl against the scripted browser: the calls it makes, in order, and its failure codes. (The
// registry values it reads: tests/guicontrol/registry_config_test.cpp and the navigation tests.)
#include "support/initialized_control_fixture.h"

class InitControl : public tovtest::InitializedControlFixture {
protected:
    // InitControl of a further control in a container of its own.
    LONG InitAnother()
    {
        auto other = ocx.CreateControl();
        tovtest::AtlHost otherHost;
        EXPECT_EQ(S_OK, otherHost.Attach(other.Get()));
        LONG code = -1;
        EXPECT_EQ(S_OK, other->InitControl(&code));
        otherHost.Destroy();
        return code;
    }
};

TEST_F(InitControl, CreatesActivatesConnectsAndShowsTheBlankPageOnce)
{
    const HWND hwnd = Window();
    RECT rc{};
    GetClientRect(hwnd, &rc);
    LONG code = -1;
    EXPECT_EQ(S_OK, control->InitControl(&code));
    EXPECT_EQ(0, code);
    std::vector<std::wstring> calls;
    for (const auto& c : browsers.Log().Texts())
        if (c != L"QueryInterface(IConnectionPointContainer)") calls.push_back(c);
    const std::wstring doVerb = L"DoVerb(-5, " + tovfe::HexArg(reinterpret_cast<uintptr_t>(hwnd)) + L", " +
                                std::to_wstring(rc.left) + L"," + std::to_wstring(rc.top) + L"," +
                                std::to_wstring(rc.right) + L"," + std::to_wstring(rc.bottom) + L")";
    EXPECT_EQ((std::vector<std::wstring>{L"CoCreateInstance(WebBrowser)", L"SetClientSite(site)", doVerb,
                                         L"QueryInterface(IWebBrowser)", L"Advise(DWebBrowserEvents)",
                                         L"Advise(DWebBrowserEvents2)", L"QueryInterface(IOleCommandTarget)", kBlank}),
              calls);

    const size_t made = browsers.Log().Calls().size();
    EXPECT_EQ(S_OK, control->InitControl(&code));
    EXPECT_EQ(0, code);
    EXPECT_EQ(made, browsers.Log().Calls().size()) << "a second call does nothing";
}

TEST_F(InitControl, FailuresGiveCodeFourAndLaterMethodsCodeThree)
{
    Connect(1);
    browsers.FailCreate(REGDB_E_CLASSNOTREG);
    LONG code = -1;
    EXPECT_EQ(S_OK, control->InitControl(&code));
    EXPECT_EQ(4, code);
    const std::string scope = "=> InitControl: TOV HTML control supports Microsoft Internet Explorer.";
    EXPECT_EQ((std::vector<std::string>{scope, Hashes(), scope, "InitControl: m_pOleObject->QueryInterface(IID_IWebBrowser...)",
                                        Hashes(), Hashes(), scope, "InitControl: AtlAdvise(m_pWebBrowser...)", Hashes(),
                                        "<= InitControl: TOV HTML control supports Microsoft Internet Explorer."}),
              Lines());
    control->GoBack(&code);
    EXPECT_EQ(3, code);

    browsers.FailCreate(S_OK);

    for (const wchar_t* failing : {L"SetClientSite", L"DoVerb", L"Advise(DWebBrowserEvents2)"}) {
        browsers.ClearFailurePlan();
        browsers.FailCallOnNext(failing, E_FAIL);
        EXPECT_EQ(4, InitAnother()) << failing;
    }
    browsers.ClearFailurePlan();
    browsers.FailCallOnNext(L"Advise(DWebBrowserEvents)", E_FAIL);
    EXPECT_EQ(0, InitAnother()) << "a failure of the first connection alone goes unnoticed";
}

TEST_F(InitControl, ABrowserClassThatSaysWhyItFailedIsHeard)
{
    Connect(1);
    const auto InitOnce = [&] {
        LONG code = -1;
        EXPECT_EQ(S_OK, control->InitControl(&code));
        return code;
    };
    // A class that says why it failed is heard after the failure line; error information some
    // earlier call of the thread left is not taken for the class's.
    browsers.FailCreate(REGDB_E_CLASSNOTREG, L"the engine binary is missing");
    ClearLines();
    EXPECT_EQ(4, InitOnce());
    const auto lines = Lines();
    const auto failure = std::find(lines.begin(), lines.end(), "InitControl: m_pOleObject->QueryInterface(IID_IWebBrowser...)");
    ASSERT_NE(lines.end(), failure);
    const auto why = std::find(lines.begin(), lines.end(), "CoCreateInstance: the engine binary is missing");
    ASSERT_NE(lines.end(), why);
    EXPECT_LT(failure, why);
    tov::ComPtr<ICreateErrorInfo> stale;
    ASSERT_EQ(S_OK, CreateErrorInfo(stale.Put()));
    stale->SetDescription(const_cast<LPOLESTR>(L"left by someone else"));
    tov::ComPtr<IErrorInfo> staleInfo;
    stale->QueryInterface(IID_IErrorInfo, staleInfo.PutVoid());
    SetErrorInfo(0, staleInfo.Get());
    browsers.FailCreate(REGDB_E_CLASSNOTREG);
    ClearLines();
    EXPECT_EQ(4, InitOnce());
    EXPECT_FALSE(Lines().empty());
    for (const auto& line : Lines()) EXPECT_EQ(std::string::npos, line.find("CoCreateInstance")) << line;
}
