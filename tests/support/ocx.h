#pragma once
// The built TOVHTML.OCX as a test sees it: loaded from beside the test executable, entry points by name.
#include <windows.h>
#include <string>
#include "framework/com_ptr.h"
#include "TOVHTML_h.h"

namespace tovtest {

std::wstring OcxPath();
std::wstring TempDir();

class Ocx {
public:
    Ocx();
    ~Ocx();
    Ocx(const Ocx&) = delete;
    Ocx& operator=(const Ocx&) = delete;

    HMODULE Handle() const { return m_module; }
    HRESULT GetClassObject(REFCLSID clsid, REFIID riid, void** ppv) const;
    HRESULT CanUnloadNow() const;
    HRESULT Register() const;
    HRESULT Unregister() const;
    // A control made through the class object.
    tov::ComPtr<ITOVHTMLControl> CreateControl() const;

private:
    template <class F> F Proc(const char* name) const { return reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(m_module, name))); }
    HMODULE m_module = nullptr;
};

// Starts a command line. Under load Wine now and then fails to start a process at all: that is tried
// again a few times, as it says nothing about what the test checks. False, with the last error set,
// when it never started.
bool StartProcess(const std::wstring& commandLine, PROCESS_INFORMATION& started);
// Runs a command line and waits; returns the process exit code, or -1 when it could not start.
int RunProcess(const std::wstring& commandLine, DWORD timeoutMs = 120000);

} // namespace tovtest
