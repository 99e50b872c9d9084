#pragma once
// The browser's window: shows the engine's latest rendering of the page (decoded with the platform's
// imaging component, painted on WM_PAINT) and passes mouse, wheel and keys on to the engine.
#include <windows.h>
#include <string>

namespace tovengine {

class Page;

class ViewHost {
public:
    virtual ~ViewHost() = default;
    // The page input goes to; null while there is none.
    virtual Page* ViewPage() = 0;
    // A stand-alone window was closed by its user.
    virtual void ViewClosedByUser() = 0;
};

class BrowserView {
public:
    explicit BrowserView(ViewHost& host) : m_host(host) {}
    ~BrowserView() { Destroy(); }
    BrowserView(const BrowserView&) = delete;
    BrowserView& operator=(const BrowserView&) = delete;

    // A child window of `parent` at `rect`, or (topLevel) a window of its own.
    bool Create(HWND parent, const RECT& rect, bool topLevel);
    void Destroy() noexcept;
    HWND Window() const { return m_window; }
    void Move(const RECT& rect);
    void SetTitle(const std::wstring& title);
    // The client area's size in pixels (0 when there is no window).
    SIZE ClientSize() const;
    // A new rendering (PNG or JPEG bytes); false when it could not be decoded.
    bool ShowPicture(const std::string& encoded);
    bool HasPicture() const { return m_picture != nullptr; }

private:
    static LRESULT CALLBACK WindowProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam);
    LRESULT Handle(UINT msg, WPARAM wParam, LPARAM lParam);
    void Paint();

    ViewHost& m_host;
    HWND m_window = nullptr;
    HBITMAP m_picture = nullptr;
    SIZE m_pictureSize{};
    bool m_topLevel = false;
    int m_clicks = 0;
    DWORD m_lastClickTime = 0;
};

} // namespace tovengine
