// The control's whole life in a real container, and many such lives in a row: whatever the control
// took — windows, handles, temporary files, references on the browser and on the module — is given back.
#include <algorithm>
#include <cstdlib>
#include <memory>
#include "support/atl_host.h"
#include "support/control_fixture.h"
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

constexpr wchar_t kClassText[] = L"{B650592E-C92E-4739-8B43-8FB7CCF89466}";

// True when `expected` appears in `calls` in this order (other calls may come between).
bool InOrder(const std::vector<std::wstring>& calls, const std::vector<std::wstring>& expected)
{
    auto it = calls.begin();
    for (const auto& e : expected) {
        it = std::find_if(it, calls.end(), [&](const std::wstring& c) { return c.rfind(e, 0) == 0; });
        if (it == calls.end()) return false;
        ++it;
    }
    return true;
}

// One front end's use of one control: created by the container, connected, fed, and closed.
struct Life {
    tovfe::ScriptedBrowserClass& browsers;
    RecordingEventSink sink;
    std::vector<std::wstring> tempFilesMade;

    explicit Life(tovfe::ScriptedBrowserClass& b) : browsers(b) {}

    void Run(bool check)
    {
        auto container = tovfe::FrontendContainer::Create();
        auto trace = tovfe::TraceSinkStandIn::Create();
        container->AddService(SID_TOVTraceSink, static_cast<ITOVTraceSink*>(trace.Get()));
        auto services = tovfe::AddGUIServices(*container.Get(), 1252, L"EN");
        services.gui->IconFonts().descriptions[L"save"] = L"glyph=1";
        const auto tempBefore = TempFolderFiles();

        AtlHost host(400, 300);
        ComPtr<IUnknown> unknown;
        ASSERT_EQ(S_OK, host.Create(kClassText, unknown.Put()));
        ComPtr<ITOVHTMLControl> control;
        ASSERT_EQ(S_OK, unknown->QueryInterface(IID_ITOVHTMLControl, control.PutVoid()));
        ComPtr<ITOVGUIControl> gui;
        ASSERT_EQ(S_OK, unknown->QueryInterface(IID_ITOVGUIControl, gui.PutVoid()));
        gui->SetContainer(container.Get());
        DWORD cookie = 0;
        ASSERT_EQ(S_OK, AtlAdvise(unknown.Get(), &sink, DIID__TOVHTMLControlEvents, &cookie));

        LONG code = -1;
        control->InitControl(&code);
        ASSERT_EQ(0, code);
        Bstr prefix(L"http://srv/app/");
        control->put_URLPrefixLocal(prefix.Get());
        for (const wchar_t* url : {L"page.htm", L"pic.gif"}) {
            Bstr b(url);
            code = -1;
            control->ShowData(b.Get(), nullptr, 1, &code);
            if (check) EXPECT_EQ(0, code) << "ShowData " << url;
        }
        Bstr page(L"http://example.invalid/");
        code = -1;
        control->ShowURL(page.Get(), nullptr, &code);
        if (check) EXPECT_EQ(0, code);
        Bstr frame(L"main"), piece(L"TOVEVENT:SAVE");
        control->DoTOVEVENT(frame.Get(), 0, piece.Get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
        Bstr request(L"<Icons><Icon><Name>save</Name><Font_Size>16</Font_Size></Icon></Icons>"), reply;
        control->LoadIconFont(request.Get(), reply.Put());
        for (const auto& f : TempFolderFiles())
            if (!tempBefore.count(f)) tempFilesMade.push_back(f);

        AtlUnadvise(unknown.Get(), DIID__TOVHTMLControlEvents, cookie);
        gui->SetContainer(nullptr);
        gui.Reset();
        control.Reset();
        unknown.Reset();
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

TEST_F(WholeLife, InARealContainerFromCreationToRelease)
{
    const ProcessState before = ProcessState::Now();
    {
        OcxClassRegistration registration(ocx);
        Life life(browsers);
        ASSERT_NO_FATAL_FAILURE(life.Run(true));

        ASSERT_EQ(1u, browsers.Created().size());
        tovfe::ScriptedBrowser* browser = browsers.Last();
        const auto calls = browser->Log().Texts();
        EXPECT_TRUE(InOrder(calls, {L"CoCreateInstance(WebBrowser)", L"SetClientSite(site)", L"DoVerb(-5",
                                    L"Advise(DWebBrowserEvents)", L"Advise(DWebBrowserEvents2)", L"Navigate(about:blank",
                                    L"Navigate(", L"Navigate(", L"Navigate(http://example.invalid/",
                                    L"Unadvise(DWebBrowserEvents", L"Unadvise(DWebBrowserEvents2", L"Stop()", L"Quit()",
                                    L"UIDeactivate()", L"InPlaceDeactivate()", L"SetClientSite(null)", L"Close(1)"}))
            << "the browser saw its whole life in order";
        EXPECT_EQ(0u, browser->SinkCount(DIID_DWebBrowserEvents2)) << "the control unadvised";
        EXPECT_EQ(0u, browser->SinkCount(DIID_DWebBrowserEvents));
        EXPECT_EQ(1u, browser->RefCount()) << "only the test's record of the browser is left";
        EXPECT_EQ(nullptr, browser->Site()) << "the browser was given no site to keep";
        EXPECT_EQ(1u, life.sink.m_refs) << "the container let go of the front end's sink";
        ASSERT_FALSE(life.tempFilesMade.empty()) << "the picture went through a temporary file";
        const auto after = TempFolderFiles();
        for (const auto& f : life.tempFilesMade) EXPECT_EQ(0u, after.count(f)) << "left behind: " << std::string(f.begin(), f.end());
    }
    const ProcessState now = ProcessState::Now();
    EXPECT_EQ(before.windows, now.windows) << "no window of the control is left";
    EXPECT_EQ(before.tempFiles, now.tempFiles);
    EXPECT_EQ(S_OK, ocx.CanUnloadNow()) << "module lock count back to zero";
}

// Many lives in a row. TOV_SOAK_CYCLES sets how many (a bounded number by default; the benchmark run
// uses 1000). One warm-up life first: the platform loads and caches things once per process.
TEST_F(WholeLife, ManyLivesGiveBackEverythingTheyTook)
{
    const char* env = std::getenv("TOV_SOAK_CYCLES");
    const int cycles = env && std::atoi(env) > 0 ? std::atoi(env) : 40;
    auto registration = std::make_unique<OcxClassRegistration>(ocx);
    {
        Life warmUp(browsers);
        ASSERT_NO_FATAL_FAILURE(warmUp.Run(false));
    }
    const ProcessState start = ProcessState::Now();
    for (int i = 0; i < cycles; ++i) {
        Life life(browsers);
        ASSERT_NO_FATAL_FAILURE(life.Run(false)) << "cycle " << i;
    }
    const ProcessState end = ProcessState::Now();
    // A leak of one object per life would show as at least `cycles`; the platform's own caches (and, where
    // counts are probed, its free lists) move them a little either way.
    const long slack = std::max(4, cycles / 2);
    EXPECT_LE(static_cast<long>(end.handles) - static_cast<long>(start.handles), slack) << "handles";
    EXPECT_LE(static_cast<long>(end.gdiObjects) - static_cast<long>(start.gdiObjects), slack) << "GDI objects";
    // Where USER objects are only probed, the free list's order moves the probe by up to one per life.
    EXPECT_LE(static_cast<long>(end.userObjects) - static_cast<long>(start.userObjects), std::max<long>(slack, cycles)) << "USER objects";
    EXPECT_EQ(start.windows, end.windows) << "windows";
    EXPECT_EQ(start.tempFiles, end.tempFiles) << "temporary files";
    for (const auto& b : browsers.Created()) EXPECT_EQ(1u, b->RefCount()) << "browser references";
    registration.reset();
    EXPECT_EQ(S_OK, ocx.CanUnloadNow()) << "module references";
    std::printf("%d lives: handles %lu -> %lu, GDI %lu -> %lu, USER %lu -> %lu, windows %d, temp files %zu\n", cycles,
                start.handles, end.handles, start.gdiObjects, end.gdiObjects, start.userObjects, end.userObjects, end.windows,
                end.tempFiles);
}
