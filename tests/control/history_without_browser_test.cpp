// The history methods before the browser exists: code 3, their "is invalid" texts, late binding.
#include "support/control_fixture.h"
#include "framework/variant.h"

using tov::ComPtr;
using tovtest::ControlFixture;

namespace {

struct History {
    const char* scope;
    const char* invalid;
    DISPID dispid;
    HRESULT (STDMETHODCALLTYPE ITOVHTMLControl::*method)(LONG*);
};

const History kHistory[] = {
    {"GoBack", "GoBack: m_pWebBrowser is invalid", 1, &ITOVHTMLControl::GoBack},
    {"GoForward", "GoForward: m_pWebBrowser is invalid", 2, &ITOVHTMLControl::GoForward},
    {"GoHome", "GoHome: m_pWebBrowser is invalid", 3, &ITOVHTMLControl::GoHome},
    {"Stop", "Stop: m_pWebBrowser is invalid", 4, &ITOVHTMLControl::Stop},
    {"DoRefresh", "Refresh: m_pWebBrowser is invalid", 5, &ITOVHTMLControl::DoRefresh},
};

} // namespace

using HistoryWithoutBrowser = ControlFixture;

TEST_F(HistoryWithoutBrowser, EachAnswersCodeThreeWithItsText)
{
    Connect(1);
    for (const History& h : kHistory) {
        SCOPED_TRACE(h.scope);
        ClearLines();
        LONG code = -1;
        EXPECT_EQ(S_OK, (control.Get()->*h.method)(&code));
        EXPECT_EQ(3, code);
        const std::string entry = std::string("=> ") + h.scope;
        EXPECT_EQ((std::vector<std::string>{entry, Hashes(), entry, h.invalid, Hashes(), std::string("<= ") + h.scope}),
                  Lines());
    }
}

TEST_F(HistoryWithoutBrowser, FailureBlockAtLevelZeroHasNoEntryLine)
{
    Connect(0);
    LONG code = -1;
    control->GoBack(&code);
    EXPECT_EQ(3, code);
    EXPECT_EQ((std::vector<std::string>{Hashes(), "GoBack: m_pWebBrowser is invalid", Hashes()}), Lines());
}

TEST_F(HistoryWithoutBrowser, WithoutAContainerNothingIsTraced)
{
    LONG code = -1;
    control->GoHome(&code);
    EXPECT_EQ(3, code);
    // An object that is no front-end container connects nothing either.
    tov::ComPtr<ITOVGUIControl> gui;
    ASSERT_EQ(S_OK, control->QueryInterface(IID_ITOVGUIControl, gui.PutVoid()));
    EXPECT_EQ(S_OK, gui->SetContainer(sink.Get()));
    control->GoHome(&code);
    EXPECT_TRUE(Lines().empty());
    EXPECT_EQ(0, sink->LevelQueries());
}

TEST_F(HistoryWithoutBrowser, LateBoundCallsByDispidGiveTheSameCodes)
{
    Connect(1);
    ComPtr<IDispatch> disp;
    ASSERT_EQ(S_OK, control->QueryInterface(IID_IDispatch, disp.PutVoid()));
    for (const History& h : kHistory) {
        SCOPED_TRACE(h.scope);
        ClearLines();
        DISPPARAMS none{};
        tov::Variant result;
        ASSERT_EQ(S_OK, disp->Invoke(h.dispid, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, &result, nullptr, nullptr));
        EXPECT_EQ(VT_I4, result.vt);
        EXPECT_EQ(3, result.lVal);
        ASSERT_EQ(6u, Lines().size());
        EXPECT_EQ(h.invalid, Lines()[3]);
    }
}
