// Taking the browser down: the container's Close with its order of steps and its early end on an
// exception, the control's in-place deactivation, and what is left to do a second time.
#include <algorithm>
#include "support/browser_fixture.h"
#include "frontend/data_provider_standin.h"
#include "framework/bstr.h"

using tov::Bstr;
using tov::ComPtr;
using tovtest::BrowserFixture;
using tovtest::ControlFixture;

namespace {

bool Contains(const std::vector<std::string>& lines, const std::string& line)
{
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

} // namespace

class Closing : public BrowserFixture {
protected:
    HRESULT Close(DWORD option = OLECLOSE_NOSAVE)
    {
        ComPtr<IOleObject> ole;
        EXPECT_EQ(S_OK, control->QueryInterface(IID_IOleObject, ole.PutVoid()));
        return ole ? ole->Close(option) : E_NOINTERFACE;
    }
    HRESULT Deactivate()
    {
        ComPtr<IOleInPlaceObject> inPlace;
        EXPECT_EQ(S_OK, control->QueryInterface(IID_IOleInPlaceObject, inPlace.PutVoid()));
        return inPlace ? inPlace->InPlaceDeactivate() : E_NOINTERFACE;
    }
};

TEST_F(Closing, DisconnectsStopsDeactivatesAndClosesTheBrowserInThisOrder)
{
    Connect(1);
    ClearLines();
    const HWND window = Window();
    EXPECT_EQ(S_OK, Close(OLECLOSE_SAVEIFDIRTY));
    EXPECT_EQ((std::vector<std::wstring>{L"Unadvise(DWebBrowserEvents, 1)", L"Unadvise(DWebBrowserEvents2, 1)", L"Stop()",
                                         L"Quit()", L"UIDeactivate()", L"InPlaceDeactivate()", L"SetClientSite(null)",
                                         L"Close(1)"}),
              Calls())
        << "the browser is closed without saving whatever the container asked; nothing after it";
    EXPECT_EQ((std::vector<std::string>{"=> Close", "==> CloseBrowserWindows", "<== CloseBrowserWindows", "<= Close"}), Lines())
        << "the standard close does not run the control's own deactivation again";
    EXPECT_EQ(0u, browser->SinkCount(DIID_DWebBrowserEvents));
    EXPECT_EQ(0u, browser->SinkCount(DIID_DWebBrowserEvents2));
    EXPECT_EQ(nullptr, browser->Site());
    EXPECT_FALSE(IsWindow(window)) << "the standard close deactivated the control";
}

TEST_F(Closing, DeletesTheTemporaryFilesOfShownData)
{
    tovfe::DataProviderRegistration provider;
    tovfe::DataStore::Instance().Put(L"tovq5:report.pdf", "%PDF-1.4", L"pdf");
    LONG code = -1;
    ASSERT_EQ(S_OK, control->ShowURL(Bstr(L"tovq5:report.pdf").Get(), nullptr, &code));
    ASSERT_EQ(0, code);
    const std::wstring navigate = Calls().back();
    const size_t begin = navigate.find(L'(') + 1, end = navigate.find(L", I4:");
    ASSERT_NE(std::wstring::npos, end);
    const std::wstring path = navigate.substr(begin, end - begin);
    ASSERT_NE(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(path.c_str())) << path;
    EXPECT_EQ(S_OK, Close());
    EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(path.c_str())) << path;
    tovfe::DataStore::Instance().Clear();
}

TEST_F(Closing, AnExceptionEndsTheStepsButNotTheStandardClose)
{
    Connect(1);
    ClearLines();
    const HWND window = Window();
    browser->ThrowOn(L"Stop");
    EXPECT_EQ(S_OK, Close());
    browser->ClearFailures();
    EXPECT_EQ((std::vector<std::wstring>{L"Unadvise(DWebBrowserEvents, 1)", L"Unadvise(DWebBrowserEvents2, 1)", L"Stop()"}),
              Calls());
    EXPECT_FALSE(Contains(Lines(), "==> CloseBrowserWindows"));
    EXPECT_FALSE(IsWindow(window));
}

TEST_F(Closing, FailingBrowserCallsDoNotEndTheSteps)
{
    for (const wchar_t* call : {L"Unadvise", L"Stop", L"Quit", L"UIDeactivate", L"InPlaceDeactivate", L"SetClientSite"})
        browser->FailCall(call, E_FAIL);
    EXPECT_EQ(S_OK, Close());
    browser->ClearFailures();
    const auto calls = Calls();
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(L"Close(1)", calls.back());
}

TEST_F(Closing, ASecondCloseDisconnectsNothingAndDoesNoHarm)
{
    ASSERT_EQ(S_OK, Close());
    browser->Log().Clear();
    EXPECT_EQ(S_OK, Close());
    EXPECT_EQ(0u, browser->Log().Count(L"Unadvise")) << "the cookies were cleared";
    LONG code = -1;
    EXPECT_EQ(S_OK, control->GoBack(&code));
}

TEST_F(Closing, InPlaceDeactivationTakesTheSiteAndTheSinksFromTheBrowser)
{
    Connect(1);
    ClearLines();
    const HWND window = Window();
    EXPECT_EQ(S_OK, Deactivate());
    EXPECT_EQ((std::vector<std::wstring>{L"Unadvise(DWebBrowserEvents, 1)", L"Unadvise(DWebBrowserEvents2, 1)",
                                         L"SetClientSite(null)", L"InPlaceDeactivate()"}),
              Calls());
    EXPECT_EQ((std::vector<std::string>{"=> InPlaceDeactivate", "<= InPlaceDeactivate"}), Lines());
    EXPECT_EQ(nullptr, browser->Site());
    EXPECT_FALSE(IsWindow(window)) << "then the standard in-place deactivation";

    browser->Log().Clear();
    EXPECT_EQ(S_OK, Close());
    EXPECT_EQ(0u, browser->Log().Count(L"Unadvise")) << "the cookies were cleared";
}

TEST_F(Closing, AnExceptionInPlaceDeactivatingIsSwallowed)
{
    const HWND window = Window();
    browser->ThrowOn(L"SetClientSite");
    EXPECT_EQ(S_OK, Deactivate());
    browser->ClearFailures();
    EXPECT_EQ(0u, browser->Log().Count(L"InPlaceDeactivate")) << "the steps end at the exception";
    EXPECT_FALSE(IsWindow(window)) << "the standard deactivation still runs";
}

TEST_F(ControlFixture, CloseAndDeactivationWithoutABrowser)
{
    Connect(1);
    ClearLines();
    ComPtr<IOleObject> ole;
    ASSERT_EQ(S_OK, control->QueryInterface(IID_IOleObject, ole.PutVoid()));
    EXPECT_EQ(S_OK, ole->Close(OLECLOSE_NOSAVE));
    ComPtr<IOleInPlaceObject> inPlace;
    ASSERT_EQ(S_OK, control->QueryInterface(IID_IOleInPlaceObject, inPlace.PutVoid()));
    EXPECT_EQ(S_OK, inPlace->InPlaceDeactivate());
    EXPECT_EQ((std::vector<std::string>{"=> Close", "==> CloseBrowserWindows", "<== CloseBrowserWindows", "<= Close",
                                        "=> InPlaceDeactivate", "<= InPlaceDeactivate"}),
              Lines());
}
