#include "navigation/unescape.h"
#include <array>
#include <bit>
#include <cstring>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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
    // Deliberate: a-f give 10-15, anything else a meaningless value that still decodes; pages rely on
    // nothing else being refused.
    return static_cast<int>(c) - 0x57;
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

// Decoded bytes that need more than being written out: "%" (kept as "%25" on request), "&" (may open an
// escaped reference, otherwise kept escaped), "=" and "?" (kept escaped).
constexpr std::array<bool, 256> kSpecialDecoded = [] {
    std::array<bool, 256> t{};
    t['%'] = t['&'] = t['='] = t['?'] = true;
    return t;
}();

inline bool OpensReference(const char* p, const char* end) { return end - p >= 2 && p[0] == '&' && p[1] == '#'; }

// Whether p, at or after the end of the last step, opens a reference: an opener counts right after a step
// or after a "+".
inline bool OpensReferenceAfterStep(const char* p, const char* stepEnd, const char* end)
{
    return p >= stepEnd && OpensReference(p, end) && (p == stepEnd || p[-1] == '+');
}

// Bit i set when byte i of the 64 at p is "%" or "+". The comparisons are written byte by byte, which
// compilers turn into vector compares; the multiplication gathers a word's eight 0/1 bytes into its top
// byte without carries (bytes in memory order: little-endian only).
inline uint64_t StopBits64(const char* p)
{
    unsigned char stop[64];
    for (int i = 0; i < 64; ++i) stop[i] = static_cast<unsigned char>((p[i] == '%') | (p[i] == '+'));
    uint64_t bits = 0;
    for (int i = 0; i < 8; ++i) {
        uint64_t word;
        std::memcpy(&word, stop + 8 * i, 8);
        bits |= (word * 0x0102040810204080ull >> 56) << (8 * i);
    }
    return bits;
}

// The index of the lowest set bit of a mask that has one: without the case of no bit, which
// std::countr_zero has to answer and x86-64 without BMI answers with a branch.
inline int LowestBit(uint64_t nonZero)
{
#if defined(__GNUC__)
    return __builtin_ctzll(nonZero);
#else
    return std::countr_zero(nonZero);
#endif
}

#if defined(__SSE2__)
// With vector instructions a "+" is turned into a blank while its run is copied, so the stops are only
// "%" and "#", whose "&" before it may open a reference. Bit i set for such a byte i of the 64 at p.
inline uint64_t VectorStopBits64(const char* p)
{
    uint64_t bits = 0;
    for (int i = 0; i < 4; ++i) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16 * i));
        const __m128i stops = _mm_or_si128(_mm_cmpeq_epi8(v, _mm_set1_epi8('%')), _mm_cmpeq_epi8(v, _mm_set1_epi8('#')));
        bits |= static_cast<uint64_t>(static_cast<uint32_t>(_mm_movemask_epi8(stops))) << (16 * i);
    }
    return bits;
}

inline void CopyWithBlanks16(char* out, const char* p)
{
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    const __m128i pluses = _mm_cmpeq_epi8(v, _mm_set1_epi8('+'));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_xor_si128(v, _mm_and_si128(pluses, _mm_set1_epi8('+' ^ ' '))));
}

// Copies n bytes with every "+" turned into a blank, at least 48 at a time (runs between stops are
// mostly shorter: no branch on their length); the caller guarantees that 48 bytes past the end of the
// run can be read and written.
inline void CopyOverWithBlanks(char* out, const char* p, size_t n)
{
    CopyWithBlanks16(out, p);
    CopyWithBlanks16(out + 16, p + 16);
    CopyWithBlanks16(out + 32, p + 32);
    for (size_t i = 48; i < n; i += 16) CopyWithBlanks16(out + i, p + i);
}
#endif

inline uint64_t Load8(const char* p)
{
    uint64_t word;
    std::memcpy(&word, p, 8);
    return word;
}

// The high bit of every byte of the word that equals c, exactly: a byte's low seven bits plus 0x7F carry
// into its high bit unless they are all zero, and never into the next byte.
inline uint64_t EqualBytes(uint64_t word, char c)
{
    constexpr uint64_t ones = 0x0101010101010101ull, lows = 0x7F7F7F7F7F7F7F7Full;
    const uint64_t x = word ^ (ones * static_cast<unsigned char>(c));
    return ~(((x & lows) + lows) | x) & ~lows;
}

