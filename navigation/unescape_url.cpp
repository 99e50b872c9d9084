#include "navigation/unescape_url.h"
#include <windows.h>
#include "control/trace.h"

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
    if (plain.empty()) return std::wstring();
    const int n = MultiByteToWideChar(CP_THREAD_ACP, 0, plain.data(), static_cast<int>(plain.size()), nullptr, 0);
    std::wstring out(static_cast<size_t>(n > 0 ? n : 0), L'\0');
    if (n > 0) MultiByteToWideChar(CP_THREAD_ACP, 0, plain.data(), static_cast<int>(plain.size()), out.data(), n);
    return out;
}

} // namespace tov::url
