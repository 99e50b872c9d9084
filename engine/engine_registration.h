#pragma once
// Registration of the engine's browser for the platform's WebBrowser class and browser application
// class. The entries they had before are kept aside and given back at unregistration, so that the
// classes return to the platform's own browser.
#include <windows.h>

namespace tovengine {

extern const CLSID kWebBrowserClass;
extern const CLSID kBrowserApplicationClass;

HRESULT RegisterEngine(const wchar_t* modulePath) noexcept;
HRESULT UnregisterEngine() noexcept;

} // namespace tovengine
