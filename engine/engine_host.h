#pragma once
// The engine process behind every browser object of this process: native headless Chromium, started on
// first use with a private profile under /tmp, its DevTools port read from the profile, spoken to over
// one connection, and closed with Browser.close when the last browser object lets go of it.
//
// A small native shell script starts the engine and watches a heartbeat file that this process touches;
// when this process dies without closing the engine (killed, crashed), the script ends the engine within
// a bounded time and removes the profile. The handle CreateProcess returns for a native program tells
// nothing reliable under Wine, so the script's work is judged by the folder going away.
#include <windows.h>
#include <memory>
#include <string>
#include <thread>
#include "engine/devtools_connection.h"

namespace tovengine {

class EngineHost {
public:
    // The running engine, started when no browser object uses one. Throws tov::HResultError when the
    // engine cannot be started; LastFailure() then says why.
    static std::shared_ptr<EngineHost> Acquire();
    static std::wstring LastFailure();
    // The binary started: TOV_ENGINE_BINARY from the environment, else Debian's headless shell.
    static std::wstring BinaryPath();

    ~EngineHost();
    EngineHost(const EngineHost&) = delete;
    EngineHost& operator=(const EngineHost&) = delete;

    DevToolsConnection& Connection() { return *m_connection; }
    bool Alive() const { return m_connection && m_connection->Alive(); }
    // The profile folder as this process sees it (Z:\tmp\...).
    const std::wstring& Folder() const { return m_folder; }

private:
    EngineHost() = default;
    void Start();
    void Stop() noexcept;

    std::wstring m_folder;
    std::shared_ptr<DevToolsConnection> m_connection;
    HANDLE m_stopHeartbeat = nullptr;
    std::thread m_heartbeat;
};

} // namespace tovengine
