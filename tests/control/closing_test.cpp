// Taking things down: the container's Close and the control's in-place deactivation with their order of
// steps and their early end on an exception, and CloseDocument closing exactly one thing. (CloseDocument
// with a Simple Browse dialog is with the dialog's tests.)
#include "support/initialized_control_fixture.h"

using tov::Bstr;
using tov::ComPtr;

namespace {
const std::wstring kUnadvise1 = L"Unadvise(DWebBrowserEvents, 1)", kUnadvise2 = L"Unadvise(DWebBrowserEvents2, 1)";
} // namespace

class Closing : public tovtest::InitializedControlFixture {
protected:
    Closing() : InitializedControlFixture(1) {}
    HRESULT Close(DWORD option = OLECLOSE_NOSAVE) { return tov::QueryAs<IOleObject>(control.Get(), IID_IOleObject)->Close(option); }
    HRESULT Deactivate() { return tov::QueryAs<IOleInPlaceObject>(control.Get(), IID_IOleInPlaceObject)->InPlaceDeactivate(); }
};

TEST_F(Closing, CloseDisconnectsStopsDeactivatesAndClosesTheBrowserInThisOrderOnce)
{
    const HWND window = Window();
    EXPECT_EQ(S_OK, Close(OLECLOSE_SAVEIFDIRTY));
    EXPECT_EQ((std::vector<std::wstring>{kUnadvise1, kUnadvise2, L"Stop()", L"Quit()", L"UIDeactivate()",
                                         L"InPlaceDeactivate()", L"SetClientSite(null)", L"Close(1)"}),
              BrowserCalls())
        << "the browser is closed without saving whatever the container asked; nothing after it";
    EXPECT_EQ((std::vector<std::string>{"=> Close", "==> CloseBrowserWindows", "<== CloseBrowserWindows", "<= Close"}), Lines())
        << "the standard close does not run the control's own deactivation again";
    EXPECT_EQ(0u, browser->SinkCount(DIID_DWebBrowserEvents) + browser->SinkCount(DIID_DWebBrowserEvents2));
    EXPECT_FALSE(IsWindow(window)) << "the standard close deactivated the control";

    browser->OwnLog().Clear();
    EXPECT_EQ(S_OK, Close());
    EXPECT_EQ(0u, browser->OwnLog().Count(L"Unadvise")) << "the cookies were cleared";
}

TEST_F(Closing, InPlaceDeactivationTakesTheSiteAndTheSinksFromTheBrowser)
{
    const HWND window = Window();
    EXPECT_EQ(S_OK, Deactivate());
    EXPECT_EQ((std::vector<std::wstring>{kUnadvise1, kUnadvise2, L"SetClientSite(null)", L"InPlaceDeactivate()"}), BrowserCalls());
    EXPECT_EQ((std::vector<std::string>{"=> InPlaceDeactivate", "<= InPlaceDeactivate"}), Lines());
    EXPECT_FALSE(IsWindow(window)) << "then the standard in-place deactivation";
    browser->OwnLog().Clear();
    EXPECT_EQ(S_OK, Close());
    EXPECT_EQ(0u, browser->OwnLog().Count(L"Unadvise")) << "the cookies were cleared";
}

TEST_F(Closing, FailingCallsDoNotEndTheSteps)
{
    for (const wchar_t* call : {L"Unadvise", L"Stop", L"Quit", L"UIDeactivate", L"InPlaceDeactivate", L"SetClientSite"})
        browser->FailCall(call, E_FAIL);
    EXPECT_EQ(S_OK, Close());
    browser->ClearFailures();
    EXPECT_EQ(L"Close(1)", BrowserCalls().back());

    // The browser kept the sinks it would not give back: the control's code stays loaded until it lets go.
    host.Destroy();
    control.Reset();
    EXPECT_EQ(S_FALSE, ocx.CanUnloadNow());
    const auto points = tov::QueryAs<IConnectionPointContainer>(browser, IID_IConnectionPointContainer);
    for (const IID* iid : {&DIID_DWebBrowserEvents, &DIID_DWebBrowserEvents2}) {
        ComPtr<IConnectionPoint> point;
        ASSERT_EQ(S_OK, points->FindConnectionPoint(*iid, point.Put()));
        EXPECT_EQ(S_OK, point->Unadvise(1));
    }
}

TEST_F(Closing, AnExceptionEndsTheControlsStepsButNotTheStandardClose)
{
    const HWND window = Window();
    browser->ThrowOn(L"Stop");
    EXPECT_EQ(S_OK, Close());
    browser->ClearFailures();
    EXPECT_EQ((std::vector<std::wstring>{kUnadvise1, kUnadvise2, L"Stop()"}), BrowserCalls());
    EXPECT_FALSE(IsWindow(window));
}

TEST_F(Closing, CloseDocumentClosesTheDetachedWindowUsedLastElseBlanksTheOwnPage)
{
    ASSERT_EQ(0, InBrowser(L"http://example.invalid/one"));
    ASSERT_EQ(0, InBrowser(L"http://example.invalid/two"));
    tovfe::ScriptedBrowser* one = applications.Created().at(0).Get();
    tovfe::ScriptedBrowser* two = applications.Created().at(1).Get();
    one->OwnLog().Clear();
    two->OwnLog().Clear();
    browser->OwnLog().Clear();
    EXPECT_EQ(S_OK, control->CloseDocument());
    EXPECT_EQ((std::vector<std::wstring>{L"Stop()", L"Quit()"}), WithoutQueries(two->OwnLog()));
    EXPECT_EQ(1u, two->RefCount()) << "its map entry is gone too";
    EXPECT_EQ(0u, browser->OwnLog().Count(L"Navigate"));
    EXPECT_EQ(S_OK, control->CloseDocument());
    EXPECT_EQ(kBlank, BrowserCalls().back()) << "nothing names a detached window any more";
    ASSERT_EQ(0, InBrowser(L"http://example.invalid/one"));
    EXPECT_EQ(2u, applications.Created().size()) << "\"one\" is still remembered and reused";

    // Showing in the own browser makes the own page the one to close again.
    tovfe::DataStore::Instance().Put(L"tovq5:/p.htm", "<html></html>", L"html");
    ASSERT_EQ(0, ShowURL(L"tovq5:/p.htm"));
    browser->OwnLog().Clear();
    EXPECT_EQ(S_OK, control->CloseDocument());
    EXPECT_EQ(std::vector<std::wstring>{kBlank}, BrowserCalls());
    EXPECT_EQ(0u, one->OwnLog().Count(L"Quit"));
}
