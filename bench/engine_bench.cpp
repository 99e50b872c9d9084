// The control on the engine against the engine's own floor, measured in the same run through the same
// DevTools connection: (a) a real click on a TOVEVENT link until the front end holds BeforeNavigate, beside
// the same click on a bare engine page until the engine pauses the request; (b) a real 1 MiB form post
// until the front end's provider holds the data, beside the bare page's click until the paused request
// carries the body; (c) ShowData of a 100 KiB page until DocumentComplete, beside a bare navigation to the
// same bytes until the engine stops loading. Median and 99th percentile of 200 runs each. Run by hand
// (scripts/wine-run build/win/engine_bench.exe), never by ctest.
#include <winsock2.h>
#include <windows.h>
#include <ole2.h>
#include <algorithm>
#include <cstdio>
#include <deque>
#include <functional>
#include <string>
#include <vector>
#include "bench/form_post.h"
#include "engine/base64.h"
#include "engine/engine_browser.h"
#include "engine/engine_host.h"
#include "engine/page_hooks.h"
#include "framework/bstr.h"
#include "framework/class_factory.h"
#include "framework/simple_object.h"
#include "frontend/container_window.h"
#include "frontend/data_provider_standin.h"
#include "frontend/frontend_container.h"
#include "frontend/gui_service_standin.h"
#include "frontend/provider_protocol.h"
#include "support/ocx.h"

using tovengine::Json;

namespace {

int g_runs = 200;
const CLSID kWebBrowserClass = {0x8856f961, 0x340a, 0x11d0, {0xa9, 0x6b, 0x00, 0xc0, 0x4f, 0xd7, 0x05, 0xa2}};

double Now()
{
    static LARGE_INTEGER frequency = [] { LARGE_INTEGER f; QueryPerformanceFrequency(&f); return f; }();
    LARGE_INTEGER t;
    QueryPerformanceCounter(&t);
    return double(t.QuadPart) / double(frequency.QuadPart);
}

bool PumpUntil(const std::function<bool()>& done, double seconds = 30)
{
    const double deadline = Now() + seconds;
    while (!done()) {
        if (Now() > deadline) {
            if (seconds > 1) std::printf("    (a run did not finish in %.0f s)\n", seconds);
            return false;
        }
        MSG msg;
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 1, QS_ALLINPUT);
    }
    return true;
}

struct Figures {
    double median;
    double p99;
};

Figures Measure(const std::function<double()>& run)
{
    std::vector<double> times;
    for (int i = 0; i < g_runs; ++i) {
        times.push_back(run());
        if (getenv("TOV_BENCH_VERBOSE")) std::printf("      run %d: %.2f ms\n", i, times.back() * 1e3);
    }
    std::sort(times.begin(), times.end());
    return {times[times.size() / 2], times[times.size() * 99 / 100]};
}

void Report(const char* what, Figures control, Figures floor)
{
    std::printf("%-44s control %8.2f ms median %8.2f ms p99 | engine floor %8.2f ms median %8.2f ms p99 | "
                "added %+6.1f%% median (target <= 20%%)\n",
                what, control.median * 1e3, control.p99 * 1e3, floor.median * 1e3, floor.p99 * 1e3,
                (control.median / floor.median - 1) * 100);
}

// The front end's sink: remembers that BeforeNavigate came.
class Sink final
    : public tov::SimpleObject<Sink, tov::Lifetime::CountOnly, tov::Implements<IDispatch, DIID__TOVHTMLControlEvents>> {
public:
    STDMETHODIMP GetTypeInfoCount(UINT* n) override { if (n) *n = 0; return S_OK; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        if (id == 1) ++beforeNavigates;
        return S_OK;
    }
    int beforeNavigates = 0;
};

