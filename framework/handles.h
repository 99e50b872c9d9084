#pragma once
// Owning wrappers for registry keys, kernel and find handles, modules, windows, GDI objects, device
// contexts and locked global memory.
#include <windows.h>
#include <utility>

namespace tov {

template <class H, class Traits> class UniqueHandle {
public:
    UniqueHandle() noexcept = default;
    explicit UniqueHandle(H h) noexcept : m_h(h) {}
    UniqueHandle(UniqueHandle&& o) noexcept : m_h(std::exchange(o.m_h, Traits::Invalid())) {}
    UniqueHandle& operator=(UniqueHandle&& o) noexcept
    {
        if (this != &o) { Reset(); m_h = std::exchange(o.m_h, Traits::Invalid()); }
        return *this;
    }
    UniqueHandle(const UniqueHandle&) = delete;
    UniqueHandle& operator=(const UniqueHandle&) = delete;
    ~UniqueHandle() { Reset(); }

    void Reset(H h = Traits::Invalid()) noexcept
    {
        H old = std::exchange(m_h, h);
        if (old != Traits::Invalid()) Traits::Close(old);
    }
    H Get() const noexcept { return m_h; }
    H* Put() noexcept { Reset(); return &m_h; }
    H Release() noexcept { return std::exchange(m_h, Traits::Invalid()); }
    explicit operator bool() const noexcept { return m_h != Traits::Invalid(); }

private:
    H m_h = Traits::Invalid();
};

struct RegKeyTraits {
    static HKEY Invalid() noexcept { return nullptr; }
    static void Close(HKEY h) noexcept { RegCloseKey(h); }
};
struct FileHandleTraits {
    static HANDLE Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(HANDLE h) noexcept { CloseHandle(h); }
};
struct KernelHandleTraits {
    static HANDLE Invalid() noexcept { return nullptr; }
    static void Close(HANDLE h) noexcept { CloseHandle(h); }
};
struct WindowTraits {
    static HWND Invalid() noexcept { return nullptr; }
    static void Close(HWND h) noexcept { if (IsWindow(h)) DestroyWindow(h); }
};
struct LibraryTraits {
    static HMODULE Invalid() noexcept { return nullptr; }
    static void Close(HMODULE h) noexcept { FreeLibrary(h); }
};

struct FindHandleTraits {
    static HANDLE Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(HANDLE h) noexcept { FindClose(h); }
};
struct GdiObjectTraits {
    static HGDIOBJ Invalid() noexcept { return nullptr; }
    static void Close(HGDIOBJ h) noexcept { DeleteObject(h); }
};
struct MemoryDcTraits {
    static HDC Invalid() noexcept { return nullptr; }
    static void Close(HDC h) noexcept { DeleteDC(h); }
};

using UniqueHKey = UniqueHandle<HKEY, RegKeyTraits>;
using UniqueFile = UniqueHandle<HANDLE, FileHandleTraits>;
using UniqueKernelHandle = UniqueHandle<HANDLE, KernelHandleTraits>;
using UniqueWindow = UniqueHandle<HWND, WindowTraits>;
using UniqueLibrary = UniqueHandle<HMODULE, LibraryTraits>;
using UniqueFindHandle = UniqueHandle<HANDLE, FindHandleTraits>;
using UniqueGdiObject = UniqueHandle<HGDIOBJ, GdiObjectTraits>;
using UniqueMemoryDc = UniqueHandle<HDC, MemoryDcTraits>;

// A window's device context, given back when it goes.
class WindowDc {
public:
    explicit WindowDc(HWND window) noexcept : m_window(window), m_dc(GetDC(window)) {}
    ~WindowDc() { if (m_dc) ReleaseDC(m_window, m_dc); }
    WindowDc(const WindowDc&) = delete;
    WindowDc& operator=(const WindowDc&) = delete;
    HDC Get() const noexcept { return m_dc; }

private:
    HWND m_window;
    HDC m_dc;
};

// Memory of a global handle, locked while this lives (or until Unlock).
class GlobalMemoryLock {
public:
    explicit GlobalMemoryLock(HGLOBAL memory) noexcept : m_memory(memory), m_data(memory ? GlobalLock(memory) : nullptr) {}
    ~GlobalMemoryLock() { Unlock(); }
    GlobalMemoryLock(const GlobalMemoryLock&) = delete;
    GlobalMemoryLock& operator=(const GlobalMemoryLock&) = delete;
    template <class T> T* As() const noexcept { return static_cast<T*>(m_data); }
    void Unlock() noexcept
    {
        if (m_data) GlobalUnlock(m_memory);
        m_data = nullptr;
    }

private:
    HGLOBAL m_memory;
    void* m_data;
};

// Whether a file or folder of that name (or pattern) exists, as FindFirstFile finds it.
inline bool Found(const wchar_t* pattern) noexcept
{
    WIN32_FIND_DATAW data;
    return UniqueFindHandle(FindFirstFileW(pattern, &data)).Get() != INVALID_HANDLE_VALUE;
}
inline bool Found(const char* pattern) noexcept
{
    WIN32_FIND_DATAA data;
    return UniqueFindHandle(FindFirstFileA(pattern, &data)).Get() != INVALID_HANDLE_VALUE;
}

} // namespace tov
