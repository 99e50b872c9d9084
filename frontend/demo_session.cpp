#include "frontend/demo_session.h"
#include <ocidl.h>
#include <mshtmhst.h>
#include <cstdio>
#include <functional>
#include <set>
#include "TOVHTML_h.h"
#include "frontend/browser_application_class.h"
#include "frontend/class_registration.h"
#include "frontend/container_window.h"
#include "frontend/context_menu_standin.h"
#include "frontend/data_provider_standin.h"
#include "frontend/event_printer.h"
#include "frontend/frontend_container.h"
#include "frontend/gui_service_standin.h"
#include "frontend/scripted_browser.h"
#include "frontend/folders.h"
#include "framework/bstr.h"
#include "framework/code_pages.h"

using tov::Bstr;
using tov::ComPtr;

namespace tovfe {
namespace {

constexpr wchar_t kAppUrl[] = L"http://demo.invalid/app/";

class Session {
public:
    explicit Session(const std::wstring& samples) : m_host(720, 480)
    {
        DataStore::Instance().ServeFolder(samples, kAppUrl);
        MakeFrontend(m_container, m_trace);
        m_services = AddGUIServices(*m_container.Get(), 1252, L"EN");
        m_menuService = ContextMenuServiceStandIn::Create(m_menuServiceCalls);
        m_container->AddService(SID_TOVContextMenuService, static_cast<ITOVContextMenuService*>(m_menuService.Get()));
        m_tempBefore = TempFolderFiles();
    }

    bool Start()
    {
        if (FAILED(m_browsers.Register()) || FAILED(m_windows.Register()))
            return Fail("the scripted browser classes could not be registered");
        ComPtr<IUnknown> unk;
        HRESULT hr = m_host.Create(L"TOV.HTMLIEControl", unk.Put());
        if (FAILED(hr) || !unk) return Fail("the container could not create TOV.HTMLIEControl (is it registered?)", hr);
        unk->QueryInterface(IID_ITOVHTMLControl, m_control.PutVoid());
        if (!m_control) return Fail("the control does not answer ITOVHTMLControl");
        std::printf("The container window holds the control, created by its ProgID TOV.HTMLIEControl.\n");

        ComPtr<ITOVGUIControl> gui;
        if (SUCCEEDED(unk->QueryInterface(IID_ITOVGUIControl, gui.PutVoid()))) gui->SetContainer(m_container.Get());
        ConnectEvents(unk.Get());

        LONG code = -1;
        m_control->InitControl(&code);
        Report("InitControl", code);
        Bstr prefix(kAppUrl);
        m_control->put_URLPrefixLocal(prefix.Get());
        return code == 0;
    }

    // Runs one step: prints its title, the return code, then what the browser, the front end and the
    // temporary folder saw.
    void Step(const char* title, const std::function<LONG()>& action)
    {
        std::printf("\n== %s\n", title);
        const LONG code = action();
        Report(nullptr, code);
    }

    ITOVHTMLControl* Control() const { return m_control.Get(); }
    ScriptedBrowser* Browser() const { return m_browsers.Last(); }
    // The front end's menu service, and the log its menus record into.
    ContextMenuServiceStandIn* MenuService() const { return m_menuService.Get(); }
    const std::shared_ptr<Recorder>& MenuCalls() const { return m_menuCalls; }
    void PrintMenuCalls()
    {
        PrintCalls("menu", m_menuCalls->log.Texts(), m_shownMenuCalls);
        PrintCalls("menu service", m_menuServiceCalls->log.Texts(), m_shownMenuServiceCalls);
    }

    void Finish()
    {
        std::printf("\n== the front end closes its window: the container releases the control\n");
        if (m_cookie && m_point) m_point->Unadvise(m_cookie);
        m_point.Reset();
        m_control.Reset();
        m_host.Destroy();
        PrintBrowserCalls();
        const auto left = NewTempFiles();
        std::printf("  temporary files left: %zu%s\n", left.size(), left.empty() ? "" : " (output copies)");
        for (const auto& f : left) std::printf("    %s\n", ConsoleText(f).c_str());
        if (!m_made.empty()) std::printf("  temporary files made and deleted again: %zu\n", m_made.size());
    }

private:
    bool Fail(const char* what, HRESULT hr = E_FAIL)
    {
        std::printf("demo: %s (0x%08lx)\n", what, static_cast<unsigned long>(hr));
        return false;
    }

