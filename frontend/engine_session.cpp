#include "frontend/engine_session.h"
#include <cstdio>
#include "framework/bstr.h"
#include "frontend/engine_frontend.h"
#include "frontend/screenshot.h"
#include "frontend/table_standin.h"
#include "frontend/folders.h"

using tov::Bstr;

namespace tovfe {

std::string ShownPath(const std::wstring& path)
{
    using UnixName = char*(CDECL*)(const wchar_t*);
    static const auto unixName = reinterpret_cast<UnixName>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    if (unixName) {
        if (char* name = unixName(path.c_str())) {
            std::string shown = name;
            HeapFree(GetProcessHeap(), 0, name);
            return shown;
        }
    }
    return ConsoleText(path);
}

namespace {

class Session {
public:
    Session(const std::wstring& pictures) : m_frontEnd(800, 560, L"Front end \x2014 TOV HTML control"), m_pictures(pictures) {}

    EngineFrontEnd& FrontEnd() { return m_frontEnd; }

    void Title(const char* text) { std::printf("\n== %s\n", text); }

    // Saves the front end's window (or `window`) as the next picture of the session.
    void Picture(const char* name, HWND window = nullptr)
    {
        wchar_t file[64];
        swprintf(file, 64, L"%02d-%hs.png", ++m_count, name);
        const std::wstring path = m_pictures + L"\\" + file;
        // The engine's next frame reaches the window; as a person would, the picture waits until the
        // window shows the page rather than the blank it starts with (at most a few seconds).
        HRESULT hr = E_FAIL;
        m_frontEnd.WaitFor([] { return false; }, 400);
        for (int attempt = 0; attempt < 25; ++attempt) {
            hr = SaveWindowPng(window ? window : m_frontEnd.Frame(), path);
            if (FAILED(hr) || PictureColours(path, 3) >= 3) break;
            m_frontEnd.WaitFor([] { return false; }, 200);
        }
        if (SUCCEEDED(hr)) std::printf("  screenshot: %s\n", ShownPath(path).c_str());
        else Fail("the window could not be saved as a picture", hr);
    }

    // A real click on the element `id` (in `frame`), then waits until the front end has `event`.
    bool ClickOn(const std::wstring& id, const std::wstring& frame, const wchar_t* event, bool right = false)
    {
        const auto at = m_frontEnd.Locate(id, frame);
        if (!at) return Fail("the page has no element to click");
        std::printf("  the user %s at %ld,%ld of the browser window (element \"%s\")\n", right ? "right-clicks" : "clicks", at->x,
                    at->y, ConsoleText(id).c_str());
        const size_t before = m_frontEnd.EventCount(event);
        m_frontEnd.Click(*at, right);
        if (!m_frontEnd.WaitFor([&] { return m_frontEnd.EventCount(event) > before; }, 15000))
            return Fail("the front end did not receive the event");
        m_frontEnd.WaitFor([] { return false; }, 200); // what follows the event arrives too
        return true;
    }

    bool Show(const wchar_t* name)
    {
        const LONG code = m_frontEnd.ShowData(name);
        return code == 0 || Fail("the page did not complete");
    }

