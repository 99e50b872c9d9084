#include "engine/base64.h"
#include <array>
#include <cstdint>

namespace tovengine {
namespace {

const char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

int Value(char c)
{
    if (c >= 'A' && c <= 'Z') return c - 'A';
    if (c >= 'a' && c <= 'z') return c - 'a' + 26;
    if (c >= '0' && c <= '9') return c - '0' + 52;
    if (c == '+' || c == '-') return 62;
    if (c == '/' || c == '_') return 63;
    return -1;
}

} // namespace

std::string Base64Encode(std::string_view bytes)
{
    std::string out;
    out.reserve((bytes.size() + 2) / 3 * 4);
    size_t i = 0;
    for (; i + 2 < bytes.size(); i += 3) {
        const unsigned v = (static_cast<unsigned char>(bytes[i]) << 16) | (static_cast<unsigned char>(bytes[i + 1]) << 8) |
                           static_cast<unsigned char>(bytes[i + 2]);
        out.push_back(kAlphabet[(v >> 18) & 63]);
        out.push_back(kAlphabet[(v >> 12) & 63]);
        out.push_back(kAlphabet[(v >> 6) & 63]);
        out.push_back(kAlphabet[v & 63]);
    }
    if (i < bytes.size()) {
        unsigned v = static_cast<unsigned char>(bytes[i]) << 16;
        if (i + 1 < bytes.size()) v |= static_cast<unsigned char>(bytes[i + 1]) << 8;
        out.push_back(kAlphabet[(v >> 18) & 63]);
        out.push_back(kAlphabet[(v >> 12) & 63]);
        out.push_back(i + 1 < bytes.size() ? kAlphabet[(v >> 6) & 63] : '=');
        out.push_back('=');
    }
    return out;
}

std::string Base64Decode(std::string_view text)
{
    static const auto table = [] {
        std::array<int8_t, 256> t{};
        for (int c = 0; c < 256; ++c) t[static_cast<size_t>(c)] = static_cast<int8_t>(Value(static_cast<char>(c)));
        return t;
    }();
    const auto* in = reinterpret_cast<const unsigned char*>(text.data());
    const size_t n = text.size();
    std::string out(n / 4 * 3 + 3, '\0');
    size_t o = 0, i = 0;
    // Whole groups of four alphabet characters: the bulk of what the engine sends (pictures, post data).
    while (i + 4 <= n) {
        const int a = table[in[i]], b = table[in[i + 1]], c = table[in[i + 2]], d = table[in[i + 3]];
        if ((a | b | c | d) < 0) break;
        const unsigned v = (unsigned(a) << 18) | (unsigned(b) << 12) | (unsigned(c) << 6) | unsigned(d);
        out[o++] = static_cast<char>(v >> 16);
        out[o++] = static_cast<char>((v >> 8) & 0xFF);
        out[o++] = static_cast<char>(v & 0xFF);
        i += 4;
    }
    // The rest one character at a time: line breaks and blanks skipped, '=' ends the data.
    unsigned buffer = 0;
    int bits = 0;
    for (; i < n; ++i) {
        if (in[i] == '=') break;
        const int v = table[in[i]];
        if (v < 0) continue;
        buffer = (buffer << 6) | static_cast<unsigned>(v);
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            if (o == out.size()) out.push_back('\0');
            out[o++] = static_cast<char>((buffer >> bits) & 0xFF);
        }
    }
    out.resize(o);
    return out;
}

} // namespace tovengine
