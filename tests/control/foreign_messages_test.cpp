// The front end's two pointer-carrying messages ("TOV_CM_READY_FOR_INPUT", "WM_TOV_WANTKEY") arriving from
// where they do not belong: another thread, another process, pointers into nothing. The control ignores
// them: its window lives on, the readiness flags stay as they were, the key question is answered "no".
#include <atomic>
#include <thread>
#include "support/back_channel_fixture.h"
#include "support/ocx.h"
#include "framework/handles.h"
#include "frontend/folders.h"

namespace tovtest {
namespace {

class ForeignMessages : public BackChannelFixture {
protected:
    static UINT Ready() { return RegisterWindowMessageA("TOV_CM_READY_FOR_INPUT"); }
    static UINT WantKey() { return RegisterWindowMessageA("WM_TOV_WANTKEY"); }

    // Whether a TOVEVENT click reaches the front end: the control's readiness flag seen from outside.
    bool Delivers()
    {
        sink.events.clear();
        browser->ClickLink(L"TOVEVENT:Probe");
        return !sink.events.empty();
    }
    // Runs the message sender as a second process and pumps this thread until it ends.
    DWORD SendFromProcess(const wchar_t* name, ULONG_PTR wParam, ULONG_PTR lParam, const wchar_t* how)
    {
        const std::wstring exe = tovfe::BesideThisProgram(L"message_sender.exe");
        wchar_t line[512];
        swprintf(line, 512, L"\"%ls\" %llx %ls %llx %llx %ls", exe.c_str(),
                 static_cast<unsigned long long>(reinterpret_cast<ULONG_PTR>(Window())), name,
                 static_cast<unsigned long long>(wParam), static_cast<unsigned long long>(lParam), how);
        PROCESS_INFORMATION pi{};
        if (!StartProcess(line, pi)) {
            ADD_FAILURE() << "the sender did not start: error " << GetLastError();
            return 99;
        }
        CloseHandle(pi.hThread);
        tov::UniqueKernelHandle process(pi.hProcess);
        HANDLE h = process.Get();
        while (MsgWaitForMultipleObjects(1, &h, FALSE, 30000, QS_ALLINPUT) == WAIT_OBJECT_0 + 1) {
            MSG msg;
            while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&msg);
        }
        DWORD code = 98;
        GetExitCodeProcess(process.Get(), &code);
        // What it posted arrives with the next messages.
        MSG msg;
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&msg);
        return code;
    }
};

TEST_F(ForeignMessages, AnotherThreadsMessagesChangeNothing)
{
    SetReady(true);
    LONG notReady[10] = {}; // a valid record that would take the readiness away
    MSG f4{Window(), WM_KEYDOWN, VK_F4, 0};
    LRESULT wanted = -1;
    std::atomic<bool> done{false};
    std::thread other([&] {
        SendMessageW(Window(), Ready(), 0, reinterpret_cast<LPARAM>(notReady));
        wanted = SendMessageW(Window(), WantKey(), reinterpret_cast<WPARAM>(&f4), 0);
        PostMessageW(Window(), Ready(), 0, 0x10);
        PostMessageW(Window(), WantKey(), 0xDEAD0000BEEF, 0);
        done = true;
    });
    // The other thread's sends are served while this one waits for it.
    const ULONGLONG deadline = GetTickCount64() + 20000;
    while (!done && GetTickCount64() < deadline) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
        MSG msg;
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&msg);
    }
    if (!done) {
        other.detach(); // stuck in a send this thread no longer serves
        FAIL() << "the other thread's messages were not answered";
    }
    other.join();
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&msg);
    EXPECT_EQ(0, wanted) << "a key question from another thread is answered no";
    EXPECT_TRUE(Delivers()) << "the readiness is as this thread set it";

    // This thread's own record still counts.
    SetReady(false);
    EXPECT_FALSE(Delivers());
    SetReady(true);
    MSG own{Window(), WM_KEYDOWN, VK_F4, 0};
    EXPECT_EQ(1, SendMessageW(Window(), WantKey(), reinterpret_cast<WPARAM>(&own), 0));
}

TEST_F(ForeignMessages, PointersIntoNothingAreIgnored)
{
    SetReady(true);
    void* gone = VirtualAlloc(nullptr, 4096, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    ASSERT_NE(nullptr, gone);
    VirtualFree(gone, 0, MEM_RELEASE);
    void* locked = VirtualAlloc(nullptr, 4096, MEM_RESERVE | MEM_COMMIT, PAGE_NOACCESS);
    ASSERT_NE(nullptr, locked);
    // A record that starts readable and runs off the end of its page.
    auto* edge = static_cast<BYTE*>(VirtualAlloc(nullptr, 8192, MEM_RESERVE, PAGE_NOACCESS));
    ASSERT_NE(nullptr, edge);
    ASSERT_NE(nullptr, VirtualAlloc(edge, 4096, MEM_COMMIT, PAGE_READWRITE));
    void* runsOff = edge + 4096 - 8;
    for (void* record : {static_cast<void*>(reinterpret_cast<BYTE*>(0x10)), reinterpret_cast<void*>(0xDEAD0000BEEFull), gone,
                         locked, runsOff}) {
        EXPECT_EQ(0, SendMessageW(Window(), Ready(), 0, reinterpret_cast<LPARAM>(record)));
        EXPECT_EQ(0, SendMessageW(Window(), WantKey(), reinterpret_cast<WPARAM>(record), 0));
    }
    EXPECT_TRUE(Delivers()) << "the readiness is unchanged";
    VirtualFree(locked, 0, MEM_RELEASE);
    VirtualFree(edge, 0, MEM_RELEASE);
}

TEST_F(ForeignMessages, AnotherProcessesMessagesChangeNothing)
{
    SetReady(true);
    for (const wchar_t* how : {L"send", L"post"}) {
        EXPECT_EQ(0u, SendFromProcess(L"TOV_CM_READY_FOR_INPUT", 0, 0xDEAD0000BEEFull, how)) << how;
        EXPECT_EQ(0u, SendFromProcess(L"TOV_CM_READY_FOR_INPUT", 0, 0x10000, how)) << how;
        EXPECT_EQ(0u, SendFromProcess(L"WM_TOV_WANTKEY", 0xDEAD0000BEEFull, 0, how)) << how;
    }
    EXPECT_TRUE(IsWindow(Window())) << "the control's window lives on";
    EXPECT_TRUE(Delivers()) << "the readiness is unchanged and the control still answers";
    LONG version = 0;
    EXPECT_EQ(S_OK, control->get_Version(&version));
}

} // namespace
} // namespace tovtest
