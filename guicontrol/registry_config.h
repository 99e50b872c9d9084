#pragma once
// Registry switches the control reads at run time (narrow registry calls, as the front end's tools
// write them).
#include <windows.h>

namespace tov::config {

// HKLM "Software\Classes\TOV.HTMLControl\EnableOutputFile", default value, at most 4 bytes of any type.
// Key missing: `value` keeps what it had; key present but value unreadable: 0.
void ReadEnableOutputFile(LONG& value);

// HKCU "Software\Classes\TOVHTTPPROXY\admin" "Condition": true only for REG_DWORD 4.
bool ReadProxyAdminCondition();

} // namespace tov::config
