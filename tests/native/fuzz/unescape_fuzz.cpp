// Fuzz target: unescaping never reads or writes out of bounds, never grows the data, gives the same with
// the vector and the portable scan, and agrees with the literal transcription of its rules.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include "navigation/unescape.h"
#include "../unescape_reference.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0) return 0;
    const uint32_t flags = (data[0] & 1) ? tov::url::kKeepPercentEscape : 0;
    const std::string input(reinterpret_cast<const char*>(data + 1), size - 1);
    std::string out(input.size() + 1, '\x7f');
    const size_t n = tov::url::UnescapeData(input.data(), input.size(), out.data(), flags, tovtest::Latin1());
    if (n > input.size() || out[n] != '\0') std::abort();
    std::string portable(input.size() + 1, '\x7f');
    const size_t m = tov::url::UnescapeDataPortable(input.data(), input.size(), portable.data(), flags, tovtest::Latin1());
    if (m != n || std::memcmp(out.data(), portable.data(), n + 1) != 0) std::abort();
    // The reference rescans for every reference: keep it to inputs it handles quickly.
    if (input.size() <= 4096 && std::string(out.data(), n) != tovtest::LiteralUnescape(input, flags)) std::abort();
    return 0;
}
