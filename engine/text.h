#pragma once
// UTF-8 on the engine's side, UTF-16 on the browser interfaces.
#include <windows.h>
#include <oleauto.h>
#include <string>
#include <string_view>
#include "framework/code_pages.h"

namespace tovengine {

inline std::string Utf8(std::wstring_view text) { return tov::Narrow(text, CP_UTF8); }
inline std::wstring Wide(std::string_view text) { return tov::Widen(text, CP_UTF8); }

} // namespace tovengine
