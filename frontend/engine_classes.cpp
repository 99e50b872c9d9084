#include "frontend/engine_classes.h"
#include "frontend/folders.h"
#include "frontend/browser_application_class.h"
#include "framework/com_ptr.h"

namespace tovfe {
namespace {

const CLSID kWebBrowserClass = {0x8856f961, 0x340a, 0x11d0, {0xa9, 0x6b, 0x00, 0xc0, 0x4f, 0xd7, 0x05, 0xa2}};

template <class F> F Entry(HMODULE module, const char* name)
{
    return reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

} // namespace

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

std::wstring EngineClasses::DllPath()
{
    return BesideThisProgram(L"TOVENGINE.DLL");
}

EngineClasses::~EngineClasses()
{
    // The module stays loaded: a browser a test leaked would otherwise run freed code at its release.
    Revoke();
}

void EngineClasses::Revoke()
{
    m_browser.Revoke();
    m_application.Revoke();
}

HRESULT EngineClasses::Register()
{
    if (!m_module) m_module = LoadLibraryW(DllPath().c_str());
    if (!m_module) return HRESULT_FROM_WIN32(GetLastError());
    using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);
    auto get = Entry<GetClassObject>(m_module, "DllGetClassObject");
    if (!get) return E_NOINTERFACE;
    tov::ComPtr<IUnknown> browser, application;
    HRESULT hr = get(kWebBrowserClass, IID_IUnknown, browser.PutVoid());
    if (SUCCEEDED(hr)) hr = get(kBrowserApplicationClass, IID_IUnknown, application.PutVoid());
    if (SUCCEEDED(hr)) hr = m_browser.Register(kWebBrowserClass, browser.Get());
    if (SUCCEEDED(hr)) hr = m_application.Register(kBrowserApplicationClass, application.Get());
    return hr;
}

HRESULT EngineClasses::CanUnloadNow() const
{
    using CanUnload = HRESULT(WINAPI*)();
    auto can = m_module ? Entry<CanUnload>(m_module, "DllCanUnloadNow") : nullptr;
    return can ? can() : S_OK;
}

} // namespace tovfe