// Copies n bytes 16 at a time; the caller guarantees that 16 bytes past the end of the run can be read
// and written.
inline void CopyOver(char* out, const char* p, size_t n)
{
    std::memcpy(out, p, 16);
    for (size_t i = 16; i < n; i += 16) std::memcpy(out + i, p + i, 16);
}

// Where the input and the output stand. The rare steps take and return it by value, so that the hot loop
// keeps both in registers rather than in memory whose address a call could use.
struct Cursor {
    const char* in;
    char* out;
};

// Vector: the scans with vector instructions (the stops and the terminator search) rather than portable ones.
template <bool Vector> class Unescaper {
public:
    Unescaper(const char* end, uint32_t flags, const AnsiConverter& ansi)
        : m_end(end), m_flags(flags), m_ansi(ansi)
    {
    }

    // The data is a sequence of steps: a "%" escape, a "+", a run of other bytes up to the next "%" or
    // "+", or references. A reference opener counts only at the start of the data or right after an escape,
    // a "+" or a reference (inside a run it is text), so openers are looked for only there.
    //
    // The output never gets ahead of the input, which lets runs be copied in whole 16-byte pieces while
    // 16 more bytes of input follow; the bytes written past a run are overwritten by what comes next.
    size_t Run(const char* p, char* dest)
    {
        const char* const end = m_end;
        char* out = dest;
        const auto references = [&] { // at an "&#" opener
            do {
                if (m_live == kTerminators.size()) { // nothing ends a reference any more: the opener is text
                    std::memcpy(out, p, kOpener.size());
                    out += kOpener.size();
                    p += kOpener.size();
                    continue;
                }
                const Cursor c = DecodeReferences({p, out});
                p = c.in;
                out = c.out;
            } while (OpensReference(p, end));
        };
        if (OpensReference(p, end)) references();

        // Blocks of 64 bytes: the positions of all stops in a block are found at once, so handling one
        // does not wait for the search for the next. Form data changes between words, escapes and "+" at
        // random: the common steps decide with selects rather than branches.
        constexpr ptrdiff_t kBlock = 64, kSlack = 16;
#if defined(__SSE2__)
        if constexpr (Vector) {
            // Two blocks at a time, one loop over both masks (the mask in use picked by a select): the
            // loop's end, which no predictor can know, comes once per 128 bytes.
            //
            // A block ends where it ends, often inside a run, whose rest is copied with it. Then p is no
            // step's end: an "&" copied with that run, or right after it, opens a reference only where the
            // run began (runStart, where the last step ended) or after one of the run's "+".
            const char* runStart = p;
            bool midRun = false;
            while (end - p >= 2 * kBlock + 3 * kSlack) {
                const char* const block = p;
                uint64_t low = VectorStopBits64(block), high = VectorStopBits64(block + kBlock);
                while ((low | high) != 0) {
                    const bool inLow = low != 0;
                    const uint64_t mask = inLow ? low : high;
                    const char* const s = block + (inLow ? 0 : kBlock) + LowestBit(mask);
                    const uint64_t cleared = mask & (mask - 1);
                    low = inLow ? cleared : low;
                    high = inLow ? high : cleared;
                    if (s < p) [[unlikely]] continue; // inside an escape decoded already
                    if (*s == '%') [[likely]] {
                        CopyOverWithBlanks(out, p, static_cast<size_t>(s - p));
                        out += s - p;
                        p = s;
                        const unsigned char decoded = DecodeEscape(p[1], p[2]);
                        if (!kSpecialDecoded[decoded]) [[likely]] {
                            *out++ = static_cast<char>(decoded);
                            p += 3;
                            continue;
                        }
                        if (decoded != '&' || !QuickReference(p, out)) {
                            const Cursor c = SpecialEscape({p, out}, decoded);
                            p = c.in;
                            out = c.out;
                        }
                    } else { // a "#", after an "&" that may open a reference
                        const char* const stepEnd = p == block && midRun ? runStart : p;
                        if (s <= stepEnd || !OpensReferenceAfterStep(s - 1, stepEnd, end)) continue; // text
                        const char* const amp = s - 1;
                        if (amp < p) { // copied already with the end of the previous block
                            out -= p - amp;
                        } else {
                            CopyOverWithBlanks(out, p, static_cast<size_t>(amp - p));
                            out += amp - p;
                        }
                        p = amp;
                        references();
                    }
                    // Stops inside what was decoded are passed over.
                    const ptrdiff_t done = p - block;
                    if (done >= 2 * kBlock) break;
                    if (done >= kBlock) {
                        low = 0;
                        high &= ~uint64_t{0} << (done - kBlock);
                    } else {
                        low &= ~uint64_t{0} << done;
                    }
                }
                const char* const blockEnd = block + 2 * kBlock;
                if (p < blockEnd) {
                    if (p != block || !midRun) runStart = p; // else the run began in a block before
                    midRun = true;
                    CopyOverWithBlanks(out, p, static_cast<size_t>(blockEnd - p));
                    out += blockEnd - p;
                    p = blockEnd;
                } else {
                    midRun = false;
                }
            }
            // The run copied last may end in the "&" of an opener, or right before one.
            if (midRun && OpensReferenceAfterStep(p - 1, runStart, end)) {
                --out;
                --p;
                references();
            } else if (OpensReferenceAfterStep(p, midRun ? runStart : p, end)) {
                references();
            }
        }
#endif
        if constexpr (!Vector && std::endian::native == std::endian::little) {
            while (end - p >= kBlock + kSlack) {
                const char* const block = p;
                const char* const blockEnd = block + kBlock;
                for (uint64_t stops = StopBits64(block); stops != 0; stops &= stops - 1) {
                    const char* const s = block + std::countr_zero(stops);
                    if (s < p) continue; // inside an escape or a reference already decoded
                    CopyOver(out, p, static_cast<size_t>(s - p));
                    out += s - p;
                    p = s;
                    StepAt(p, out, end);
                    if (OpensReference(p, end)) {
                        references();
                        if (p >= blockEnd) break;
                    }
                }
                if (p < blockEnd) {
                    CopyOver(out, p, static_cast<size_t>(blockEnd - p));
                    out += blockEnd - p;
                    p = blockEnd;
                }
            }
        }

        // The rest, a byte at a time between escapes.
        for (;;) {
            while (p < end && *p != '%' && *p != '+') *out++ = *p++;
            if (p == end) break;
            if (*p == '%' && end - p <= 2) break; // a truncated escape ends the data
            StepAt(p, out, end);
            if (OpensReference(p, end)) references();
        }
        *out = '\0';
        return static_cast<size_t>(out - dest);
    }

private:
    // The "+" or complete "%" escape at p. The escape is decoded even for a "+" when two more bytes can
    // be read, so that nothing branches on which of the two it is.
    void StepAt(const char*& p, char*& out, const char* end)
    {
        const bool plus = *p == '+';
        const unsigned char escape = end - p >= 3 ? DecodeEscape(p[1], p[2]) : 0;
        const unsigned char decoded = plus ? ' ' : escape;
        if (kSpecialDecoded[decoded]) [[unlikely]] {
            const Cursor c = SpecialEscape({p, out}, decoded);
            p = c.in;
            out = c.out;
            return;
        }
        *out++ = static_cast<char>(decoded);
        p += plus ? 1 : 3;
    }

#if defined(__SSE2__)
    // At an escape that decodes to "&": a reference in its usual form, "%26%23", one to eight digits,
    // "%3B", while "%3B" is the most preferred terminator left; decoded without searching. Reads 24
    // bytes. Returns false, having done nothing, for anything else (other escapes decode to "&" too).
    bool QuickReference(const char*& p, char*& out)
    {
        if (m_live != 0 || std::memcmp(p, kEscapedOpener.data(), kEscapedOpener.size()) != 0) return false;
        const char* const digits = p + kEscapedOpener.size();
        const __m128i v = _mm_sub_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(digits)), _mm_set1_epi8('0'));
        // Unsigned v > 9, through the signed comparison of both sides with their high bits flipped.
        const __m128i flip = _mm_set1_epi8(static_cast<char>(0x80));
        const unsigned others = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpgt_epi8(_mm_xor_si128(v, flip), _mm_xor_si128(_mm_set1_epi8(9), flip))));
        const int count = std::countr_zero(others | 0x10000u);
        if (count == 0 || count > 8) return false;
        const char* const terminator = digits + count;
        if (terminator[0] != '%' || terminator[1] != '3' || terminator[2] != 'B') return false;
        // The digits' values moved to the top of a word (leading zeros below, the first digit the most
        // significant), then combined pairwise: bytes, 16-bit halves, 32-bit halves.
        uint64_t word = Load8(digits) - 0x3030303030303030ull;
        word <<= 8 * (8 - count);
        word = (word * 10 + (word >> 8)) & 0x00FF00FF00FF00FFull;
        word = (word * 100 + (word >> 16)) & 0x0000FFFF0000FFFFull;
        word = word * 10000 + (word >> 32);
        WriteInCodePage(static_cast<char16_t>(word & 0xFFFF), out);
        p = terminator + kTerminators[0].size();
        return true;
    }
