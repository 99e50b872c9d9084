#pragma once
// Files as the demo, the workbench and the tests look for them: the files of a folder, those in this
// process's temporary folder (what the control left there), and a file beside this program.
#include <set>
#include <string>
#include <vector>

namespace tovfe {

// The names of the files (not folders) in `folder` matching `pattern`.
std::vector<std::wstring> FilesIn(const std::wstring& folder, const wchar_t* pattern = L"*");
std::set<std::wstring> TempFolderFiles();
// The path of `name` in the folder of this program's executable.
std::wstring BesideThisProgram(const wchar_t* name);

// A folder made for a while: created with the object, removed with every file in it when it goes.
class ScratchFolder {
public:
    explicit ScratchFolder(std::wstring path);
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    // Empty when the folder could not be made.
    const std::wstring& Path() const { return m_path; }

private:
    std::wstring m_path;
};

} // namespace tovfe
