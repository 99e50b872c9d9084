#pragma once
// Registry switches the control reads at run time (narrow registry calls, as the front end's tools
// write them).
#include <windows.h>
#include <string>

namespace tov::config {

// HKLM "Software\Classes\TOV.HTMLControl\EnableOutputFile", default value, at most 4 bytes of any type.
// Key missing: `value` keeps what it had; key present but value unreadable: 0.
void ReadEnableOutputFile(LONG& value);

// HKCU "Software\Classes\TOVHTTPPROXY\admin" "Condition": true only for REG_DWORD 4.
bool ReadProxyAdminCondition();

enum class BrowserVersionRead { Ok, NoKey, NoValue };
// HKLM "Software\Microsoft\Internet Explorer" "Version", read into 160 bytes; `version` is set only on Ok.
BrowserVersionRead ReadBrowserVersion(std::string& version);

// "Software\TOV\General" "TOVGUIControlPlugin": the user's key first, then the machine's; on only for 1.
// When neither key opens, the user's key is created as a volatile key (gone at log-off).
bool ReadControlPluginSwitch();

} // namespace tov::config
