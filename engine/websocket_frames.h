#pragma once
// WebSocket framing for a client (RFC 6455): masked frames out, unmasked frames in, fragmented messages
// joined, control frames reported on their own. Portable: the engine's socket code feeds it bytes.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tovengine::ws {

enum class Opcode : uint8_t { Continuation = 0x0, Text = 0x1, Binary = 0x2, Close = 0x8, Ping = 0x9, Pong = 0xA };

// One whole frame as a client sends it: FIN set, payload masked with `mask`.
std::string EncodeClientFrame(Opcode opcode, std::string_view payload, uint32_t mask);

struct Message {
    Opcode opcode; // Text, Binary, Close, Ping or Pong; never Continuation
    std::string payload;
};

// Collects received bytes and hands out whole messages. A peer that breaks the framing rules (a masked
// frame from the server, a fragmented control frame, a continuation without a start, a message past the
// size limit) puts the reader into the failed state for good.
class FrameReader {
public:
    explicit FrameReader(size_t maxMessageBytes = size_t{256} << 20) : m_limit(maxMessageBytes) {}

    void Feed(std::string_view bytes) { m_buffer.append(bytes); }
    // The next whole message, or nothing while more bytes are needed (or the reader failed).
    std::optional<Message> Next();
    bool Failed() const { return m_failed; }

private:
    std::string m_buffer;
    size_t m_consumed = 0;
    std::string m_partial;
    Opcode m_partialOpcode = Opcode::Continuation;
    bool m_inMessage = false;
    bool m_failed = false;
    size_t m_limit;
};

// The request line and headers of the opening handshake for `path` on `host:port`.
std::string HandshakeRequest(std::string_view host, uint16_t port, std::string_view path, std::string_view key);
// Length of a complete handshake response at the start of `bytes` (through the blank line), or 0 while
// incomplete; `accepted` tells whether it switched protocols (status 101).
size_t HandshakeResponseLength(std::string_view bytes, bool& accepted);

} // namespace tovengine::ws
