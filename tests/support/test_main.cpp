// Entry point of every Windows test executable: one OLE apartment on the main thread, as in a front end,
// and a temporary folder of the process's own (TMP and TEMP), so that the files the control makes there
// are this process's alone, whatever else runs in the same prefix meanwhile.
#include <windows.h>
#include <ole2.h>
#include <gtest/gtest.h>
#include <string>
#include "frontend/folders.h"

namespace {

// Lives as long as the tests run; TMP and TEMP lead there.
class PrivateTempFolder {
public:
    PrivateTempFolder() : m_folder(SharedTemp() + L"tovtest-" + std::to_wstring(GetCurrentProcessId()))
    {
        if (m_folder.Path().empty()) return;
        SetEnvironmentVariableW(L"TMP", m_folder.Path().c_str());
        SetEnvironmentVariableW(L"TEMP", m_folder.Path().c_str());
    }

private:
    static std::wstring SharedTemp()
    {
        wchar_t shared[MAX_PATH + 1] = {};
        GetTempPathW(MAX_PATH + 1, shared);
        return shared;
    }
    tovfe::ScratchFolder m_folder; // what a failed test left goes with it; the tests report it themselves
};

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    PrivateTempFolder temp;
    if (FAILED(OleInitialize(nullptr))) return 2;
    const int rc = RUN_ALL_TESTS();
    OleUninitialize();
    return rc;
}
