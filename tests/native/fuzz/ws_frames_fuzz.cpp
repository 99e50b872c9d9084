// Fuzz target: arbitrary bytes into the frame reader in chunks of varying size, and through the URL mapping.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>
#include "engine/engine_urls.h"
#include "engine/websocket_frames.h"

using namespace tovengine;

namespace {

bool ValidUtf8(std::string_view s)
{
    for (size_t i = 0; i < s.size();) {
        const auto c = static_cast<unsigned char>(s[i]);
        const size_t len = c < 0x80 ? 1 : c >= 0xC2 && c <= 0xDF ? 2 : c >= 0xE0 && c <= 0xEF ? 3 : c >= 0xF0 && c <= 0xF4 ? 4 : 0;
        if (len == 0 || i + len > s.size()) return false;
        uint32_t cp = len == 1 ? c : len == 2 ? c & 0x1F : len == 3 ? c & 0x0F : c & 0x07;
        for (size_t k = 1; k < len; ++k) {
            const auto b = static_cast<unsigned char>(s[i + k]);
            if ((b & 0xC0) != 0x80) return false;
            cp = (cp << 6) | (b & 0x3F);
        }
        if ((len == 3 && (cp < 0x800 || (cp >= 0xD800 && cp <= 0xDFFF))) || (len == 4 && (cp < 0x10000 || cp > 0x10FFFF)))
            return false;
        i += len;
    }
    return true;
}

struct Outcome {
    std::vector<std::pair<ws::Opcode, std::string>> messages;
    bool failed;
    bool operator==(const Outcome&) const = default;
};

Outcome Read(std::string_view bytes, size_t limit, uint32_t chunkSeed)
{
    ws::FrameReader reader(limit);
    Outcome out;
    for (size_t at = 0; at < bytes.size();) {
        size_t n = bytes.size();
        if (chunkSeed != 0) {
            chunkSeed ^= chunkSeed << 13, chunkSeed ^= chunkSeed >> 17, chunkSeed ^= chunkSeed << 5;
            n = 1 + chunkSeed % 17;
        }
        reader.Feed(bytes.substr(at, n));
        at += std::min(n, bytes.size() - at);
        while (auto m = reader.Next()) {
            const bool control = (static_cast<uint8_t>(m->opcode) & 8) != 0;
            if (m->opcode == ws::Opcode::Continuation || m->payload.size() > (control ? 125 : limit) || reader.Failed())
                std::abort();
            out.messages.emplace_back(m->opcode, std::move(m->payload));
        }
    }
    out.failed = reader.Failed();
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0) return 0;
    const std::string_view input(reinterpret_cast<const char*>(data + 1), size - 1);
    // The first byte picks a size limit small enough to be reached; the whole input seeds the chunk sizes.
    const size_t limit = 1 + data[0] * 4;
    uint32_t seed = 2166136261u;
    for (size_t i = 0; i < size; ++i) seed = (seed ^ data[i]) * 16777619u;
    if (Read(input, limit, seed | 1) != Read(input, limit, 0)) std::abort(); // the same however the bytes arrive

    namespace urls = tovengine::urls;
    const std::string whole(reinterpret_cast<const char*>(data), size);
    if (urls::PercentDecode(whole).size() > whole.size()) std::abort();
    (void)urls::FromEngine(whole);
    const std::string engine = urls::ToEngine(whole);
    if (!urls::EngineLoadsItself(whole)) {
        // What the engine is given needs no escaping of its own, so it comes back as it went.
        for (char c : engine)
            if (c <= 0x20 || c >= 0x7F) std::abort();
        if (!urls::IsServed(engine)) std::abort();
        if (ValidUtf8(whole) && whole.find('#') == std::string::npos &&
            urls::FromEngine(engine) != urls::PathToFileUrl(whole))
            std::abort();
    }
    return 0;
}
