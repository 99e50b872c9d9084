#include "navigation/unescape_url.h"
#include <windows.h>
#include "control/trace.h"
#include "framework/code_pages.h"

namespace tov::url {

const AnsiConverter& SystemAnsiConverter()
{
    static const AnsiConverter converter{[](void*, char16_t unit, char* out, size_t capacity) -> size_t {
                                             const wchar_t wide = static_cast<wchar_t>(unit);
                                             const int n = WideCharToMultiByte(CP_ACP, 0, &wide, 1, out, static_cast<int>(capacity),
                                                                               " ", nullptr);
                                             return n > 0 ? static_cast<size_t>(n) : 0;
                                         },
                                         nullptr};
    return converter;
}

std::wstring UnescapeURL(std::wstring_view url)
{
    const std::string narrow = ToAnsi(url);
    const std::string plain = UnescapeData(narrow, 0, SystemAnsiConverter());
    return Widen(plain, CP_THREAD_ACP);
}

} // namespace tov::url
