#pragma once
// A real ActiveX container: the platform's ATL host window ("AtlAxWin") inside a top-level frame window,
// holding one control.
#include <windows.h>
#include "framework/com_ptr.h"

namespace tovfe {

class ContainerWindow {
public:
    ContainerWindow(int width = 400, int height = 300);
    ~ContainerWindow();
    ContainerWindow(const ContainerWindow&) = delete;
    ContainerWindow& operator=(const ContainerWindow&) = delete;

    // Puts the control into the host window; the host activates it in place.
    HRESULT Attach(IUnknown* control);
    // Creates a control by ProgID or class text inside the host window.
    HRESULT Create(const wchar_t* progId, IUnknown** ppControl);
    void Resize(int width, int height);
    // Destroys the host window: the container closes and releases the control.
    void Destroy();

    HWND Frame() const { return m_frame; }
    HWND HostWindow() const { return m_host; }

private:
    HWND m_frame = nullptr;
    HWND m_host = nullptr;
};

// Handles pending window messages of this thread.
void PumpMessages();

// Puts the mouse pointer at a screen point, where a user's hand would be, and waits (handling this
// thread's messages) until it stays there: the pointer belongs to the whole display, and under Wine a
// warp can be overtaken by motion the display still had queued. Whether it held within `ms`.
bool PlaceMousePointer(POINT screen, DWORD ms = 2000);

} // namespace tovfe
