// Entry points of TOVENGINE.DLL: the engine's browser as the WebBrowser class and the browser
// application class.
#include <windows.h>
#include <objbase.h>
#include "engine/engine_browser.h"
#include "engine/engine_registration.h"
#include "framework/class_factory.h"
#include "framework/module.h"

namespace {
tov::ClassFactory<tovengine::CEngineBrowser> g_browserFactory;
tov::ClassFactory<tovengine::CEngineApplication> g_applicationFactory;
} // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE hInstance, DWORD reason, LPVOID)
{
    if (reason == DLL_PROCESS_ATTACH) {
        tov::Module::Init(hInstance);
        DisableThreadLibraryCalls(hInstance);
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
    if (IsEqualCLSID(rclsid, tovengine::kWebBrowserClass)) return g_browserFactory.QueryInterface(riid, ppv);
    if (IsEqualCLSID(rclsid, tovengine::kBrowserApplicationClass)) return g_applicationFactory.QueryInterface(riid, ppv);
    return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllRegisterServer()
{
    return tovengine::RegisterEngine(tov::Module::FileName().c_str());
}

STDAPI DllUnregisterServer()
{
    return tovengine::UnregisterEngine();
}
