#include "navigation/unescape.h"
#include <array>
#include <cstring>

namespace tov::url {
namespace {

constexpr std::string_view kEscapedOpener = "%26%23";
constexpr std::string_view kOpener = "&#";
// The reference terminators in their order of preference (not of position).
constexpr std::array<std::string_view, 5> kTerminators = {"%3B", "%3b", ";", "%3d", "%3D"};

bool StartsWith(const char* p, const char* end, std::string_view s)
{
    return static_cast<size_t>(end - p) >= s.size() && std::memcmp(p, s.data(), s.size()) == 0;
}

// The first occurrence of a pattern at or after a position that only ever moves forward. Each pattern's
// search resumes where the last one stopped, so all searches of one call scan the data once.
class ForwardFinder {
public:
    ForwardFinder(const char* end, std::string_view pattern) : m_end(end), m_pattern(pattern) {}

    const char* From(const char* pos)
    {
        if (m_searched && (m_found == nullptr ? pos >= m_from : m_found >= pos)) return m_found;
        m_searched = true;
        m_from = pos;
        m_found = Search(pos);
        return m_found;
    }

private:
    const char* Search(const char* pos) const
    {
        const size_t n = m_pattern.size();
        const char first = m_pattern[0];
        while (static_cast<size_t>(m_end - pos) >= n) {
            const void* hit = std::memchr(pos, first, static_cast<size_t>(m_end - pos) - n + 1);
            if (!hit) return nullptr;
            pos = static_cast<const char*>(hit);
            if (std::memcmp(pos, m_pattern.data(), n) == 0) return pos;
            ++pos;
        }
        return nullptr;
    }

    const char* m_end;
    std::string_view m_pattern;
    bool m_searched = false;
    const char* m_from = nullptr;
    const char* m_found = nullptr;
};

// atoi over bounded data: blanks, an optional sign, digits; wraps instead of overflowing.
uint32_t ReadDecimal(const char* p, const char* end)
{
    while (p < end && (*p == ' ' || (*p >= '\t' && *p <= '\r'))) ++p;
    bool negative = false;
    if (p < end && (*p == '+' || *p == '-')) negative = *p++ == '-';
    uint32_t value = 0;
    for (; p < end && *p >= '0' && *p <= '9'; ++p) value = value * 10u + static_cast<uint32_t>(*p - '0');
    return negative ? 0u - value : value;
}

constexpr int HexRule(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return static_cast<int>(c) - 0x57; // a-f give 10-15; anything else a meaningless value, as it always did
}

// Only the low four bits of a digit's value reach the decoded byte's high half, and all eight the low
// half: the table keeps each value modulo 256.
constexpr std::array<unsigned char, 256> kHexValues = [] {
    std::array<unsigned char, 256> t{};
    for (int i = 0; i < 256; ++i) t[static_cast<size_t>(i)] = static_cast<unsigned char>(HexRule(static_cast<char>(i)) & 0xFF);
    return t;
}();

inline unsigned char DecodeEscape(char high, char low)
{
    return static_cast<unsigned char>(kHexValues[static_cast<unsigned char>(high)] * 16 + kHexValues[static_cast<unsigned char>(low)]);
}

class Unescaper {
public:
    Unescaper(const char* source, size_t length, char* dest, uint32_t flags, const AnsiConverter& ansi)
        : m_p(source), m_end(source + length), m_out(dest), m_flags(flags), m_ansi(ansi),
          m_finders{ForwardFinder(m_end, kTerminators[0]), ForwardFinder(m_end, kTerminators[1]),
                    ForwardFinder(m_end, kTerminators[2]), ForwardFinder(m_end, kTerminators[3]),
                    ForwardFinder(m_end, kTerminators[4])}
    {
    }

