// Build-time fix-ups of the type library that widl writes (host tool, standard C++ only):
//  - widl stores the library identity with a damaged last byte: the identity given on the command line is
//    written back into the GUID table entry the header points at (the GUID hash does not change, as the
//    hash only looks at the low five bits of the xor of the GUID's 16-bit words);
//  - widl leaves the oleautomation flag off the dispatch half of a dual interface: it is set there, as
//    for every dual interface of this library;
//  - the build time widl records as custom data is left as it is.
// Usage: tlb_fixup IN.tlb OUT.tlb {XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

int32_t Get32(const std::vector<unsigned char>& d, size_t at)
{
    if (at + 4 > d.size()) throw std::string("offset out of range");
    return int32_t(uint32_t(d[at]) | uint32_t(d[at + 1]) << 8 | uint32_t(d[at + 2]) << 16 | uint32_t(d[at + 3]) << 24);
}

void Put32(std::vector<unsigned char>& d, size_t at, int32_t v)
{
    if (at + 4 > d.size()) throw std::string("offset out of range");
    for (int i = 0; i < 4; ++i) d[at + i] = static_cast<unsigned char>(uint32_t(v) >> (8 * i));
}

// {E677A061-08FE-11D1-A900-080009B0CB9D} in the byte order of a GUID in memory.
bool ParseGuid(const std::string& text, unsigned char out[16])
{
    unsigned a, b, c, d[8];
    if (std::sscanf(text.c_str(), "{%8x-%4x-%4x-%2x%2x-%2x%2x%2x%2x%2x%2x}", &a, &b, &c, &d[0], &d[1], &d[2], &d[3],
                    &d[4], &d[5], &d[6], &d[7]) != 11)
        return false;
    for (int i = 0; i < 4; ++i) out[i] = static_cast<unsigned char>(a >> (8 * i));
    out[4] = static_cast<unsigned char>(b); out[5] = static_cast<unsigned char>(b >> 8);
    out[6] = static_cast<unsigned char>(c); out[7] = static_cast<unsigned char>(c >> 8);
    for (int i = 0; i < 8; ++i) out[8 + i] = static_cast<unsigned char>(d[i]);
    return true;
}

constexpr size_t kHeaderSize = 0x54;
constexpr int32_t kHelpDllFlag = 0x100;
constexpr size_t kSegmentSize = 16;
constexpr int kTypeInfoSegment = 0, kGuidSegment = 5;
constexpr int32_t kTkindDispatch = 4;
constexpr int32_t kFlagDual = 0x40, kFlagOleAutomation = 0x100;

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4) { std::fprintf(stderr, "usage: tlb_fixup IN OUT {LIBID}\n"); return 2; }
    unsigned char libid[16];
    if (!ParseGuid(argv[3], libid)) { std::fprintf(stderr, "tlb_fixup: bad GUID %s\n", argv[3]); return 2; }
    std::ifstream in(argv[1], std::ios::binary);
    std::vector<unsigned char> d((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    try {
        if (d.size() < kHeaderSize || std::memcmp(d.data(), "MSFT", 4) != 0) throw std::string("not an MSFT type library");
        const int32_t posGuid = Get32(d, 0x08);
        const int32_t varFlags = Get32(d, 0x14);
        const int32_t typeInfoCount = Get32(d, 0x20);
        const size_t offsets = kHeaderSize + ((varFlags & kHelpDllFlag) ? 4 : 0);
        const size_t segments = offsets + 4 * size_t(typeInfoCount);
        const int32_t typeInfoTab = Get32(d, segments + kTypeInfoSegment * kSegmentSize);
        const int32_t guidTab = Get32(d, segments + kGuidSegment * kSegmentSize);

        const size_t libidAt = size_t(guidTab) + size_t(posGuid);
        if (libidAt + 16 > d.size()) throw std::string("library GUID out of range");
        std::memcpy(&d[libidAt], libid, 16);

        for (int32_t i = 0; i < typeInfoCount; ++i) {
            const size_t base = size_t(typeInfoTab) + size_t(Get32(d, offsets + 4 * size_t(i)));
            const int32_t kind = Get32(d, base) & 0xF;
            const int32_t flags = Get32(d, base + 0x30);
            if (kind == kTkindDispatch && (flags & kFlagDual)) Put32(d, base + 0x30, flags | kFlagOleAutomation);
        }
    } catch (const std::string& e) {
        std::fprintf(stderr, "tlb_fixup: %s: %s\n", argv[1], e.c_str());
        return 1;
    }
    std::ofstream out(argv[2], std::ios::binary);
    out.write(reinterpret_cast<const char*>(d.data()), std::streamsize(d.size()));
    return out ? 0 : 1;
}
