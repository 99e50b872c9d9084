#pragma once
// One WebSocket connection to the engine's DevTools endpoint. A reader thread takes messages off the
// socket; answers to waiting calls are handed straight to the waiter, everything else (events and the
// answers to sent-and-forgotten commands) is queued and delivered on the thread that opened the
// connection, through a message-only window, so that browser events reach COM sinks on the browser's
// own apartment thread as the platform browser's do.
#include <winsock2.h>
#include <windows.h>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <vector>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include "engine/json.h"
#include "engine/websocket_frames.h"

namespace tovengine {

// How long a call waits for its answer before it fails: a page that loops forever in script never answers.
inline constexpr DWORD kCallTimeoutMs = 8000;

class DevToolsConnection {
public:
    // Answer to a sent command, on the owner thread: the result, or null with the error object.
    using Reply = std::function<void(const Json* result, const Json* error)>;
    using EventHandler = std::function<void(const std::string& method, const Json& params)>;

    // Connects to ws://127.0.0.1:port/path; throws tov::HResultError when it cannot.
    static std::shared_ptr<DevToolsConnection> Open(uint16_t port, const std::string& path, DWORD timeoutMs);
    ~DevToolsConnection();
    DevToolsConnection(const DevToolsConnection&) = delete;
    DevToolsConnection& operator=(const DevToolsConnection&) = delete;

    // Sends without waiting; `reply`, when given, runs on the owner thread once the answer is there (with
    // an error when the connection ends first).
    void Send(const std::string& method, Json params, const std::string& session = {}, Reply reply = {});
    // Sends without waiting once the handler running now has returned, or before any other message leaves,
    // whichever comes first: a handler can tell its listeners first and the engine right after, and a
    // listener that calls the engine meanwhile never waits behind a message not yet sent.
    void SendAfterHandler(const std::string& method, Json params, const std::string& session = {});
    // Sends and waits for the answer on this thread; throws tov::HResultError on an error answer, on time-out
    // and when the engine is gone. Events arriving meanwhile wait in the queue.
    Json Call(const std::string& method, Json params, const std::string& session = {}, DWORD timeoutMs = kCallTimeoutMs);

    // Events of one session ("" for the browser's own) go to its handler, on the owner thread.
    void Subscribe(const std::string& session, EventHandler handler);
    void Unsubscribe(const std::string& session);
    // `handler` runs once on the owner thread when the connection ends (engine closed, crashed or
    // killed), unless it is forgotten first.
    int WhenClosed(std::function<void()> handler);
    void ForgetClosed(int token);

    bool Alive() const;
    // Delivers whatever is queued now (the message window does this by itself).
    void Deliver();
    // Ends the connection: the socket is shut, the reader joined; waiters fail.
    void Close();

private:
    DevToolsConnection() = default;
    void ReaderLoop();
    void SendFrame(ws::Opcode opcode, const std::string& payload);
    // Sends what SendAfterHandler held back; m_sendLock is held.
    bool SendHeldLocked();
    // One frame on the socket, traced when it is text; m_sendLock is held.
    bool WriteFrameLocked(ws::Opcode opcode, const std::string& payload);
    void SendHeld();
    // `urgent` items (paused requests) may also be run by a waiting call.
    void Queue(std::function<void()> item, bool urgent = false);
    void Fail();
    static LRESULT CALLBACK WindowProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam);

    struct Waiter {
        bool done = false;
        Json result;
        Json error;
    };

    SOCKET m_socket = INVALID_SOCKET;
    HWND m_window = nullptr;
    DWORD m_ownerThread = 0;
    std::thread m_reader;
    mutable std::mutex m_lock;
    std::condition_variable m_answered;
    std::mutex m_sendLock;
    std::vector<std::string> m_held; // guarded by m_sendLock
    long long m_nextId = 1;
    bool m_alive = false;
    bool m_closedNotified = false;
    std::map<long long, std::shared_ptr<Waiter>> m_waiters;
    std::map<long long, Reply> m_replies;
    struct Item {
        std::function<void()> run;
        bool urgent = false;
    };
    std::deque<Item> m_inbox;
    int m_urgent = 0;
    std::map<std::string, EventHandler> m_handlers;
    std::map<int, std::function<void()>> m_closedHandlers;
    int m_nextClosedToken = 1;
    ws::FrameReader m_frames;
    int m_delivering = 0;
};

} // namespace tovengine
