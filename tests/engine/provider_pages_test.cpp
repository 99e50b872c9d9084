// Provider data shown through the engine: the page comes through the front end's handler, its HTML and
// charset read back, completion reported; non-HTML data through the temporary file.
#include "engine/engine_fixture.h"

namespace tovtest {
namespace {

class ProviderPages : public EngineFixture {};

TEST_F(ProviderPages, HtmlComesThroughTheFrontEndsHandlerAndReadsBack)
{
    PutPage(L"page.htm",
            "<html><head><meta charset=\"windows-1252\"><title>Order</title></head>"
            "<body><p id=\"who\">M\xFCller & S\xF6hne</p></body></html>");
    ShowPage(L"page.htm");

    const auto completes = Events(2);
    ASSERT_EQ(1u, completes.size());
    EXPECT_EQ(L"mk:" + Property(&ITOVHTMLControl::get_URLPrefixLocal) + L"page.htm", completes[0].args.at(0));
    EXPECT_NE(std::wstring::npos, Html().find(L"<p id=\"who\">M\u00fcller &amp; S\u00f6hne</p>")) << Html();
    EXPECT_EQ(L"windows-1252", Charset());
    EXPECT_GT(tovfe::ProviderProtocolRegistration::Requests(), 0) << "the engine asked the front end's handler";
}

TEST_F(ProviderPages, ThePluggableProtocolModeAndGlobalDataComeThroughTheHandlerToo)
{
    ASSERT_EQ(S_OK, control->put_NavigationStyle(tov::Bstr(L"A").Get())); // provider URLs as "tovhtmlp:"
    PutPage(L"mode2.htm", "<html><body><p>through tovhtmlp</p></body></html>");
    ShowPage(L"mode2.htm");
    EXPECT_EQ(Property(&ITOVHTMLControl::get_URLPrefixLocal) + L"mode2.htm", Events(2).at(0).args.at(0));
    EXPECT_EQ(0u, Events(2).at(0).args.at(0).rfind(L"tovhtmlp://", 0));
    EXPECT_NE(std::wstring::npos, Html().find(L"through tovhtmlp"));

    // Global data: the control learns its kind under the local prefix and navigates to the global one.
    const std::string global = "<html><body>global</body></html>";
    PutPage(L"global.htm", global);
    tovfe::DataStore::Instance().Put(L"tovhtmlp://global.htm", global, L"html");
    events.events.clear();
    ASSERT_EQ(0, ShowData(L"global.htm", 0));
    ASSERT_TRUE(WaitFor([&] { return !Events(2).empty() && DocumentComplete() == 1; }));
    EXPECT_EQ(L"tovhtmlp://global.htm", Events(2).at(0).args.at(0));
    tov::Bstr url;
    ASSERT_EQ(S_OK, control->GetCurrentURL(url.Put()));
    EXPECT_EQ(L"tovhtmlp://global.htm", std::wstring(url.View()));
}

TEST_F(ProviderPages, DataTheProviderDoesNotHoldFailsAsTheControlSays)
{
    events.events.clear();
    EXPECT_EQ(5, ShowData(L"missing.htm")) << "no subtype: the browser-refused code";
    EXPECT_TRUE(WaitFor([&] { return Html() == L"<html><head></head><body></body></html>"; })) << "the blank page";
    EXPECT_TRUE(Events(2).empty()) << "an internal page is not reported";
}

} // namespace
} // namespace tovtest
