#include "navigation/temporary_files.h"
#include <utility>

namespace tov {
namespace {

std::wstring Wide(const std::string& text, UINT codePage)
{
    const int size = static_cast<int>(text.size());
    const int n = MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0);
    if (n <= 0) return std::wstring();
    std::wstring wide(static_cast<size_t>(n), L'\0');
    MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), n);
    return wide;
}

// The name as the control hands it to the ANSI file functions (in the thread's code page), and whether
// those functions read it back as the same name (in the code page they use).
std::string FileApiName(const std::wstring& path, bool& exact)
{
    exact = false;
    const int size = static_cast<int>(path.size());
    const int n = WideCharToMultiByte(CP_THREAD_ACP, 0, path.data(), size, nullptr, 0, nullptr, nullptr);
    if (size == 0 || n <= 0) return std::string();
    std::string narrow(static_cast<size_t>(n), '\0');
    WideCharToMultiByte(CP_THREAD_ACP, 0, path.data(), size, narrow.data(), n, nullptr, nullptr);
    exact = Wide(narrow, AreFileApisANSI() ? CP_ACP : CP_OEMCP) == path;
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
    m_bSourceFileCreated = 1;
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
    m_bSourceFileCreated = 0;
}

} // namespace tov
