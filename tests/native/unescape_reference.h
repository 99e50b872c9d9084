#pragma once
// Test-only: the unescaping rules transcribed step by step, rescanning the rest of the data for every
// character reference (quadratic, but plainly the rules), and a Western code page.
#include <cstdlib>
#include <cstring>
#include <string>
#include "navigation/unescape.h"

namespace tovtest {

// Latin-1 stands in for a Western ANSI code page: other characters have no form and become the default " ".
inline const tov::url::AnsiConverter& Latin1()
{
    static const tov::url::AnsiConverter c{[](void*, char16_t u, char* out, size_t) -> size_t {
                                               out[0] = u < 256 ? static_cast<char>(u) : ' ';
                                               return 1;
                                           },
                                           nullptr};
    return c;
}

inline std::string LiteralUnescape(const std::string& src, uint32_t flags)
{
    const size_t length = src.size();
    std::string out;
    size_t pos = 0;
    auto begins = [&](size_t at, const char* s) { return src.compare(at, strlen(s), s) == 0 && at + strlen(s) <= length; };
    auto decode = [&](std::string& opener) -> bool {
        if (opener.empty()) return false;
        size_t term = std::string::npos, termLen = 0;
        for (const char* t : {"%3B", "%3b", ";", "%3d", "%3D"}) {
            term = src.find(t, pos);
            if (term != std::string::npos) { termLen = strlen(t); break; }
        }
        if (term == std::string::npos) return false;
        std::string digits = src.substr(pos + opener.size(), length - pos - opener.size());
        long long v = 0;
        size_t i = 0;
        while (i < digits.size() && (digits[i] == ' ' || (digits[i] >= '\t' && digits[i] <= '\r'))) ++i;
        bool neg = false;
        if (i < digits.size() && (digits[i] == '+' || digits[i] == '-')) neg = digits[i++] == '-';
        unsigned value = 0;
        for (; i < digits.size() && digits[i] >= '0' && digits[i] <= '9'; ++i) value = value * 10u + unsigned(digits[i] - '0');
        (void)v;
        if (neg) value = 0u - value;
        const char16_t unit = static_cast<char16_t>(value & 0xFFFF);
        out += unit < 256 ? static_cast<char>(unit) : ' ';
        pos = term + termLen;
        opener = begins(pos, "%26%23") ? "%26%23" : begins(pos, "&#") ? "&#" : "";
        return true;
    };
    while (pos < length) {
        if ((flags & 0x400000) && begins(pos, "%25")) { out += "%25"; pos += 3; continue; }
        if (src[pos] == '+') { out += ' '; ++pos; continue; }
        if (begins(pos, "%26%23") || begins(pos, "&#")) {
            std::string opener = begins(pos, "%26%23") ? "%26%23" : "&#";
            if (!decode(opener)) { out += opener; pos += opener.size(); continue; }
            while (decode(opener)) {}
            continue;
        }
        if (src[pos] == '%') {
            if (pos + 2 >= length) break;
            auto hex = [](char c) { return (c >= '0' && c <= '9') ? c - '0' : (c >= 'A' && c <= 'F') ? c - 'A' + 10 : int(c) - 0x57; };
            const unsigned char b = static_cast<unsigned char>(hex(src[pos + 1]) * 16 + hex(src[pos + 2]));
            if (b == '&' || b == '=' || b == '?') out += src.substr(pos, 3);
            else out += static_cast<char>(b);
            pos += 3;
            continue;
        }
        const size_t pct = src.find('%', pos), plus = src.find('+', pos);
        const size_t stop = std::min(std::min(pct, plus), length);
        out += src.substr(pos, stop - pos);
        pos = stop;
    }
    return out;
}

} // namespace tovtest
