// Registry switches read at run time, with the value types an administrator may have written.
#include <gtest/gtest.h>
#include "guicontrol/registry_config.h"
#include "support/registry_helpers.h"

namespace {

const wchar_t kAdminKey[] = L"Software\\Classes\\TOVHTTPPROXY\\admin";
const wchar_t kOutputKey[] = L"Software\\Classes\\TOV.HTMLControl\\EnableOutputFile";

void SetValue(HKEY root, const wchar_t* path, const wchar_t* name, DWORD type, const void* data, DWORD size)
{
    HKEY key = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(root, path, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr));
    if (data) ASSERT_EQ(ERROR_SUCCESS, RegSetValueExW(key, name, 0, type, static_cast<const BYTE*>(data), size));
    RegCloseKey(key);
}

class RegistryConfig : public testing::Test {
protected:
    void TearDown() override
    {
        tovtest::DeleteTree(HKEY_CURRENT_USER, L"Software\\Classes\\TOVHTTPPROXY");
        tovtest::DeleteTree(HKEY_LOCAL_MACHINE, L"Software\\Classes\\TOV.HTMLControl");
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
