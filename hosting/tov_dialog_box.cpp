#include "hosting/tov_dialog_box.h"
#include <algorithm>
#include <utility>
#include <mutex>
#include <vector>
#include "framework/com_ptr.h"
#include "framework/module.h"

extern "C" {
BOOL WINAPI AtlAxWinInit();
HWND WINAPI AtlAxCreateDialogW(HINSTANCE hInstance, LPCWSTR lpTemplateName, HWND hWndParent, DLGPROC lpDialogProc,
                               LPARAM dwInitParam);
}

namespace {
// The dialog whose window is being made on this thread: the window's first message attaches it.
thread_local CTovDialogBox* t_creating = nullptr;
// Dialogs that have a window. Process-wide on purpose: a thread_local with a destructor would pin the
// module in memory for good. Each control only looks at its own dialogs.
std::mutex g_liveLock;
std::vector<CTovDialogBox*> g_live;
} // namespace

CTovDialogBox* CTovDialogBox::New(const void* owner)
{
    return new CTovDialogBox(owner);
}

ULONG CTovDialogBox::Release() noexcept
{
    const ULONG refs = --m_refs;
    if (refs == 0) delete this;
    return refs;
}

HWND CTovDialogBox::Create(HWND hWndParent, LPARAM dwInitParam) noexcept
{
    if (m_hWnd) return m_hWnd;
    AtlAxWinInit();
    tov::ComPtr<CTovDialogBox> keepAlive(this);
    CTovDialogBox* outer = std::exchange(t_creating, this);
    AtlAxCreateDialogW(tov::Module::Instance(), MAKEINTRESOURCEW(IDD), hWndParent, &DialogProc, dwInitParam);
    t_creating = outer;
    // A window that failed half-way was destroyed again and has detached itself. The template asks for a
    // system-modal, top-most dialog; not every platform's dialog machinery turns that into top-most.
    if (m_hWnd && (GetWindowLongW(m_hWnd, GWL_STYLE) & DS_SYSMODAL))
        SetWindowPos(m_hWnd, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    return m_hWnd;
}

void CTovDialogBox::Attach(HWND hwnd) noexcept
{
    m_hWnd = hwnd;
    SetWindowLongPtrW(hwnd, DWLP_USER, reinterpret_cast<LONG_PTR>(this));
    try {
        std::lock_guard<std::mutex> lock(g_liveLock);
        g_live.push_back(this);
    } catch (...) {
        // Not listed: the window still goes with its owner window.
    }
    AddRef(); // the window's reference
}

void CTovDialogBox::Detach() noexcept
{
    {
        std::lock_guard<std::mutex> lock(g_liveLock);
        g_live.erase(std::remove(g_live.begin(), g_live.end(), this), g_live.end());
    }
    SetWindowLongPtrW(m_hWnd, DWLP_USER, 0);
    m_hWnd = nullptr;
    Release();
}

INT_PTR CALLBACK CTovDialogBox::DialogProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam)
{
    auto* self = reinterpret_cast<CTovDialogBox*>(GetWindowLongPtrW(hwnd, DWLP_USER));
    if (!self && t_creating && !t_creating->m_hWnd) {
        self = t_creating;
        self->Attach(hwnd);
    }
    if (!self) return FALSE;
    if (msg == WM_NCDESTROY) {
        self->Detach();
        return FALSE;
    }
    // Closing destroys the window, which drops the window's reference inside the handler.
    tov::ComPtr<CTovDialogBox> keepAlive(self);
    LRESULT result = 0;
    if (!self->ProcessMessage(msg, wParam, lParam, result)) return FALSE;
    if (IsWindow(hwnd)) SetWindowLongPtrW(hwnd, DWLP_MSGRESULT, result);
    return TRUE;
}

bool CTovDialogBox::ProcessMessage(UINT msg, WPARAM wParam, LPARAM, LRESULT& result) noexcept
{
    switch (msg) {
    case WM_CLOSE:
        ShowWindow(m_hWnd, SW_HIDE);
        DestroyWindow(m_hWnd);
        result = 0;
        return true;
    case WM_COMMAND:
        if (HIWORD(wParam) != 0 || (LOWORD(wParam) != IDOK && LOWORD(wParam) != IDCANCEL)) return false;
        EndDialog(m_hWnd, LOWORD(wParam));
        result = 0;
        return true;
    default:
        // WM_INITDIALOG and WM_DESTROY take the default way: the template has no data of its own to apply.
        return false;
    }
}

void CTovDialogBox::DestroyAllOwnedBy(const void* owner) noexcept
{
    std::vector<tov::ComPtr<CTovDialogBox>> owned;
    try {
        std::lock_guard<std::mutex> lock(g_liveLock);
        for (CTovDialogBox* dialog : g_live)
            if (dialog->m_owner == owner) owned.emplace_back(dialog);
    } catch (...) {
        return;
    }
    for (const auto& dialog : owned)
        if (dialog->m_hWnd) DestroyWindow(dialog->m_hWnd);
}
