#include "engine/json.h"
#include <climits>

namespace tovengine {
namespace {

// Valid UTF-8 stays; every byte of an invalid sequence becomes U+FFFD.
std::string RepairUtf8(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    size_t i = 0;
    while (i < text.size()) {
        const auto c = static_cast<unsigned char>(text[i]);
        size_t len = c < 0x80 ? 1 : (c >> 5) == 0x6 ? 2 : (c >> 4) == 0xE ? 3 : (c >> 3) == 0x1E ? 4 : 0;
        bool ok = len > 0 && i + len <= text.size();
        for (size_t k = 1; ok && k < len; ++k) ok = (static_cast<unsigned char>(text[i + k]) & 0xC0) == 0x80;
        if (ok && len == 2) ok = c >= 0xC2;
        if (ok && len == 3) {
            const auto c1 = static_cast<unsigned char>(text[i + 1]);
            ok = !(c == 0xE0 && c1 < 0xA0) && !(c == 0xED && c1 >= 0xA0);
        }
        if (ok && len == 4) {
            const auto c1 = static_cast<unsigned char>(text[i + 1]);
            ok = c <= 0xF4 && !(c == 0xF0 && c1 < 0x90) && !(c == 0xF4 && c1 >= 0x90);
        }
        if (ok) {
            out.append(text.substr(i, len));
            i += len;
        } else {
            out += "\xEF\xBF\xBD";
            ++i;
        }
    }
    return out;
}

int HexDigit(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// The code unit of a "\uXXXX" escape at `at`, or -1.
int EscapedUnit(std::string_view text, size_t at)
{
    if (at + 6 > text.size() || text[at] != '\\' || text[at + 1] != 'u') return -1;
    int unit = 0;
    for (size_t i = at + 2; i < at + 6; ++i) {
        const int d = HexDigit(text[i]);
        if (d < 0) return -1;
        unit = unit * 16 + d;
    }
    return unit;
}

// A script's string may hold half of a surrogate pair, which the engine writes as an escape of its own:
// such an escape becomes U+FFFD, pairs stay.
std::string RepairSurrogateEscapes(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size();) {
        if (text[i] != '\\' || i + 1 >= text.size()) {
            out.push_back(text[i++]);
            continue;
        }
        const int unit = EscapedUnit(text, i);
        if (unit < 0xD800 || unit > 0xDFFF) {
            out.append(text.substr(i, 2)); // any other escape, "\\" included, as it stands
            i += 2;
            continue;
        }
        const int next = unit <= 0xDBFF ? EscapedUnit(text, i + 6) : -1;
        if (next >= 0xDC00 && next <= 0xDFFF) {
            out.append(text.substr(i, 12));
            i += 12;
        } else {
            out += "\\uFFFD";
            i += 6;
        }
    }
    return out;
}

} // namespace

Json ParseMessage(std::string_view text)
{
    Json value = Json::parse(text, nullptr, false);
    if (value.is_discarded()) value = Json::parse(RepairSurrogateEscapes(RepairUtf8(text)), nullptr, false);
    return value;
}

std::string StringField(const Json& object, const char* name, std::string fallback)
{
    if (!object.is_object()) return fallback;
    const auto it = object.find(name);
    return it != object.end() && it->is_string() ? it->get<std::string>() : fallback;
}

long long IntField(const Json& object, const char* name, long long fallback)
{
    if (!object.is_object()) return fallback;
    const auto it = object.find(name);
    if (it == object.end() || !it->is_number()) return fallback;
    if (it->is_number_unsigned()) {
        const auto value = it->get<unsigned long long>();
        return value <= static_cast<unsigned long long>(LLONG_MAX) ? static_cast<long long>(value) : fallback;
    }
    if (it->is_number_integer()) return it->get<long long>();
    // Converting a double outside the range is undefined, and a wrapped number would be a wrong answer.
    const double value = it->get<double>();
    return value >= -0x1p63 && value < 0x1p63 ? static_cast<long long>(value) : fallback;
}

bool BoolField(const Json& object, const char* name, bool fallback)
{
    if (!object.is_object()) return fallback;
    const auto it = object.find(name);
    return it != object.end() && it->is_boolean() ? it->get<bool>() : fallback;
}

double NumberField(const Json& object, const char* name, double fallback)
{
    if (!object.is_object()) return fallback;
    const auto it = object.find(name);
    return it != object.end() && it->is_number() ? it->get<double>() : fallback;
}

const Json* ObjectField(const Json& object, const char* name)
{
    if (!object.is_object()) return nullptr;
    const auto it = object.find(name);
    return it != object.end() && it->is_object() ? &*it : nullptr;
}

} // namespace tovengine
