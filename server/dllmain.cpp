// Entry points of TOVHTML.OCX.
#include <windows.h>
#include <objbase.h>
#include "registration.h"
#include "../control/TOVHTMLControl.h"
#include "../framework/class_factory.h"
#include "../framework/module.h"
#include "../framework/windowed_control.h"

namespace {
tov::ClassFactory<CTOVHTMLControl> g_controlFactory;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE hInstance, DWORD reason, LPVOID reserved)
{
    if (reason == DLL_PROCESS_ATTACH) {
        tov::Module::Init(hInstance);
        DisableThreadLibraryCalls(hInstance);
    } else if (reason == DLL_PROCESS_DETACH && reserved == nullptr) {
        // On process exit (reserved != null) other DLLs may already be gone: leave the type library alone.
        tov::Module::Term();
        tov::WindowedControlBase::UnregisterWindowClass();
    }
    return TRUE;
}

STDAPI DllCanUnloadNow()
{
    return tov::Module::LockCount() == 0 ? S_OK : S_FALSE;
}

STDAPI DllGetClassObject(REFCLSID rclsid, REFIID riid, LPVOID* ppv)
{
    if (!ppv) return E_POINTER;
    *ppv = nullptr;
    if (!IsEqualCLSID(rclsid, CLSID_TOVHTMLControl)) return CLASS_E_CLASSNOTAVAILABLE;
    return g_controlFactory.QueryInterface(riid, ppv);
}

STDAPI DllRegisterServer()
{
    return tov::server::RegisterServer();
}

STDAPI DllUnregisterServer()
{
    return tov::server::UnregisterServer();
}
