#include "navigation/url_rules.h"

namespace tov::url {
namespace {

wchar_t LowerAscii(wchar_t c) { return (c >= L'A' && c <= L'Z') ? static_cast<wchar_t>(c - L'A' + L'a') : c; }

} // namespace

bool StartsWithNoCase(std::wstring_view text, std::wstring_view prefix)
{
    if (text.size() < prefix.size()) return false;
    for (size_t i = 0; i < prefix.size(); ++i)
        if (LowerAscii(text[i]) != LowerAscii(prefix[i])) return false;
    return true;
}

bool IsPluggableUrl(std::wstring_view url) { return StartsWithNoCase(url, kPluggableScheme); }
bool IsMonikerUrl(std::wstring_view url) { return StartsWithNoCase(url, kMonikerScheme); }
bool IsBackEndUrl(std::wstring_view url) { return StartsWithNoCase(url, kBackEndScheme); }
bool IsDataUrl(std::wstring_view url) { return IsPluggableUrl(url) || IsMonikerUrl(url) || IsBackEndUrl(url); }
bool IsDataUrlForSeparateWindow(std::wstring_view url) { return IsPluggableUrl(url) || IsBackEndUrl(url); }
bool IsHtmlSubtype(std::wstring_view subtype) { return StartsWithNoCase(subtype, L"html"); }

std::wstring InstanceTag(uintptr_t address)
{
    static constexpr wchar_t kDigits[] = L"0123456789abcdef";
    uint32_t value = static_cast<uint32_t>(address);
    std::wstring tag;
    do {
        tag.insert(tag.begin(), kDigits[value & 0xF]);
        value >>= 4;
    } while (value);
    return tag;
}

Prefixes PrefixesFor(long mode, std::wstring_view tag)
{
    const std::wstring base = NormalizedMode(mode) == 1 ? L"@TOVHTML://" : L"tovhtmlp://";
    Prefixes p{base, base};
    p.local.append(tag);
    p.local += L'/';
    return p;
}

std::wstring ShowDataUrl(long mode, std::wstring_view prefix, std::wstring_view url)
{
    std::wstring out;
    if (mode == 1) out += kMonikerPrefix;
    out += prefix;
    out += url;
    return out;
}

std::wstring_view WithoutFragment(std::wstring_view url)
{
    return url.substr(0, url.find(L'#'));
}

std::wstring ProviderUrl(std::wstring_view url, std::wstring_view localPrefix)
{
    const std::wstring_view cut = WithoutFragment(url);
    if (IsDataUrl(url)) return std::wstring(cut);
    std::wstring out(localPrefix);
    out += cut;
    return out;
}

std::wstring_view TempFileNamePart(std::wstring_view url)
{
    if (!IsDataUrl(url)) return url;
    const size_t slash = url.rfind(L'/');
    return slash == std::wstring_view::npos ? std::wstring_view() : url.substr(slash + 1);
}

std::wstring SafeFileNamePart(std::wstring_view name)
{
    std::wstring out(name);
    for (wchar_t& c : out)
        if (c == L'\\' || c == L'/' || c == L':') c = L'_';
    return out;
}

std::wstring_view NavigableUrl(std::wstring_view url)
{
    return url.empty() ? kBlankPage : url;
}

} // namespace tov::url
