#pragma once
// The module: instance handle, lock count and the type library embedded as resource TYPELIB 1.
#include <windows.h>
#include <oaidl.h>
#include <string>
#include "com_ptr.h"

namespace tov {

class Module {
public:
    static void Init(HINSTANCE hInstance) noexcept { s_hInstance = hInstance; }
    static void Term() noexcept;
    static HINSTANCE Instance() noexcept { return s_hInstance; }

    static LONG Lock() noexcept { return InterlockedIncrement(&s_lockCount); }
    static LONG Unlock() noexcept { return InterlockedDecrement(&s_lockCount); }
    static LONG LockCount() noexcept { return s_lockCount; }

    // Full path of this module's file.
    static std::wstring FileName();
    // The embedded type library (loaded once) and the type description of one of its types.
    static HRESULT GetTypeLib(ITypeLib** ppTypeLib) noexcept;
    static HRESULT GetTypeInfo(REFGUID guid, ITypeInfo** ppTypeInfo) noexcept;

private:
    static inline HINSTANCE s_hInstance = nullptr;
    static inline LONG s_lockCount = 0;
    static inline ITypeLib* s_pTypeLib = nullptr;
};

} // namespace tov
