#pragma once
// The Simple Browse dialog: a modeless dialog made from template 105 by the platform's dialog machinery
// for hosted controls, so that its item 202 is a real WebBrowser control.
//
// The object is shared by its window and by whoever keeps a reference to it: it is freed when its window is
// gone and the last reference is dropped, so neither a user closing the dialog nor a forgotten dialog
// leaves anything behind.
#include <windows.h>

class CTovDialogBox {
public:
    enum { IDD = 105 };

    // A dialog object without a window; one reference for the caller. `owner` tags the windows for
    // DestroyAllOwnedBy.
    static CTovDialogBox* New(const void* owner);

    ULONG AddRef() noexcept { return ++m_refs; }
    ULONG Release() noexcept;

    // Creates the hidden window from the module's template; null when the platform cannot make it.
    HWND Create(HWND hWndParent, LPARAM dwInitParam = 0) noexcept;
    HWND Window() const noexcept { return m_hWnd; }

    // Destroys every Simple Browse window of this thread made for `owner`.
    static void DestroyAllOwnedBy(const void* owner) noexcept;

private:
    explicit CTovDialogBox(const void* owner) noexcept : m_owner(owner) {}
    ~CTovDialogBox() = default;

    static INT_PTR CALLBACK DialogProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam);
    // True when the message was handled, with its result in `result`.
    bool ProcessMessage(UINT msg, WPARAM wParam, LPARAM lParam, LRESULT& result) noexcept;
    void Attach(HWND hwnd) noexcept;
    void Detach() noexcept;

    HWND m_hWnd = nullptr;
    ULONG m_refs = 1;
    const void* m_owner;
};
