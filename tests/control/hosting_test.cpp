// The control in a real container: the platform's ATL host creates it, activates it in place, resizes it,
// connects a front-end sink. (A whole life: whole_life_test.cpp.)
#include "support/atl_host.h"
#include "support/control_fixture.h"
#include "support/event_sink.h"
#include "support/process_state.h" // OcxClassRegistration
#include "framework/bstr.h"

extern "C" HRESULT WINAPI AtlAdvise(IUnknown* pUnkCP, IUnknown* pUnk, const IID& iid, LPDWORD pdw);

using tov::ComPtr;
using namespace tovtest;

TEST(Hosting, AtlContainerActivatesResizesAndConnectsTheFrontEnd)
{
    Ocx ocx;
    OcxClassRegistration registration(ocx);
    RecordingEventSink sink;
    {
        AtlHost host(320, 240);
        ComPtr<IUnknown> unknown;
        ASSERT_EQ(S_OK, host.Create(L"{B650592E-C92E-4739-8B43-8FB7CCF89466}", unknown.Put()));
        HWND window = nullptr;
        tov::QueryAs<IOleWindow>(unknown.Get(), IID_IOleWindow)->GetWindow(&window);
        EXPECT_TRUE(IsChild(host.HostWindow(), window) && IsWindowVisible(window));
        host.Resize(500, 260);
        RECT rc{};
        GetClientRect(window, &rc);
        EXPECT_TRUE(rc.right - rc.left == 500 && rc.bottom - rc.top == 260);

        DWORD cookie = 0;
        ASSERT_EQ(S_OK, AtlAdvise(unknown.Get(), &sink, DIID__TOVHTMLControlEvents, &cookie));
        auto control = tov::QueryAs<ITOVHTMLControl>(unknown.Get(), IID_ITOVHTMLControl);
        EXPECT_EQ(S_OK, control->DoNavigateComplete(tov::Bstr(L"https://example.invalid/page").Get()));
        ASSERT_EQ(1u, sink.events.size());
        EXPECT_EQ(2, sink.events[0].id);
        EXPECT_EQ(std::vector<std::wstring>{L"https://example.invalid/page"}, sink.events[0].args);
        host.Destroy();
    }
    EXPECT_EQ(1u, sink.m_refs) << "the container let go of the front end's sink";
}
