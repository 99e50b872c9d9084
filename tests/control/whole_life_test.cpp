// The control's whole life in a real container (the platform's ATL host creates it by class, activates it in
// place, resizes it and connects a front-end sink), and many such lives in a row: whatever the control took
// — windows, handles, temporary files, references on the browser and on the module — is given back.
// Unloading the OCX takes its window class with it: a later load, wherever it lands, registers the class
// afresh instead of finding one whose window procedure is gone.
#include <algorithm>
#include <cstdlib>
#include <optional>
#include <gtest/gtest.h>
#include "support/atl_host.h"
#include "support/event_sink.h"
#include "support/process_state.h"
#include "frontend/data_provider_standin.h"
#include "frontend/gui_service_standin.h"
#include "frontend/scripted_browser.h"
#include "framework/bstr.h"

extern "C" HRESULT WINAPI AtlAdvise(IUnknown* pUnkCP, IUnknown* pUnk, const IID& iid, LPDWORD pdw);
extern "C" HRESULT WINAPI AtlUnadvise(IUnknown* pUnkCP, const IID& iid, DWORD dw);

using tov::Bstr;
using tov::ComPtr;
using namespace tovtest;

namespace {

// Hosts one control of `ocx` in a container; true when the control's window class was registered meanwhile.
bool HostOnce(const Ocx& ocx)
{
    auto control = ocx.CreateControl();
    AtlHost host;
    WNDCLASSEXW wc{sizeof(wc)};
    const bool registered = control && host.Attach(control.Get()) == S_OK &&
                            GetClassInfoExW(ocx.Handle(), L"TOVHTMLControlWindow", &wc);
    control.Reset();
    host.Destroy();
    return registered;
}

// One front end's use of one control: created by the container by class, connected, fed, and closed.
struct Life {
    RecordingEventSink sink;
    std::vector<std::wstring> tempFilesMade;

    void Run()
    {
        ComPtr<tovfe::FrontendContainer> container;
        ComPtr<tovfe::TraceSinkStandIn> trace;
        tovfe::MakeFrontend(container, trace);
        auto services = tovfe::AddGUIServices(*container.Get(), 1252, L"EN");
        services.gui->IconFonts().descriptions[L"save"] = L"glyph=1";
        const auto tempBefore = TempFolderFiles();

        AtlHost host(400, 300);
        ComPtr<IUnknown> unknown;
        ASSERT_EQ(S_OK, host.Create(L"{B650592E-C92E-4739-8B43-8FB7CCF89466}", unknown.Put()));
        HWND window = nullptr;
        tov::QueryAs<IOleWindow>(unknown.Get(), IID_IOleWindow)->GetWindow(&window);
        EXPECT_TRUE(IsChild(host.HostWindow(), window) && IsWindowVisible(window));
        host.Resize(500, 260);
        RECT rc{};
        GetClientRect(window, &rc);
        EXPECT_TRUE(rc.right - rc.left == 500 && rc.bottom - rc.top == 260);
        auto control = tov::QueryAs<ITOVHTMLControl>(unknown.Get(), IID_ITOVHTMLControl);
        auto gui = tov::QueryAs<ITOVGUIControl>(unknown.Get(), IID_ITOVGUIControl);
        ASSERT_TRUE(control && gui && gui->SetContainer(container.Get()) == S_OK);
        DWORD cookie = 0;
        ASSERT_EQ(S_OK, AtlAdvise(unknown.Get(), &sink, DIID__TOVHTMLControlEvents, &cookie));

        LONG code = -1;
        control->InitControl(&code);
        ASSERT_EQ(0, code);
        control->put_URLPrefixLocal(Bstr(L"http://srv/app/").Get());
        LONG codes[3] = {-1, -1, -1};
        control->ShowData(Bstr(L"page.htm").Get(), nullptr, 1, &codes[0]);
        control->ShowData(Bstr(L"pic.gif").Get(), nullptr, 1, &codes[1]);
        control->ShowURL(Bstr(L"http://example.invalid/").Get(), nullptr, &codes[2]);
        EXPECT_EQ((std::vector<LONG>{0, 0, 0}), std::vector<LONG>(codes, codes + 3));
        control->DoTOVEVENT(Bstr(L"main").Get(), 0, Bstr(L"TOVEVENT:SAVE").Get(), nullptr, nullptr, nullptr, nullptr, nullptr,
                            nullptr, nullptr);
        Bstr reply;
        control->LoadIconFont(Bstr(L"<Icons><Icon><Name>save</Name><Font_Size>16</Font_Size></Icon></Icons>").Get(), reply.Put());
        for (const auto& f : TempFolderFiles())
            if (!tempBefore.count(f)) tempFilesMade.push_back(f);

        AtlUnadvise(unknown.Get(), DIID__TOVHTMLControlEvents, cookie);
        gui->SetContainer(nullptr);
        gui.Reset(), control.Reset(), unknown.Reset();
        host.Destroy();
        PumpMessages();
    }
};

class WholeLife : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(S_OK, browsers.Register());
        auto& store = tovfe::DataStore::Instance();
        store.Clear();
        store.Put(L"http://srv/app/page.htm", "<html><meta charset=\"utf-8\">page</html>", L"html");
        store.Put(L"http://srv/app/pic.gif", "GIF89a", L"gif");
    }
    void TearDown() override { tovfe::DataStore::Instance().Clear(); }

    Ocx ocx;
    tovfe::ScriptedBrowserClass browsers;
    tovfe::DataProviderRegistration provider;
};

} // namespace

