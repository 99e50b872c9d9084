// Registry switches read at run time, with the value types an administrator may have written.
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <shlwapi.h>
#include "framework/handles.h"
#include "guicontrol/registry_config.h"
#include "support/registry_helpers.h"

namespace {

const wchar_t kAdminKey[] = L"Software\\Classes\\TOVHTTPPROXY\\admin";
const wchar_t kOutputKey[] = L"Software\\Classes\\TOV.HTMLControl\\EnableOutputFile";
const wchar_t kGeneralKey[] = L"Software\\TOV\\General";

std::string Dword(DWORD v) { return std::string(reinterpret_cast<const char*>(&v), sizeof(v)); }
std::string Wide(const std::wstring& s) { return std::string(reinterpret_cast<const char*>(s.c_str()), (s.size() + 1) * 2); }

// Creates the key and, when `bytes` is given, writes the value.
void Write(HKEY root, const wchar_t* path, const wchar_t* name, DWORD type, const std::optional<std::string>& bytes)
{
    tov::UniqueHKey key;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(root, path, 0, nullptr, 0, KEY_WRITE, nullptr, key.Put(), nullptr));
    if (!bytes) return;
    ASSERT_EQ(ERROR_SUCCESS, RegSetValueExW(key.Get(), name, 0, type, reinterpret_cast<const BYTE*>(bytes->data()), DWORD(bytes->size())));
}

class RegistryConfig : public testing::Test {
protected:
    void TearDown() override { Clear(); }
    // The machine's general key may hold other components' values: only the switch goes.
    static void Clear()
    {
        tovtest::DeleteTree(HKEY_CURRENT_USER, L"Software\\Classes\\TOVHTTPPROXY");
        tovtest::DeleteTree(HKEY_LOCAL_MACHINE, L"Software\\Classes\\TOV.HTMLControl");
        tovtest::DeleteTree(HKEY_CURRENT_USER, kGeneralKey);
        SHDeleteValueW(HKEY_LOCAL_MACHINE, kGeneralKey, L"TOVGUIControlPlugin");
        SHDeleteEmptyKeyW(HKEY_LOCAL_MACHINE, kGeneralKey);
        for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) SHDeleteEmptyKeyW(root, L"Software\\TOV");
    }
};

} // namespace

// The proxy condition holds only for REG_DWORD 4; the output switch takes four bytes of any type.
TEST_F(RegistryConfig, ConditionAndOutputSwitchValueTypes)
{
    const struct { const char* what; DWORD type; std::optional<std::string> bytes; bool condition; LONG output; } cases[] = {
        {"key missing: unchanged", 0, std::nullopt, false, 77}, {"key without a value", REG_DWORD, std::nullopt, false, 0},
        {"DWORD 4", REG_DWORD, Dword(4), true, 4}, {"DWORD 5", REG_DWORD, Dword(5), false, 5},
        {"the text 4 is not the number 4", REG_SZ, Wide(L"4"), false, '4'},
        {"a short text switches the copies on", REG_SZ, Wide(L"1"), false, '1'},
        {"more than four bytes cannot be read", REG_SZ, Wide(L"enabled"), false, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Clear();
        if (c.type) Write(HKEY_CURRENT_USER, kAdminKey, L"Condition", c.type, c.bytes);
        if (c.type) Write(HKEY_LOCAL_MACHINE, kOutputKey, nullptr, c.type, c.bytes);
        LONG output = 77;
        tov::config::ReadEnableOutputFile(output);
        EXPECT_EQ(c.output, output);
        EXPECT_EQ(c.condition, tov::config::ReadProxyAdminCondition());
    }
}

// The user's readable value wins, then the machine's; it is on only for exactly 1, whatever its type.
TEST_F(RegistryConfig, PluginSwitchPrefersTheUsersReadableValue)
{
    const struct { const char* what; std::optional<std::string> user; DWORD userType; bool machineOn; bool on; } cases[] = {
        {"the machine's value alone", std::nullopt, REG_DWORD, true, true},
        {"the user's 0 wins over the machine's 1", Dword(0), REG_DWORD, true, false},
        {"on only for exactly 1", Dword(2), REG_DWORD, true, false},
        {"the user's key without the value", std::string(), REG_DWORD, true, true},
        {"an unreadable value: the machine's decides", Wide(L"1234"), REG_SZ, true, true},
        {"no key anywhere: the user's is made", std::nullopt, REG_DWORD, false, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Clear();
        if (c.machineOn) Write(HKEY_LOCAL_MACHINE, kGeneralKey, L"TOVGUIControlPlugin", REG_DWORD, Dword(1));
        if (c.user) Write(HKEY_CURRENT_USER, kGeneralKey, L"TOVGUIControlPlugin", c.userType, c.user->empty() ? std::nullopt : c.user);
        EXPECT_EQ(c.on, tov::config::ReadControlPluginSwitch());
        EXPECT_EQ(c.user || !c.machineOn, tovtest::KeyExists(HKEY_CURRENT_USER, kGeneralKey)) << "a user key made only when none opened";
    }
}
