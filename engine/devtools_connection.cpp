#include "engine/devtools_connection.h"
#include <ws2tcpip.h>
#include <algorithm>
#include <cstdio>
#include <utility>
#include "engine/this_module.h"
#include "framework/hresult_error.h"

namespace tovengine {
namespace {

// A command as the engine reads it; without a session it goes to the browser itself.
std::string CommandText(long long id, const std::string& method, Json params, const std::string& session)
{
    Json message = {{"id", id}, {"method", method}, {"params", params.is_null() ? Json::object() : std::move(params)}};
    if (!session.empty()) message["sessionId"] = session;
    return JsonText(message);
}

constexpr UINT kDeliverMessage = WM_APP + 0x2A;
const wchar_t kWindowClass[] = L"TOVEngineDevToolsPump";

struct WinsockUser {
    WinsockUser()
    {
        WSADATA data;
        ok = WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }
    ~WinsockUser()
    {
        if (ok) WSACleanup();
    }
    bool ok = false;
};

WinsockUser& Winsock()
{
    static WinsockUser user;
    return user;
}

bool SendAll(SOCKET s, const std::string& bytes)
{
    size_t sent = 0;
    while (sent < bytes.size()) {
        const int chunk = static_cast<int>(std::min<size_t>(bytes.size() - sent, 1 << 20));
        const int n = send(s, bytes.data() + sent, chunk, 0);
        if (n <= 0) return false;
        sent += static_cast<size_t>(n);
    }
    return true;
}

// TOV_ENGINE_TRACE in the environment: every message in and out on standard error, cut to 300 bytes.
bool Tracing()
{
    static const bool on = GetEnvironmentVariableW(L"TOV_ENGINE_TRACE", nullptr, 0) > 0;
    return on;
}

void TraceMessage(const char* direction, std::string_view text)
{
    if (!Tracing()) return;
    std::fprintf(stderr, "%10.3f %s %.*s\n", GetTickCount64() / 1000.0, direction,
                 static_cast<int>(std::min<size_t>(text.size(), 300)), text.data());
}

uint32_t RandomMask()
{
    LARGE_INTEGER t;
    QueryPerformanceCounter(&t);
    return static_cast<uint32_t>(t.QuadPart * 2654435761u) ^ GetCurrentThreadId();
}

} // namespace

std::shared_ptr<DevToolsConnection> DevToolsConnection::Open(uint16_t port, const std::string& path, DWORD timeoutMs)
{
    if (!Winsock().ok) tov::Throw(HRESULT_FROM_WIN32(WSASYSNOTREADY));
    std::shared_ptr<DevToolsConnection> c(new DevToolsConnection());
    c->m_socket = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    if (c->m_socket == INVALID_SOCKET) tov::Throw(HRESULT_FROM_WIN32(WSAGetLastError()));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(c->m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        tov::Throw(HRESULT_FROM_WIN32(WSAGetLastError()));
    const BOOL noDelay = TRUE;
    setsockopt(c->m_socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&noDelay), sizeof noDelay);

    // The opening handshake, bounded in time; the reader thread reads without a limit afterwards.
    DWORD timeout = timeoutMs;
    setsockopt(c->m_socket, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&timeout), sizeof timeout);
    if (!SendAll(c->m_socket, ws::HandshakeRequest("127.0.0.1", port, path, "dG92ZW5naW5lLWtleS0xMjM=")))
        tov::Throw(HRESULT_FROM_WIN32(WSAGetLastError()));
    std::string response;
    char buffer[4096];
    size_t headerLength = 0;
    bool accepted = false;
    while ((headerLength = ws::HandshakeResponseLength(response, accepted)) == 0) {
        const int n = recv(c->m_socket, buffer, sizeof buffer, 0);
        if (n <= 0 || response.size() > 65536) tov::Throw(HRESULT_FROM_WIN32(ERROR_CONNECTION_REFUSED));
        response.append(buffer, static_cast<size_t>(n));
    }
    if (!accepted) tov::Throw(HRESULT_FROM_WIN32(ERROR_CONNECTION_REFUSED));
    c->m_frames.Feed(std::string_view(response).substr(headerLength));
    timeout = 0;
    setsockopt(c->m_socket, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&timeout), sizeof timeout);

    WNDCLASSW wc{};
    wc.lpfnWndProc = WindowProc;
    wc.hInstance = ThisModule();
    wc.lpszClassName = kWindowClass;
    RegisterClassW(&wc); // fails harmlessly when already registered
    c->m_window = CreateWindowExW(0, kWindowClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, wc.hInstance, nullptr);
    if (!c->m_window) tov::Throw(HRESULT_FROM_WIN32(GetLastError()));
    SetWindowLongPtrW(c->m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(c.get()));
    c->m_ownerThread = GetCurrentThreadId();
    c->m_alive = true;
    c->m_reader = std::thread([raw = c.get()] { raw->ReaderLoop(); });
    return c;
}

