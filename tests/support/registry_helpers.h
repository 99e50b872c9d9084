#pragma once
// Reading and arranging registry state in tests.
#include <windows.h>
#include <optional>
#include <string>

namespace tovtest {

bool KeyExists(HKEY root, const std::wstring& path);
// The string value (empty name: the default value), or nothing when the key or value is missing.
std::optional<std::wstring> ReadString(HKEY root, const std::wstring& path, const wchar_t* name = L"");
std::optional<DWORD> ReadDword(HKEY root, const std::wstring& path, const wchar_t* name);
// Deletes a key with everything below it; no error when it is missing.
void DeleteTree(HKEY root, const std::wstring& path);

} // namespace tovtest
