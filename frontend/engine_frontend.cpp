#include "frontend/engine_frontend.h"
#include <mlang.h>
#include <cstdio>
#include "framework/bstr.h"
#include "framework/code_pages.h"
#include "frontend/folders.h"
#include "frontend/table_standin.h"

using tov::Bstr;
using tov::ComPtr;

namespace tovfe {
namespace {

std::string Narrow(const std::wstring& text) { return ConsoleText(text); }

} // namespace

// {DCCFC164-2B38-11D2-B7EC-00C04F8F5D9A}: no import library of the cross compiler carries it.
constexpr IID kMultiLanguage2 = {0xdccfc164, 0x2b38, 0x11d2, {0xb7, 0xec, 0x00, 0xc0, 0x4f, 0x8f, 0x5d, 0x9a}};

UINT CodePageOfCharset(const std::wstring& charset)
{
    // The platform's own table of charset names, as the browser reads a page's.
    ComPtr<IMultiLanguage2> languages;
    MIMECSETINFO info{};
    Bstr name(charset);
    if (!charset.empty() &&
        SUCCEEDED(CoCreateInstance(CLSID_CMultiLanguage, nullptr, CLSCTX_INPROC_SERVER, kMultiLanguage2, languages.PutVoid())) &&
        SUCCEEDED(languages->GetCharsetInfo(name.Get(), &info)) && info.uiInternetEncoding != 0)
        return info.uiInternetEncoding;
    return 1252;
}

EngineFrontEnd::EngineFrontEnd(int width, int height, const wchar_t* title) : m_window(width, height)
{
    SetWindowTextW(m_window.Frame(), title);
    // The frame's inside is exactly the control's place.
    RECT outer{0, 0, width, height};
    AdjustWindowRectEx(&outer, static_cast<DWORD>(GetWindowLongPtrW(m_window.Frame(), GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongPtrW(m_window.Frame(), GWL_EXSTYLE)));
    SetWindowPos(m_window.Frame(), nullptr, 0, 0, outer.right - outer.left, outer.bottom - outer.top, SWP_NOZORDER | SWP_NOMOVE);
    MakeFrontend(m_container, m_trace);
    m_services = AddGUIServices(*m_container.Get(), 1252, L"EN");
    m_menuService = ContextMenuServiceStandIn::Create(m_menuCalls);
    m_container->AddService(SID_TOVContextMenuService, static_cast<ITOVContextMenuService*>(m_menuService.Get()));
}

EngineFrontEnd::~EngineFrontEnd()
{
    Close();
}

HRESULT EngineFrontEnd::CreateControl(IUnknown** control)
{
    CLSID registered{};
    if (SUCCEEDED(CLSIDFromProgID(L"TOV.HTMLIEControl", &registered))) {
        std::printf("The container creates the control by its ProgID TOV.HTMLIEControl.\n");
        return m_window.Create(L"TOV.HTMLIEControl", control);
    }
    // Not registered: the control beside this program, made known to COM in this process only.
    const std::wstring path = BesideThisProgram(L"TOVHTML.OCX");
    m_ocx = LoadLibraryW(path.c_str());
    if (!m_ocx) return HRESULT_FROM_WIN32(GetLastError());
    using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    auto get = reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(GetProcAddress(m_ocx, "DllGetClassObject")));
    ComPtr<IUnknown> factory;
    HRESULT hr = get ? get(CLSID_TOVHTMLControl, IID_IUnknown, factory.PutVoid()) : E_NOINTERFACE;
    if (SUCCEEDED(hr)) hr = m_ocxClass.Register(CLSID_TOVHTMLControl, factory.Get());
    ComPtr<IUnknown> made;
    if (SUCCEEDED(hr)) hr = CoCreateInstance(CLSID_TOVHTMLControl, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, made.PutVoid());
    if (SUCCEEDED(hr)) hr = m_window.Attach(made.Get());
    if (SUCCEEDED(hr)) {
        std::printf("The container holds the control from %s (TOV.HTMLIEControl is not registered).\n", Narrow(path).c_str());
        *control = made.Detach();
    }
    return hr;
}

bool EngineFrontEnd::Start(const std::wstring& folder)
{
    HRESULT hr = m_engine.Register();
    if (FAILED(hr)) {
        std::printf("demo: the engine's browser (%s) could not be loaded (0x%08lx)\n", Narrow(EngineClasses::DllPath()).c_str(),
                    static_cast<unsigned long>(hr));
        return false;
    }
    if (FAILED(m_protocol.Result())) {
        std::printf("demo: the front end's protocol handler could not be registered (0x%08lx)\n",
                    static_cast<unsigned long>(m_protocol.Result()));
        return false;
    }
    ComPtr<IUnknown> unk;
    hr = CreateControl(unk.Put());
    if (FAILED(hr) || !unk) {
        std::printf("demo: the container could not create the control (0x%08lx)\n", static_cast<unsigned long>(hr));
        return false;
    }
    unk->QueryInterface(IID_ITOVHTMLControl, m_control.PutVoid());
    ComPtr<ITOVGUIControl> gui;
    if (SUCCEEDED(unk->QueryInterface(IID_ITOVGUIControl, gui.PutVoid()))) gui->SetContainer(m_container.Get());
    if (!m_control) return false;

    // The front end's sink names the events from the control's own type library.
    m_printer = EventPrinter::Create(ControlEventsTypeInfo(unk.Get()).Get());
    m_printer->afterEach = [this](const std::wstring& name, const std::vector<VARIANT>& args) { OnEvent(name, args); };
    ComPtr<IConnectionPointContainer> cpc;
    if (SUCCEEDED(unk->QueryInterface(IID_IConnectionPointContainer, cpc.PutVoid())) &&
        SUCCEEDED(cpc->FindConnectionPoint(DIID__TOVHTMLControlEvents, m_point.Put())))
        m_point->Advise(static_cast<IDispatch*>(m_printer.Get()), &m_cookie);

    LONG code = -1;
    m_control->InitControl(&code);
    std::printf("\n== InitControl: return code %ld\n", static_cast<long>(code));
    if (code != 0) {
        std::printf("demo: the control could not create the engine's browser (set TOV_ENGINE_TRACE=1 for the engine's side)\n");
        return false;
    }
    Bstr prefix;
    m_control->get_URLPrefixLocal(prefix.Put());
    DataStore::Instance().ServeFolder(folder, std::wstring(prefix.View()));
    m_postData = DataProviderStandIn::Create();
    m_control->put_PostData(m_postData);
    m_postData->Release(); // the control holds it now
    WaitFor([&] { return PageComplete(); }, 15000);
    return true;
}

void EngineFrontEnd::Close()
{
    if (m_closed) return;
    m_closed = true;
    if (m_cookie && m_point) m_point->Unadvise(m_cookie);
    m_cookie = 0;
    m_point.Reset();
    if (m_control) m_control->put_PostData(nullptr);
    m_postData = nullptr;
    m_control.Reset();
    m_window.Destroy();
    m_ocxClass.Revoke();
    m_engine.Revoke();
    // The engine's objects go with the control; the engine process with the last of them.
    WaitFor([&] { return m_engine.CanUnloadNow() == S_OK; }, 10000);
    if (m_ocx) {
        CoFreeUnusedLibraries();
        m_ocx = nullptr; // COM may still hold the module; it is freed with the process
    }
}

HWND EngineFrontEnd::BrowserWindow() const
{
    HWND control = nullptr;
    // The host window holds the control's window, which holds the engine's view.
    for (HWND child = GetWindow(m_window.HostWindow(), GW_CHILD); child && !control; child = GetWindow(child, GW_HWNDNEXT))
        control = child;
    return control ? FindWindowExW(control, nullptr, L"TOVEngineBrowserView", nullptr) : nullptr;
}

bool EngineFrontEnd::WaitFor(const std::function<bool()>& done, DWORD ms)
{
    const ULONGLONG deadline = GetTickCount64() + ms;
    for (;;) {
        if (done()) return true;
        if (!WindowOpen() || GetTickCount64() > deadline) return false;
        PumpMessages();
        if (m_menuAsked) AnswerMenuRequest();
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
}

bool EngineFrontEnd::PageComplete() const
{
    LONG complete = 0;
    return m_control && SUCCEEDED(m_control->get_DocumentComplete(&complete)) && complete == 1;
}

LONG EngineFrontEnd::ShowData(const std::wstring& name)
{
    const size_t before = EventCount(L"NavigateComplete");
    LONG code = -1;
    const HRESULT hr = m_control->ShowData(Bstr(name).Get(), nullptr, 1, &code);
    std::printf("  ShowData(\"%s\") returned %ld (HRESULT 0x%08lx)\n", Narrow(name).c_str(), static_cast<long>(code),
                static_cast<unsigned long>(hr));
    if (code != 0) return code;
    return WaitFor([&] { return EventCount(L"NavigateComplete") > before && PageComplete(); }, 20000) ? 0 : -1;
}

std::optional<POINT> EngineFrontEnd::Locate(const std::wstring& id, const std::wstring& frame)
{
    const std::string f = Narrow(frame), e = Narrow(id);
    const std::string script =
        "(function(){var d=document,x=0,y=0;var f='" + f + "';if(f){var o=document.getElementsByName(f)[0];if(!o)return;"
        "var b=o.getBoundingClientRect();x=b.left+o.clientLeft;y=b.top+o.clientTop;d=o.contentDocument;}"
        "var t=d&&d.getElementById('" + e + "');if(!t)return;var r=t.getBoundingClientRect();"
        "document.documentElement.setAttribute('data-tov-at',Math.round(x+r.left+r.width/2)+','+Math.round(y+r.top+r.height/2));})()";
    auto table = MakeScriptTable({script}, static_cast<LONG>(script.size()));
    if (FAILED(m_control->putref_ScriptText(table.Object())) || FAILED(m_control->ExecuteScript())) return std::nullopt;
    Bstr html;
    m_control->GetHTMLSourceContent(html.Put());
    const std::wstring text(html.View());
    const size_t at = text.find(L"data-tov-at=\"");
    std::optional<POINT> found;
    if (at != std::wstring::npos) {
        POINT p{};
        if (swscanf(text.c_str() + at + 13, L"%ld,%ld", &p.x, &p.y) == 2) found = p;
    }
    const std::string undo = "document.documentElement.removeAttribute('data-tov-at')";
    auto cleanup = MakeScriptTable({undo}, static_cast<LONG>(undo.size()));
    m_control->putref_ScriptText(cleanup.Object());
    m_control->ExecuteScript();
    return found;
}

void EngineFrontEnd::Click(POINT at, bool right)
{
    const HWND view = BrowserWindow();
    const LPARAM where = MAKELPARAM(at.x, at.y);
    // A user's mouse is where they click: the control reads it for the front end's menu.
    POINT screen = at;
    ClientToScreen(view, &screen);
    PlaceMousePointer(screen);
    PostMessageW(view, WM_MOUSEMOVE, 0, where);
    PostMessageW(view, right ? WM_RBUTTONDOWN : WM_LBUTTONDOWN, right ? MK_RBUTTON : MK_LBUTTON, where);
    PostMessageW(view, right ? WM_RBUTTONUP : WM_LBUTTONUP, 0, where);
}

size_t EngineFrontEnd::EventCount(const std::wstring& name) const
{
    return static_cast<size_t>(std::count(m_events.begin(), m_events.end(), name));
}

void EngineFrontEnd::OnEvent(const std::wstring& name, const std::vector<VARIANT>&)
{
    m_events.push_back(name);
    if (name == L"BeforeNavigate") PrintPostData();
    // The front end answers a menu request once the event has returned, as a message loop would.
    if (name == L"ContextMenuRequest") m_menuAsked = true;
    if (onEvent) onEvent(name);
}

void EngineFrontEnd::PrintPostData()
{
    if (!m_postData) return;
    Bstr charset;
    m_control->GetCharsetString(charset.Put());
    const UINT codePage = CodePageOfCharset(std::wstring(charset.View()));
    for (const auto& [key, bytes] : m_postData->posted) {
        if (bytes.empty()) continue;
        const std::wstring text = tov::Widen(bytes, codePage);
        std::printf("    post data in the front end's provider (%s): %zu bytes, read as %s:\n", Narrow(key).c_str(), bytes.size(),
                    Narrow(std::wstring(charset.View())).c_str());
        std::wstring shown;
        for (wchar_t c : text) shown += c == L'\r' ? L"\\r" : c == L'\n' ? L"\\n" : std::wstring(1, c);
        std::printf("      \"%s\"\n", Narrow(shown).c_str());
    }
    m_postData->posted.clear();
}

void EngineFrontEnd::AnswerMenuRequest()
{
    m_menuAsked = false;
    auto menuCalls = std::make_shared<Recorder>();
    auto built = ContextMenuStandIn::Create(menu, menuCalls);
    IDispatch* menuDispatch = static_cast<ITOVContextMenu*>(built.Get());
    std::wstring entries;
    for (const auto& code : menu.functionCodes) entries += (entries.empty() ? L"" : L", ") + code;
    std::printf("  the front end answers with its own menu (%s) at the mouse\n", Narrow(entries).c_str());
    m_menuService->whileShowing = [&] {
        const std::wstring chosen = menu.selectedIndex >= 0 && static_cast<size_t>(menu.selectedIndex) < menu.functionCodes.size()
                                        ? menu.functionCodes[static_cast<size_t>(menu.selectedIndex)] : L"";
        std::printf("  the menu is open; the user picks %s\n", Narrow(chosen).c_str());
        ComPtr<ITOVGUIControl> gui;
        if (SUCCEEDED(m_control->QueryInterface(IID_ITOVGUIControl, gui.PutVoid()))) gui->HandleEvent(300, menuDispatch);
    };
    const HRESULT hr = m_control->TrackContextMenu(menuDispatch, 0, 0);
    m_menuService->whileShowing = nullptr;
    std::printf("  TrackContextMenu: HRESULT 0x%08lx\n", static_cast<unsigned long>(hr));
}

} // namespace tovfe
