#pragma once
// What a test process holds, read through the platform's process APIs: to prove that the control gives
// back every handle, window, GDI/USER object and temporary file it took.
#include <windows.h>
#include <set>
#include <string>
#include "support/ocx.h"
#include "frontend/folders.h"

namespace tovtest {

// Top-level windows of this thread and all their descendants.
int ThreadWindowCount();
using tovfe::TempFolderFiles;

// Where the platform does not count (Wine answers 0 for handle and GUI object counts), handles and GDI
// objects are read from the tables' fill (see process_state.cpp) and USER objects are the process's
// windows.
struct ProcessState {
    DWORD handles = 0;
    DWORD gdiObjects = 0;
    DWORD userObjects = 0;
    int windows = 0;
    size_t tempFiles = 0;
    static ProcessState Now();
};

// Makes the OCX's class object known to COM in this process, as registration would.
class OcxClassRegistration {
public:
    explicit OcxClassRegistration(const Ocx& ocx);
    ~OcxClassRegistration();
    OcxClassRegistration(const OcxClassRegistration&) = delete;
    OcxClassRegistration& operator=(const OcxClassRegistration&) = delete;

private:
    DWORD m_cookie = 0;
};

} // namespace tovtest
