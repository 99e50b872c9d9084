#pragma once
// Registration of the server: the class through script 101, the type library, and the front end's
// component key.
#include <windows.h>

namespace tov::server {

HRESULT RegisterServer() noexcept;
HRESULT UnregisterServer() noexcept;

// The front end's component key (HKLM "SOFTWARE\TOV\General\Frontend\Components\HTMLViewerControl").
HRESULT RegisterFrontendComponent(const CLSID& component, const char* name, const char* displayName) noexcept;
void UnregisterFrontendComponent(const char* name) noexcept;

} // namespace tov::server
