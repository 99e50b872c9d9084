#pragma once
// Text between UTF-16 and a code page, whole (zero characters are text like any other). What has no form
// at all in the target comes back empty.
#include <windows.h>
#include <string>
#include <string_view>

namespace tov {

inline std::string Narrow(std::wstring_view text, UINT codePage)
{
    if (text.empty()) return {};
    const int size = static_cast<int>(text.size());
    const int n = WideCharToMultiByte(codePage, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    if (n <= 0) return {};
    std::string out(static_cast<size_t>(n), '\0');
    WideCharToMultiByte(codePage, 0, text.data(), size, out.data(), n, nullptr, nullptr);
    return out;
}

inline std::wstring Widen(std::string_view text, UINT codePage)
{
    if (text.empty()) return {};
    const int size = static_cast<int>(text.size());
    const int n = MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0);
    if (n <= 0) return {};
    std::wstring out(static_cast<size_t>(n), L'\0');
    MultiByteToWideChar(codePage, 0, text.data(), size, out.data(), n);
    return out;
}

} // namespace tov
