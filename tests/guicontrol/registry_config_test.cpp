// Registry switches read at run time, with the value types an administrator may have written.
#include <gtest/gtest.h>
#include "guicontrol/registry_config.h"
#include "support/registry_helpers.h"
#include <shlwapi.h>
#include <string>

namespace {

const wchar_t kAdminKey[] = L"Software\\Classes\\TOVHTTPPROXY\\admin";
const wchar_t kOutputKey[] = L"Software\\Classes\\TOV.HTMLControl\\EnableOutputFile";
const wchar_t kGeneralKey[] = L"Software\\TOV\\General";
const wchar_t kBrowserKey[] = L"Software\\Microsoft\\Internet Explorer";

void SetValue(HKEY root, const wchar_t* path, const wchar_t* name, DWORD type, const void* data, DWORD size)
{
    HKEY key = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(root, path, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr));
    const LONG set = data ? RegSetValueExW(key, name, 0, type, static_cast<const BYTE*>(data), size) : ERROR_SUCCESS;
    RegCloseKey(key);
    ASSERT_EQ(ERROR_SUCCESS, set);
}

class RegistryConfig : public testing::Test {
protected:
    void TearDown() override
    {
        tovtest::DeleteTree(HKEY_CURRENT_USER, L"Software\\Classes\\TOVHTTPPROXY");
        tovtest::DeleteTree(HKEY_LOCAL_MACHINE, L"Software\\Classes\\TOV.HTMLControl");
        ClearPluginSwitch();
    }
    // The machine key may hold other components' keys: only the value goes.
    static void ClearPluginSwitch()
    {
        tovtest::DeleteTree(HKEY_CURRENT_USER, kGeneralKey);
        SHDeleteValueW(HKEY_LOCAL_MACHINE, kGeneralKey, L"TOVGUIControlPlugin");
        SHDeleteEmptyKeyW(HKEY_LOCAL_MACHINE, kGeneralKey);
        SHDeleteEmptyKeyW(HKEY_LOCAL_MACHINE, L"Software\\TOV");
        SHDeleteEmptyKeyW(HKEY_CURRENT_USER, L"Software\\TOV");
    }
};

} // namespace

TEST_F(RegistryConfig, ProxyConditionHoldsOnlyForDwordFour)
{
    EXPECT_FALSE(tov::config::ReadProxyAdminCondition()) << "key missing";
    const DWORD four = 4, five = 5;
    SetValue(HKEY_CURRENT_USER, kAdminKey, L"Condition", REG_DWORD, &four, 4);
    EXPECT_TRUE(tov::config::ReadProxyAdminCondition());
    SetValue(HKEY_CURRENT_USER, kAdminKey, L"Condition", REG_DWORD, &five, 4);
    EXPECT_FALSE(tov::config::ReadProxyAdminCondition());
    SetValue(HKEY_CURRENT_USER, kAdminKey, L"Condition", REG_SZ, L"4", 4);
    EXPECT_FALSE(tov::config::ReadProxyAdminCondition()) << "the text 4 is not the number 4";
    SetValue(HKEY_CURRENT_USER, kAdminKey, L"Condition", REG_BINARY, &four, 4);
    EXPECT_FALSE(tov::config::ReadProxyAdminCondition());
}

TEST_F(RegistryConfig, OutputSwitchReadsFourBytesOfAnyType)
{
    LONG value = 77;
    tov::config::ReadEnableOutputFile(value);
    EXPECT_EQ(77, value) << "key missing: unchanged";

    SetValue(HKEY_LOCAL_MACHINE, kOutputKey, nullptr, REG_SZ, nullptr, 0);
    value = 77;
    tov::config::ReadEnableOutputFile(value);
    EXPECT_EQ(0, value) << "key without a default value";

    const DWORD zero = 0, two = 2;
    SetValue(HKEY_LOCAL_MACHINE, kOutputKey, nullptr, REG_DWORD, &zero, 4);
    tov::config::ReadEnableOutputFile(value);
    EXPECT_EQ(0, value);
    SetValue(HKEY_LOCAL_MACHINE, kOutputKey, nullptr, REG_DWORD, &two, 4);
    tov::config::ReadEnableOutputFile(value);
    EXPECT_EQ(2, value);

    // A short string switches the copies on: its first bytes are not zero.
    SetValue(HKEY_LOCAL_MACHINE, kOutputKey, nullptr, REG_SZ, L"1", 4);
    value = 0;
    tov::config::ReadEnableOutputFile(value);
    EXPECT_NE(0, value);
    // Data longer than four bytes cannot be read: 0.
    SetValue(HKEY_LOCAL_MACHINE, kOutputKey, nullptr, REG_SZ, L"enabled", 16);
    value = 9;
    tov::config::ReadEnableOutputFile(value);
    EXPECT_EQ(0, value);
}

