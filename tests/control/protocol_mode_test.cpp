// URL prefixes of the two protocol modes and the switch to the pluggable protocol.
#include "support/initialized_control_fixture.h"
#include "frontend/pluggable_protocol_standin.h"

using tov::Bstr;

class ProtocolMode : public tovtest::InitializedControlFixture {
protected:
    // The local prefix: `base`, the instance tag (its form: tests/native/url_rules_test.cpp) and "/".
    bool LocalIsTagged(const std::wstring& base)
    {
        const std::wstring prefix = LocalPrefix();
        return prefix.starts_with(base) && prefix.size() > base.size() + 1 && prefix.back() == L'/';
    }
    LONG TryUse() { return Property(&ITOVHTMLControl::get_TryUseTOVHTMLP); }
};

TEST_F(ProtocolMode, InitControlSetsModeOneOverAPutPrefixAndThenRefusesTheSwitch)
{
    EXPECT_EQ(S_OK, control->put_URLPrefixLocal(Bstr(L"custom://x/").Get()));
    EXPECT_EQ(L"custom://x/", Property(&ITOVHTMLControl::get_URLPrefixLocal));
    Init(-1);
    EXPECT_TRUE(LocalIsTagged(L"@TOVHTML://")) << "InitControl overwrites the put value";
    EXPECT_EQ(L"@TOVHTML://", Property(&ITOVHTMLControl::get_URLPrefixGlobal));
    EXPECT_EQ(-2, TryUse()) << "too late once the browser exists";
}

TEST_F(ProtocolMode, PluggableProtocolSwitchesToModeTwoWhenInstalled)
{
    EXPECT_EQ(-1, TryUse()) << "not installed";
    {
        tovfe::PluggableProtocolInstallation failing(E_ACCESSDENIED);
        EXPECT_EQ(-2, TryUse()) << "installed but not creatable";
    }
    tovfe::PluggableProtocolInstallation installed;
    EXPECT_EQ(0, TryUse());
    EXPECT_TRUE(LocalIsTagged(L"tovhtmlp://"));
    EXPECT_EQ(L"tovhtmlp://", Property(&ITOVHTMLControl::get_URLPrefixGlobal));
}
