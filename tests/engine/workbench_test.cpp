// The page author's workbench as a person runs it: tovdemo --pages in a process of its own, a folder of
// pages, mouse input into the control's window from outside, the events it prints, and how it ends: when
// its window closes, with a clear message for a start page that is not there, and with nothing left
// running behind it.
#include <gtest/gtest.h>
#include <windows.h>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <string>
#include <thread>
#include "engine/engine_fixture.h"
#include "framework/handles.h"
#include "frontend/folders.h"

namespace tovtest {
namespace {

// A folder of pages for one test (a blank and a national character in its name), removed with
// everything in it.
class PagesFolder {
public:
    PagesFolder() : m_folder(TempPath() + L"tov pages \x00DC" + std::to_wstring(GetCurrentProcessId())) {}
    void Put(const std::wstring& name, const std::string& bytes) const
    {
        std::ofstream(std::filesystem::path(Path() + L"\\" + name), std::ios::binary) << bytes;
    }
    const std::wstring& Path() const { return m_folder.Path(); }

private:
    static std::wstring TempPath()
    {
        wchar_t temp[MAX_PATH + 1] = {};
        GetTempPathW(MAX_PATH + 1, temp);
        return temp;
    }
    tovfe::ScratchFolder m_folder;
};

// tovdemo.exe with its output read as it comes.
class Workbench {
public:
    explicit Workbench(const std::wstring& arguments)
    {
        SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
        HANDLE read = nullptr, write = nullptr;
        CreatePipe(&read, &write, &inherit, 0);
        SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
        m_read.Reset(read);
        tov::UniqueKernelHandle writeEnd(write);
        STARTUPINFOW si{};
        si.cb = sizeof si;
        si.dwFlags = STARTF_USESTDHANDLES;
        si.hStdOutput = si.hStdError = write;
        si.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
        std::wstring command = L"\"" + tovfe::BesideThisProgram(L"tovdemo.exe") + L"\" --pages " + arguments;
        PROCESS_INFORMATION pi{};
        m_started = CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &si, &pi) != FALSE;
        if (!m_started) return;
        CloseHandle(pi.hThread);
        m_process.Reset(pi.hProcess);
        m_pid = pi.dwProcessId;
        writeEnd.Reset(); // the reader sees the end when the program's copies are closed
        m_reader = std::thread([this] {
            char buffer[4096];
            DWORD n = 0;
            while (ReadFile(m_read.Get(), buffer, sizeof buffer, &n, nullptr) && n > 0) {
                std::lock_guard<std::mutex> lock(m_mutex);
                m_output.append(buffer, n);
            }
        });
    }
    ~Workbench()
    {
        if (m_process && WaitForSingleObject(m_process.Get(), 0) == WAIT_TIMEOUT) TerminateProcess(m_process.Get(), 99);
        if (m_reader.joinable()) m_reader.join();
    }

