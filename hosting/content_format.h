#pragma once
// The text SetHTMLSourceContent writes into its file. Deliberate: the content is read as a format without
// arguments (pages that double their "%" rely on it):
// "%%" gives "%", a complete conversion directive (flags, width, precision, length modifier and
// conversion letter, as the runtime's formatted print knows them) is consumed and writes nothing, and a
// '%' that does not begin a complete directive is copied as it stands. The text ends at its first
// zero character. Standard C++ only.
#include <functional>
#include <string>
#include <string_view>

namespace tov::content {

std::wstring ApplyFormatRule(std::wstring_view content);

// Line ends as a text-mode stream writes them: every "\n" becomes "\r\n".
std::string TextModeLineEnds(std::string_view text);

// The bytes of the file: the format rule, the narrow code page through `narrow`, text-mode line ends.
using Narrower = std::function<std::string(std::wstring_view)>;
std::string SourceFileBytes(std::wstring_view content, const Narrower& narrow);

} // namespace tov::content
