// WebSocket framing: client frames out, server frames in, and the peers the reader gives up on.
#include <gtest/gtest.h>
#include <vector>
#include "engine/websocket_frames.h"

using namespace tovengine::ws;

namespace {

// A frame as a server sends it (unmasked); `first` is the byte with FIN, the reserved bits and the opcode.
std::string ServerFrame(uint8_t first, std::string_view payload)
{
    std::string f(1, static_cast<char>(first));
    const uint64_t n = payload.size();
    const int lengthBytes = n < 126 ? 0 : n <= 0xFFFF ? 2 : 8;
    f.push_back(static_cast<char>(lengthBytes == 0 ? n : lengthBytes == 2 ? 126 : 127));
    for (int i = lengthBytes - 1; i >= 0; --i) f.push_back(static_cast<char>(n >> (8 * i)));
    return f.append(payload);
}

std::string Pattern(size_t n, int seed)
{
    std::string s(n, '\0');
    for (size_t i = 0; i < n; ++i) s[i] = static_cast<char>(i * 7 + seed + i / 251);
    return s;
}

std::vector<Message> Drain(FrameReader& reader)
{
    std::vector<Message> out;
    while (auto m = reader.Next()) out.push_back(std::move(*m));
    return out;
}

} // namespace

TEST(WebSocketFrames, ClientFramesAreMaskedWithTheSmallestLengthField)
{
    const struct { size_t size; size_t lengthBytes; } cases[] = {{0, 0}, {125, 0}, {126, 2}, {65535, 2}, {65536, 8}};
    for (const auto& c : cases) {
        const std::string payload = Pattern(c.size, 1);
        const std::string f = EncodeClientFrame(Opcode::Binary, payload, 0x01020304);
        const size_t header = 2 + c.lengthBytes + 4;
        ASSERT_EQ(header + c.size, f.size()) << c.size;
        EXPECT_EQ(0x82, static_cast<uint8_t>(f[0]));
        EXPECT_EQ(0x80u | (c.lengthBytes == 0 ? c.size : c.lengthBytes == 2 ? 126u : 127u), static_cast<uint8_t>(f[1]));
        uint64_t length = c.lengthBytes == 0 ? c.size : 0;
        for (size_t i = 0; i < c.lengthBytes; ++i) length = (length << 8) | static_cast<uint8_t>(f[2 + i]);
        EXPECT_EQ(c.size, length);
        EXPECT_EQ(std::string("\x01\x02\x03\x04"), f.substr(header - 4, 4)) << "the key goes out most significant byte first";
        std::string unmasked = f.substr(header);
        for (size_t i = 0; i < unmasked.size(); ++i) unmasked[i] = static_cast<char>(unmasked[i] ^ (1 + (i & 3)));
        EXPECT_EQ(payload, unmasked) << c.size;
    }
}

TEST(WebSocketFrames, ReaderTakesEveryLengthFieldFromOneBuffer)
{
    // More than 64 KiB in one buffer, so that the reader drops consumed bytes between messages.
    const size_t sizes[] = {0, 125, 126, 65535, 65536, 70000, 3};
    std::string wire;
    for (size_t i = 0; i < std::size(sizes); ++i) wire += ServerFrame(0x82, Pattern(sizes[i], static_cast<int>(i)));
    FrameReader reader;
    reader.Feed(wire);
    const auto messages = Drain(reader);
    ASSERT_EQ(std::size(sizes), messages.size());
    for (size_t i = 0; i < std::size(sizes); ++i) {
        EXPECT_EQ(Opcode::Binary, messages[i].opcode);
        EXPECT_TRUE(messages[i].payload == Pattern(sizes[i], static_cast<int>(i))) << "message " << i;
    }
    EXPECT_FALSE(reader.Failed());
}

