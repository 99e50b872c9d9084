#include "engine/engine_host.h"
#include <mutex>
#include <string_view>
#include "framework/handles.h"
#include "framework/hresult_error.h"
#include "engine/text.h"

namespace tovengine {
namespace {

std::mutex g_lock;
std::weak_ptr<EngineHost> g_engine;
std::wstring g_lastFailure;

constexpr DWORD kStartTimeoutMs = 30000;
constexpr DWORD kStopTimeoutMs = 10000;
constexpr DWORD kHeartbeatMs = 2000;

// Runs natively. Its first argument is the session folder, the rest the engine's command line.
const char kLauncher[] =
    "dir=\"$1\"; shift\n"
    "\"$@\" --user-data-dir=\"$dir/profile\" >\"$dir/engine.log\" 2>&1 &\n"
    "engine=$!\n"
    "echo $engine >\"$dir/engine.pid\"\n"
    "while kill -0 $engine 2>/dev/null; do\n"
    "  sleep 1\n"
    "  beat=$(stat -c %Y \"$dir/heartbeat\" 2>/dev/null || echo 0)\n"
    "  if [ $(( $(date +%s) - beat )) -gt 20 ]; then\n"
    "    kill $engine 2>/dev/null; sleep 2; kill -9 $engine 2>/dev/null; break\n"
    "  fi\n"
    "done\n"
    "wait $engine 2>/dev/null\n"
    "rm -rf \"$dir\"\n";

const wchar_t* const kEngineFlags[] = {
    L"--headless", L"--no-sandbox", L"--disable-gpu", L"--no-first-run", L"--disable-background-networking",
    L"--disable-component-update", L"--disable-sync", L"--disable-default-apps", L"--mute-audio",
    L"--disable-features=IsolateOrigins,site-per-process,Translate,MediaRouter",
    L"--remote-debugging-address=127.0.0.1", L"--remote-debugging-port=0",
};

// "Z:" + the Unix path: how this process reaches a file of the machine.
std::wstring ThroughDriveZ(const std::wstring& unixPath)
{
    std::wstring path = L"Z:" + unixPath;
    for (wchar_t& c : path)
        if (c == L'/') c = L'\\';
    return path;
}

bool Exists(const std::wstring& path)
{
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool WriteFileBytes(const std::wstring& path, std::string_view bytes)
{
    tov::UniqueFile file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                     FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    return file && WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
           written == bytes.size();
}

std::string ReadFileBytes(const std::wstring& path)
{
    tov::UniqueFile file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                     nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    std::string bytes;
    if (!file) return bytes;
    char buffer[4096];
    DWORD n = 0;
    while (ReadFile(file.Get(), buffer, sizeof buffer, &n, nullptr) && n > 0 && bytes.size() < (1u << 20))
        bytes.append(buffer, n);
    return bytes;
}

bool RunNative(const std::wstring& program, std::wstring commandLine)
{
    STARTUPINFOW si{};
    si.cb = sizeof si;
    PROCESS_INFORMATION pi{};
    if (!CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                        nullptr, &si, &pi))
        return false;
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
    return true;
}

[[noreturn]] void FailStart(const std::wstring& why, HRESULT hr)
{
    std::lock_guard<std::mutex> hold(g_lock);
    g_lastFailure = why;
    tov::Throw(hr);
}

} // namespace

std::wstring EngineHost::BinaryPath()
{
    wchar_t value[1024];
    const DWORD n = GetEnvironmentVariableW(L"TOV_ENGINE_BINARY", value, 1024);
    if (n > 0 && n < 1024) return value;
    return L"/usr/lib/chromium/chromium-headless-shell";
}

std::wstring EngineHost::LastFailure()
{
    std::lock_guard<std::mutex> hold(g_lock);
    return g_lastFailure;
}

std::shared_ptr<EngineHost> EngineHost::Acquire()
{
    {
        std::lock_guard<std::mutex> hold(g_lock);
        if (auto running = g_engine.lock(); running && running->Alive()) return running;
    }
    std::shared_ptr<EngineHost> host(new EngineHost());
    host->Start();
    std::lock_guard<std::mutex> hold(g_lock);
    g_engine = host;
    g_lastFailure.clear();
    return host;
}

void EngineHost::Start()
{
    const std::wstring binary = BinaryPath();
    if (!Exists(ThroughDriveZ(binary)))
        FailStart(L"the engine binary " + binary + L" does not exist", HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));

