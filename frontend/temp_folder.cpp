#include "frontend/temp_folder.h"
#include <windows.h>

namespace tovfe {

std::set<std::wstring> TempFolderFiles()
{
    wchar_t folder[MAX_PATH] = {};
    GetTempPathW(MAX_PATH, folder);
    std::set<std::wstring> files;
    WIN32_FIND_DATAW found;
    HANDLE h = FindFirstFileW((std::wstring(folder) + L"*").c_str(), &found);
    if (h == INVALID_HANDLE_VALUE) return files;
    do {
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) files.insert(found.cFileName);
    } while (FindNextFileW(h, &found));
    FindClose(h);
    return files;
}

} // namespace tovfe
