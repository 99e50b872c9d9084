#pragma once
// The control's URL schemes and prefixes: classification by fixed-length, case-insensitive comparison,
// the instance tag, and the composition of navigated URLs. Standard C++ only.
#include <cstdint>
#include <string>
#include <string_view>

namespace tov::url {

inline constexpr std::wstring_view kPluggableScheme = L"tovhtmlp:"; // provider data through the pluggable protocol
inline constexpr std::wstring_view kMonikerScheme = L"@TOVHTML:";   // provider data through the moniker syntax
inline constexpr std::wstring_view kBackEndScheme = L"tovq5:";      // provider data in the back end's own scheme
inline constexpr std::wstring_view kMonikerPrefix = L"mk:";
inline constexpr std::wstring_view kBlankPage = L"about:blank";

// The first `prefix.size()` characters of `text` equal `prefix`, letter case ignored (ASCII letters).
bool StartsWithNoCase(std::wstring_view text, std::wstring_view prefix);

bool IsPluggableUrl(std::wstring_view url);
bool IsMonikerUrl(std::wstring_view url);
bool IsBackEndUrl(std::wstring_view url);
// Provider data as ShowURL sees it: any of the three data schemes.
bool IsDataUrl(std::wstring_view url);
// Provider data as a separate browser window sees it: "tovhtmlp:" and "tovq5:" only.
bool IsDataUrlForSeparateWindow(std::wstring_view url);
// The data's subtype says HTML ("html" in its first four characters, case ignored).
bool IsHtmlSubtype(std::wstring_view subtype);

// Lower-case hexadecimal of the low 32 bits of an address, without leading zeros.
std::wstring InstanceTag(uintptr_t address);

struct Prefixes {
    std::wstring local;
    std::wstring global;
};
// Mode 1: "@TOVHTML://<tag>/" and "@TOVHTML://"; any other mode: "tovhtmlp://<tag>/" and "tovhtmlp://".
Prefixes PrefixesFor(long mode, std::wstring_view tag);
// Mode 1 is the moniker syntax; every other value is the pluggable protocol.
inline long NormalizedMode(long mode) { return mode == 1 ? 1 : 2; }

// The URL ShowData navigates to: "mk:" in mode 1, then the chosen prefix, then the provider URL.
std::wstring ShowDataUrl(long mode, std::wstring_view prefix, std::wstring_view url);
// The URL cut at its first "#": the fragment never reaches the data provider.
std::wstring_view WithoutFragment(std::wstring_view url);
// The URL the data provider is asked for: cut at "#", and behind the local prefix unless it is a data URL.
std::wstring ProviderUrl(std::wstring_view url, std::wstring_view localPrefix);
// The name part of a temporary file: after the last "/" for data URLs, else the whole URL (fragment kept).
std::wstring_view TempFileNamePart(std::wstring_view url);
// A name part must not leave the temporary folder: path separators and drive colons become "_".
std::wstring SafeFileNamePart(std::wstring_view name);

// An empty URL (no characters at all) stands for the blank page.
std::wstring_view NavigableUrl(std::wstring_view url);

} // namespace tov::url