#endif

    // The code page's form of a referenced character, or a blank when it has none that fits.
    void WriteInCodePage(char16_t unit, char*& out)
    {
        char bytes[3] = {};
        const size_t n = m_ansi.convert ? m_ansi.convert(m_ansi.context, unit, bytes, sizeof(bytes)) : 0;
        if (n >= 1 && n <= 2) {
            // Both bytes, whatever n: a reference takes at least three, so there is room.
            out[0] = bytes[0];
            out[1] = bytes[1];
            out += n;
        } else {
            *out++ = ' ';
        }
    }

    Cursor SpecialEscape(Cursor c, unsigned char decoded)
    {
        if (decoded == '&' && StartsWith(c.in, m_end, kEscapedOpener)) return DecodeReferences(c);
        if (decoded == '&' || decoded == '=' || decoded == '?' ||
            ((m_flags & kKeepPercentEscape) && c.in[1] == '2' && c.in[2] == '5')) {
            std::memcpy(c.out, c.in, 3); // kept in its escaped form
            return {c.in + 3, c.out + 3};
        }
        *c.out = static_cast<char>(decoded);
        return {c.in + 3, c.out + 1};
    }

    static size_t OpenerSizeAt(const char* p, const char* end)
    {
        return StartsWith(p, end, kEscapedOpener) ? kEscapedOpener.size()
               : StartsWith(p, end, kOpener)      ? kOpener.size()
                                                  : 0;
    }

    // At an opener: the reference and every one that follows right after it. An opener without any
    // terminator after it is text.
    Cursor DecodeReferences(Cursor c)
    {
        const char* p = c.in;
        char* out = c.out;
        size_t openerSize = OpenerSizeAt(p, m_end);
        size_t terminatorSize = 0;
        const char* terminator = FindTerminator(p + openerSize, terminatorSize);
        if (!terminator) {
            // Either size, as a constant: no call for a few bytes.
            if (openerSize == kOpener.size()) std::memcpy(out, p, kOpener.size());
            else std::memcpy(out, p, kEscapedOpener.size());
            return {p + openerSize, out + openerSize};
        }
        do {
            WriteInCodePage(static_cast<char16_t>(ReadDecimal(p + openerSize, m_end) & 0xFFFF), out);
            p = terminator + terminatorSize;
            openerSize = OpenerSizeAt(p, m_end);
            // A following opener without a terminator is left to the next step, which copies it.
        } while (openerSize != 0 && (terminator = FindTerminator(p + openerSize, terminatorSize)) != nullptr);
        return {p, out};
    }

    // The most preferred terminator that occurs at or after pos, however far. No terminator can begin
    // inside an opener, so pos is just past it. A scan that finds its terminator ends where the next
    // reference's scan begins; one that reaches the end rules out at least one terminator for good (the
    // position only moves forward). So all scans of one call read the data only a few times over.
    const char* FindTerminator(const char* pos, size_t& size)
    {
        if (m_live == kTerminators.size()) return nullptr;
        if (m_live == 0) { // the usual form: digits, then the most preferred terminator
            const char* digitsEnd = pos;
            while (digitsEnd < m_end && *digitsEnd >= '0' && *digitsEnd <= '9') ++digitsEnd;
            if (StartsWith(digitsEnd, m_end, kTerminators[0])) {
                size = kTerminators[0].size();
                return digitsEnd;
            }
        }
        const char* found = Scan(pos);
        while (!found) {
            if (++m_live == kTerminators.size()) return nullptr;
            found = m_firstAfter[m_live];
        }
        size = kTerminators[m_live].size();
        return found;
    }

    // Looks for the terminator m_live from pos. One scan looks for all of them ("%3" followed by the
    // letter, or ";"), so when it reaches the end without finding the one wanted, it has seen the first
    // occurrence of each other one.
    const char* Scan(const char* pos)
    {
        m_firstAfter.fill(nullptr);
        const char* const end = m_end;
        const auto at = [&](const char* hit) { // whether the scan is done
            const size_t which = TerminatorAt(hit, end);
            if (which < kTerminators.size() && !m_firstAfter[which]) m_firstAfter[which] = hit;
            return which == m_live;
        };
#if defined(__SSE2__)
        if constexpr (Vector) {
            for (; end - pos >= 17; pos += 16) {
                const __m128i here = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pos));
                const __m128i next = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pos + 1));
                const __m128i candidates =
                    _mm_or_si128(_mm_and_si128(_mm_cmpeq_epi8(here, _mm_set1_epi8('%')), _mm_cmpeq_epi8(next, _mm_set1_epi8('3'))),
                                 _mm_cmpeq_epi8(here, _mm_set1_epi8(';')));
                for (unsigned hits = static_cast<unsigned>(_mm_movemask_epi8(candidates)); hits; hits &= hits - 1) {
                    const char* const hit = pos + std::countr_zero(hits);
                    if (at(hit)) return hit;
                }
            }
        }