    void ConnectEvents(IUnknown* unk)
    {
        m_printer = EventPrinter::Create(ControlEventsTypeInfo(unk).Get());
        ComPtr<IConnectionPointContainer> cpc;
        if (SUCCEEDED(unk->QueryInterface(IID_IConnectionPointContainer, cpc.PutVoid())) &&
            SUCCEEDED(cpc->FindConnectionPoint(DIID__TOVHTMLControlEvents, m_point.Put())))
            m_point->Advise(static_cast<IDispatch*>(m_printer.Get()), &m_cookie);
        std::printf("The front end listens to the control's events (cookie %lu).\n", static_cast<unsigned long>(m_cookie));
    }

    void Report(const char* what, LONG code)
    {
        PumpMessages();
        if (what) std::printf("\n== %s\n", what);
        std::printf("  return code %ld\n", static_cast<long>(code));
        PrintBrowserCalls();
        for (const auto& f : NewTempFiles()) {
            if (m_made.insert(f).second) std::printf("  temporary file made: %s\n", ConsoleText(f).c_str());
        }
    }

    void PrintBrowserCalls()
    {
        PrintCalls("browser", m_browsers.Log().Texts(), m_shownCalls);
        PrintCalls("separate window", m_windows.Log().Texts(), m_shownWindowCalls);
    }

    static void PrintCalls(const char* who, const std::vector<std::wstring>& texts, size_t& shown)
    {
        for (size_t i = shown; i < texts.size(); ++i) {
            std::wstring t = texts[i];
            if (t.rfind(L"QueryInterface(", 0) == 0) continue;
            if (t.size() > 160) t = t.substr(0, 100) + L" ... " + t.substr(t.size() - 50);
            std::printf("  %s: %s\n", who, ConsoleText(t).c_str());
        }
        shown = texts.size();
    }

    std::set<std::wstring> NewTempFiles() const
    {
        std::set<std::wstring> now;
        for (const auto& f : TempFolderFiles())
            if (!m_tempBefore.count(f)) now.insert(f);
        return now;
    }