    bool Started() const { return m_started; }
    DWORD Pid() const { return m_pid; }
    std::string Output()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_output;
    }
    bool Prints(const std::string& text, DWORD ms = 30000)
    {
        return PumpUntil([&] { return Output().find(text) != std::string::npos; }, ms);
    }
    // The exit code, or -1 when the program still runs after `ms`.
    long Ended(DWORD ms)
    {
        if (!PumpUntil([&] { return WaitForSingleObject(m_process.Get(), 0) == WAIT_OBJECT_0; }, ms)) return -1;
        DWORD code = 0;
        GetExitCodeProcess(m_process.Get(), &code);
        return static_cast<long>(code);
    }
    // Its container window and the engine's view inside the control's window.
    HWND Frame() const
    {
        struct Search { DWORD pid; HWND found; } search{m_pid, nullptr};
        EnumWindows([](HWND w, LPARAM p) {
            auto* s = reinterpret_cast<Search*>(p);
            DWORD owner = 0;
            GetWindowThreadProcessId(w, &owner);
            if (owner == s->pid && IsWindowVisible(w) && WindowTitle(w).rfind(L"TOV workbench", 0) == 0) s->found = w;
            return s->found ? FALSE : TRUE;
        }, reinterpret_cast<LPARAM>(&search));
        return search.found;
    }
    HWND View() const
    {
        struct Search { HWND found; } search{nullptr};
        EnumChildWindows(Frame(), [](HWND w, LPARAM p) {
            wchar_t name[64] = {};
            GetClassNameW(w, name, 64);
            if (wcscmp(name, L"TOVEngineBrowserView") == 0) reinterpret_cast<Search*>(p)->found = w;
            return TRUE;
        }, reinterpret_cast<LPARAM>(&search));
        return search.found;
    }
    void Click(int x, int y) const
    {
        const HWND view = View();
        PostMessageW(view, WM_MOUSEMOVE, 0, MAKELPARAM(x, y));
        PostMessageW(view, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
        PostMessageW(view, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
    }

private:
    bool m_started = false;
    DWORD m_pid = 0;
    tov::UniqueKernelHandle m_process;
    tov::UniqueKernelHandle m_read;
    std::thread m_reader;
    std::mutex m_mutex;
    std::string m_output;
};

// The engine of another process has ended when none of its folders is left.
bool EngineOfProcessEnded(DWORD pid)
{
    return PumpUntil([&] { return EngineFolders(pid).empty(); }, 20000);
}

std::string Block(int left, int top, const std::string& inner)
{
    return "style=\"position:absolute;left:" + std::to_string(left) + "px;top:" + std::to_string(top) +
           "px;width:200px;height:30px;display:block;margin:0\">" + inner;
}

TEST(Workbench, ClicksAndFormsInTheWindowPrintWhatTheFrontEndReceivesAndClosingEndsIt)
{
    PagesFolder pages;
    pages.Put(L"index.htm",
              "<html><head><meta charset=\"utf-8\"><title>start</title></head><body>"
              "<a href=\"TOVEVENT:OPEN?page=1\" " + Block(20, 20, "open</a>") +
              "<form method=\"post\" action=\"TOVEVENT:SAVE\"><input type=\"hidden\" name=\"name\" value=\"Jürgen\">"
              "<input type=\"hidden\" name=\"sum\" value=\"10 + 5 = 15\">"
              "<button " + Block(20, 100, "save</button>") + "</form>"
              "<a href=\"%C3%9Cbersicht%202.htm\" " + Block(20, 180, "next</a>") + "</body></html>");
    pages.Put(L"\x00DC" L"bersicht 2.htm", "<html><head><title>second</title></head><body>the second page</body></html>");
    pages.Put(L"data.bin", std::string("\0\x01\xFF\xFE binary", 12));

    Workbench bench(L"\"" + pages.Path() + L"\"");
    ASSERT_TRUE(bench.Started());
    ASSERT_TRUE(bench.Prints("workbench: ready")) << bench.Output();
    ASSERT_TRUE(PumpUntil([&] { return bench.View() != nullptr; })) << "the control's window";

    bench.Click(120, 35);
    EXPECT_TRUE(bench.Prints("pURL1        \"TOVEVENT:OPEN?page=1\"")) << bench.Output();
    bench.Click(120, 115);
    EXPECT_TRUE(bench.Prints("pURL1        \"TOVEVENT:SAVE\"")) << bench.Output();
    EXPECT_TRUE(bench.Prints("\"name=Jürgen&sum=10 + 5 %3D 15\"")) << "decoded as the front end reads it\n" << bench.Output();
    bench.Click(120, 195);
    EXPECT_TRUE(bench.Prints("bersicht 2.htm\"")) << "NavigateComplete of the second page\n" << bench.Output();

    PostMessageW(bench.Frame(), WM_CLOSE, 0, 0);
    EXPECT_EQ(0, bench.Ended(30000)) << bench.Output();
    EXPECT_NE(std::string::npos, bench.Output().find("the session has ended"));
    EXPECT_TRUE(EngineOfProcessEnded(bench.Pid())) << "no engine left running";
}

TEST(Workbench, AMissingStartPageOrFolderIsSaidClearlyAndNothingWaits)
{
    PagesFolder pages;
    pages.Put(L"only page.htm", "<html><body>only</body></html>");
    {
        Workbench bench(L"\"" + pages.Path() + L"\"");
        ASSERT_TRUE(bench.Started());
        EXPECT_EQ(3, bench.Ended(30000)) << bench.Output();
        EXPECT_NE(std::string::npos, bench.Output().find("the start page \"index.htm\" is not in")) << bench.Output();
        EXPECT_NE(std::string::npos, bench.Output().find("\"only page.htm\"")) << "the pages it could show\n" << bench.Output();
    }
    {
        Workbench bench(L"\"" + pages.Path() + L"\\nowhere\"");
        ASSERT_TRUE(bench.Started());
        EXPECT_EQ(2, bench.Ended(30000)) << bench.Output();
        EXPECT_NE(std::string::npos, bench.Output().find("does not exist")) << bench.Output();
    }
}

TEST(Workbench, APageWhoseScriptNeverEndsStillClosesWithItsWindow)
{
    PagesFolder pages;
    pages.Put(L"index.htm", "<html><body>busy<script>for (;;) {}</script></body></html>");
    Workbench bench(L"\"" + pages.Path() + L"\"");
    ASSERT_TRUE(bench.Started());
    ASSERT_TRUE(bench.Prints("workbench: ready", 60000)) << bench.Output();
    ASSERT_TRUE(PumpUntil([&] { return bench.Frame() != nullptr; }));
    PostMessageW(bench.Frame(), WM_CLOSE, 0, 0);
    EXPECT_EQ(0, bench.Ended(60000)) << bench.Output();
    EXPECT_TRUE(EngineOfProcessEnded(bench.Pid())) << "no engine left running";
}

} // namespace
} // namespace tovtest