TEST_F(RegistryConfig, PluginSwitchPrefersTheUsersReadableValue)
{
    const DWORD zero = 0, one = 1, two = 2;
    ClearPluginSwitch();
    EXPECT_FALSE(tov::config::ReadControlPluginSwitch()) << "no key anywhere";
    // Neither key opened: the user's key was made, as a volatile one.
    HKEY key = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegOpenKeyExW(HKEY_CURRENT_USER, kGeneralKey, 0, KEY_READ, &key));
    RegCloseKey(key);
    EXPECT_EQ(ERROR_CHILD_MUST_BE_VOLATILE,
              RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\TOV\\General\\Child", 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr))
        << "only a volatile key refuses a lasting child";

    ClearPluginSwitch();
    SetValue(HKEY_LOCAL_MACHINE, kGeneralKey, L"TOVGUIControlPlugin", REG_DWORD, &one, 4);
    EXPECT_TRUE(tov::config::ReadControlPluginSwitch()) << "the machine's value alone";
    EXPECT_FALSE(tovtest::KeyExists(HKEY_CURRENT_USER, kGeneralKey)) << "the machine key opened: nothing created";

    SetValue(HKEY_CURRENT_USER, kGeneralKey, L"TOVGUIControlPlugin", REG_DWORD, &zero, 4);
    EXPECT_FALSE(tov::config::ReadControlPluginSwitch()) << "the user's 0 wins over the machine's 1";

    // The user's key without the value: the machine's value is read.
    tovtest::DeleteTree(HKEY_CURRENT_USER, kGeneralKey);
    SetValue(HKEY_CURRENT_USER, kGeneralKey, nullptr, REG_DWORD, nullptr, 0);
    EXPECT_TRUE(tov::config::ReadControlPluginSwitch());

    SetValue(HKEY_CURRENT_USER, kGeneralKey, L"TOVGUIControlPlugin", REG_DWORD, &two, 4);
    EXPECT_FALSE(tov::config::ReadControlPluginSwitch()) << "on only for exactly 1";
    // The type is not looked at: four bytes holding 1 switch it on.
    SetValue(HKEY_CURRENT_USER, kGeneralKey, L"TOVGUIControlPlugin", REG_BINARY, &one, 4);
    EXPECT_TRUE(tov::config::ReadControlPluginSwitch());
    // Data that does not fit four bytes cannot be read: the machine's value decides.
    SetValue(HKEY_CURRENT_USER, kGeneralKey, L"TOVGUIControlPlugin", REG_SZ, L"1234", 10);
    EXPECT_TRUE(tov::config::ReadControlPluginSwitch());
    SHDeleteValueW(HKEY_LOCAL_MACHINE, kGeneralKey, L"TOVGUIControlPlugin");
    EXPECT_FALSE(tov::config::ReadControlPluginSwitch());
}

TEST_F(RegistryConfig, BrowserVersionIsReadIntoOneHundredSixtyBytes)
{
    // The prefix's own version is put back afterwards.
    const auto saved = tovtest::ReadString(HKEY_LOCAL_MACHINE, kBrowserKey, L"Version");
    std::string version = "unchanged";

    SetValue(HKEY_LOCAL_MACHINE, kBrowserKey, L"Version", REG_SZ, L"11.0.9600", 20);
    EXPECT_EQ(tov::config::BrowserVersionRead::Ok, tov::config::ReadBrowserVersion(version));
    EXPECT_EQ("11.0.9600", version);

    const std::string longest(159, '7');
    HKEY key = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegOpenKeyExW(HKEY_LOCAL_MACHINE, kBrowserKey, 0, KEY_WRITE, &key));
    RegSetValueExA(key, "Version", 0, REG_SZ, reinterpret_cast<const BYTE*>(longest.c_str()), 160);
    EXPECT_EQ(tov::config::BrowserVersionRead::Ok, tov::config::ReadBrowserVersion(version));
    EXPECT_EQ(longest, version);
    const std::string tooLong(160, '7');
    RegSetValueExA(key, "Version", 0, REG_SZ, reinterpret_cast<const BYTE*>(tooLong.c_str()), 161);
    version = "unchanged";
    EXPECT_EQ(tov::config::BrowserVersionRead::NoValue, tov::config::ReadBrowserVersion(version));
    EXPECT_EQ("unchanged", version);
    RegDeleteValueW(key, L"Version");
    EXPECT_EQ(tov::config::BrowserVersionRead::NoValue, tov::config::ReadBrowserVersion(version));
    if (saved) RegSetValueExW(key, L"Version", 0, REG_SZ, reinterpret_cast<const BYTE*>(saved->c_str()),
                              static_cast<DWORD>((saved->size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
}