DevToolsConnection::~DevToolsConnection()
{
    Close();
    if (m_window) {
        SetWindowLongPtrW(m_window, GWLP_USERDATA, 0);
        DestroyWindow(m_window);
    }
}

void DevToolsConnection::Close()
{
    if (m_socket != INVALID_SOCKET) shutdown(m_socket, SD_BOTH);
    if (m_reader.joinable()) m_reader.join();
    if (m_socket != INVALID_SOCKET) {
        closesocket(m_socket);
        m_socket = INVALID_SOCKET;
    }
    Fail();
}

bool DevToolsConnection::Alive() const
{
    std::lock_guard<std::mutex> hold(m_lock);
    return m_alive;
}

void DevToolsConnection::SendFrame(ws::Opcode opcode, const std::string& payload)
{
    std::unique_lock<std::mutex> hold(m_sendLock);
    const bool sent = SendHeldLocked() && WriteFrameLocked(opcode, payload);
    hold.unlock();
    if (!sent) Fail();
}

void DevToolsConnection::SendHeld()
{
    std::unique_lock<std::mutex> hold(m_sendLock);
    const bool sent = SendHeldLocked();
    hold.unlock();
    if (!sent) Fail();
}

bool DevToolsConnection::SendHeldLocked()
{
    for (const std::string& text : std::exchange(m_held, {})) {
        if (!WriteFrameLocked(ws::Opcode::Text, text)) return false;
    }
    return true;
}

bool DevToolsConnection::WriteFrameLocked(ws::Opcode opcode, const std::string& payload)
{
    if (opcode == ws::Opcode::Text) TraceMessage(">", payload);
    return m_socket != INVALID_SOCKET && SendAll(m_socket, ws::EncodeClientFrame(opcode, payload, RandomMask()));
}

void DevToolsConnection::SendAfterHandler(const std::string& method, Json params, const std::string& session)
{
    long long id;
    {
        std::lock_guard<std::mutex> hold(m_lock);
        if (!m_alive) return;
        id = m_nextId++;
    }
    std::string text = CommandText(id, method, std::move(params), session);
    std::lock_guard<std::mutex> hold(m_sendLock);
    m_held.push_back(std::move(text));
}

void DevToolsConnection::Send(const std::string& method, Json params, const std::string& session, Reply reply)
{
    long long id;
    {
        std::lock_guard<std::mutex> hold(m_lock);
        if (!m_alive) {
            if (reply) {
                m_inbox.push_back({[reply] {
                                       const Json error = {{"message", "the engine is gone"}};
                                       reply(nullptr, &error);
                                   },
                                   false});
                PostMessageW(m_window, kDeliverMessage, 0, 0);
            }
            return;
        }
        id = m_nextId++;
        if (reply) m_replies.emplace(id, std::move(reply));
    }
    SendFrame(ws::Opcode::Text, CommandText(id, method, std::move(params), session));
}

Json DevToolsConnection::Call(const std::string& method, Json params, const std::string& session, DWORD timeoutMs)
{
    auto waiter = std::make_shared<Waiter>();
    long long id;
    {
        std::lock_guard<std::mutex> hold(m_lock);
        if (!m_alive) tov::Throw(HRESULT_FROM_WIN32(ERROR_CONNECTION_ABORTED));
        id = m_nextId++;
        m_waiters.emplace(id, waiter);
    }
    SendFrame(ws::Opcode::Text, CommandText(id, method, std::move(params), session));

    // A page answers nothing while its top document's request waits for this thread: paused requests
    // are handled while waiting, everything else stays queued.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    std::unique_lock<std::mutex> hold(m_lock);
    bool answered = false;
    for (;;) {
        m_answered.wait_until(hold, deadline, [&] { return waiter->done || m_urgent > 0; });
        if (waiter->done) {
            answered = true;
            break;
        }
        if (m_urgent == 0) break; // timed out
        auto urgent = std::find_if(m_inbox.begin(), m_inbox.end(), [](const Item& item) { return item.urgent; });
        if (urgent == m_inbox.end()) {
            m_urgent = 0;
            continue;
        }
        std::function<void()> run = std::move(urgent->run);
        m_inbox.erase(urgent);
        --m_urgent;
        hold.unlock();
        try {
            run();
        } catch (...) {
        }
        SendHeld();
        hold.lock();
    }
    m_waiters.erase(id);
    if (!answered) tov::Throw(HRESULT_FROM_WIN32(ERROR_TIMEOUT));
    if (!waiter->error.is_null()) {
        tov::Throw(waiter->error.is_boolean() ? HRESULT_FROM_WIN32(ERROR_CONNECTION_ABORTED) : E_FAIL);
    }
    return std::move(waiter->result);
}

void DevToolsConnection::Subscribe(const std::string& session, EventHandler handler)
{
    std::lock_guard<std::mutex> hold(m_lock);
    m_handlers[session] = std::move(handler);
}

void DevToolsConnection::Unsubscribe(const std::string& session)
{
    std::lock_guard<std::mutex> hold(m_lock);
    m_handlers.erase(session);
}

