#include "guicontrol/registry_config.h"
#include "framework/handles.h"

namespace tov::config {
namespace {

constexpr char kGeneralKey[] = "Software\\TOV\\General";
constexpr char kPluginValue[] = "TOVGUIControlPlugin";

// Four bytes of a value of any type; false when the value cannot be read into them.
bool ReadFourBytes(HKEY key, const char* name, DWORD& data, DWORD* type = nullptr)
{
    DWORD size = sizeof(data);
    return RegQueryValueExA(key, name, nullptr, type, reinterpret_cast<BYTE*>(&data), &size) == ERROR_SUCCESS;
}

} // namespace

void ReadEnableOutputFile(LONG& value)
{
    UniqueHKey key;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "Software\\Classes\\TOV.HTMLControl\\EnableOutputFile", 0, KEY_QUERY_VALUE,
                      key.Put()) != ERROR_SUCCESS)
        return;
    DWORD data = 0;
    // Deliberate: the type is not looked at; a short string such as "1" switches the copies on as well.
    if (!ReadFourBytes(key.Get(), nullptr, data)) data = 0;
    value = static_cast<LONG>(data);
}

bool ReadProxyAdminCondition()
{
    UniqueHKey key;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Classes\\TOVHTTPPROXY\\admin", 0, KEY_READ, key.Put()) != ERROR_SUCCESS)
        return false;
    DWORD data = 0, type = 0;
    if (!ReadFourBytes(key.Get(), "Condition", data, &type)) return false;
    return type == REG_DWORD && data == 4;
}

BrowserVersionRead ReadBrowserVersion(std::string& version)
{
    UniqueHKey key;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "Software\\Microsoft\\Internet Explorer", 0, KEY_QUERY_VALUE, key.Put()) !=
        ERROR_SUCCESS)
        return BrowserVersionRead::NoKey;
    char text[161] = {};
    DWORD size = 160;
    if (RegQueryValueExA(key.Get(), "Version", nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size) != ERROR_SUCCESS)
        return BrowserVersionRead::NoValue;
    // The buffer's last byte stays zero: a value without its terminator still ends here.
    version.assign(text);
    return BrowserVersionRead::Ok;
}

bool ReadControlPluginSwitch()
{
    UniqueHKey key;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, kGeneralKey, 0, KEY_READ, key.Put()) != ERROR_SUCCESS &&
        RegOpenKeyExA(HKEY_LOCAL_MACHINE, kGeneralKey, 0, KEY_READ, key.Put()) != ERROR_SUCCESS &&
        RegCreateKeyExA(HKEY_CURRENT_USER, kGeneralKey, 0, nullptr, REG_OPTION_VOLATILE, KEY_READ | KEY_WRITE, nullptr,
                        key.Put(), nullptr) != ERROR_SUCCESS)
        return false;
    DWORD data = 0;
    if (!ReadFourBytes(key.Get(), kPluginValue, data)) {
        key.Reset();
        data = 0;
        if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, kGeneralKey, 0, KEY_READ, key.Put()) != ERROR_SUCCESS ||
            !ReadFourBytes(key.Get(), kPluginValue, data))
            return false;
    }
    // Deliberate: the type is not looked at.
    return data == 1;
}

} // namespace tov::config
