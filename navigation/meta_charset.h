#pragma once
// Finds the character set an HTML page declares in a meta tag. Standard C++ only; linear in the page size.
#include <optional>
#include <string>
#include <string_view>

namespace tov::meta {

// Looks at the page up to its first zero byte, letters A-Z lowered: the first "<meta", then every later
// "<m", each tag up to its ">" examined for "charset". For the first tag that names one, the text after
// the first "=" behind "charset" (the whole text when there is none), less its last character, as it
// stands: a quoted attribute keeps its opening quote.
std::optional<std::string> FindMetaCharset(std::string_view page);

} // namespace tov::meta