int DevToolsConnection::WhenClosed(std::function<void()> handler)
{
    std::lock_guard<std::mutex> hold(m_lock);
    const int token = m_nextClosedToken++;
    m_closedHandlers.emplace(token, std::move(handler));
    return token;
}

void DevToolsConnection::ForgetClosed(int token)
{
    std::lock_guard<std::mutex> hold(m_lock);
    m_closedHandlers.erase(token);
}

void DevToolsConnection::Queue(std::function<void()> item, bool urgent)
{
    {
        std::lock_guard<std::mutex> hold(m_lock);
        const bool wasEmpty = m_inbox.empty();
        m_inbox.push_back({std::move(item), urgent});
        if (urgent) ++m_urgent;
        if (wasEmpty) PostMessageW(m_window, kDeliverMessage, 0, 0);
    }
    if (urgent) m_answered.notify_all();
}

void DevToolsConnection::Fail()
{
    std::map<long long, Reply> replies;
    {
        std::lock_guard<std::mutex> hold(m_lock);
        if (!m_alive && m_closedNotified) return;
        m_alive = false;
        // Waiters learn of the end through an error that is no protocol answer.
        for (auto& [id, waiter] : m_waiters) {
            waiter->done = true;
            waiter->error = true;
        }
        replies.swap(m_replies);
        m_closedNotified = true;
    }
    m_answered.notify_all();
    const Json error = {{"message", "the engine is gone"}};
    for (auto& [id, reply] : replies) {
        Queue([reply = std::move(reply), error] { reply(nullptr, &error); });
    }
    Queue([this] {
        std::map<int, std::function<void()>> handlers;
        {
            std::lock_guard<std::mutex> hold(m_lock);
            handlers.swap(m_closedHandlers);
        }
        for (auto& [token, handler] : handlers) handler();
    });
}

void DevToolsConnection::ReaderLoop()
{
    char buffer[65536];
    for (;;) {
        while (auto message = m_frames.Next()) {
            if (message->opcode == ws::Opcode::Ping) {
                SendFrame(ws::Opcode::Pong, message->payload);
                continue;
            }
            if (message->opcode == ws::Opcode::Close) {
                Fail();
                return;
            }
            if (message->opcode != ws::Opcode::Text) continue;
            TraceMessage("<", message->payload);
            Json value = ParseMessage(message->payload);
            if (!value.is_object()) continue;
            const auto idField = value.find("id");
            if (idField != value.end() && idField->is_number_integer()) {
                const long long id = idField->get<long long>();
                Json result = value.contains("result") ? std::move(value["result"]) : Json::object();
                Json error = value.contains("error") ? std::move(value["error"]) : Json();
                std::unique_lock<std::mutex> hold(m_lock);
                if (auto w = m_waiters.find(id); w != m_waiters.end()) {
                    w->second->result = std::move(result);
                    w->second->error = std::move(error);
                    w->second->done = true;
                    hold.unlock();
                    m_answered.notify_all();
                } else if (auto r = m_replies.find(id); r != m_replies.end()) {
                    Reply reply = std::move(r->second);
                    m_replies.erase(r);
                    hold.unlock();
                    Queue([reply = std::move(reply), result = std::move(result), error = std::move(error)] {
                        if (error.is_null()) reply(&result, nullptr);
                        else reply(nullptr, &error);
                    });
                }
                continue;
            }
            std::string method = StringField(value, "method");
            std::string session = StringField(value, "sessionId");
            Json params = value.contains("params") ? std::move(value["params"]) : Json::object();
            const bool urgent = method == "Fetch.requestPaused";
            Queue([this, method = std::move(method), session = std::move(session), params = std::move(params)] {
                EventHandler handler;
                {
                    std::lock_guard<std::mutex> hold(m_lock);
                    const auto it = m_handlers.find(session);
                    if (it != m_handlers.end()) handler = it->second;
                }
                if (handler) handler(method, params);
            }, urgent);
        }
        if (m_frames.Failed()) {
            Fail();
            return;
        }
        const int n = recv(m_socket, buffer, sizeof buffer, 0);
        if (n <= 0) {
            Fail();
            return;
        }
        m_frames.Feed(std::string_view(buffer, static_cast<size_t>(n)));
    }
}

void DevToolsConnection::Deliver()
{
    for (;;) {
        std::function<void()> item;
        {
            std::lock_guard<std::mutex> hold(m_lock);
            if (m_inbox.empty()) return;
            Item front = std::move(m_inbox.front());
            m_inbox.pop_front();
            if (front.urgent) --m_urgent;
            item = std::move(front.run);
        }
        try {
            item();
        } catch (...) {
            // A handler's failure must not stop the queue; the handlers trace their own.
        }
        SendHeld();
    }
}

LRESULT CALLBACK DevToolsConnection::WindowProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam)
{
    if (msg == kDeliverMessage) {
        if (auto* c = reinterpret_cast<DevToolsConnection*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA))) c->Deliver();
        return 0;
    }
    return DefWindowProcW(hwnd, msg, wParam, lParam);
}

} // namespace tovengine
