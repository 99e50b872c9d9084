// Form data of a TOVEVENT: unescaped, stored in the front end's data provider object under "TOVEVENT:" /
// "PostData", its length in the event and in PostDataLength; malformed shapes are survived.
#include "support/back_channel_fixture.h"

class PostData : public tovtest::BackChannelFixture {
protected:
    // The early-bound sink reached directly, for post-data shapes no dispatch call can carry.
    VARIANT_BOOL SubmitDirect(VARIANT* postData, const wchar_t* url = L"TOVEVENT:Submit")
    {
        tov::ComPtr<IWebBrowserEvents> events;
        control->QueryInterface(IID_IWebBrowserEvents, events.PutVoid());
        VARIANT_BOOL cancel = VARIANT_FALSE;
        EXPECT_EQ(S_OK, events->BeforeNavigate(tov::Bstr(url).Get(), 0, nullptr, postData, nullptr, &cancel));
        return cancel;
    }
    LONG Length() { return Property(&ITOVHTMLControl::get_PostDataLength); }
};

// The unescaping rules themselves: tests/native/unescape_test.cpp; here their path from the browser's event to
// the store, with the front end's flag and code page.
TEST_F(PostData, UnescapedStoredAndMeasuredEndToEnd)
{
    const struct {
        std::string body, stored;
        LONG uiFlag;
    } cases[] = {
        {"f1=%26%2365%3Bx", "f1=Ax", 0},
        {"a=%25&b=%41", "a=%25&b=A", 0x400000},
        {"name=M%FCller&city=K%F6ln%3F&sum=1%2B1%3D2", "name=M\xFCller&city=K\xF6ln%3F&sum=1+1%3D2", 0},
        {std::string("a=1\0b=%41\0", 10), std::string("a=1\0b=A\0", 8), 0},
        {"", "", 0},
    };
    auto* provider = GivePostDataProvider();
    auto& store = tovfe::DataStore::Instance();
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.body));
        control->put_UIFlag(c.uiFlag);
        control->put_PostDataLength(99);
        sink.events.clear();
        store.calls.clear();
        EXPECT_EQ(1, browser->SubmitForm(L"TOVEVENT:Save", c.body).cancel);
        EXPECT_EQ(c.stored, Stored(provider));
        EXPECT_EQ(static_cast<LONG>(c.stored.size()), Length());
        ASSERT_EQ(1u, BeforeNavigates().size());
        EXPECT_EQ(std::to_wstring(c.stored.size()), BeforeNavigates()[0].args[1]);
        EXPECT_EQ((std::vector<std::wstring>{L"GetDataContainer()", L"ResetContainer()", L"SetDataFromStream(TOVEVENT:, PostData)"}),
                  store.calls);
    }
}

// Without a provider object the length stays; a failing store still delivers the event with the length.
TEST_F(PostData, MissingOrFailingProviderStillDeliversTheEvent)
{
    tovtest::RecordingEventSink notAProvider;
    auto& store = tovfe::DataStore::Instance();
    control->put_PostData(&notAProvider);
    control->put_PostDataLength(77);
    EXPECT_EQ(1, browser->SubmitForm(L"TOVEVENT:Save", "x=1").cancel);
    EXPECT_TRUE(Length() == 77 && BeforeNavigates().at(0).args[1] == L"77" && store.calls.empty());

    for (const wchar_t* failing : {L"ResetContainer", L"SetDataFromStream"}) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(failing)));
        auto* provider = GivePostDataProvider();
        store.failures.clear();
        store.failures[failing] = E_FAIL;
        sink.events.clear();
        EXPECT_EQ(1, browser->SubmitForm(L"TOVEVENT:Save", "k=v+w").cancel);
        EXPECT_EQ(L"5", BeforeNavigates().at(0).args[1]);
        EXPECT_EQ(std::wstring(failing) == L"SetDataFromStream" ? "<nothing>" : "k=v w", Stored(provider));
    }
    store.failures.clear();
}

TEST_F(PostData, ModifiedIsReportedOnceWhileRecordingScripts)
{
    GivePostDataProvider();
    browser->SubmitForm(L"TOVEVENT:Save", "x=1");
    EXPECT_EQ(0, Property(&ITOVHTMLControl::get_PostDataModified));
    control->put_ScriptRecording(1);
    browser->SubmitForm(L"TOVEVENT:Save", "x=1");
    EXPECT_EQ(1, Property(&ITOVHTMLControl::get_PostDataModified));
    EXPECT_EQ(0, Property(&ITOVHTMLControl::get_PostDataModified)) << "reading it resets it";
}

TEST_F(PostData, BadInputIsSurvived)
{
    auto* provider = GivePostDataProvider();
    VARIANT lying{}; // a borrowed shape that owns nothing
    char small[4] = {'a', '=', '1', 0};
    SAFEARRAY claimsTooMuch{};
    claimsTooMuch.cDims = 1;
    claimsTooMuch.cbElements = 16;
    claimsTooMuch.pvData = small;
    claimsTooMuch.rgsabound[0].cElements = 0x40000000; // 16 GiB
    lying.vt = VT_ARRAY | VT_UI1;
    lying.parray = &claimsTooMuch;
    control->put_PostDataLength(5);
    EXPECT_EQ(1, SubmitDirect(&lying));
    EXPECT_EQ(0, Length());
    EXPECT_EQ("", Stored(provider));
    EXPECT_EQ(0, SubmitDirect(nullptr, nullptr)) << "a null URL is no event";

    sink.events.clear();
    const std::wstring huge = L"TOVEVENT:" + std::wstring(1u << 20, L'x');
    EXPECT_EQ(1, browser->ClickLink(huge).cancel);
    EXPECT_EQ(static_cast<LONG>(huge.size()), Property(&ITOVHTMLControl::get_URLLength));

    sink.events.clear();
    EXPECT_EQ(1, browser->ClickLink(L"TOVEVENT:a\xD800" L"b\xDC00").cancel) << "unpaired surrogates";
    EXPECT_EQ(1u, BeforeNavigates().size());
}
