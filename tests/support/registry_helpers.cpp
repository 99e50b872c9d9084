#include "registry_helpers.h"
#include <shlwapi.h>
#include "framework/handles.h"

namespace tovtest {

bool KeyExists(HKEY root, const std::wstring& path)
{
    tov::UniqueHKey key;
    return RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, key.Put()) == ERROR_SUCCESS;
}

std::optional<std::wstring> ReadString(HKEY root, const std::wstring& path, const wchar_t* name)
{
    tov::UniqueHKey key;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, key.Put()) != ERROR_SUCCESS) return std::nullopt;
    DWORD type = 0, size = 0;
    if (RegQueryValueExW(key.Get(), name, nullptr, &type, nullptr, &size) != ERROR_SUCCESS) return std::nullopt;
    if (type != REG_SZ && type != REG_EXPAND_SZ) return std::nullopt;
    std::wstring value(size / sizeof(wchar_t) + 1, L'\0');
    if (RegQueryValueExW(key.Get(), name, nullptr, &type, reinterpret_cast<BYTE*>(value.data()), &size) != ERROR_SUCCESS)
        return std::nullopt;
    value.resize(wcslen(value.c_str()));
    return value;
}

std::optional<DWORD> ReadDword(HKEY root, const std::wstring& path, const wchar_t* name)
{
    DWORD value = 0, size = sizeof(value), type = 0;
    if (RegGetValueW(root, path.c_str(), name, RRF_RT_ANY, &type, &value, &size) != ERROR_SUCCESS || type != REG_DWORD)
        return std::nullopt;
    return value;
}

void DeleteTree(HKEY root, const std::wstring& path) { SHDeleteKeyW(root, path.c_str()); }

} // namespace tovtest
