#include "support/process_state.h"
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

DWORD NextHandleIndex()
{
    HANDLE h = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    const DWORD index = static_cast<DWORD>(reinterpret_cast<ULONG_PTR>(h) >> 2);
    CloseHandle(h);
    return index;
}

DWORD NextGdiIndex()
{
    HBRUSH b = CreateSolidBrush(RGB(1, 2, 3));
    const DWORD index = LOWORD(reinterpret_cast<ULONG_PTR>(b));
    DeleteObject(b);
    return index;
}

DWORD NextUserIndex()
{
    HMENU m = CreateMenu();
    const DWORD index = LOWORD(reinterpret_cast<ULONG_PTR>(m));
    DestroyMenu(m);
    return index;
}

} // namespace

ProcessState ProcessState::Now()
{
    ProcessState s;
    if (!GetProcessHandleCount(GetCurrentProcess(), &s.handles) || s.handles == 0) s.handles = NextHandleIndex();
    s.gdiObjects = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    if (s.gdiObjects == 0) s.gdiObjects = NextGdiIndex();
    s.userObjects = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
    if (s.userObjects == 0) s.userObjects = NextUserIndex();
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
