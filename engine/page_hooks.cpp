#include "engine/page_hooks.h"
#include <windows.h>
#include "engine/engine_resources.h"
#include "engine/this_module.h"

namespace tovengine {

std::string PageHooksScript()
{
    const HMODULE module = ThisModule();
    HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(IDR_PAGE_HOOKS), MAKEINTRESOURCEW(10 /* RT_RCDATA */));
    HGLOBAL loaded = found ? LoadResource(module, found) : nullptr;
    const void* bytes = loaded ? LockResource(loaded) : nullptr;
    return bytes ? std::string(static_cast<const char*>(bytes), SizeofResource(module, found)) : std::string();
}

} // namespace tovengine
