#include "engine/websocket_frames.h"

namespace tovengine::ws {

std::string EncodeClientFrame(Opcode opcode, std::string_view payload, uint32_t mask)
{
    std::string frame;
    frame.reserve(payload.size() + 14);
    frame.push_back(static_cast<char>(0x80 | static_cast<uint8_t>(opcode)));
    const uint64_t n = payload.size();
    if (n < 126) {
        frame.push_back(static_cast<char>(0x80 | n));
    } else if (n <= 0xFFFF) {
        frame.push_back(static_cast<char>(0x80 | 126));
        frame.push_back(static_cast<char>(n >> 8));
        frame.push_back(static_cast<char>(n & 0xFF));
    } else {
        frame.push_back(static_cast<char>(0x80 | 127));
        for (int shift = 56; shift >= 0; shift -= 8) frame.push_back(static_cast<char>((n >> shift) & 0xFF));
    }
    const uint8_t key[4] = {static_cast<uint8_t>(mask >> 24), static_cast<uint8_t>(mask >> 16),
                            static_cast<uint8_t>(mask >> 8), static_cast<uint8_t>(mask)};
    for (uint8_t k : key) frame.push_back(static_cast<char>(k));
    const size_t start = frame.size();
    frame.append(payload);
    for (size_t i = 0; i < payload.size(); ++i) frame[start + i] = static_cast<char>(frame[start + i] ^ key[i & 3]);
    return frame;
}

std::optional<Message> FrameReader::Next()
{
    while (!m_failed) {
        // Consumed bytes go here, while no view into the buffer exists: erasing moves the bytes under a view.
        if (m_consumed > (size_t{1} << 16) && m_consumed * 2 > m_buffer.size()) {
            m_buffer.erase(0, m_consumed);
            m_consumed = 0;
        }
        const std::string_view data(m_buffer.data() + m_consumed, m_buffer.size() - m_consumed);
        if (data.size() < 2) break;
        const auto b0 = static_cast<uint8_t>(data[0]);
        const auto b1 = static_cast<uint8_t>(data[1]);
        const bool fin = (b0 & 0x80) != 0;
        const auto opcode = static_cast<Opcode>(b0 & 0x0F);
        if ((b1 & 0x80) != 0 || (b0 & 0x70) != 0) { m_failed = true; break; } // masked or extension bits
        uint64_t length = b1 & 0x7F;
        size_t header = 2;
        if (length == 126) {
            if (data.size() < 4) break;
            length = (uint64_t{static_cast<uint8_t>(data[2])} << 8) | static_cast<uint8_t>(data[3]);
            header = 4;
        } else if (length == 127) {
            if (data.size() < 10) break;
            length = 0;
            for (size_t i = 2; i < 10; ++i) length = (length << 8) | static_cast<uint8_t>(data[i]);
            header = 10;
        }
        // Checked before the payload arrives. A control frame between fragments is no part of the message.
        const bool control = (static_cast<uint8_t>(opcode) & 0x8) != 0;
        const size_t held = opcode == Opcode::Continuation ? m_partial.size() : 0;
        if (control ? length > 125 : length > m_limit - held) { m_failed = true; break; }
        if (data.size() - header < length) break;
        const std::string_view payload = data.substr(header, static_cast<size_t>(length));
        m_consumed += header + static_cast<size_t>(length);
        if (control) {
            if (!fin) { m_failed = true; break; }
            if (opcode != Opcode::Close && opcode != Opcode::Ping && opcode != Opcode::Pong) { m_failed = true; break; }
            return Message{opcode, std::string(payload)};
        }
        if (opcode == Opcode::Continuation) {
            if (!m_inMessage) { m_failed = true; break; }
            m_partial.append(payload);
        } else if (opcode == Opcode::Text || opcode == Opcode::Binary) {
            if (m_inMessage) { m_failed = true; break; }
            m_partial.assign(payload);
            m_partialOpcode = opcode;
            m_inMessage = true;
        } else {
            m_failed = true;
            break;
        }
        if (fin) {
            m_inMessage = false;
            Message whole{m_partialOpcode, std::move(m_partial)};
            m_partial.clear();
            return whole;
        }
    }
    return std::nullopt;
}

std::string HandshakeRequest(std::string_view host, uint16_t port, std::string_view path, std::string_view key)
{
    std::string r = "GET ";
    r.append(path.empty() ? std::string_view("/") : path);
    r += " HTTP/1.1\r\nHost: ";
    r.append(host);
    r += ":" + std::to_string(port);
    r += "\r\nUpgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Key: ";
    r.append(key);
    r += "\r\nSec-WebSocket-Version: 13\r\n\r\n";
    return r;
}

size_t HandshakeResponseLength(std::string_view bytes, bool& accepted)
{
    accepted = false;
    const size_t end = bytes.find("\r\n\r\n");
    if (end == std::string_view::npos) return 0;
    const std::string_view status = bytes.substr(0, bytes.find("\r\n"));
    const size_t space = status.find(' ');
    accepted = status.substr(0, 5) == "HTTP/" && space != std::string_view::npos && status.substr(space + 1, 3) == "101";
    return end + 4;
}

} // namespace tovengine::ws
