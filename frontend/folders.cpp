#include "frontend/folders.h"
#include <windows.h>
#include "framework/handles.h"

namespace tovfe {

std::vector<std::wstring> FilesIn(const std::wstring& folder, const wchar_t* pattern)
{
    std::vector<std::wstring> files;
    std::wstring search = folder;
    if (!search.empty() && search.back() != L'\\' && search.back() != L'/') search += L'\\';
    WIN32_FIND_DATAW found;
    tov::UniqueFindHandle h(FindFirstFileW((search + pattern).c_str(), &found));
    if (!h) return files;
    do {
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) files.push_back(found.cFileName);
    } while (FindNextFileW(h.Get(), &found));
    return files;
}

std::set<std::wstring> TempFolderFiles()
{
    wchar_t folder[MAX_PATH + 1] = {};
    GetTempPathW(MAX_PATH + 1, folder);
    const auto files = FilesIn(folder);
    return std::set<std::wstring>(files.begin(), files.end());
}

std::wstring BesideThisProgram(const wchar_t* name)
{
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring file = path;
    return file.substr(0, file.find_last_of(L"\\/") + 1) + name;
}

ScratchFolder::ScratchFolder(std::wstring path) : m_path(std::move(path))
{
    if (!CreateDirectoryW(m_path.c_str(), nullptr) && GetLastError() != ERROR_ALREADY_EXISTS) m_path.clear();
}

ScratchFolder::~ScratchFolder()
{
    if (m_path.empty()) return;
    for (const auto& name : FilesIn(m_path)) DeleteFileW((m_path + L"\\" + name).c_str());
    RemoveDirectoryW(m_path.c_str());
}

} // namespace tovfe