    ScriptedBrowserClass m_browsers;
    BrowserApplicationClass m_windows;
    DataProviderRegistration m_provider;
    ContainerWindow m_host;
    ComPtr<FrontendContainer> m_container;
    ComPtr<TraceSinkStandIn> m_trace;
    GUIServices m_services;
    std::shared_ptr<Recorder> m_menuCalls = std::make_shared<Recorder>();
    std::shared_ptr<Recorder> m_menuServiceCalls = std::make_shared<Recorder>();
    ComPtr<ContextMenuServiceStandIn> m_menuService;
    ComPtr<ITOVHTMLControl> m_control;
    ComPtr<EventPrinter> m_printer;
    ComPtr<IConnectionPoint> m_point;
    DWORD m_cookie = 0;
    size_t m_shownCalls = 0;
    size_t m_shownWindowCalls = 0;
    size_t m_shownMenuCalls = 0;
    size_t m_shownMenuServiceCalls = 0;
    std::set<std::wstring> m_tempBefore;
    std::set<std::wstring> m_made;
};

LONG Checked(HRESULT hr, LONG code)
{
    if (FAILED(hr)) std::printf("  HRESULT 0x%08lx\n", static_cast<unsigned long>(hr));
    return code;
}

} // namespace

int RunDemoSession(const std::wstring& samples)
{
    Session s(samples);
    if (!s.Start()) return 1;
    ITOVHTMLControl* c = s.Control();

    s.Step("ShowData(\"form.htm\"): an HTML page from the data provider", [&] {
        Bstr url(L"form.htm");
        LONG code = -1;
        const HRESULT hr = c->ShowData(url.Get(), nullptr, 1, &code);
        return Checked(hr, code);
    });
    s.Step("ShowData(\"chart.png\"): other data goes through a temporary file", [&] {
        Bstr url(L"chart.png");
        LONG code = -1;
        const HRESULT hr = c->ShowData(url.Get(), nullptr, 1, &code);
        return Checked(hr, code);
    });
    s.Step("ShowURL(\"http://www.example.invalid/news.htm\"): an ordinary URL", [&] {
        Bstr url(L"http://www.example.invalid/news.htm");
        LONG code = -1;
        const HRESULT hr = c->ShowURL(url.Get(), nullptr, &code);
        return Checked(hr, code);
    });
    s.Step("ShowURLInBrowser(\"http://www.example.invalid/help.htm\"): a separate browser window", [&] {
        Bstr url(L"http://www.example.invalid/help.htm");
        LONG code = -1;
        const HRESULT hr = c->ShowURLInBrowser(url.Get(), &code);
        return Checked(hr, code);
    });

    // The page author's side: links and forms aimed at TOVEVENT: come back to the front end as events.
    DataProviderStandIn* postData = DataProviderStandIn::Create();
    c->put_PostData(postData);
    auto printPosted = [&] {
        for (const auto& [key, bytes] : postData->posted)
        {
            // The page was in windows-1252: shown as text for a person.
            const std::wstring text = tov::Widen(bytes, 1252);
            std::printf("  post data in the front end's provider (%s): %zu bytes \"%s\"\n", ConsoleText(key).c_str(), bytes.size(),
                        ConsoleText(text).c_str());
        }
        postData->posted.clear();
    };
    s.Step("the user submits the order form (national characters, \"+\", \"%\" escapes, &#8364;)", [&] {
        const auto outcome = s.Browser()->SubmitForm(
            L"TOVEVENT:SUBMIT?form=order", "customer=M%FCller+%26+S%F6hne&note=100%25+%2B+5+%3D+105+%26%238364%3B");
        std::printf("  the browser's navigation was %s\n", outcome.cancel ? "cancelled" : "NOT cancelled");
        printPosted();
        return 0L;
    });
    s.Step("the user clicks a TOVEVENT link of 300 characters (it travels in pieces of 255)", [&] {
        std::wstring url = L"TOVEVENT:SHOW?customer=4711&remark=";
        while (url.size() < 300) url += L"abcdefghij";
        const auto outcome = s.Browser()->ClickLink(url.substr(0, 300));
        std::printf("  the browser's navigation was %s\n", outcome.cancel ? "cancelled" : "NOT cancelled");
        return 0L;
    });
    s.Step("a page with two frames loads, then the user clicks a TOVEVENT link inside the frame \"list\"", [&] {
        s.Browser()->LoadPage(L"http://demo.invalid/app/frames.htm", {L"http://demo.invalid/app/list.htm", L"http://demo.invalid/app/detail.htm"});
        const auto outcome = s.Browser()->ClickLink(L"TOVEVENT:SELECT?row=3", L"list");
        std::printf("  the browser's navigation was %s\n", outcome.cancel ? "cancelled" : "NOT cancelled");
        return 0L;
    });
    c->put_PostData(nullptr);
    postData->Release();

    s.Step("the user right-clicks in the page: the front end shows its own context menu and the user picks \"Print\"", [&] {
        LONG flags = 0;
        c->get_UIFlag(&flags);
        c->put_UIFlag(flags | 2);
        std::printf("  the front end sets UIFlag to %ld (bit 2: the front end provides the page's context menus)\n", flags | 2);
        PlaceMousePointer({300, 200});
        POINT mouse{};
        GetCursorPos(&mouse);
        std::printf("  the browser asks the control for a context menu; the mouse is at screen point %ld,%ld\n", mouse.x, mouse.y);
        POINT inPage{40, 60};
        const HRESULT asked = s.Browser()->CallShowContextMenu(CONTEXT_MENU_DEFAULT, &inPage);
        if (asked == S_OK) std::printf("  the control answered S_OK: the browser shows no menu of its own\n");
        else std::printf("  the control answered 0x%08lx: the browser shows its own menu\n", static_cast<unsigned long>(asked));

        auto menu = ContextMenuStandIn::Create({{L"FC_OPEN", L"FC_PRINT", L"FC_PROPERTIES"}, 1}, s.MenuCalls());
        IDispatch* menuDispatch = static_cast<ITOVContextMenu*>(menu.Get());
        s.MenuService()->whileShowing = [&] {
            s.PrintMenuCalls();
            std::printf("  the menu is open; the user picks entry 1 and the front end hands the menu back to the control\n"
                        "  (ITOVGUIControl::HandleEvent 300)\n");
            ComPtr<ITOVGUIControl> gui;
            if (SUCCEEDED(c->QueryInterface(IID_ITOVGUIControl, gui.PutVoid()))) gui->HandleEvent(300, menuDispatch);
            std::printf("  the control read the chosen entry from the menu:\n");
            s.PrintMenuCalls();
        };
        std::printf("  in answer the front end builds its menu (FC_OPEN, FC_PRINT, FC_PROPERTIES) and calls\n"
                    "  TrackContextMenu(menu, 0, 0): 0,0 places it at the mouse\n");
        const HRESULT tracked = c->TrackContextMenu(menuDispatch, 0, 0);
        s.MenuService()->whileShowing = nullptr;
        s.PrintMenuCalls();
        return Checked(tracked, 0);
    });
    s.Finish();
    return 0;
}

} // namespace tovfe
