// URL prefixes of the two protocol modes and the switch to the pluggable protocol.
#include "support/atl_host.h"
#include "support/control_fixture.h"
#include "frontend/pluggable_protocol_standin.h"
#include "frontend/scripted_browser.h"
#include "framework/bstr.h"

using tov::Bstr;

namespace {

// A prefix with the instance tag (the control's address in lower-case hex without leading zeros) before its last "/".
bool IsTaggedPrefix(const std::wstring& prefix, const std::wstring& base)
{
    if (prefix.rfind(base, 0) != 0 || prefix.back() != L'/') return false;
    const std::wstring tag = prefix.substr(base.size(), prefix.size() - base.size() - 1);
    return !tag.empty() && tag.size() <= 8 && tag.find_first_not_of(L"0123456789abcdef") == std::wstring::npos && tag[0] != L'0';
}

} // namespace

class ProtocolMode : public tovtest::ControlFixture {
protected:
    std::wstring Prefix(HRESULT (STDMETHODCALLTYPE ITOVHTMLControl::*get)(BSTR*))
    {
        Bstr b;
        (control.Get()->*get)(b.Put());
        return std::wstring(b.View());
    }
    std::wstring Local() { return Prefix(&ITOVHTMLControl::get_URLPrefixLocal); }
    std::wstring Global() { return Prefix(&ITOVHTMLControl::get_URLPrefixGlobal); }
    LONG TryUse()
    {
        LONG result = 7;
        EXPECT_EQ(S_OK, control->get_TryUseTOVHTMLP(&result));
        return result;
    }
};

TEST_F(ProtocolMode, InitControlSetsModeOneOverAPutPrefixAndThenRefusesTheSwitch)
{
    EXPECT_EQ(L"", Local());
    EXPECT_EQ(S_OK, control->put_URLPrefixLocal(Bstr(L"custom://x/").Get()));
    EXPECT_EQ(L"custom://x/", Local());
    EXPECT_EQ(S_OK, control->put_URLPrefixGlobal(nullptr));
    EXPECT_EQ(L"", Global()) << "null reads as empty";
    EXPECT_EQ(E_POINTER, control->get_URLPrefixLocal(nullptr));

    tovfe::ScriptedBrowserClass browsers;
    ASSERT_EQ(S_OK, browsers.Register());
    tovtest::AtlHost host;
    ASSERT_EQ(S_OK, host.Attach(control.Get()));
    LONG code = -1;
    control->InitControl(&code);
    EXPECT_TRUE(IsTaggedPrefix(Local(), L"@TOVHTML://")) << "InitControl overwrites the put value";
    EXPECT_EQ(L"@TOVHTML://", Global());
    EXPECT_EQ(-2, TryUse()) << "too late once the browser exists";
    host.Destroy();
}

TEST_F(ProtocolMode, PluggableProtocolSwitchesToModeTwoWhenInstalled)
{
    EXPECT_EQ(-1, TryUse()) << "not installed";
    EXPECT_EQ(L"", Local());
    {
        tovfe::PluggableProtocolInstallation failing(E_ACCESSDENIED);
        EXPECT_EQ(-2, TryUse()) << "installed but not creatable";
    }
    tovfe::PluggableProtocolInstallation installed;
    EXPECT_EQ(0, TryUse());
    EXPECT_EQ(1, installed.Created());
    EXPECT_TRUE(IsTaggedPrefix(Local(), L"tovhtmlp://"));
    EXPECT_EQ(L"tovhtmlp://", Global());
    EXPECT_EQ(S_OK, control->get_TryUseTOVHTMLP(nullptr));
}
