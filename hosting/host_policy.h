#pragma once
// The control's decisions as its browser's host, free of the platform: URL actions for its own schemes,
// and the keys it wants before the front end handles them. Standard C++ only.
#include <cstdint>
#include <string_view>

namespace tov::host {

enum class UrlActionAnswer {
    Default, // leave it to the platform's security manager (INET_E_DEFAULT_ACTION)
    Allow,   // policy byte 0 (URLPOLICY_ALLOW)
    Query,   // policy byte 1 (URLPOLICY_QUERY)
};

// For URLs of the control's own schemes ("tovevent", "mk:@tovhtml", "tovhtmlp", letter case ignored).
UrlActionAnswer DecideUrlAction(std::wstring_view url, uint32_t action);

// The front end asks before it handles a key: the control wants F4 only.
bool WantsKey(uint64_t virtualKey);

} // namespace tov::host