    static LONG counter = 0;
    const std::wstring unixFolder = L"/tmp/tovengine-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
                                    std::to_wstring(GetTickCount()) + L"-" +
                                    std::to_wstring(InterlockedIncrement(&counter));
    m_folder = ThroughDriveZ(unixFolder);
    if (!CreateDirectoryW(m_folder.c_str(), nullptr))
        FailStart(L"cannot make the engine folder " + unixFolder, HRESULT_FROM_WIN32(GetLastError()));
    if (!WriteFileBytes(m_folder + L"\\launch.sh", kLauncher) || !WriteFileBytes(m_folder + L"\\heartbeat", "1"))
        FailStart(L"cannot write into the engine folder " + unixFolder, HRESULT_FROM_WIN32(GetLastError()));

    std::wstring commandLine = L"sh " + unixFolder + L"/launch.sh " + unixFolder + L" \"" + binary + L"\"";
    for (const wchar_t* flag : kEngineFlags) commandLine += std::wstring(L" ") + flag;
    if (!RunNative(L"Z:\\bin\\sh", commandLine))
        FailStart(L"cannot start /bin/sh for the engine", HRESULT_FROM_WIN32(GetLastError()));

    // The heartbeat starts now: the launcher ends the engine when it stops.
    m_stopHeartbeat = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    m_heartbeat = std::thread([beat = m_folder + L"\\heartbeat", stop = m_stopHeartbeat] {
        while (WaitForSingleObject(stop, kHeartbeatMs) == WAIT_TIMEOUT) WriteFileBytes(beat, "1");
    });

    const std::wstring portFile = m_folder + L"\\profile\\DevToolsActivePort";
    const ULONGLONG deadline = GetTickCount64() + kStartTimeoutMs;
    std::string port;
    for (;;) {
        port = ReadFileBytes(portFile);
        if (port.find('\n') != std::string::npos) break;
        if (GetTickCount64() > deadline || !Exists(m_folder)) {
            const std::string log = ReadFileBytes(m_folder + L"\\engine.log");
            Stop();
            FailStart(L"the engine did not start: " + Wide(log.substr(0, 400)), HRESULT_FROM_WIN32(ERROR_TIMEOUT));
        }
        Sleep(20);
    }
    const size_t newline = port.find('\n');
    const unsigned long number = std::strtoul(port.substr(0, newline).c_str(), nullptr, 10);
    std::string path = port.substr(newline + 1);
    while (!path.empty() && (path.back() == '\n' || path.back() == '\r')) path.pop_back();
    if (number == 0 || number > 65535 || path.empty()) {
        Stop();
        FailStart(L"the engine wrote no usable port", E_FAIL);
    }
    try {
        m_connection = DevToolsConnection::Open(static_cast<uint16_t>(number), path, 10000);
    } catch (const tov::HResultError& e) {
        Stop();
        FailStart(L"cannot connect to the engine on port " + std::to_wstring(number), e.Code());
    }
}

EngineHost::~EngineHost()
{
    Stop();
}

void EngineHost::Stop() noexcept
{
    if (m_connection) {
        // The engine may close the connection before it answers: its going is the answer.
        m_connection->Send("Browser.close", Json::object());
        const ULONGLONG deadline = GetTickCount64() + 3000;
        while (m_connection->Alive() && GetTickCount64() < deadline) Sleep(10);
        m_connection->Close();
    }
    if (m_stopHeartbeat) {
        SetEvent(m_stopHeartbeat);
        if (m_heartbeat.joinable()) m_heartbeat.join();
        CloseHandle(m_stopHeartbeat);
        m_stopHeartbeat = nullptr;
    }
    if (m_folder.empty()) return;
    // The launcher removes the folder once the engine has ended.
    const ULONGLONG deadline = GetTickCount64() + kStopTimeoutMs;
    while (Exists(m_folder) && GetTickCount64() < deadline) Sleep(20);
    if (Exists(m_folder)) {
        const std::string pid = ReadFileBytes(m_folder + L"\\engine.pid");
        const unsigned long number = std::strtoul(pid.c_str(), nullptr, 10);
        if (number > 1) RunNative(L"Z:\\bin\\kill", L"kill -9 " + std::to_wstring(number));
    }
    m_connection.reset();
}

} // namespace tovengine
