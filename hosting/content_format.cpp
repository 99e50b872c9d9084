#include "hosting/content_format.h"
#include <cwchar>

namespace tov::content {
namespace {

bool IsFlag(wchar_t c) { return c == L'-' || c == L'+' || c == L'0' || c == L' ' || c == L'#'; }
bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

bool IsConversion(wchar_t c)
{
    return std::wcschr(L"cCdiouxXeEfFgGaAnpsSZ", c) != nullptr && c != L'\0';
}

// Length of the directive starting at `pos` (the '%'), or 0 when none is complete there.
size_t SpecificationLength(std::wstring_view s, size_t pos)
{
    size_t i = pos + 1;
    const auto at = [&](size_t k) { return k < s.size() ? s[k] : L'\0'; };
    while (IsFlag(at(i))) ++i;
    if (at(i) == L'*') {
        ++i;
    } else {
        while (IsDigit(at(i))) ++i;
    }
    if (at(i) == L'.') {
        ++i;
        if (at(i) == L'*') {
            ++i;
        } else {
            while (IsDigit(at(i))) ++i;
        }
    }
    switch (at(i)) {
    case L'h':
    case L'l':
        i += at(i + 1) == at(i) ? 2 : 1;
        break;
    case L'I':
        if ((at(i + 1) == L'3' && at(i + 2) == L'2') || (at(i + 1) == L'6' && at(i + 2) == L'4')) i += 3;
        else ++i;
        break;
    case L'j':
    case L'z':
    case L't':
    case L'L':
    case L'w':
        ++i;
        break;
    default:
        break;
    }
    return IsConversion(at(i)) ? i + 1 - pos : 0;
}

} // namespace

std::wstring ApplyFormatRule(std::wstring_view content)
{
    const size_t end = content.find(L'\0');
    if (end != std::wstring_view::npos) content = content.substr(0, end);
    std::wstring out;
    out.reserve(content.size());
    size_t pos = 0;
    while (pos < content.size()) {
        const size_t percent = content.find(L'%', pos);
        if (percent == std::wstring_view::npos) {
            out.append(content.substr(pos));
            break;
        }
        out.append(content.substr(pos, percent - pos));
        if (percent + 1 < content.size() && content[percent + 1] == L'%') {
            out += L'%';
            pos = percent + 2;
            continue;
        }
        const size_t length = SpecificationLength(content, percent);
        if (length == 0) {
            out += L'%';
            pos = percent + 1;
        } else {
            pos = percent + length;
        }
    }
    return out;
}

std::string TextModeLineEnds(std::string_view text)
{
    std::string out;
    out.reserve(text.size() + text.size() / 32);
    for (char c : text) {
        if (c == '\n') out += '\r';
        out += c;
    }
    return out;
}

std::string SourceFileBytes(std::wstring_view content, const Narrower& narrow)
{
    return TextModeLineEnds(narrow(ApplyFormatRule(content)));
}

} // namespace tov::content
