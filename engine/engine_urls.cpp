#include "engine/engine_urls.h"
#include <cctype>

namespace tovengine::urls {
namespace {

bool StartsWithNoCase(std::string_view text, std::string_view prefix)
{
    if (text.size() < prefix.size()) return false;
    for (size_t i = 0; i < prefix.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(text[i])) != std::tolower(static_cast<unsigned char>(prefix[i])))
            return false;
    return true;
}

int HexValue(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

void AppendEscape(std::string& out, unsigned char c)
{
    static const char digits[] = "0123456789ABCDEF";
    out.push_back('%');
    out.push_back(digits[c >> 4]);
    out.push_back(digits[c & 15]);
}

bool Unreserved(unsigned char c)
{
    return std::isalnum(c) || c == '-' || c == '.' || c == '_' || c == '~';
}

// The scheme part ("mk:@TOVHTML:" of "mk:@TOVHTML://a/b") travels as one escaped path segment; the rest
// keeps its slashes so that relative links resolve inside it. '%', blanks, controls and non-ASCII bytes of
// the rest are escaped, so that decoding every escape gives back exactly the original.
std::string EscapeRest(std::string_view rest)
{
    std::string out;
    out.reserve(rest.size());
    for (unsigned char c : rest) {
        if (c == '%' || c <= 0x20 || c >= 0x7F || c == '"' || c == '<' || c == '>' || c == '`' || c == '{' ||
            c == '}' || c == '|' || c == '\\' || c == '^')
            AppendEscape(out, c);
        else
            out.push_back(static_cast<char>(c));
    }
    return out;
}

} // namespace

std::string PercentDecode(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size()) {
            const int hi = HexValue(text[i + 1]);
            const int lo = HexValue(text[i + 2]);
            if (hi >= 0 && lo >= 0) {
                out.push_back(static_cast<char>(hi * 16 + lo));
                i += 2;
                continue;
            }
        }
        out.push_back(text[i]);
    }
    return out;
}

bool EngineLoadsItself(std::string_view url)
{
    if (StartsWithNoCase(url, "about:")) {
        const std::string_view rest = url.substr(6);
        return rest == "blank" || rest.rfind("blank#", 0) == 0 || rest.rfind("blank?", 0) == 0;
    }
    return StartsWithNoCase(url, "http://") || StartsWithNoCase(url, "https://") || StartsWithNoCase(url, "data:") ||
           StartsWithNoCase(url, "blob:");
}

std::string PathToFileUrl(std::string_view url)
{
    const bool drive = url.size() >= 3 && std::isalpha(static_cast<unsigned char>(url[0])) && url[1] == ':' &&
                       (url[2] == '\\' || url[2] == '/');
    const bool unc = url.size() >= 2 && url[0] == '\\' && url[1] == '\\';
    if (!drive && !unc) return std::string(url);
    std::string out = drive ? "file:///" : "file:";
    for (char c : url) out.push_back(c == '\\' ? '/' : c);
    return out;
}

std::string ToEngine(std::string_view url)
{
    const std::string full = PathToFileUrl(url);
    if (EngineLoadsItself(full)) return full;
    const size_t slash = full.find('/');
    const std::string_view head = std::string_view(full).substr(0, slash);
    const std::string_view rest = slash == std::string::npos ? std::string_view() : std::string_view(full).substr(slash);
    std::string out(kServedRoot);
    for (unsigned char c : head) {
        if (Unreserved(c)) out.push_back(static_cast<char>(c));
        else AppendEscape(out, c);
    }
    // An empty head segment would be swallowed by the engine's path rules.
    if (head.empty()) out += "%2F";
    out += EscapeRest(rest);
    return out;
}

bool IsServed(std::string_view engineUrl)
{
    return StartsWithNoCase(engineUrl, kServedRoot);
}

bool IsEvent(std::string_view engineUrl)
{
    return StartsWithNoCase(engineUrl, kEventRoot);
}

std::string FromEngine(std::string_view engineUrl)
{
    if (IsServed(engineUrl)) {
        std::string_view path = engineUrl.substr(kServedRoot.size());
        const size_t hash = path.find('#');
        std::string fragment;
        if (hash != std::string_view::npos) {
            fragment = std::string(path.substr(hash));
            path = path.substr(0, hash);
        }
        const size_t slash = path.find('/');
        std::string head = PercentDecode(path.substr(0, slash));
        if (head == "/") head.clear();
        const std::string rest = slash == std::string_view::npos ? std::string() : PercentDecode(path.substr(slash));
        return head + rest + fragment;
    }
    if (IsEvent(engineUrl)) {
        std::string_view path = engineUrl.substr(kEventRoot.size());
        const size_t hash = path.find('#');
        if (hash != std::string_view::npos) path = path.substr(0, hash);
        const size_t question = path.find('?');
        std::string original = PercentDecode(path.substr(0, question));
        // A form sent with GET: the engine replaced the query with the form's fields, as it does for any action.
        // The action's own fragment goes too; left in place it would swallow the fields.
        if (question != std::string_view::npos) {
            const size_t ownQuery = original.find_first_of("?#");
            if (ownQuery != std::string::npos) original.resize(ownQuery);
            original += path.substr(question);
        }
        return original;
    }
    return std::string(engineUrl);
}

} // namespace tovengine::urls
