#pragma once
// The files the control makes for the browser: provider data saved to temporary files (per shown URL,
// several for one URL possible) and the source files of SetHTMLSourceContent. Every one of them is
// deleted at release, whatever its name.
#include <windows.h>
#include <map>
#include <string>
#include <string_view>
#include <vector>
#include "framework/bstr.h"

namespace tov {

class TemporaryFiles {
public:
    TemporaryFiles() = default;
    // Whatever the release left (it deletes both kinds itself, in its own order).
    ~TemporaryFiles();
    TemporaryFiles(const TemporaryFiles&) = delete;
    TemporaryFiles& operator=(const TemporaryFiles&) = delete;

    void AddTempFile(std::wstring_view url, const Bstr& path);
    void AddSourceFile(std::wstring path);
    size_t TempFileCount() const noexcept { return m_mapTempFiles.size(); }
    bool SourceFileCreated() const noexcept { return !m_sourceFiles.empty(); }

    void DeleteTempFiles() noexcept;
    void DeleteSourceFiles() noexcept;

private:
    std::multimap<Bstr, Bstr, BstrLocaleLess> m_mapTempFiles;
    std::vector<std::wstring> m_sourceFiles;
};

// Deletes one file the control made. A name whose form in the thread's code page the ANSI file functions
// read back unchanged is deleted through them, once more after 500 ms when the file is held. Another
// name (a double-byte code page, bytes that are no character there) would reach a different file that
// way: its wide name is used at once, without the wait.
void DeleteMadeFile(const std::wstring& path) noexcept;

} // namespace tov