// A bare engine page on the control's own engine connection, rendered like the browser's window renders
// its page: the engine's floor.
class BarePage {
public:
    BarePage()
    {
        m_engine = tovengine::EngineHost::Acquire();
        auto& c = m_engine->Connection();
        m_context = tovengine::StringField(c.Call("Target.createBrowserContext", {{"disposeOnDetach", true}}), "browserContextId");
        const std::string target = tovengine::StringField(
            c.Call("Target.createTarget", {{"url", "about:blank"}, {"browserContextId", m_context}}), "targetId");
        m_session = tovengine::StringField(c.Call("Target.attachToTarget", {{"targetId", target}, {"flatten", true}}), "sessionId");
        c.Subscribe(m_session, [this](const std::string& method, const Json& params) {
            if (getenv("TOV_BENCH_VERBOSE")) std::printf("        bare %.3f %s\n", Now(), method.c_str());
            if (method == "Page.screencastFrame") {
                Send("Page.screencastFrameAck", {{"sessionId", tovengine::IntField(params, "sessionId")}});
                return;
            }
            m_events.push_back({method, params});
        });
        c.Call("Page.enable", Json::object(), m_session);
        // As the engine's browser does: without the script domain the first click after a load can miss the hooks.
        c.Call("Runtime.enable", Json::object(), m_session);
        c.Call("Page.addScriptToEvaluateOnNewDocument", {{"source", tovengine::PageHooksScript()}}, m_session);
        c.Call("Emulation.setDeviceMetricsOverride", {{"width", 800}, {"height", 600}, {"deviceScaleFactor", 1}, {"mobile", false}}, m_session);
        c.Call("Fetch.enable", {{"patterns", Json::array({{{"urlPattern", "http://bench.invalid/*"}, {"requestStage", "Request"}},
                                                          {{"urlPattern", "http://tovevent.invalid/*"}, {"requestStage", "Request"}}})}},
               m_session);
        // Shown as the browser's window shows its page: a page nobody looks at is never painted, which
        // no browser on a screen can skip.
        c.Call("Page.startScreencast", {{"format", "png"}, {"everyNthFrame", 1}}, m_session);
    }
    ~BarePage()
    {
        auto& c = m_engine->Connection();
        c.Unsubscribe(m_session);
        c.Call("Target.disposeBrowserContext", {{"browserContextId", m_context}});
    }

    // Navigates to bytes served from memory; the time until the engine stops loading.
    double Load(const std::string& html)
    {
        m_events.clear();
        const double start = Now();
        Send("Page.navigate", {{"url", "http://bench.invalid/page.htm"}});
        const Json paused = Wait("Fetch.requestPaused");
        Send("Fetch.fulfillRequest", {{"requestId", tovengine::StringField(paused, "requestId")},
                                      {"responseCode", 200},
                                      {"responseHeaders", Json::array({{{"name", "Content-Type"}, {"value", "text/html"}}})},
                                      {"body", tovengine::Base64Encode(html)}});
        Wait("Page.frameStoppedLoading");
        return Now() - start;
    }
    // Clicks at x, y; the time until the engine pauses the request the click made (then ended).
    double Click(int x, int y)
    {
        m_events.clear();
        const double start = Now();
        Send("Input.dispatchMouseEvent", {{"type", "mousePressed"}, {"x", x}, {"y", y}, {"button", "left"}, {"clickCount", 1}});
        Send("Input.dispatchMouseEvent", {{"type", "mouseReleased"}, {"x", x}, {"y", y}, {"button", "left"}, {"clickCount", 1}});
        const Json paused = Wait("Fetch.requestPaused");
        const double elapsed = Now() - start;
        Send("Fetch.failRequest", {{"requestId", tovengine::StringField(paused, "requestId")}, {"errorReason", "Aborted"}});
        Wait("Page.frameStoppedLoading");
        PumpUntil([] { return false; }, 0.05); // as after the control's clicks
        return elapsed;
    }

private:
    void Send(const std::string& method, Json params) { m_engine->Connection().Send(method, std::move(params), m_session); }
    Json Wait(const std::string& method)
    {
        Json found;
        PumpUntil([&] {
            for (auto it = m_events.begin(); it != m_events.end(); ++it)
                if (it->first == method) {
                    found = it->second;
                    m_events.erase(m_events.begin(), it + 1);
                    return true;
                }
            return false;
        });
        return found;
    }
    std::shared_ptr<tovengine::EngineHost> m_engine;
    std::string m_context;
    std::string m_session;
    std::deque<std::pair<std::string, Json>> m_events;
};

// The realistic post as form fields of a windows-1252 page: the engine encodes them back.
std::string FormPage(const std::string& post)
{
    std::string html = "<html><head><meta charset=\"windows-1252\"></head><body><form method=\"post\" action=\"TOVEVENT:POST\">"
                       "<button style=\"position:absolute;left:10px;top:10px;width:100px;height:30px\">send</button>";
    size_t start = 0;
    while (start < post.size()) {
        size_t end = post.find('&', start);
        if (end == std::string::npos) end = post.size();
        const std::string field = post.substr(start, end - start);
        const size_t eq = field.find('=');
        std::string value;
        for (size_t i = eq + 1; i < field.size(); ++i) {
            if (field[i] == '+') value += ' ';
            else if (field[i] == '%' && i + 2 < field.size()) {
                const char byte = static_cast<char>(std::stoi(field.substr(i + 1, 2), nullptr, 16));
                value += byte == '&' ? std::string("&amp;") : byte == '"' ? std::string("&quot;") : std::string(1, byte);
                i += 2;
            } else value += field[i];
        }
        html += "<input type=\"hidden\" name=\"" + field.substr(0, eq) + "\" value=\"" + value + "\">";
        start = end + 1;
    }
    return html + "</form></body></html>";
}

} // namespace

