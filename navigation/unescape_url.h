#pragma once
// The platform side of unescaping: the system ANSI code page for character references, and the wide
// wrapper for URLs.
#include <string>
#include <string_view>
#include "navigation/unescape.h"

namespace tov::url {

// CP_ACP with " " as the default character.
const AnsiConverter& SystemAnsiConverter();

// The URL through the thread's ANSI code page, unescaped (flags 0), and back.
std::wstring UnescapeURL(std::wstring_view url);

} // namespace tov::url
