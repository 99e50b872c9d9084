#include "guicontrol/registry_config.h"
#include "framework/handles.h"

namespace tov::config {

void ReadEnableOutputFile(LONG& value)
{
    UniqueHKey key;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "Software\\Classes\\TOV.HTMLControl\\EnableOutputFile", 0, KEY_QUERY_VALUE,
                      key.Put()) != ERROR_SUCCESS)
        return;
    DWORD data = 0, size = sizeof(data);
    // The type is not looked at: a short string such as "1" switches the copies on as well.
    if (RegQueryValueExA(key.Get(), nullptr, nullptr, nullptr, reinterpret_cast<BYTE*>(&data), &size) != ERROR_SUCCESS)
        data = 0;
    value = static_cast<LONG>(data);
}

bool ReadProxyAdminCondition()
{
    UniqueHKey key;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Classes\\TOVHTTPPROXY\\admin", 0, KEY_READ, key.Put()) != ERROR_SUCCESS)
        return false;
    DWORD data = 0, size = sizeof(data), type = 0;
    if (RegQueryValueExA(key.Get(), "Condition", nullptr, &type, reinterpret_cast<BYTE*>(&data), &size) != ERROR_SUCCESS)
        return false;
    return type == REG_DWORD && data == 4;
}

} // namespace tov::config
