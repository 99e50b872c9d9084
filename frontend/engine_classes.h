#pragma once
// The engine's browser (TOVENGINE.DLL, beside this program) as this process's WebBrowser class and browser
// application class: what the control creates is then a browser that loads and renders real pages.
#include <windows.h>
#include <string>
#include <vector>
#include "frontend/class_registration.h"

namespace tovfe {

class EngineClasses {
public:
    EngineClasses() = default;
    ~EngineClasses();
    EngineClasses(const EngineClasses&) = delete;
    EngineClasses& operator=(const EngineClasses&) = delete;

    // Loads the DLL and registers both classes; the failure when it cannot.
    HRESULT Register();
    // Takes both classes back; created browsers live on until released.
    void Revoke();
    // The DLL's own answer: S_OK once no object of it is left.
    HRESULT CanUnloadNow() const;
    static std::wstring DllPath();

private:
    HMODULE m_module = nullptr;
    RegisteredClass m_browser;
    RegisteredClass m_application;
};

// The engine's visible stand-alone browser windows on this thread: separate browsers and new windows.
std::vector<HWND> EngineTopWindows();

} // namespace tovfe
