#include "support/process_state.h"
#include <algorithm>
#include <vector>
#include "framework/com_ptr.h"

namespace tovtest {

int ThreadWindowCount()
{
    int n = 0;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND top, LPARAM p) {
            ++*reinterpret_cast<int*>(p);
            EnumChildWindows(top, [](HWND, LPARAM q) { ++*reinterpret_cast<int*>(q); return TRUE; }, p);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&n));
    return n;
}

namespace {

// Wine hands out a free slot of a table before it grows it. Taking many slots at once and reading the
// highest index tells how many slots the process holds: the highest index is the table's end plus what
// the free slots could not serve, so highest - taken is the number of live objects (plus the table's
// start), as long as fewer slots are free than were taken.
constexpr int kProbeSlots = 512;

DWORD LiveHandles()
{
    std::vector<HANDLE> taken;
    ULONG_PTR highest = 0;
    for (int i = 0; i < kProbeSlots; ++i) {
        HANDLE h = CreateEventW(nullptr, FALSE, FALSE, nullptr);
        if (!h) break;
        taken.push_back(h);
        highest = std::max(highest, reinterpret_cast<ULONG_PTR>(h) >> 2);
    }
    for (HANDLE h : taken) CloseHandle(h);
    return static_cast<DWORD>(highest - taken.size());
}

DWORD LiveGdiObjects()
{
    std::vector<HBRUSH> taken;
    DWORD highest = 0;
    for (int i = 0; i < kProbeSlots; ++i) {
        HBRUSH b = CreateSolidBrush(RGB(1, 2, 3));
        if (!b) break;
        taken.push_back(b);
        highest = std::max<DWORD>(highest, LOWORD(reinterpret_cast<ULONG_PTR>(b)));
    }
    for (HBRUSH b : taken) DeleteObject(b);
    return highest - static_cast<DWORD>(taken.size());
}

// Wine's table of USER objects is shared by every process of the prefix and hands out the slot freed
// last, so a probe there says nothing about this process: count its windows of every kind instead
// (top-level, child and message-only), the USER objects the control and the engine make.
int ProcessWindowCount()
{
    struct Count {
        DWORD pid;
        int n;
    } count{GetCurrentProcessId(), 0};
    const auto ours = [](HWND w, DWORD pid) {
        DWORD owner = 0;
        GetWindowThreadProcessId(w, &owner);
        return owner == pid;
    };
    EnumWindows(
        [](HWND top, LPARAM p) {
            auto* c = reinterpret_cast<Count*>(p);
            DWORD owner = 0;
            GetWindowThreadProcessId(top, &owner);
            if (owner != c->pid) return TRUE;
            ++c->n;
            EnumChildWindows(top, [](HWND, LPARAM q) { ++reinterpret_cast<Count*>(q)->n; return TRUE; }, p);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&count));
    for (HWND w = FindWindowExW(HWND_MESSAGE, nullptr, nullptr, nullptr); w;
         w = FindWindowExW(HWND_MESSAGE, w, nullptr, nullptr))
        if (ours(w, count.pid)) ++count.n;
    return count.n;
}

} // namespace

ProcessState ProcessState::Now()
{
    ProcessState s;
    if (!GetProcessHandleCount(GetCurrentProcess(), &s.handles) || s.handles == 0) s.handles = LiveHandles();
    s.gdiObjects = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    if (s.gdiObjects == 0) s.gdiObjects = LiveGdiObjects();
    s.userObjects = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
    if (s.userObjects == 0) s.userObjects = static_cast<DWORD>(ProcessWindowCount());
    s.windows = ThreadWindowCount();
    s.tempFiles = TempFolderFiles().size();
    return s;
}

OcxClassRegistration::OcxClassRegistration(const Ocx& ocx)
{
    tov::ComPtr<IUnknown> factory;
    ocx.GetClassObject(CLSID_TOVHTMLControl, IID_IUnknown, factory.PutVoid());
    if (factory) CoRegisterClassObject(CLSID_TOVHTMLControl, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &m_cookie);
}

OcxClassRegistration::~OcxClassRegistration()
{
    if (m_cookie) CoRevokeClassObject(m_cookie);
}

} // namespace tovtest
