// URL prefixes of the two protocol modes and the switch to the pluggable protocol.
#include "support/atl_host.h"
#include "support/control_fixture.h"
#include "frontend/pluggable_protocol_standin.h"
#include "frontend/scripted_browser.h"
#include "framework/bstr.h"

using tov::Bstr;
using tovtest::ControlFixture;

namespace {

std::wstring LocalPrefix(ITOVHTMLControl* c)
{
    Bstr b;
    c->get_URLPrefixLocal(b.Put());
    return std::wstring(b.View());
}

std::wstring GlobalPrefix(ITOVHTMLControl* c)
{
    Bstr b;
    c->get_URLPrefixGlobal(b.Put());
    return std::wstring(b.View());
}

// The instance tag is the control's address; the prefixes carry it between "//" and the last "/".
bool IsTaggedPrefix(const std::wstring& prefix, const std::wstring& base)
{
    if (prefix.rfind(base, 0) != 0 || prefix.back() != L'/') return false;
    const std::wstring tag = prefix.substr(base.size(), prefix.size() - base.size() - 1);
    return !tag.empty() && tag.size() <= 8 && tag.find_first_not_of(L"0123456789abcdef") == std::wstring::npos &&
           tag[0] != L'0';
}

} // namespace

using ProtocolMode = ControlFixture;

TEST_F(ProtocolMode, PrefixesAreEmptyUntilInitControlSetsModeOne)
{
    EXPECT_EQ(L"", LocalPrefix(control.Get()));
    EXPECT_EQ(L"", GlobalPrefix(control.Get()));
    Bstr mine(L"custom://x/");
    EXPECT_EQ(S_OK, control->put_URLPrefixLocal(mine.Get()));
    EXPECT_EQ(L"custom://x/", LocalPrefix(control.Get()));
    EXPECT_EQ(S_OK, control->put_URLPrefixGlobal(nullptr));
    EXPECT_EQ(L"", GlobalPrefix(control.Get())) << "null stays null and reads as empty";

    tovfe::ScriptedBrowserClass browsers;
    ASSERT_EQ(S_OK, browsers.Register());
    tovtest::AtlHost host;
    ASSERT_EQ(S_OK, host.Attach(control.Get()));
    LONG code = -1;
    control->InitControl(&code);
    EXPECT_TRUE(IsTaggedPrefix(LocalPrefix(control.Get()), L"@TOVHTML://")) << "InitControl overwrites the put value";
    EXPECT_EQ(L"@TOVHTML://", GlobalPrefix(control.Get()));
    LONG result = 7;
    EXPECT_EQ(S_OK, control->get_TryUseTOVHTMLP(&result));
    EXPECT_EQ(-2, result) << "too late once the browser exists";
    host.Destroy();
    browsers.Revoke();
}

TEST_F(ProtocolMode, PluggableProtocolSwitchesToModeTwoWhenInstalled)
{
    LONG result = 7;
    EXPECT_EQ(S_OK, control->get_TryUseTOVHTMLP(&result));
    EXPECT_EQ(-1, result) << "not installed";
    EXPECT_EQ(L"", LocalPrefix(control.Get()));

    {
        tovfe::PluggableProtocolInstallation failing(E_ACCESSDENIED);
        EXPECT_EQ(S_OK, control->get_TryUseTOVHTMLP(&result));
        EXPECT_EQ(-2, result) << "installed but not creatable";
    }
    tovfe::PluggableProtocolInstallation installed;
    EXPECT_EQ(S_OK, control->get_TryUseTOVHTMLP(&result));
    EXPECT_EQ(0, result);
    EXPECT_EQ(1, installed.Created());
    EXPECT_TRUE(IsTaggedPrefix(LocalPrefix(control.Get()), L"tovhtmlp://"));
    EXPECT_EQ(L"tovhtmlp://", GlobalPrefix(control.Get()));
    EXPECT_EQ(S_OK, control->get_TryUseTOVHTMLP(nullptr));
}

TEST_F(ProtocolMode, PrefixAccessorsTrace)
{
    Connect(1);
    Bstr b;
    control->get_URLPrefixLocal(b.Put());
    control->put_URLPrefixLocal(b.Get());
    control->get_URLPrefixGlobal(b.Put());
    control->put_URLPrefixGlobal(b.Get());
    EXPECT_EQ((std::vector<std::string>{"=> get_URLPrefixLocal", "<= get_URLPrefixLocal", "=> put_URLPrefixLocal",
                                        "<= put_URLPrefixLocal", "=> get_URLPrefixGlobal", "<= get_URLPrefixGlobal",
                                        "=> put_URLPrefixGlobal", "<= put_URLPrefixGlobal"}),
              Lines());
    EXPECT_EQ(E_POINTER, control->get_URLPrefixLocal(nullptr));
}