int wmain(int argc, wchar_t** argv)
{
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    if (argc > 1) g_runs = std::max(1, _wtoi(argv[1])); // fewer runs for a quick look
    if (FAILED(OleInitialize(nullptr))) return 2;
    tov::ClassFactory<tovengine::CEngineBrowser> factory;
    DWORD cookie = 0;
    CoRegisterClassObject(kWebBrowserClass, &factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie);
    tovfe::DataProviderRegistration providerClass;
    tovfe::ProviderProtocolRegistration protocol;
    {
        tovtest::Ocx ocx;
        tovfe::ContainerWindow host(800, 600);
        auto control = ocx.CreateControl();
        if (!control || FAILED(host.Attach(control.Get()))) return std::printf("no control\n"), 1;
        auto container = tovfe::FrontendContainer::Create();
        tovfe::GUIServices services = tovfe::AddGUIServices(*container.Get(), 1252, L"EN");
        tov::ComPtr<ITOVGUIControl> gui;
        control->QueryInterface(IID_ITOVGUIControl, gui.PutVoid());
        gui->SetContainer(container.Get());
        LONG code = -1;
        control->InitControl(&code);
        if (code != 0) return std::printf("InitControl: %ld\n", code), 1;
        Sink sink;
        tov::ComPtr<IConnectionPoint> point;
        tov::ComPtr<IConnectionPointContainer> points;
        control->QueryInterface(IID_IConnectionPointContainer, points.PutVoid());
        points->FindConnectionPoint(DIID__TOVHTMLControlEvents, point.Put());
        DWORD sinkCookie = 0;
        point->Advise(&sink, &sinkCookie);
        tovfe::DataProviderStandIn* provider = tovfe::DataProviderStandIn::Create();
        control->put_PostData(provider);
        HWND view = FindWindowExW(nullptr, nullptr, nullptr, nullptr);
        {
            HWND controlWindow = nullptr;
            tov::ComPtr<IOleWindow> window;
            control->QueryInterface(IID_IOleWindow, window.PutVoid());
            window->GetWindow(&controlWindow);
            view = FindWindowExW(controlWindow, nullptr, L"TOVEngineBrowserView", nullptr);
        }
        tov::Bstr prefix;
        control->get_URLPrefixLocal(prefix.Put());
        const auto show = [&](const std::wstring& name, const std::string& html) {
            tovfe::DataStore::Instance().Put(std::wstring(prefix.View()) + name, html, L"html");
            LONG shown = -1;
            const double start = Now();
            control->ShowData(tov::Bstr(name).Get(), nullptr, 1, &shown);
            PumpUntil([&] {
                LONG complete = 0;
                control->get_DocumentComplete(&complete);
                return complete == 1;
            });
            return Now() - start;
        };
        const auto click = [&](int x, int y) {
            const int before = sink.beforeNavigates;
            const double start = Now();
            PostMessageW(view, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
            PostMessageW(view, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
            PumpUntil([&] { return sink.beforeNavigates > before; });
            const double elapsed = Now() - start;
            // The engine is still ending the cancelled navigation; a click in that moment may be lost.
            PumpUntil([] { return false; }, 0.05);
            return elapsed;
        };

        BarePage bare;
        const std::string link = "<html><body><a href=\"TOVEVENT:CLICK?id=4711\" style=\"position:absolute;left:10px;"
                                 "top:10px;width:200px;height:30px;display:block\">click</a></body></html>";
        show(L"link.htm", link);
        bare.Load(link);
        const Figures controlClick = Measure([&] { return click(20, 20); });
        const Figures floorClick = Measure([&] { return bare.Click(20, 20); });
        Report("(a) TOVEVENT click until BeforeNavigate", controlClick, floorClick);

        const std::string form = FormPage(tovbench::RealisticPost());
        show(L"form.htm", form);
        bare.Load(form);
        const Figures controlPost = Measure([&] { return click(20, 20); });
        const Figures floorPost = Measure([&] { return bare.Click(20, 20); });
        std::printf("    post data held by the provider: %zu bytes\n",
                    provider->posted.count(L"TOVEVENT:|PostData") ? provider->posted[L"TOVEVENT:|PostData"].size() : 0);
        Report("(b) 1 MiB form post until the provider has it", controlPost, floorPost);

        std::string page = "<html><body>";
        while (page.size() < 100 * 1024) page += "<p>Order line with some text, a number 4711 and a price 12,50 EUR.</p>";
        page += "</body></html>";
        const Figures controlShow = Measure([&] { return show(L"page100k.htm", page); });
        const Figures floorShow = Measure([&] { return bare.Load(page); });
        Report("(c) ShowData 100 KiB until DocumentComplete", controlShow, floorShow);

        point->Unadvise(sinkCookie);
        control->put_PostData(nullptr);
        provider->Release();
        host.Destroy();
    }
    CoRevokeClassObject(cookie);
    OleUninitialize();
    return 0;
}
