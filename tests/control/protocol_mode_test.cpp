// URL prefixes of the two protocol modes and the switch to the pluggable protocol.
#include "support/atl_host.h"
#include "support/control_fixture.h"
#include "frontend/pluggable_protocol_standin.h"
#include "frontend/scripted_browser.h"
#include "framework/bstr.h"

using tov::Bstr;

class ProtocolMode : public tovtest::ControlFixture {
protected:
    std::wstring Prefix(HRESULT (STDMETHODCALLTYPE ITOVHTMLControl::*get)(BSTR*))
    {
        Bstr b;
        (control.Get()->*get)(b.Put());
        return std::wstring(b.View());
    }
    // The local prefix: `base`, the instance tag (lower-case hex without leading zeros) and "/".
    bool LocalIsTagged(const std::wstring& base)
    {
        const std::wstring prefix = Prefix(&ITOVHTMLControl::get_URLPrefixLocal);
        const std::wstring tag = prefix.starts_with(base) ? prefix.substr(base.size()) : L"";
        return tag.size() >= 2 && tag.size() <= 9 && tag.back() == L'/' && tag[0] != L'0' &&
               tag.find_first_not_of(L"0123456789abcdef") == tag.size() - 1;
    }
    LONG TryUse()
    {
        LONG result = 7;
        EXPECT_EQ(S_OK, control->get_TryUseTOVHTMLP(&result));
        return result;
    }
};

TEST_F(ProtocolMode, InitControlSetsModeOneOverAPutPrefixAndThenRefusesTheSwitch)
{
    EXPECT_EQ(S_OK, control->put_URLPrefixLocal(Bstr(L"custom://x/").Get()));
    EXPECT_EQ(L"custom://x/", Prefix(&ITOVHTMLControl::get_URLPrefixLocal));
    tovfe::ScriptedBrowserClass browsers;
    ASSERT_EQ(S_OK, browsers.Register());
    tovtest::AtlHost host;
    ASSERT_EQ(S_OK, host.Attach(control.Get()));
    LONG code = -1;
    control->InitControl(&code);
    EXPECT_TRUE(LocalIsTagged(L"@TOVHTML://")) << "InitControl overwrites the put value";
    EXPECT_EQ(L"@TOVHTML://", Prefix(&ITOVHTMLControl::get_URLPrefixGlobal));
    EXPECT_EQ(-2, TryUse()) << "too late once the browser exists";
    host.Destroy();
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
    EXPECT_EQ(L"tovhtmlp://", Prefix(&ITOVHTMLControl::get_URLPrefixGlobal));
}