    size_t Run(char* dest)
    {
        while (m_p < m_end) {
            const char c = *m_p;
            if (c == '%') {
                if ((m_flags & kKeepPercentEscape) && StartsWith(m_p, m_end, "%25")) {
                    Copy(3);
                } else if (StartsWith(m_p, m_end, kEscapedOpener)) {
                    DecodeReferences();
                } else {
                    if (m_end - m_p <= 2) break; // a truncated escape ends the data
                    const unsigned char byte = DecodeEscape(m_p[1], m_p[2]);
                    if (byte == '&' || byte == '=' || byte == '?') {
                        Copy(3);
                    } else {
                        *m_out++ = static_cast<char>(byte);
                        m_p += 3;
                    }
                }
            } else if (c == '+') {
                *m_out++ = ' ';
                ++m_p;
            } else if (c == '&' && m_end - m_p >= 2 && m_p[1] == '#') {
                DecodeReferences();
            } else {
                CopyRun();
            }
        }
        *m_out = '\0';
        return static_cast<size_t>(m_out - dest);
    }

private:
    void Copy(size_t n)
    {
        std::memcpy(m_out, m_p, n);
        m_out += n;
        m_p += n;
    }

    // Up to the nearer of the next "%" and "+", or to the end; scanned and copied in one pass.
    void CopyRun()
    {
        const char* p = m_p;
        char* out = m_out;
        *out++ = *p++;
        while (m_end - p >= 8) {
            uint64_t word;
            std::memcpy(&word, p, 8);
            if (HasStopByte(word)) break;
            std::memcpy(out, &word, 8);
            p += 8;
            out += 8;
        }
        while (p < m_end && *p != '%' && *p != '+') *out++ = *p++;
        m_out = out;
        m_p = p;
    }

    // Whether any byte of the word is "%" or "+" (the classic zero-byte test on xor-ed words).
    static bool HasStopByte(uint64_t word)
    {
        constexpr uint64_t ones = 0x0101010101010101ull, highs = 0x8080808080808080ull;
        const uint64_t percent = word ^ (ones * '%'), plus = word ^ (ones * '+');
        return (((percent - ones) & ~percent) | ((plus - ones) & ~plus)) & highs;
    }

    void DecodeReferences()
    {
        std::string_view opener = StartsWith(m_p, m_end, kEscapedOpener) ? kEscapedOpener : kOpener;
        if (!DecodeCharReference(opener)) {
            Copy(opener.size()); // no terminator anywhere after it: the opener is text
            return;
        }
        while (!opener.empty() && DecodeCharReference(opener)) {
        }
    }

    // Decodes the reference at the current position; updates `opener` to the one that follows, if any.
    bool DecodeCharReference(std::string_view& opener)
    {
        if (opener.empty()) return false;
        const char* terminator = nullptr;
        size_t terminatorSize = 0;
        for (size_t i = 0; i < kTerminators.size() && !terminator; ++i) {
            terminator = m_finders[i].From(m_p);
            terminatorSize = kTerminators[i].size();
        }
        if (!terminator) return false;

        const char16_t unit = static_cast<char16_t>(ReadDecimal(m_p + opener.size(), m_end) & 0xFFFF);
        char bytes[3] = {};
        const size_t n = m_ansi.convert ? m_ansi.convert(m_ansi.context, unit, bytes, sizeof(bytes)) : 0;
        if (n >= 1 && n <= 2) {
            std::memcpy(m_out, bytes, n);
            m_out += n;
        } else {
            *m_out++ = ' '; // no form in the code page that fits
        }
        m_p = terminator + terminatorSize;
        opener = StartsWith(m_p, m_end, kEscapedOpener) ? kEscapedOpener
                 : StartsWith(m_p, m_end, kOpener)     ? kOpener
                                                       : std::string_view();
        return true;
    }

    const char* m_p;
    const char* m_end;
    char* m_out;
    uint32_t m_flags;
    const AnsiConverter& m_ansi;
    std::array<ForwardFinder, 5> m_finders;
};

} // namespace

size_t UnescapeData(const char* source, size_t length, char* dest, uint32_t flags, const AnsiConverter& ansi)
{
    if (!dest) return 0;
    if (!source || length == 0) {
        *dest = '\0';
        return 0;
    }
    return Unescaper(source, length, dest, flags, ansi).Run(dest);
}

std::string UnescapeData(std::string_view source, uint32_t flags, const AnsiConverter& ansi)
{
    std::string out(source.size() + 1, '\0');
    out.resize(UnescapeData(source.data(), source.size(), out.data(), flags, ansi));
    return out;
}

} // namespace tov::url
