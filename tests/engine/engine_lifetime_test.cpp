// What the engine leaves behind and how the control lives through its failures: separate browser windows
// that go with their window, create-and-release cycles that leave no target, window, handle or file, a
// killed engine, a missing engine binary.
#include <winsock2.h>
#include "engine/engine_fixture.h"
#include "support/process_state.h"

namespace tovtest {
namespace {

// The pages the running engine holds, asked of the engine itself (its target list over HTTP).
int EnginePages()
{
    const auto folders = EngineFolders();
    if (folders.size() != 1) return -1;
    const int port = atoi(ReadSmallFile(folders[0] + L"\\profile\\DevToolsActivePort").c_str());
    WSADATA wsa;
    WSAStartup(MAKEWORD(2, 2), &wsa);
    SOCKET s = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<u_short>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    std::string reply;
    if (connect(s, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) {
        // The engine keeps the connection open: the reply ends where its length says.
        const char request[] = "GET /json/list HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n";
        send(s, request, sizeof request - 1, 0);
        DWORD timeout = 5000;
        setsockopt(s, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&timeout), sizeof timeout);
        char buffer[4096];
        int n;
        size_t headerEnd = std::string::npos, length = 0;
        while ((n = recv(s, buffer, sizeof buffer, 0)) > 0) {
            reply.append(buffer, static_cast<size_t>(n));
            if (headerEnd == std::string::npos && (headerEnd = reply.find("\r\n\r\n")) != std::string::npos) {
                const size_t field = reply.find("Content-Length:");
                length = field < headerEnd ? static_cast<size_t>(atoi(reply.c_str() + field + 15)) : 0;
            }
            if (headerEnd != std::string::npos && reply.size() >= headerEnd + 4 + length) break;
        }
    }
    closesocket(s);
    WSACleanup();
    int pages = 0;
    for (size_t at = reply.find("\"type\": \"page\""); at != std::string::npos; at = reply.find("\"type\": \"page\"", at + 1))
        ++pages;
    return pages;
}

std::vector<HWND> EngineTopWindows()
{
    std::vector<HWND> found;
    EnumThreadWindows(GetCurrentThreadId(), [](HWND hwnd, LPARAM out) {
        wchar_t name[64] = {};
        GetClassNameW(hwnd, name, 64);
        if (wcscmp(name, L"TOVEngineBrowserView") == 0 && IsWindowVisible(hwnd))
            reinterpret_cast<std::vector<HWND>*>(out)->push_back(hwnd);
        return TRUE;
    }, reinterpret_cast<LPARAM>(&found));
    return found;
}

class EngineLifetime : public EngineFixture {};

TEST_F(EngineLifetime, ASeparateBrowserWindowShowsItsPageAndGoesWithItsWindow)
{
    ASSERT_EQ(1, EnginePages()) << "the control's own page";
    LONG code = -1;
    ASSERT_EQ(S_OK, control->ShowURLInBrowser(tov::Bstr(L"data:text/html,<title>separate</title><p>own window</p>").Get(), &code));
    EXPECT_EQ(0, code);
    std::vector<HWND> windows;
    ASSERT_TRUE(WaitFor([&] { return (windows = EngineTopWindows()).size() == 1; })) << "one separate browser window";
    EXPECT_TRUE(WaitFor([&] {
        wchar_t title[64] = {};
        GetWindowTextW(windows[0], title, 64);
        return wcscmp(title, L"separate") == 0;
    })) << "its page loaded and titled it";
    EXPECT_EQ(2, EnginePages()) << "a second engine page";

    PostMessageW(windows[0], WM_CLOSE, 0, 0); // the user closes it
    EXPECT_TRUE(WaitFor([&] { return EngineTopWindows().empty() && EnginePages() == 1; })) << "window and page gone";
}

TEST_F(EngineLifetime, CyclesOfCreateShowAndReleaseLeaveNothingBehind)
{
    const auto cycle = [&](int i) {
        tovfe::ContainerWindow window(400, 300);
        auto other = ocx.CreateControl();
        ASSERT_TRUE(other);
        ASSERT_EQ(S_OK, window.Attach(other.Get()));
        LONG code = -1;
        ASSERT_EQ(S_OK, other->InitControl(&code));
        ASSERT_EQ(0, code);
        tov::Bstr prefix;
        other->get_URLPrefixLocal(prefix.Put());
        tovfe::DataStore::Instance().Put(std::wstring(prefix.View()) + L"cycle.htm",
                                         "<html><body>cycle " + std::to_string(i) + "</body></html>", L"html");
        ASSERT_EQ(S_OK, other->ShowData(tov::Bstr(L"cycle.htm").Get(), nullptr, 1, &code));
        ASSERT_EQ(0, code);
        ASSERT_TRUE(WaitFor([&] {
            LONG complete = 0;
            other->get_DocumentComplete(&complete);
            tov::Bstr html;
            other->GetHTMLSourceContent(html.Put());
            return complete == 1 && html.View().find(L"cycle " + std::to_wstring(i)) != std::wstring_view::npos;
        })) << "cycle " << i;
        window.Destroy();
        other.Reset();
        Settle(20);
    };
    cycle(0); // the first pays for what stays loaded
    const ProcessState before = ProcessState::Now();
    for (int i = 1; i <= 100 && !HasFatalFailure(); ++i) cycle(i);
    ASSERT_TRUE(WaitFor([&] { return EnginePages() == 1; }, 10000)) << "only the fixture control's page is left";
    const ProcessState after = ProcessState::Now();
    EXPECT_EQ(before.windows, after.windows);
    EXPECT_EQ(before.tempFiles, after.tempFiles);
    EXPECT_LE(after.handles, before.handles + 16) << "handles";
    EXPECT_LE(after.gdiObjects, before.gdiObjects + 16) << "GDI objects";
    EXPECT_LE(after.userObjects, before.userObjects + 16) << "USER objects";
}

TEST_F(EngineLifetime, AKilledEngineIsRefusedAndTheNextInitControlStartsAnother)
{
    const auto folders = EngineFolders();
    ASSERT_EQ(1u, folders.size());
    const int pid = atoi(ReadSmallFile(folders[0] + L"\\engine.pid").c_str());
    ASSERT_GT(pid, 1);
    // A native program: started by its path, its handle under Wine says nothing about it.
    STARTUPINFOW si{};
    si.cb = sizeof si;
    PROCESS_INFORMATION pi{};
    std::wstring command = L"kill -9 " + std::to_wstring(pid);
    ASSERT_TRUE(CreateProcessW(L"Z:\\bin\\kill", command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi));
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
    ASSERT_TRUE(WaitFor([&] { return EngineFolders().empty(); }, 15000)) << "the engine is gone";

    PutPage(L"after.htm", "<html><body>after</body></html>");
    EXPECT_EQ(5, ShowData(L"after.htm")) << "the browser refuses";
    EXPECT_EQ(L"", Html());
    EXPECT_TRUE(IsWindow(Window())) << "the control and its container live on";

    // A new browser, a new engine.
    tovfe::ContainerWindow window(400, 300);
    auto other = ocx.CreateControl();
    ASSERT_EQ(S_OK, window.Attach(other.Get()));
    LONG code = -1;
    ASSERT_EQ(S_OK, other->InitControl(&code));
    EXPECT_EQ(0, code);
    EXPECT_EQ(1u, EngineFolders().size());
    window.Destroy();
    other.Reset();
}

// No engine runs before these tests: the control is made here, not by the engine fixture.
class NoEngineYet : public ControlFixture {};

TEST_F(NoEngineYet, AMissingEngineBinaryFailsInitControlAndTheTraceSaysWhy)
{
    tovfe::EngineClasses engine;
    ASSERT_EQ(S_OK, engine.Register());
    AtlHost host(400, 300);
    ASSERT_EQ(S_OK, host.Attach(control.Get()));
    Connect(1);
    SetEnvironmentVariableW(L"TOV_ENGINE_BINARY", L"/nonexistent/engine-binary");
    LONG code = -1;
    const HRESULT hr = control->InitControl(&code);
    SetEnvironmentVariableW(L"TOV_ENGINE_BINARY", nullptr);
    EXPECT_EQ(S_OK, hr);
    EXPECT_EQ(4, code);
    EXPECT_EQ(1u, LinesWith("/nonexistent/engine-binary")) << "the reason is traced";
    EXPECT_TRUE(EngineFolders().empty()) << "nothing was started";
    host.Destroy();
    engine.Revoke();
}

} // namespace
} // namespace tovtest
