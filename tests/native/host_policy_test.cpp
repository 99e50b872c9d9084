// The host's URL-action policy for the control's own schemes. (The one key the control wants is asked of
// its window by the control tests.)
#include <gtest/gtest.h>
#include "hosting/host_policy.h"

using namespace tov::host;

TEST(HostPolicy, OwnSchemesGetTheControlsDecisionsOtherUrlsAreLeftToThePlatform)
{
    using enum UrlActionAnswer;
    const struct { const wchar_t* url; uint32_t action; UrlActionAnswer answer; } cases[] = {
        {L"TOVEVENT:submit", 0x1400, Allow}, {L"tovhtmlp://1a/page.htm", 0x1401, Query}, {L"MK:@TOVHTML://x", 0x1401, Query},
        {L"tovevent:x", 0x1405, Default}, {L"tovevent:x", 0x1208, Default}, {L"tovevent:x", 0x1203, Default},
        {L"tovhtmlpx", 0x2100, Allow}, // eight characters are compared
        {L"tovevent", 0x1400, Allow},  // the bare scheme name is the control's
        {L"https://example.invalid/", 0x1400, Default}, {L"tovev", 0x1400, Default}, {L"", 0x1400, Default},
        {L"mk:@tovhtm", 0x1400, Default},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.answer, DecideUrlAction(c.url, c.action)) << std::wstring(c.url) << " " << std::hex << c.action;
}
