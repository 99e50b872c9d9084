#include "navigation/temporary_files.h"
#include "framework/code_pages.h"
#include <utility>

namespace tov {
namespace {

// The name as the control hands it to the ANSI file functions (in the thread's code page), and whether
// those functions read it back as the same name (in the code page they use).
std::string FileApiName(const std::wstring& path, bool& exact)
{
    std::string narrow = Narrow(path, CP_THREAD_ACP);
    exact = !narrow.empty() && Widen(narrow, AreFileApisANSI() ? CP_ACP : CP_OEMCP) == path;
    return narrow;
}

bool Gone(BOOL deleted)
{
    return deleted || GetLastError() == ERROR_FILE_NOT_FOUND || GetLastError() == ERROR_PATH_NOT_FOUND;
}

} // namespace

void DeleteMadeFile(const std::wstring& path) noexcept
{
    try {
        bool exact = false;
        const std::string narrow = FileApiName(path, exact);
        if (!exact) {
            DeleteFileW(path.c_str());
            return;
        }
        if (Gone(DeleteFileA(narrow.c_str()))) return;
        Sleep(500);
        DeleteFileA(narrow.c_str());
    } catch (...) {
        DeleteFileW(path.c_str()); // no memory for the ANSI form: the wide name still reaches the file
    }
}

TemporaryFiles::~TemporaryFiles()
{
    DeleteTempFiles();
    DeleteSourceFiles();
}

void TemporaryFiles::AddTempFile(std::wstring_view url, const Bstr& path)
{
    m_mapTempFiles.emplace(Bstr(url), path);
}

void TemporaryFiles::AddSourceFile(std::wstring path)
{
    m_sourceFiles.push_back(std::move(path));
}

void TemporaryFiles::DeleteTempFiles() noexcept
{
    // Taken out first: nothing is deleted twice, whatever a deletion lets happen meanwhile.
    const auto files = std::exchange(m_mapTempFiles, {});
    for (const auto& [url, path] : files) DeleteMadeFile(std::wstring(path.View()));
}

void TemporaryFiles::DeleteSourceFiles() noexcept
{
    const auto files = std::exchange(m_sourceFiles, {});
    for (const std::wstring& path : files) DeleteMadeFile(path);
}

} // namespace tov
