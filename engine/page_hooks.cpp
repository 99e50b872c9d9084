#include "engine/page_hooks.h"
#include <windows.h>
#include "engine/engine_resources.h"

namespace tovengine {

std::string PageHooksScript()
{
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&PageHooksScript), &module);
    HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(IDR_PAGE_HOOKS), MAKEINTRESOURCEW(10 /* RT_RCDATA */));
    HGLOBAL loaded = found ? LoadResource(module, found) : nullptr;
    const void* bytes = loaded ? LockResource(loaded) : nullptr;
    return bytes ? std::string(static_cast<const char*>(bytes), SizeofResource(module, found)) : std::string();
}

} // namespace tovengine
