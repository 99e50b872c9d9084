// The control in a real container: the platform's ATL host creates it, activates it in place, resizes
// it, connects a front-end sink, and releases everything when its window goes.
#include "support/atl_host.h"
#include "support/control_fixture.h"
#include "support/event_sink.h"
#include "support/process_state.h"
#include "framework/bstr.h"

extern "C" HRESULT WINAPI AtlAdvise(IUnknown* pUnkCP, IUnknown* pUnk, const IID& iid, LPDWORD pdw);

using tov::ComPtr;
using namespace tovtest;

namespace {

HWND WindowOf(IUnknown* control)
{
    ComPtr<IOleWindow> w;
    HWND hwnd = nullptr;
    if (SUCCEEDED(control->QueryInterface(IID_IOleWindow, w.PutVoid()))) w->GetWindow(&hwnd);
    return hwnd;
}

} // namespace

TEST(Hosting, AtlContainerActivatesResizesConnectsAndReleases)
{
    Ocx ocx;
    const int windowsBefore = ThreadWindowCount();
    HWND controlWindow = nullptr;
    {
        OcxClassRegistration registration(ocx);
        AtlHost host(320, 240);
        ComPtr<IUnknown> unknown;
        ASSERT_EQ(S_OK, host.Create(L"{B650592E-C92E-4739-8B43-8FB7CCF89466}", unknown.Put()));
        ComPtr<ITOVHTMLControl> control;
        ASSERT_EQ(S_OK, unknown->QueryInterface(IID_ITOVHTMLControl, control.PutVoid()));

        controlWindow = WindowOf(unknown.Get());
        ASSERT_TRUE(IsWindow(controlWindow));
        EXPECT_TRUE(IsChild(host.HostWindow(), controlWindow));
        EXPECT_TRUE(IsWindowVisible(controlWindow));
        host.Resize(500, 260);
        RECT rc{};
        GetClientRect(controlWindow, &rc);
        EXPECT_EQ(500, rc.right - rc.left);
        EXPECT_EQ(260, rc.bottom - rc.top);

        RecordingEventSink sink;
        DWORD cookie = 0;
        ASSERT_EQ(S_OK, AtlAdvise(unknown.Get(), &sink, DIID__TOVHTMLControlEvents, &cookie));
        tov::Bstr url(L"https://example.invalid/page");
        EXPECT_EQ(S_OK, control->DoNavigateComplete(url.Get()));
        ASSERT_EQ(1u, sink.events.size());
        EXPECT_EQ(2, sink.events[0].id);
        EXPECT_EQ(std::vector<std::wstring>{L"https://example.invalid/page"}, sink.events[0].args);

        control.Reset();
        unknown.Reset();
        host.Destroy();
        EXPECT_EQ(1u, sink.m_refs) << "the container let go of the front end's sink";
    }
    EXPECT_FALSE(IsWindow(controlWindow));
    EXPECT_EQ(windowsBefore, ThreadWindowCount());
    EXPECT_EQ(S_OK, ocx.CanUnloadNow());
}

TEST(Hosting, WithThePlatformBrowserInitControlSucceedsAndReleaseLeavesNothing)
{
    Ocx ocx;
    const int windowsBefore = ThreadWindowCount();
    const int threadsBefore = ThreadCount();
    {
        auto control = ocx.CreateControl();
        ASSERT_TRUE(control);
        AtlHost host;
        ASSERT_EQ(S_OK, host.Attach(control.Get()));
        LONG code = -1;
        EXPECT_EQ(S_OK, control->InitControl(&code));
        EXPECT_EQ(0, code);
        tov::Bstr url;
        EXPECT_EQ(S_OK, control->GetCurrentURL(url.Put()));
        control.Reset();
        host.Destroy();
    }
    PumpMessages();
    EXPECT_EQ(S_OK, ocx.CanUnloadNow());
    EXPECT_EQ(windowsBefore, ThreadWindowCount());
    // The platform browser may keep worker threads of its own for a moment; none of them may stay.
    for (int i = 0; i < 50 && ThreadCount() > threadsBefore; ++i) Sleep(20);
    EXPECT_LE(ThreadCount(), threadsBefore);
}
