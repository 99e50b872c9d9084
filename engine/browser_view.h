#pragma once
// The browser's window: shows the engine's latest rendering of the page (painted on WM_PAINT) and passes
// mouse, wheel and keys on to the engine.
#include <windows.h>
#include <string>
#include "engine/picture_decoder.h"

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
    // A new rendering (a PNG or JPEG file in base64), shown once it is decoded.
    void ShowPicture(std::string encoded);

private:
    static LRESULT CALLBACK WindowProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam);
    LRESULT Handle(UINT msg, WPARAM wParam, LPARAM lParam);
    void Paint(HDC dc);
    void TakeDecoded();

    ViewHost& m_host;
    HWND m_window = nullptr;
    HBITMAP m_picture = nullptr;
    PictureDecoder m_decoder;
    SIZE m_pictureSize{};
    bool m_topLevel = false;
    int m_clicks = 0;
};

} // namespace tovengine
