// Form data of a TOVEVENT: unescaped, stored in the front end's data provider object under "TOVEVENT:" /
// "PostData", its length in the event and in PostDataLength; every malformed shape is survived.
#include "support/back_channel_fixture.h"

class PostData : public tovtest::BackChannelFixture {
protected:
    // The early-bound sink reached directly, for post-data shapes no dispatch call can carry.
    VARIANT_BOOL SubmitDirect(VARIANT* postData)
    {
        tov::ComPtr<IWebBrowserEvents> events;
        control->QueryInterface(IID_IWebBrowserEvents, events.PutVoid());
        VARIANT_BOOL cancel = VARIANT_FALSE;
        events->BeforeNavigate(tov::Bstr(L"TOVEVENT:Submit").Get(), 0, nullptr, postData, nullptr, &cancel);
        return cancel;
    }
    LONG Length() { return Property(&ITOVHTMLControl::get_PostDataLength); }
};

TEST_F(PostData, EndToEndForEveryUnescapingRule)
{
    const struct {
        std::string body, stored;
        LONG uiFlag;
    } cases[] = {
        {"f1=%26%2365%3Bx", "f1=Ax", 0},
        {"f1=&#66;", "f1=&#66;", 0},
        {"f1=+&#66;", "f1= B", 0},
        {"&#66;x", "Bx", 0},
        {"&#65;b%3Bc", "Ac", 0},
        {"%26%2365%3B%26%2366%3B", "AB", 0},
        {"a=%25", "a=%", 0},
        {"a=%25&b=%41", "a=%25&b=A", 0x400000},
        {"a=%4", "a=", 0},
        {"name=M%FCller&city=K%F6ln%3F&sum=1%2B1%3D2", "name=M\xFCller&city=K\xF6ln%3F&sum=1+1%3D2", 0},
        {"f=+&#12354;", "f=  ", 0},
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

TEST_F(PostData, WithoutAProviderObjectNothingIsStoredAndTheLengthStays)
{
    tovtest::RecordingEventSink notAProvider;
    for (IDispatch* object : {static_cast<IDispatch*>(&notAProvider), static_cast<IDispatch*>(nullptr)}) {
        control->put_PostData(object);
        control->put_PostDataLength(77);
        sink.events.clear();
        EXPECT_EQ(1, browser->SubmitForm(L"TOVEVENT:Save", "x=1").cancel);
        EXPECT_EQ(77, Length());
        EXPECT_EQ(L"77", BeforeNavigates().at(0).args[1]);
    }
    EXPECT_TRUE(tovfe::DataStore::Instance().calls.empty());
}

TEST_F(PostData, FailingContainerOrStoreStillDeliversTheEvent)
{
    auto& store = tovfe::DataStore::Instance();
    for (const wchar_t* failing : {L"GetDataContainer", L"ResetContainer", L"SetDataFromStream"}) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(failing)));
        auto* provider = GivePostDataProvider();
        store.failures.clear();
        store.failures[failing] = E_FAIL;
        sink.events.clear();
        EXPECT_EQ(1, browser->SubmitForm(L"TOVEVENT:Save", "k=v+w").cancel);
        ASSERT_EQ(1u, BeforeNavigates().size());
        EXPECT_EQ(L"5", BeforeNavigates()[0].args[1]);
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
    EXPECT_EQ(0, Property(&ITOVHTMLControl::get_PostDataModified));
    browser->ClickLink(L"http://x/");
    EXPECT_EQ(0, Property(&ITOVHTMLControl::get_PostDataModified)) << "only a TOVEVENT sets it";
}

TEST_F(PostData, SizesContentsAndTimingAreTracedAtLevelTwo)
{
    GivePostDataProvider();
    Connect(2);
    ClearLines();
    browser->SubmitForm(L"TOVEVENT:Save", "a=%41+b");
    const auto lines = Lines();
    const auto at = std::find(lines.begin(), lines.end(), "Size of Postdata before Transformation: 7");
    ASSERT_LT(6, lines.end() - at);
    EXPECT_EQ((std::vector<std::string>{"Size of Postdata before Transformation: 7", "Postdata before Transformation", "a=%41+b",
                                        "Size of Postdata after Transformation: 5", "Postdata after Transformation", "a=A b"}),
              std::vector<std::string>(at, at + 6));
    EXPECT_TRUE(at[6].starts_with("Used time for postdata transformation: ") && at[6].ends_with(" ms.")) << at[6];
}

