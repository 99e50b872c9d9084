#include "engine/browser_view.h"
#include <windowsx.h>
#include "engine/page.h"
#include "engine/this_module.h"
#include "framework/com_ptr.h"

namespace tovengine {
namespace {

const wchar_t kViewClass[] = L"TOVEngineBrowserView";

void RegisterViewClass()
{
    WNDCLASSEXW wc{};
    wc.cbSize = sizeof wc;
    if (GetClassInfoExW(ThisModule(), kViewClass, &wc)) return;
    wc.style = CS_DBLCLKS;
    wc.lpfnWndProc = DefWindowProcW; // replaced per window, so that the class never points at freed code
    wc.hInstance = ThisModule();
    wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    wc.hbrBackground = nullptr;
    wc.lpszClassName = kViewClass;
    RegisterClassExW(&wc);
}

int Modifiers(WPARAM keys)
{
    int m = 0;
    if (GetKeyState(VK_MENU) < 0) m |= 1;
    if ((keys & MK_CONTROL) || GetKeyState(VK_CONTROL) < 0) m |= 2;
    if ((keys & MK_SHIFT) || GetKeyState(VK_SHIFT) < 0) m |= 8;
    return m;
}

const char* HeldButton(WPARAM keys)
{
    if (keys & MK_LBUTTON) return "left";
    if (keys & MK_RBUTTON) return "right";
    if (keys & MK_MBUTTON) return "middle";
    return "none";
}

} // namespace

bool BrowserView::Create(HWND parent, const RECT& rect, bool topLevel)
{
    if (m_window) return true;
    RegisterViewClass();
    m_topLevel = topLevel;
    const DWORD style = topLevel ? WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN : WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_TABSTOP;
    m_window = CreateWindowExW(0, kViewClass, L"", style, rect.left, rect.top, rect.right - rect.left,
                               rect.bottom - rect.top, topLevel ? nullptr : parent, nullptr, ThisModule(), nullptr);
    if (!m_window) return false;
    SetWindowLongPtrW(m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetWindowLongPtrW(m_window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&BrowserView::WindowProc));
    return true;
}

void BrowserView::Destroy() noexcept
{
    if (m_window) {
        const HWND window = std::exchange(m_window, nullptr);
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&DefWindowProcW));
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        DestroyWindow(window);
    }
    if (m_picture) {
        DeleteObject(m_picture);
        m_picture = nullptr;
    }
}

void BrowserView::Move(const RECT& rect)
{
    if (m_window) MoveWindow(m_window, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, TRUE);
}

void BrowserView::SetTitle(const std::wstring& title)
{
    if (m_window && m_topLevel) SetWindowTextW(m_window, title.c_str());
}

SIZE BrowserView::ClientSize() const
{
    RECT r{};
    if (m_window) GetClientRect(m_window, &r);
    return {r.right - r.left, r.bottom - r.top};
}

constexpr UINT kPictureReady = WM_APP + 0x2B;

void BrowserView::ShowPicture(std::string encoded)
{
    if (m_window) m_decoder.Submit(std::move(encoded), m_window, kPictureReady);
}

void BrowserView::TakeDecoded()
{
    SIZE size{};
    HBITMAP picture = m_decoder.Take(size);
    if (!picture) return;
    if (m_picture) DeleteObject(m_picture);
    m_picture = picture;
    m_pictureSize = size;
    InvalidateRect(m_window, nullptr, FALSE);
}

