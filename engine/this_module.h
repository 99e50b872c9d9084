#pragma once
// The DLL this code is linked into (the engine DLL, or a program that links the engine in).
#include <windows.h>

namespace tovengine {

inline HMODULE ThisModule()
{
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&ThisModule), &module);
    return module;
}

} // namespace tovengine
