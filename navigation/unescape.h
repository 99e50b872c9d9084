#pragma once
// Unescaping of URLs and form data: percent escapes, "+" and numeric character references, keeping the
// escaped form-data separators ("&", "=", "?") escaped. Standard C++ only; the code page reaches it as a
// function.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tov::url {

// Converts one UTF-16 code unit to the ANSI code page: writes up to `capacity` bytes to `out` and returns
// how many, or 0 when the character does not fit.
struct AnsiConverter {
    size_t (*convert)(void* context, char16_t unit, char* out, size_t capacity) = nullptr;
    void* context = nullptr;
};

// Keeps "%25" as it stands instead of turning it into "%".
inline constexpr uint32_t kKeepPercentEscape = 0x400000;

// Unescapes `length` bytes of `source` into `dest`, which holds at least length + 1 bytes and does not
// overlap the source (bytes beyond the output so far may be written and overwritten later); writes the
// terminating zero and returns the number of bytes before it (never more than `length`). The data is
// bounded by `length`: zero bytes inside it are data like any other.
size_t UnescapeData(const char* source, size_t length, char* dest, uint32_t flags, const AnsiConverter& ansi);

// The same without vector instructions: what targets without SSE2 run, kept beside the vector scan so
// that both can be compared.
size_t UnescapeDataPortable(const char* source, size_t length, char* dest, uint32_t flags, const AnsiConverter& ansi);

// The same for a whole string.
std::string UnescapeData(std::string_view source, uint32_t flags, const AnsiConverter& ansi);

} // namespace tov::url