    bool Fail(const char* what, HRESULT hr = S_OK)
    {
        if (FAILED(hr)) std::printf("  FAILED: %s (0x%08lx)\n", what, static_cast<unsigned long>(hr));
        else std::printf("  FAILED: %s\n", what);
        m_failed = true;
        return false;
    }
    bool Failed() const { return m_failed; }

private:
    EngineFrontEnd m_frontEnd;
    std::wstring m_pictures;
    int m_count = 0;
    bool m_failed = false;
};

} // namespace

int RunEngineSession(const std::wstring& samples, const std::wstring& pictures)
{
    CreateDirectoryW(pictures.c_str(), nullptr);
    Session s(pictures);
    EngineFrontEnd& fe = s.FrontEnd();
    std::printf("The front end's window holds the control; the engine's browser renders the pages inside it.\n");
    if (!fe.Start(samples)) return 1;
    ITOVHTMLControl* c = fe.Control();
    const auto before = TempFolderFiles();

    s.Title("ShowData(\"index.htm\"): the customer desk, a page from the data provider");
    if (s.Show(L"index.htm")) s.Picture("customer-desk");

    s.Title("the user clicks the TOVEVENT link \"Show\" of customer 4711");
    if (s.ClickOn(L"show4711", L"", L"BeforeNavigate")) s.Picture("tovevent-link");

    s.Title("ShowData(\"form.htm\"): an order form in windows-1252");
    if (s.Show(L"form.htm")) {
        Bstr charset;
        c->GetCharsetString(charset.Put());
        std::printf("  GetCharsetString: \"%s\"\n", ConsoleText(std::wstring(charset.View())).c_str());
        s.Picture("order-form");
    }

    s.Title("the user sends the order: the browser encodes the form, the front end reads it from its provider");
    if (s.ClickOn(L"send", L"", L"BeforeNavigate")) s.Picture("form-post");

    s.Title("ExecuteScript: the front end's script marks the order as sent");
    {
        const std::string script =
            "var h=document.querySelector('header h1');h.textContent='Order sent';"
            "document.querySelector('header').style.background='#2e7d32';"
            "var p=document.createElement('p');p.textContent='Confirmed by the front end at '+new Date().toLocaleTimeString();"
            "document.querySelector('main').insertBefore(p,document.querySelector('main').firstChild);";
        auto table = MakeScriptTable({script}, static_cast<LONG>(script.size()));
        c->putref_ScriptText(table.Object());
        const HRESULT hr = c->ExecuteScript();
        Bstr html;
        c->GetHTMLSourceContent(html.Put());
        const bool changed = std::wstring(html.View()).find(L"Order sent") != std::wstring::npos;
        std::printf("  ExecuteScript: HRESULT 0x%08lx; GetHTMLSourceContent %s\n", static_cast<unsigned long>(hr),
                    changed ? "holds the changed page" : "does NOT hold the change");
        if (!changed) s.Fail("the script did not change the page");
        s.Picture("script");
    }

    s.Title("ShowData(\"frames.htm\"): two named frames; the user opens an order in the frame \"list\"");
    if (s.Show(L"frames.htm")) {
        fe.WaitFor([] { return false; }, 500); // both frames' pages
        s.Picture("frames");
        if (s.ClickOn(L"row3", L"list", L"BeforeNavigate")) s.Picture("frame-link");
    }

    s.Title("ShowData(\"chart.png\"): data that is no page goes through a temporary file");
    if (s.Show(L"chart.png")) {
        for (const auto& f : TempFolderFiles())
            if (!before.count(f)) std::printf("  temporary file made: %s\n", ConsoleText(f).c_str());
        s.Picture("picture");
    }

    s.Title("the user right-clicks in the page: the front end shows its own context menu");
    if (s.Show(L"index.htm")) {
        LONG flags = 0;
        c->get_UIFlag(&flags);
        c->put_UIFlag(flags | 2);
        std::printf("  UIFlag %ld (bit 2: the front end provides the page's context menus)\n", flags | 2);
        if (s.ClickOn(L"q", L"", L"ContextMenuRequest", true)) {
            fe.WaitFor([&] { return fe.EventCount(L"ContextMenuSelected") > 0; }, 5000);
            s.Picture("context-menu");
        }
        c->put_UIFlag(flags);
    }

    s.Title("ShowURLInBrowser: the help page in a browser window of its own");
    {
        // The help page lies beside the page shown.
        Bstr current;
        c->GetCurrentURL(current.Put());
        std::wstring url(current.View());
        url = url.substr(0, url.find_last_of(L'/') + 1) + L"help.htm";
        LONG code = -1;
        c->ShowURLInBrowser(Bstr(url).Get(), &code);
        std::printf("  ShowURLInBrowser(\"%s\") returned %ld\n", ConsoleText(url).c_str(), static_cast<long>(code));
        HWND separate = nullptr;
        fe.WaitFor([&] {
            const auto windows = EngineTopWindows();
            separate = windows.empty() ? nullptr : windows.front();
            return separate != nullptr;
        }, 15000);
        if (separate) {
            fe.WaitFor([] { return false; }, 1500);
            s.Picture("separate-window", separate);
            PostMessageW(separate, WM_CLOSE, 0, 0);
            fe.WaitFor([&] { return !IsWindow(separate); }, 5000);
            std::printf("  the user closes the separate window\n");
        } else {
            s.Fail("no separate browser window appeared");
        }
    }

    s.Title("the front end closes its window: the container releases the control, the engine ends");
    fe.Close();
    size_t left = 0;
    for (const auto& f : TempFolderFiles())
        if (!before.count(f)) ++left;
    std::printf("  temporary files left: %zu\n", left);
    return s.Failed() || left ? 1 : 0;
}

} // namespace tovfe
