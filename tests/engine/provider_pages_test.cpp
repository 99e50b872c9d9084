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

} // namespace
} // namespace tovtest
