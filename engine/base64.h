#pragma once
// Base64 as the engine protocol carries bytes (pictures, post data, served bodies). Portable.
#include <string>
#include <string_view>

namespace tovengine {

std::string Base64Encode(std::string_view bytes);
// Decodes; characters outside the alphabet (line breaks, blanks) are skipped, decoding stops at '='.
std::string Base64Decode(std::string_view text);

} // namespace tovengine