void BrowserView::Paint(HDC dc)
{
    RECT client{};
    GetClientRect(m_window, &client);
    if (m_picture) {
        HDC memory = CreateCompatibleDC(dc);
        HGDIOBJ old = SelectObject(memory, m_picture);
        BitBlt(dc, 0, 0, m_pictureSize.cx, m_pictureSize.cy, memory, 0, 0, SRCCOPY);
        SelectObject(memory, old);
        DeleteDC(memory);
        // Whatever the picture does not cover yet (the window grew) stays white, as an empty page.
        RECT right{m_pictureSize.cx, 0, client.right, client.bottom};
        RECT below{0, m_pictureSize.cy, std::min(m_pictureSize.cx, client.right), client.bottom};
        FillRect(dc, &right, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
        FillRect(dc, &below, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    } else {
        FillRect(dc, &client, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    }
}

LRESULT CALLBACK BrowserView::WindowProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam)
{
    auto* view = reinterpret_cast<BrowserView*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
    if (!view) return DefWindowProcW(hwnd, msg, wParam, lParam);
    return view->Handle(msg, wParam, lParam);
}

LRESULT BrowserView::Handle(UINT msg, WPARAM wParam, LPARAM lParam)
{
    const HWND window = m_window;
    Page* page = m_host.ViewPage();
    const int x = GET_X_LPARAM(lParam);
    const int y = GET_Y_LPARAM(lParam);
    switch (msg) {
    case WM_PAINT: {
        PAINTSTRUCT ps;
        HDC dc = BeginPaint(window, &ps);
        Paint(dc);
        EndPaint(window, &ps);
        return 0;
    }
    case kPictureReady:
        TakeDecoded();
        return 0;
    case WM_PRINTCLIENT:
        Paint(reinterpret_cast<HDC>(wParam));
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SIZE:
        if (page && LOWORD(lParam) > 0 && HIWORD(lParam) > 0) page->Resize(LOWORD(lParam), HIWORD(lParam));
        return 0;
    case WM_GETDLGCODE:
        return DLGC_WANTALLKEYS | DLGC_WANTCHARS | DLGC_WANTARROWS | DLGC_WANTTAB;
    case WM_MOUSEACTIVATE:
        SetFocus(window);
        return MA_ACTIVATE;
    case WM_MOUSEMOVE:
        if (page) page->Mouse("mouseMoved", x, y, HeldButton(wParam), 0, Modifiers(wParam));
        return 0;
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDBLCLK:
    case WM_MBUTTONDBLCLK: {
        SetFocus(window);
        SetCapture(window);
        const bool dbl = msg == WM_LBUTTONDBLCLK || msg == WM_RBUTTONDBLCLK || msg == WM_MBUTTONDBLCLK;
        m_clicks = dbl ? 2 : 1;
        const char* button = (msg == WM_LBUTTONDOWN || msg == WM_LBUTTONDBLCLK) ? "left"
                             : (msg == WM_RBUTTONDOWN || msg == WM_RBUTTONDBLCLK) ? "right" : "middle";
        // The pointer got here with WM_MOUSEMOVE already: the press goes alone.
        if (page) page->Mouse("mousePressed", x, y, button, m_clicks, Modifiers(wParam));
        return 0;
    }
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
    case WM_MBUTTONUP: {
        if (GetCapture() == window) ReleaseCapture();
        const char* button = msg == WM_LBUTTONUP ? "left" : msg == WM_RBUTTONUP ? "right" : "middle";
        if (page) page->Mouse("mouseReleased", x, y, button, std::max(m_clicks, 1), Modifiers(wParam));
        return 0;
    }
    case WM_MOUSEWHEEL: {
        POINT pt{x, y};
        ScreenToClient(window, &pt);
        const int delta = GET_WHEEL_DELTA_WPARAM(wParam);
        if (page) page->Mouse("mouseWheel", pt.x, pt.y, "none", 0, Modifiers(GET_KEYSTATE_WPARAM(wParam)), 0, -delta);
        return 0;
    }
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
        if (page) page->Key("rawKeyDown", static_cast<int>(wParam), {}, Modifiers(0));
        return 0;
    case WM_KEYUP:
    case WM_SYSKEYUP:
        if (page) page->Key("keyUp", static_cast<int>(wParam), {}, Modifiers(0));
        return 0;
    case WM_CHAR:
        if (page && wParam >= 0x20) page->Key("char", 0, std::wstring(1, static_cast<wchar_t>(wParam)), Modifiers(0));
        else if (page && wParam == L'\r') page->Key("char", 0, L"\r", Modifiers(0));
        return 0;
    case WM_CLOSE:
        if (m_topLevel) {
            m_host.ViewClosedByUser();
            return 0;
        }
        break;
    default:
        break;
    }
    return DefWindowProcW(window, msg, wParam, lParam);
}

} // namespace tovengine