// One life in detail, then many in a row. TOV_SOAK_CYCLES sets how many (a bounded number by default; the
// benchmark run uses 1000). The first life also warms up what the platform loads and caches once per process.
TEST_F(WholeLife, ManyLivesGiveBackEverythingTheyTook)
{
    const char* env = std::getenv("TOV_SOAK_CYCLES");
    const int cycles = env && std::atoi(env) > 0 ? std::atoi(env) : 40;
    const ProcessState before = ProcessState::Now();
    std::optional<OcxClassRegistration> registration(std::in_place, ocx);
    Life first;
    ASSERT_NO_FATAL_FAILURE(first.Run());
    ASSERT_EQ(1u, browsers.Created().size());
    EXPECT_EQ(nullptr, browsers.Last()->Site()) << "the container's close reached the browser";
    EXPECT_EQ(1u, first.sink.RefCount()) << "the container let go of the front end's sink";
    EXPECT_EQ(1, std::count_if(first.sink.events.begin(), first.sink.events.end(),
                               [](const FiredEvent& e) { return e.id == 1 && e.args.at(2) == L"TOVEVENT:SAVE"; }));
    ASSERT_FALSE(first.tempFilesMade.empty()) << "the picture went through a temporary file";
    const auto tempAfter = TempFolderFiles();
    for (const auto& f : first.tempFilesMade) EXPECT_EQ(0u, tempAfter.count(f)) << "left behind: " << testing::PrintToString(f);

    const ProcessState start = ProcessState::Now();
    EXPECT_EQ(before.windows, start.windows) << "no window of the control is left";
    for (int i = 0; i < cycles; ++i) ASSERT_NO_FATAL_FAILURE(Life().Run()) << "cycle " << i;
    const ProcessState end = ProcessState::Now();
    // A leak of one object per life shows as at least `cycles`; the platform's caches and free lists move
    // the counts a little either way.
    const long slack = std::max(4, cycles / 2);
    EXPECT_LE(static_cast<long>(end.handles) - static_cast<long>(start.handles), slack) << "handles";
    EXPECT_LE(static_cast<long>(end.gdiObjects) - static_cast<long>(start.gdiObjects), slack) << "GDI objects";
    EXPECT_LE(static_cast<long>(end.userObjects) - static_cast<long>(start.userObjects), slack) << "USER objects";
    EXPECT_EQ(start.windows, end.windows) << "windows";
    EXPECT_EQ(start.tempFiles, end.tempFiles) << "temporary files";
    for (const auto& b : browsers.Created()) EXPECT_EQ(1u, b->RefCount()) << "browser references";
    registration.reset();
    EXPECT_EQ(S_OK, ocx.CanUnloadNow()) << "module lock count back to zero";
    std::printf("%d lives: handles %lu -> %lu, GDI %lu -> %lu, USER %lu -> %lu, windows %d, temp files %zu\n", cycles,
                start.handles, end.handles, start.gdiObjects, end.gdiObjects, start.userObjects, end.userObjects, end.windows,
                end.tempFiles);
}

TEST(ModuleUnload, TheControlWindowClassGoesWithTheModule)
{
    HMODULE loadedAt = nullptr;
    {
        Ocx ocx;
        loadedAt = ocx.Handle();
        ASSERT_TRUE(HostOnce(ocx));
        ASSERT_EQ(S_OK, ocx.CanUnloadNow());
    }
    ASSERT_EQ(nullptr, GetModuleHandleW(OcxPath().c_str())) << "the OCX was unloaded";
    WNDCLASSEXW wc{sizeof(wc)};
    EXPECT_FALSE(GetClassInfoExW(loadedAt, L"TOVHTMLControlWindow", &wc));
    Ocx again;
    EXPECT_TRUE(HostOnce(again)) << "loaded again, the control still gets its window";
}