TEST(WebSocketFrames, FragmentsAreJoinedAroundControlFramesWhenFedByteByByte)
{
    const std::string wire = ServerFrame(0x01, "Hel") + ServerFrame(0x89, "ping-ping") + ServerFrame(0x00, "lo") +
                             ServerFrame(0x8A, "") + ServerFrame(0x80, " you") + ServerFrame(0x88, "\x03\xE8");
    FrameReader reader(9);
    std::vector<std::pair<size_t, Message>> seen; // with the number of bytes fed when it came out
    for (size_t i = 0; i < wire.size(); ++i) {
        reader.Feed(wire.substr(i, 1));
        for (auto& m : Drain(reader)) seen.emplace_back(i + 1, std::move(m));
    }
    ASSERT_FALSE(reader.Failed()) << "control frames do not count towards the message size";
    ASSERT_EQ(4u, seen.size());
    const std::pair<Opcode, std::string> expected[] = {
        {Opcode::Ping, "ping-ping"}, {Opcode::Pong, ""}, {Opcode::Text, "Hello you"}, {Opcode::Close, "\x03\xE8"}};
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(expected[i].first, seen[i].second.opcode) << i;
        EXPECT_EQ(expected[i].second, seen[i].second.payload) << i;
    }
    EXPECT_EQ(wire.size() - 4, seen[2].first) << "the text comes out with the last byte of its final fragment";
    EXPECT_EQ(wire.size(), seen[3].first);
}

TEST(WebSocketFrames, PeersBreakingTheRulesFailTheReaderForGood)
{
    const std::string huge64 = std::string("\x82\x7F\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 10);
    const struct { std::string wire; bool fails; const char* what; } cases[] = {
        {std::string("\x81\x81\0\0\0\0a", 7), true, "masked frame from the server"},
        {ServerFrame(0x09, "p") + ServerFrame(0x80, ""), true, "fragmented control frame"},
        {ServerFrame(0x80, "a"), true, "continuation without a start"},
        {ServerFrame(0x01, "a") + ServerFrame(0x81, "b"), true, "new message inside a fragmented one"},
        {ServerFrame(0xC1, "a"), true, "reserved bit 1"},
        {ServerFrame(0x91, "a"), true, "reserved bit 3"},
        {ServerFrame(0x83, "a"), true, "reserved data opcode"},
        {ServerFrame(0x8B, ""), true, "reserved control opcode"},
        {ServerFrame(0x89, std::string(126, 'p')), true, "control frame over 125 bytes"},
        {ServerFrame(0x82, "12345"), true, "one frame over the limit"},
        {ServerFrame(0x02, "123") + ServerFrame(0x80, "45"), true, "fragments over the limit"},
        {huge64, true, "a length past the limit fails before its payload arrives"},
        {ServerFrame(0x82, "1234"), false, "exactly the limit"},
        {ServerFrame(0x02, "12") + ServerFrame(0x80, "34"), false, "fragments up to the limit"},
        {ServerFrame(0x89, std::string(125, 'p')), false, "control frames are not held to the message limit"},
    };
    for (const auto& c : cases) {
        FrameReader reader(4);
        reader.Feed(c.wire);
        const auto messages = Drain(reader);
        EXPECT_EQ(c.fails, reader.Failed()) << c.what;
        EXPECT_EQ(c.fails ? 0u : 1u, messages.size()) << c.what;
        reader.Feed(ServerFrame(0x81, "ok"));
        EXPECT_EQ(c.fails, !reader.Next().has_value()) << c.what << ": nothing comes after a failure";
    }
}

TEST(WebSocketFrames, Handshake)
{
    EXPECT_EQ("GET /devtools/browser/x HTTP/1.1\r\nHost: 127.0.0.1:9222\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
              "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\nSec-WebSocket-Version: 13\r\n\r\n",
              HandshakeRequest("127.0.0.1", 9222, "/devtools/browser/x", "dGhlIHNhbXBsZSBub25jZQ=="));
    EXPECT_EQ(0u, HandshakeRequest("h", 1, "", "k").rfind("GET / HTTP/1.1\r\n", 0));

    const std::string switching = "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\n\r\n";
    const struct { std::string bytes; size_t length; bool accepted; } cases[] = {
        {switching + "\x81\x02ok", switching.size(), true},
        {switching.substr(0, switching.size() - 1), 0, false},
        {"HTTP/1.1 404 Not Found\r\n\r\n", 26, false},
        {"HTTP/1.1 200 OK\r\nX: 101\r\n\r\n", 27, false},
        {"XTTP/1.1 101 Switching\r\n\r\n", 26, false},
    };
    for (const auto& c : cases) {
        bool accepted = !c.accepted;
        EXPECT_EQ(c.length, HandshakeResponseLength(c.bytes, accepted)) << c.bytes;
        EXPECT_EQ(c.accepted, accepted) << c.bytes;
    }
}
