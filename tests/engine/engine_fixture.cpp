#include <winsock2.h>
#include "engine/engine_fixture.h"
#include "framework/handles.h"

namespace tovtest {

void EngineFixture::SetUp()
{
    ControlFixture::SetUp();
    tovfe::DataStore::Instance().Clear();
    ASSERT_EQ(S_OK, engine.Register()) << "TOVENGINE.DLL beside the test";
    ASSERT_EQ(S_OK, protocol.Result());
    ASSERT_EQ(S_OK, host.Attach(control.Get()));
    services = tovfe::AddGUIServices(*container.Get(), 1252, L"EN");
    Connect(2);
    LONG code = -1;
    ASSERT_EQ(S_OK, control->InitControl(&code));
    ASSERT_EQ(0, code) << "InitControl with the engine's browser";
    cookie = Advise(events);
    ASSERT_NE(0u, cookie);
    postData = tovfe::DataProviderStandIn::Create();
    control->put_PostData(postData);
    postData->Release(); // the control holds it now
    // The blank page of InitControl has completed before a test shows anything.
    ASSERT_TRUE(WaitFor([&] { return DocumentComplete() == 1; }));
    events.events.clear();
}

void EngineFixture::TearDown()
{
    if (control) {
        if (cookie) Unadvise(cookie);
        control->put_PostData(nullptr);
    }
    host.Destroy();
    ControlFixture::TearDown();
    engine.Revoke();
    EXPECT_TRUE(WaitFor([&] { return engine.CanUnloadNow() == S_OK; }, 10000)) << "every engine object is gone";
    EXPECT_TRUE(WaitFor([&] { return EngineFolders().empty(); }, 15000)) << "the engine process has ended";
    tovfe::DataStore::Instance().Clear();
}

bool EngineFixture::WaitFor(const std::function<bool()>& done, DWORD timeoutMs)
{
    return PumpUntil(done, timeoutMs);
}

bool PumpUntil(const std::function<bool()>& done, DWORD timeoutMs)
{
    const ULONGLONG deadline = GetTickCount64() + timeoutMs;
    for (;;) {
        if (done()) return true;
        if (GetTickCount64() > deadline) return false;
        MSG msg;
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
}

FiredEvent EngineFixture::ClickForEvent(int x, int y, DWORD timeoutMs)
{
    events.events.clear();
    Click(x, y);
    EXPECT_TRUE(WaitFor([&] { return !Events(1).empty(); }, timeoutMs)) << "BeforeNavigate after the click";
    Settle(200); // nothing more may follow
    const auto fired = Events(1);
    EXPECT_EQ(1u, fired.size());
    return fired.empty() ? FiredEvent{} : fired[0];
}

void EngineFixture::Settle(DWORD ms)
{
    WaitFor([] { return false; }, ms);
}

void EngineFixture::PutPage(const std::wstring& name, const std::string& bytes, const std::wstring& subtype)
{
    const std::wstring prefix = Property(&ITOVHTMLControl::get_URLPrefixLocal);
    tovfe::DataStore::Instance().Put(prefix + name, bytes, subtype);
}

LONG EngineFixture::ShowData(const std::wstring& name, LONG local)
{
    LONG code = -1;
    EXPECT_EQ(S_OK, control->ShowData(tov::Bstr(name).Get(), nullptr, local, &code));
    return code;
}

LONG EngineFixture::ShowURL(const std::wstring& url)
{
    LONG code = -1;
    EXPECT_EQ(S_OK, control->ShowURL(tov::Bstr(url).Get(), nullptr, &code));
    return code;
}

void EngineFixture::ShowPage(const std::wstring& name)
{
    events.events.clear();
    ASSERT_EQ(0, ShowData(name));
    ASSERT_TRUE(WaitFor([&] { return !Events(2).empty() && DocumentComplete() == 1; })) << "the page completes";
}

std::wstring EngineFixture::Html() const
{
    tov::Bstr html;
    control->GetHTMLSourceContent(html.Put());
    return std::wstring(html.View());
}

std::wstring EngineFixture::Charset() const
{
    tov::Bstr charset;
    control->GetCharsetString(charset.Put());
    return std::wstring(charset.View());
}

std::vector<FiredEvent> EngineFixture::Events(DISPID id) const
{
    std::vector<FiredEvent> out;
    for (const auto& e : events.events)
        if (e.id == id) out.push_back(e);
    return out;
}

std::wstring EngineFixture::JoinedUrl(const FiredEvent& e)
{
    std::wstring url;
    for (size_t i = 2; i < e.args.size(); ++i)
        if (e.args[i] != L"<null>") url += e.args[i];
    return url;
}

std::string EngineFixture::PostedData() const
{
    const auto it = postData->posted.find(L"TOVEVENT:|PostData");
    return it == postData->posted.end() ? std::string("<nothing>") : it->second;
}

std::vector<std::wstring> EngineFolders(DWORD pid)
{
    std::vector<std::wstring> found;
    WIN32_FIND_DATAW data;
    const std::wstring pattern = L"Z:\\tmp\\tovengine-" + std::to_wstring(pid) + L"-*";
    tov::UniqueFindHandle h(FindFirstFileW(pattern.c_str(), &data));
    if (!h) return found;
    do found.push_back(L"Z:\\tmp\\" + std::wstring(data.cFileName));
    while (FindNextFileW(h.Get(), &data));
    return found;
}

std::string ReadSmallFile(const std::wstring& path)
{
    std::string bytes;
    HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return bytes;
    char buffer[4096];
    DWORD n = 0;
    while (ReadFile(file, buffer, sizeof buffer, &n, nullptr) && n > 0 && bytes.size() < 65536) bytes.append(buffer, n);
    CloseHandle(file);
    return bytes;
}

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

std::wstring WindowTitle(HWND window)
{
    wchar_t title[256] = {};
    GetWindowTextW(window, title, 256);
    return title;
}

HWND EngineFixture::BrowserWindow() const
{
    return FindWindowExW(Window(), nullptr, L"TOVEngineBrowserView", nullptr);
}

void EngineFixture::Click(int x, int y, bool right) const
{
    const HWND view = BrowserWindow();
    const LPARAM at = MAKELPARAM(x, y);
    PostMessageW(view, WM_MOUSEMOVE, 0, at);
    PostMessageW(view, right ? WM_RBUTTONDOWN : WM_LBUTTONDOWN, right ? MK_RBUTTON : MK_LBUTTON, at);
    PostMessageW(view, right ? WM_RBUTTONUP : WM_LBUTTONUP, 0, at);
}

} // namespace tovtest
