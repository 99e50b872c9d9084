#pragma once
// Replaces one imported function in a loaded module's import table for the lifetime of the object, so a
// test can watch the calls the OCX makes to the platform (e.g. wininet) without changing the OCX.
#include <windows.h>

namespace tovtest {

class ImportHook {
public:
    ImportHook(HMODULE module, const char* dll, const char* function, void* replacement);
    ~ImportHook();
    ImportHook(const ImportHook&) = delete;
    ImportHook& operator=(const ImportHook&) = delete;

    bool Installed() const { return m_slot != nullptr; }

private:
    void** m_slot = nullptr;
    void* m_original = nullptr;
};

} // namespace tovtest
