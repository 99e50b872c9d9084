#include "registration.h"
#include <shlwapi.h>
#include <string>
#include "registrar.h"
#include "resource.h"
#include "../framework/com_ptr.h"
#include "../framework/handles.h"
#include "../framework/hresult_error.h"
#include "../framework/module.h"

namespace tov::server {
namespace {

// {2D502E4F-B818-41F9-9B33-0E9B0C64BEA6}: the control's identity among the front end's components.
constexpr CLSID CLSID_HTMLViewerComponent = {0x2d502e4f, 0xb818, 0x41f9, {0x9b, 0x33, 0x0e, 0x9b, 0x0c, 0x64, 0xbe, 0xa6}};
constexpr char kComponentsKey[] = "SOFTWARE\\TOV\\General\\Frontend\\Components";
constexpr char kComponentName[] = "HTMLViewerControl";
constexpr char kComponentDisplayName[] = "HTMLViewer";

// COM for the duration of a registration call; regsvr32 does not initialise it for us.
class ComScope {
public:
    ComScope() noexcept : m_hr(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
    ~ComScope() { if (SUCCEEDED(m_hr)) CoUninitialize(); }

private:
    HRESULT m_hr;
};

HRESULT RunRegistrationScript(bool bRegister) noexcept
{
    return GuardedCall([&] {
        ComPtr<ITovRegistrar> registrar;
        ThrowIfFailed(CoCreateInstance(CLSID_TovRegistrar, nullptr, CLSCTX_INPROC_SERVER, IID_TovIRegistrar,
                                       registrar.PutVoid()));
        const std::wstring module = Module::FileName();
        ThrowIfFailed(registrar->AddReplacement(L"MODULE", module.c_str()));
        return bRegister ? registrar->ResourceRegister(module.c_str(), IDR_TOVHTMLCONTROL, L"REGISTRY")
                         : registrar->ResourceUnregister(module.c_str(), IDR_TOVHTMLCONTROL, L"REGISTRY");
    });
}

// True when the process asked the platform's ATL for per-user registration (AtlSetPerUserRegistration of
// whichever ATL runtime it loaded that offers the switch).
bool PerUserRegistrationRequested() noexcept
{
    using GetPerUser = HRESULT(WINAPI*)(bool*);
    for (const wchar_t* dll : {L"atl110.dll", L"atl100.dll", L"atl90.dll", L"atl80.dll"}) {
        HMODULE atl = GetModuleHandleW(dll);
        auto get = atl ? reinterpret_cast<GetPerUser>(reinterpret_cast<void*>(GetProcAddress(atl, "AtlGetPerUserRegistration"))) : nullptr;
        bool perUser = false;
        if (get && SUCCEEDED(get(&perUser)) && perUser) return true;
    }
    return false;
}

HRESULT RegisterTypeLibrary() noexcept
{
    return GuardedCall([&] {
        const std::wstring module = Module::FileName();
        ComPtr<ITypeLib> typeLib;
        ThrowIfFailed(LoadTypeLibEx(module.c_str(), REGKIND_NONE, typeLib.Put()));
        LPOLESTR path = const_cast<LPOLESTR>(module.c_str());
        if (PerUserRegistrationRequested()) {
            // Not in every import library: looked up where the platform has it.
            using RegisterForUser = HRESULT(WINAPI*)(ITypeLib*, OLECHAR*, OLECHAR*);
            HMODULE oleaut = GetModuleHandleW(L"oleaut32.dll");
            auto forUser = oleaut ? reinterpret_cast<RegisterForUser>(reinterpret_cast<void*>(GetProcAddress(oleaut, "RegisterTypeLibForUser")))
                                  : nullptr;
            if (forUser) return forUser(typeLib.Get(), path, nullptr);
        }
        return RegisterTypeLib(typeLib.Get(), path, nullptr);
    });
}

} // namespace

HRESULT RegisterFrontendComponent(const CLSID& component, const char* name, const char* displayName) noexcept
{
    if (!name || !*name || !displayName || !*displayName) return E_INVALIDARG;
    return GuardedCall([&] {
        LPOLESTR wide = nullptr;
        ThrowIfFailed(StringFromCLSID(component, &wide));
        char text[256] = {};
        const int n = WideCharToMultiByte(CP_ACP, 0, wide, -1, text, sizeof(text), nullptr, nullptr);
        CoTaskMemFree(wide);
        if (n == 0) Throw(HRESULT_FROM_WIN32(GetLastError()));

        std::string path = std::string(kComponentsKey) + "\\" + name;
        if (path.size() >= 512) return E_INVALIDARG;
        UniqueHKey key;
        LONG err = RegCreateKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                   KEY_WRITE, nullptr, key.Put(), nullptr);
        if (err != ERROR_SUCCESS) return HRESULT_FROM_WIN32(err);
        err = RegSetValueExA(key.Get(), "CLSID", 0, REG_SZ, reinterpret_cast<const BYTE*>(text),
                             static_cast<DWORD>(strlen(text) + 1));
        if (err == ERROR_SUCCESS)
            err = RegSetValueExA(key.Get(), "DisplayName", 0, REG_SZ, reinterpret_cast<const BYTE*>(displayName),
                                 static_cast<DWORD>(strlen(displayName) + 1));
        if (err != ERROR_SUCCESS) {
            key.Reset();
            RegDeleteKeyA(HKEY_LOCAL_MACHINE, path.c_str());
            return HRESULT_FROM_WIN32(err);
        }
        return S_OK;
    });
}

void UnregisterFrontendComponent(const char* name) noexcept
{
    const std::string path = std::string(kComponentsKey) + "\\" + name;
    RegDeleteKeyA(HKEY_LOCAL_MACHINE, path.c_str());
    for (const char* parent : {"SOFTWARE\\TOV\\General\\Frontend\\Components", "SOFTWARE\\TOV\\General\\Frontend",
                               "SOFTWARE\\TOV\\General", "SOFTWARE\\TOV"})
        SHDeleteEmptyKeyA(HKEY_LOCAL_MACHINE, parent);
}

HRESULT RegisterServer() noexcept
{
    ComScope com;
    // The class and type library registration is not examined: only the component key's result counts.
    RunRegistrationScript(true);
    RegisterTypeLibrary();
    return RegisterFrontendComponent(CLSID_HTMLViewerComponent, kComponentName, kComponentDisplayName);
}

HRESULT UnregisterServer() noexcept
{
    ComScope com;
    UnregisterFrontendComponent(kComponentName);
    RunRegistrationScript(false);
    return S_OK;
}

} // namespace tov::server
