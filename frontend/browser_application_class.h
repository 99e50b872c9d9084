#pragma once
// The scripted browser as the browser application class (stand-alone browser windows) of this process.
// Its browsers report the window handle a test sets (SetHwnd(0): the user has closed that window).
#include "frontend/class_registration.h"

namespace tovfe {

// {0002DF01-0000-0000-C000-000000000046}
inline constexpr CLSID kBrowserApplicationClass = {0x0002df01, 0x0000, 0x0000, {0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

class BrowserApplicationClass : public ScriptedBrowserClass {
public:
    // Creations are logged as "CoCreateInstance(InternetExplorer)".
    BrowserApplicationClass() { Factory()->SetClassName(L"InternetExplorer"); }
    HRESULT Register() { return ScriptedBrowserClass::Register(kBrowserApplicationClass); }
};

} // namespace tovfe
