#include "frontend/container_window.h"

extern "C" {
BOOL WINAPI AtlAxWinInit();
HRESULT WINAPI AtlAxAttachControl(IUnknown* pControl, HWND hWnd, IUnknown** ppUnkContainer);
HRESULT WINAPI AtlAxCreateControl(LPCOLESTR lpszName, HWND hWnd, IStream* pStream, IUnknown** ppUnkContainer);
HRESULT WINAPI AtlAxGetControl(HWND hWnd, IUnknown** pp);
}

namespace tovfe {

void PumpMessages()
{
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
}

bool PlaceMousePointer(POINT screen, DWORD ms)
{
    const ULONGLONG deadline = GetTickCount64() + ms;
    for (int steady = 0; GetTickCount64() <= deadline;) {
        POINT now{};
        GetCursorPos(&now);
        if (now.x != screen.x || now.y != screen.y) {
            SetCursorPos(screen.x, screen.y);
            steady = 0;
        } else if (++steady == 5) {
            return true;
        }
        PumpMessages();
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
    return false;
}

ContainerWindow::ContainerWindow(int width, int height)
{
    AtlAxWinInit();
    m_frame = CreateWindowExW(0, L"Static", L"TOVHTML container", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, 0, width + 40,
                              height + 60, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
    m_host = CreateWindowExW(0, L"AtlAxWin", nullptr, WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0, width, height,
                             m_frame, nullptr, GetModuleHandleW(nullptr), nullptr);
    ShowWindow(m_frame, SW_SHOW);
    PumpMessages();
}

ContainerWindow::~ContainerWindow() { Destroy(); }

HRESULT ContainerWindow::Attach(IUnknown* control)
{
    if (!m_host) return E_FAIL;
    tov::ComPtr<IUnknown> container;
    HRESULT hr = AtlAxAttachControl(control, m_host, container.Put());
    PumpMessages();
    return hr;
}

HRESULT ContainerWindow::Create(const wchar_t* progId, IUnknown** ppControl)
{
    if (!m_host) return E_FAIL;
    tov::ComPtr<IUnknown> container;
    HRESULT hr = AtlAxCreateControl(progId, m_host, nullptr, container.Put());
    PumpMessages();
    if (SUCCEEDED(hr) && ppControl) hr = AtlAxGetControl(m_host, ppControl);
    return hr;
}

void ContainerWindow::Resize(int width, int height)
{
    MoveWindow(m_host, 0, 0, width, height, TRUE);
    PumpMessages();
}

void ContainerWindow::Destroy()
{
    if (m_frame) DestroyWindow(m_frame);
    m_frame = m_host = nullptr;
    PumpMessages();
}

} // namespace tovfe