// One-dimensional arrays of any element size, also behind references, are read as element count x size bytes.
TEST_F(PostData, ArraysOfAnyElementSizeAndThroughReferencesAreRead)
{
    auto* provider = GivePostDataProvider();
    tov::Variant longs;
    longs.vt = VT_ARRAY | VT_I4;
    longs.parray = SafeArrayCreateVector(VT_I4, 0, 3);
    memcpy(longs.parray->pvData, "k=%41+v=1234", 12);
    EXPECT_EQ(1, SubmitDirect(&longs));
    EXPECT_EQ("k=A v=1234", Stored(provider));

    VARIANT byRefArray{}, outer{};
    byRefArray.vt = VT_BYREF | VT_ARRAY | VT_I4;
    byRefArray.pparray = &longs.parray;
    outer.vt = VT_BYREF | VT_VARIANT;
    outer.pvarVal = &byRefArray;
    memcpy(longs.parray->pvData, "ab=%41xyz   ", 12);
    EXPECT_EQ(1, SubmitDirect(&outer));
    EXPECT_EQ("ab=Axyz   ", Stored(provider));
}

TEST_F(PostData, EveryWrongShapeCountsAsNoArray)
{
    auto* provider = GivePostDataProvider();
    tov::Variant empty, text, twoDims;
    text.vt = VT_BSTR;
    text.bstrVal = SysAllocString(L"a=1");
    SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
    twoDims.vt = VT_ARRAY | VT_UI1;
    twoDims.parray = SafeArrayCreate(VT_UI1, 2, bounds);
    // Borrowed shapes that own nothing.
    VARIANT nullArray{}, nullArrayRef{}, selfRef{}, lying{};
    nullArray.vt = VT_ARRAY | VT_UI1;
    nullArrayRef.vt = VT_BYREF | VT_ARRAY | VT_UI1;
    selfRef.vt = VT_BYREF | VT_VARIANT; // a reference chain that never ends
    selfRef.pvarVal = &selfRef;
    char small[4] = {'a', '=', '1', 0};
    SAFEARRAY claimsTooMuch{};
    claimsTooMuch.cDims = 1;
    claimsTooMuch.cbElements = 16;
    claimsTooMuch.pvData = small;
    claimsTooMuch.rgsabound[0].cElements = 0x40000000; // 16 GiB
    lying.vt = VT_ARRAY | VT_UI1;
    lying.parray = &claimsTooMuch;
    for (VARIANT* shape : {empty.Ptr(), text.Ptr(), twoDims.Ptr(), &nullArray, &nullArrayRef, &selfRef, &lying,
                           static_cast<VARIANT*>(nullptr)}) {
        control->put_PostDataLength(5);
        EXPECT_EQ(1, SubmitDirect(shape));
        EXPECT_EQ(0, Length());
        EXPECT_EQ("", Stored(provider));
    }
}

TEST_F(PostData, NullStringsAndNullCancelAreSurvived)
{
    tov::ComPtr<IWebBrowserEvents> events;
    ASSERT_EQ(S_OK, control->QueryInterface(IID_IWebBrowserEvents, events.PutVoid()));
    VARIANT_BOOL cancel = 7;
    EXPECT_EQ(S_OK, events->BeforeNavigate(nullptr, 0, nullptr, nullptr, nullptr, &cancel));
    EXPECT_EQ(0, cancel);
    tov::Bstr url(L"TOVEVENT:NoCancel");
    events->BeforeNavigate(url.Get(), 0, nullptr, nullptr, nullptr, nullptr);
    events->FrameBeforeNavigate(url.Get(), 0, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(2u, BeforeNavigates().size());
    EXPECT_EQ(L"<null>", BeforeNavigates()[0].args[0]);
    EXPECT_EQ(L"", Property(&ITOVHTMLControl::get_TargetFrame)) << "a null frame name reads as empty";
    EXPECT_EQ(L"", Property(&ITOVHTMLControl::get_Headers));
}

TEST_F(PostData, HugeFormsAndUrlsAndUnpairedSurrogates)
{
    auto* provider = GivePostDataProvider();
    std::string body;
    while (body.size() < (8u << 20)) body += "field=value+with%20escapes&";
    browser->SubmitForm(L"TOVEVENT:Big", body);
    const std::string stored = Stored(provider);
    EXPECT_EQ(body.size() / 27 * 25, stored.size());
    EXPECT_EQ(static_cast<LONG>(stored.size()), Length());
    EXPECT_EQ("field=value with escapes&", stored.substr(0, 25));

    sink.events.clear();
    std::wstring huge = L"TOVEVENT:" + std::wstring(1u << 20, L'x');
    EXPECT_EQ(1, browser->ClickLink(huge).cancel);
    EXPECT_EQ(static_cast<LONG>(huge.size()), Property(&ITOVHTMLControl::get_URLLength));
    EXPECT_EQ(huge.substr(0, 2040), JoinedUrl(BeforeNavigates().at(0)));
    sink.events.clear();
    EXPECT_EQ(1, browser->ClickLink(std::wstring(L"TOVEVENT:a\xD800") + L"b\xDC00").cancel);
    ASSERT_EQ(1u, BeforeNavigates().size());
    EXPECT_EQ(0u, JoinedUrl(BeforeNavigates()[0]).rfind(L"TOVEVENT:a", 0));
}