#endif
        if constexpr (std::endian::native == std::endian::little) {
            for (; end - pos >= 9; pos += 8) {
                const uint64_t word = Load8(pos), next = Load8(pos + 1);
                for (uint64_t hits = (EqualBytes(word, '%') & EqualBytes(next, '3')) | EqualBytes(word, ';'); hits;
                     hits &= hits - 1) {
                    const char* const hit = pos + std::countr_zero(hits) / 8;
                    if (at(hit)) return hit;
                }
            }
        }
        for (; pos < end; ++pos) {
            if (at(pos)) return pos;
        }
        return nullptr;
    }

    static size_t TerminatorAt(const char* p, const char* end)
    {
        static_assert(kTerminators[0] == "%3B" && kTerminators[1] == "%3b" && kTerminators[2] == ";" &&
                      kTerminators[3] == "%3d" && kTerminators[4] == "%3D");
        if (*p == ';') return 2;
        if (end - p < 3 || p[0] != '%' || p[1] != '3') return kTerminators.size();
        return kTerminatorByLetter[static_cast<unsigned char>(p[2])]; // a load, not a jump table
    }
    static constexpr std::array<unsigned char, 256> kTerminatorByLetter = [] {
        std::array<unsigned char, 256> t{};
        t.fill(static_cast<unsigned char>(kTerminators.size()));
        t['B'] = 0;
        t['b'] = 1;
        t['d'] = 3;
        t['D'] = 4;
        return t;
    }();

    const char* const m_end;
    const uint32_t m_flags;
    const AnsiConverter& m_ansi;
    size_t m_live = 0; // the terminators before this one occur nowhere after the position
    std::array<const char*, kTerminators.size()> m_firstAfter{};
};

} // namespace

namespace {

template <bool Vector> size_t Unescape(const char* source, size_t length, char* dest, uint32_t flags, const AnsiConverter& ansi)
{
    if (!dest) return 0;
    if (!source || length == 0) {
        *dest = '\0';
        return 0;
    }
    return Unescaper<Vector>(source + length, flags, ansi).Run(source, dest);
}

} // namespace

size_t UnescapeData(const char* source, size_t length, char* dest, uint32_t flags, const AnsiConverter& ansi)
{
#if defined(__SSE2__)
    return Unescape<true>(source, length, dest, flags, ansi);
#else
    return Unescape<false>(source, length, dest, flags, ansi);
#endif
}

size_t UnescapeDataPortable(const char* source, size_t length, char* dest, uint32_t flags, const AnsiConverter& ansi)
{
    return Unescape<false>(source, length, dest, flags, ansi);
}

std::string UnescapeData(std::string_view source, uint32_t flags, const AnsiConverter& ansi)
{
    std::string out(source.size() + 1, '\0');
    out.resize(UnescapeData(source.data(), source.size(), out.data(), flags, ansi));
    return out;
}

} // namespace tov::url
