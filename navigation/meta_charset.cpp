#include "navigation/meta_charset.h"

namespace tov::meta {
namespace {

// Search positions only move forward, so the next ">" found once stays valid until it is passed.
class NextChar {
public:
    NextChar(std::string_view text, char c) : m_text(text), m_c(c) {}
    size_t From(size_t pos)
    {
        if (!m_valid || (m_found != std::string_view::npos && m_found < pos)) {
            m_found = m_text.find(m_c, pos);
            m_valid = true;
        }
        return m_found;
    }

private:
    std::string_view m_text;
    char m_c;
    bool m_valid = false;
    size_t m_found = std::string_view::npos;
};

std::string Lowered(std::string_view page)
{
    std::string text(page.substr(0, page.find('\0')));
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return text;
}

std::string CharsetOf(std::string_view tag)
{
    std::string_view rest = tag.substr(tag.find("charset"));
    const size_t eq = rest.find('=');
    if (eq != std::string_view::npos) rest.remove_prefix(eq + 1);
    if (!rest.empty()) rest.remove_suffix(1);
    return std::string(rest);
}

} // namespace

std::optional<std::string> FindMetaCharset(std::string_view page)
{
    const std::string text = Lowered(page);
    const std::string_view view(text);
    NextChar closing(view, '>');
    size_t match = view.find("<meta");
    size_t lastTagLength = 0;
    while (match != std::string_view::npos) {
        const size_t end = closing.From(match);
        if (end != std::string_view::npos) {
            const std::string_view tag = view.substr(match, end - match);
            lastTagLength = tag.size();
            if (tag.find("charset") != std::string_view::npos) return CharsetOf(tag);
        }
        const size_t from = match + 1 + lastTagLength;
        match = from < view.size() ? view.find("<m", from) : std::string_view::npos;
    }
    return std::nullopt;
}

} // namespace tov::meta
