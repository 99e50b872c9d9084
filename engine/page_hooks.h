#pragma once
// The script the engine runs in every new document before the page's own scripts (resource
// IDR_PAGE_HOOKS, from page_hooks.js).
#include <string>

namespace tovengine {

std::string PageHooksScript();

} // namespace tovengine
