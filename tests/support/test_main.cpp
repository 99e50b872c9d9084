// Entry point of every Windows test executable: one OLE apartment on the main thread, as in a front end,
// and a temporary folder of the process's own (TMP and TEMP), so that the files the control makes there
// are this process's alone, whatever else runs in the same prefix meanwhile.
#include <windows.h>
#include <ole2.h>
#include <gtest/gtest.h>
#include <string>

namespace {

class PrivateTempFolder {
public:
    PrivateTempFolder()
    {
        wchar_t shared[MAX_PATH + 1] = {};
        GetTempPathW(MAX_PATH + 1, shared);
        m_path = std::wstring(shared) + L"tovtest-" + std::to_wstring(GetCurrentProcessId());
        if (!CreateDirectoryW(m_path.c_str(), nullptr) && GetLastError() != ERROR_ALREADY_EXISTS) {
            m_path.clear();
            return;
        }
        SetEnvironmentVariableW(L"TMP", m_path.c_str());
        SetEnvironmentVariableW(L"TEMP", m_path.c_str());
    }
    ~PrivateTempFolder()
    {
        if (m_path.empty()) return;
        // What a failed test left behind goes with the folder; the tests report it themselves.
        WIN32_FIND_DATAW found;
        HANDLE h = FindFirstFileW((m_path + L"\\*").c_str(), &found);
        if (h != INVALID_HANDLE_VALUE) {
            do {
                if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) DeleteFileW((m_path + L"\\" + found.cFileName).c_str());
            } while (FindNextFileW(h, &found));
            FindClose(h);
        }
        RemoveDirectoryW(m_path.c_str());
    }
    PrivateTempFolder(const PrivateTempFolder&) = delete;
    PrivateTempFolder& operator=(const PrivateTempFolder&) = delete;

private:
    std::wstring m_path;
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
