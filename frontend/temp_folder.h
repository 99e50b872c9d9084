#pragma once
// The names of the files in this process's temporary folder: how the demo and the tests see what the
// control left there.
#include <set>
#include <string>

namespace tovfe {

std::set<std::wstring> TempFolderFiles();

} // namespace tovfe
