#include "hosting/host_policy.h"
#include "navigation/url_rules.h"

namespace tov::host {
namespace {
constexpr uint32_t kScriptOverrideSafety = 0x1401;
constexpr uint32_t kScriptSafeActiveX = 0x1405;
constexpr uint32_t kActiveXOverrideOptIn = 0x1208;
constexpr uint32_t kActiveXOverrideScriptSafety = 0x1203;
constexpr uint64_t kKeyF4 = 0x73;
} // namespace

UrlActionAnswer DecideUrlAction(std::wstring_view url, uint32_t action)
{
    const bool own = url::StartsWithNoCase(url, L"tovevent") || url::StartsWithNoCase(url, L"mk:@tovhtml") ||
                     url::StartsWithNoCase(url, L"tovhtmlp");
    if (!own) return UrlActionAnswer::Default;
    switch (action) {
    case kScriptOverrideSafety: return UrlActionAnswer::Query;
    case kScriptSafeActiveX:
    case kActiveXOverrideOptIn:
    case kActiveXOverrideScriptSafety: return UrlActionAnswer::Default;
    default: return UrlActionAnswer::Allow;
    }
}

bool WantsKey(uint64_t virtualKey)
{
    return virtualKey == kKeyF4;
}

} // namespace tov::host
