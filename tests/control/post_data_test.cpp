// Form data of a TOVEVENT: unescaped, stored in the front end's data provider object under "TOVEVENT:" /
// "PostData", its length in the event and in PostDataLength; every malformed shape is survived.
#include "support/back_channel_fixture.h"

using tovtest::BackChannelFixture;

namespace {

tov::Variant Bytes(const std::string& bytes, VARTYPE type = VT_UI1)
{
    tov::Variant v;
    v.vt = VT_ARRAY | type;
    v.parray = SafeArrayCreateVector(type, 0, static_cast<ULONG>(bytes.size()));
    if (v.parray && !bytes.empty()) memcpy(v.parray->pvData, bytes.data(), bytes.size());
    return v;
}

} // namespace

class PostData : public BackChannelFixture {
protected:
    // The early-bound sink as the browser's dispatch reaches it, for shapes no dispatch call can carry.
    tov::ComPtr<IWebBrowserEvents> Sink()
    {
        tov::ComPtr<IWebBrowserEvents> events;
        control->QueryInterface(IID_IWebBrowserEvents, events.PutVoid());
        return events;
    }
    VARIANT_BOOL SubmitDirect(VARIANT* postData, const wchar_t* url = L"TOVEVENT:Submit")
    {
        tov::Bstr u(url);
        VARIANT_BOOL cancel = VARIANT_FALSE;
        Sink()->BeforeNavigate(u.Get(), 0, nullptr, postData, nullptr, &cancel);
        return cancel;
    }
};

TEST_F(PostData, EndToEndForEveryUnescapingRule)
{
    const struct {
        const char* body;
        const char* stored;
    } cases[] = {
        {"f1=%26%2365%3Bx", "f1=Ax"},
        {"f1=&#66;", "f1=&#66;"},
        {"f1=+&#66;", "f1= B"},
        {"&#66;x", "Bx"},
        {"&#65;b%3Bc", "Ac"},
        {"%26%2365%3B%26%2366%3B", "AB"},
        {"a=%25", "a=%"},
        {"a=%4", "a="},
        {"name=M%FCller&city=K%F6ln%3F&sum=1%2B1%3D2", "name=M\xFCller&city=K\xF6ln%3F&sum=1+1%3D2"},
        {"f=+&#12354;", "f=  "},
    };
    auto* provider = GivePostDataProvider();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.body);
        sink.events.clear();
        EXPECT_EQ(1, browser->SubmitForm(L"TOVEVENT:Save", c.body).cancel);
        EXPECT_EQ(c.stored, Stored(provider));
        const LONG length = static_cast<LONG>(strlen(c.stored));
        EXPECT_EQ(length, Property(&ITOVHTMLControl::get_PostDataLength));
        ASSERT_EQ(1u, BeforeNavigates().size());
        EXPECT_EQ(std::to_wstring(length), BeforeNavigates()[0].args[1]);
    }
    EXPECT_EQ(static_cast<int>(std::size(cases)), provider->resets) << "the container is reset before each event";
}

TEST_F(PostData, PercentEscapeKeptWithTheUIFlagBit)
{
    auto* provider = GivePostDataProvider();
    control->put_UIFlag(0x400000);
    browser->SubmitForm(L"TOVEVENT:Save", "a=%25&b=%41");
    EXPECT_EQ("a=%25&b=A", Stored(provider));
}

TEST_F(PostData, ProviderCallsInOrder)
{
    GivePostDataProvider();
    browser->SubmitForm(L"TOVEVENT:Save", "x=1");
    EXPECT_EQ((std::vector<std::wstring>{L"GetDataContainer()", L"ResetContainer()", L"SetDataFromStream(TOVEVENT:, PostData)"}),
              tovfe::DataStore::Instance().calls);
}

TEST_F(PostData, ZeroBytesInsideTheDataAreKept)
{
    auto* provider = GivePostDataProvider();
    const std::string body("a=1\0b=%41\0", 10);
    browser->SubmitForm(L"TOVEVENT:Save", body);
    EXPECT_EQ(std::string("a=1\0b=A\0", 8), Stored(provider));
    EXPECT_EQ(8, Property(&ITOVHTMLControl::get_PostDataLength));
}

TEST_F(PostData, EmptyFormStoresAnEmptyStream)
{
    auto* provider = GivePostDataProvider();
    control->put_PostDataLength(99);
    browser->SubmitForm(L"TOVEVENT:Save", "");
    EXPECT_EQ("", Stored(provider));
    EXPECT_EQ(0, Property(&ITOVHTMLControl::get_PostDataLength));
    EXPECT_EQ(L"0", BeforeNavigates().at(0).args[1]);
}

TEST_F(PostData, WithoutProviderInterfaceNothingIsStoredAndTheLengthStays)
{
    tovtest::RecordingEventSink notAProvider;
    control->put_PostData(&notAProvider);
    control->put_PostDataLength(77);
    EXPECT_EQ(1, browser->SubmitForm(L"TOVEVENT:Save", "x=1").cancel);
    EXPECT_EQ(77, Property(&ITOVHTMLControl::get_PostDataLength));
    EXPECT_EQ(L"77", BeforeNavigates().at(0).args[1]);
    EXPECT_TRUE(tovfe::DataStore::Instance().calls.empty());
    control->put_PostData(nullptr);

    // No object at all: the same.
    sink.events.clear();
    EXPECT_EQ(1, browser->SubmitForm(L"TOVEVENT:Save", "x=1").cancel);
    EXPECT_EQ(L"77", BeforeNavigates().at(0).args[1]);
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

TEST_F(PostData, TracesSizesAndTimingAtLevelTwo)
{
    GivePostDataProvider();
    Connect(2);
    ClearLines();
    browser->SubmitForm(L"TOVEVENT:Save", "a=%41+b");
    const auto lines = Lines();
    auto at = [&](const std::string& text) { return std::find(lines.begin(), lines.end(), text) - lines.begin(); };
    const auto before = at("Size of Postdata before Transformation: 7");
    ASSERT_LT(before + 5, static_cast<long>(lines.size()));
    EXPECT_EQ("Postdata before Transformation", lines[before + 1]);
    EXPECT_EQ("a=%41+b", lines[before + 2]);
    EXPECT_EQ("Size of Postdata after Transformation: 5", lines[before + 3]);
    EXPECT_EQ("Postdata after Transformation", lines[before + 4]);
    EXPECT_EQ("a=A b", lines[before + 5]);
    ASSERT_LT(before + 6, static_cast<long>(lines.size()));
    EXPECT_EQ(0u, lines[before + 6].rfind("Used time for postdata transformation: ", 0));
    EXPECT_EQ(" ms.", lines[before + 6].substr(lines[before + 6].size() - 4));
}

TEST_F(PostData, EveryWrongShapeCountsAsNoArray)
{
    auto* provider = GivePostDataProvider();
    tov::Variant empty;
    tov::Variant text;
    text.vt = VT_BSTR;
    text.bstrVal = SysAllocString(L"a=1");
    tov::Variant number = tov::Variant::I4(0x41414141);
    VARIANT nullArray;
    VariantInit(&nullArray);
    nullArray.vt = VT_ARRAY | VT_UI1;
    nullArray.parray = nullptr;
    VARIANT nullArrayRef;
    VariantInit(&nullArrayRef);
    nullArrayRef.vt = VT_BYREF | VT_ARRAY | VT_UI1;
    nullArrayRef.pparray = nullptr;
    SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
    tov::Variant twoDims;
    twoDims.vt = VT_ARRAY | VT_UI1;
    twoDims.parray = SafeArrayCreate(VT_UI1, 2, bounds);
    VARIANT selfRef; // a reference chain that never ends
    selfRef.vt = VT_BYREF | VT_VARIANT;
    selfRef.pvarVal = &selfRef;

    for (VARIANT* shape : {static_cast<VARIANT*>(&empty), static_cast<VARIANT*>(&text), static_cast<VARIANT*>(&number),
                           &nullArray, &nullArrayRef, static_cast<VARIANT*>(&twoDims), &selfRef, static_cast<VARIANT*>(nullptr)}) {
        control->put_PostDataLength(5);
        EXPECT_EQ(1, SubmitDirect(shape));
        EXPECT_EQ(0, Property(&ITOVHTMLControl::get_PostDataLength));
        EXPECT_EQ("", Stored(provider));
    }
}

TEST_F(PostData, ArraysOfAnyElementTypeAndThroughReferencesAreRead)
{
    auto* provider = GivePostDataProvider();
    tov::Variant words = Bytes(std::string("ab=%41xyz  "), VT_UI1);
    // Four-byte elements: three of them are twelve bytes of data.
    tov::Variant longs;
    longs.vt = VT_ARRAY | VT_I4;
    longs.parray = SafeArrayCreateVector(VT_I4, 0, 3);
    memcpy(longs.parray->pvData, "k=%41+v=1234", 12);
    EXPECT_EQ(1, SubmitDirect(&longs));
    EXPECT_EQ("k=A v=1234", Stored(provider));

    VARIANT byRefArray;
    VariantInit(&byRefArray);
    byRefArray.vt = VT_BYREF | VT_ARRAY | VT_UI1;
    byRefArray.pparray = &words.parray;
    VARIANT outer;
    outer.vt = VT_BYREF | VT_VARIANT;
    outer.pvarVal = &byRefArray;
    EXPECT_EQ(1, SubmitDirect(&outer));
    EXPECT_EQ("ab=Axyz  ", Stored(provider));
}

TEST_F(PostData, AnArrayClaimingMoreThanFitsIsNotRead)
{
    auto* provider = GivePostDataProvider();
    char small[4] = {'a', '=', '1', 0};
    SAFEARRAY lying{};
    lying.cDims = 1;
    lying.cbElements = 16;
    lying.pvData = small;
    lying.rgsabound[0].cElements = 0x40000000; // 16 GiB claimed
    VARIANT v;
    v.vt = VT_ARRAY | VT_UI1;
    v.parray = &lying;
    EXPECT_EQ(1, SubmitDirect(&v));
    EXPECT_EQ(0, Property(&ITOVHTMLControl::get_PostDataLength));
    EXPECT_EQ("", Stored(provider));
}

TEST_F(PostData, LargeFormIsStoredWhole)
{
    auto* provider = GivePostDataProvider();
    std::string body;
    while (body.size() < (8u << 20)) body += "field=value+with%20escapes&";
    browser->SubmitForm(L"TOVEVENT:Big", body);
    const std::string stored = Stored(provider);
    EXPECT_EQ(static_cast<LONG>(stored.size()), Property(&ITOVHTMLControl::get_PostDataLength));
    EXPECT_EQ(body.size() / 27 * 25, stored.size());
    EXPECT_EQ("field=value with escapes&", stored.substr(0, 25));
}

TEST_F(PostData, NullStringsAndNullCancelAreSurvived)
{
    VARIANT_BOOL cancel = 7;
    EXPECT_EQ(S_OK, Sink()->BeforeNavigate(nullptr, 0, nullptr, nullptr, nullptr, &cancel));
    EXPECT_EQ(0, cancel);
    tov::Bstr url(L"TOVEVENT:NoCancel");
    Sink()->BeforeNavigate(url.Get(), 0, nullptr, nullptr, nullptr, nullptr);
    Sink()->FrameBeforeNavigate(url.Get(), 0, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(2u, BeforeNavigates().size());
    EXPECT_EQ(L"<null>", BeforeNavigates()[0].args[0]);
    EXPECT_EQ(L"", Property(&ITOVHTMLControl::get_TargetFrame)) << "a null frame name reads as empty";
    EXPECT_EQ(L"", Property(&ITOVHTMLControl::get_Headers));
}

TEST_F(PostData, HugeUrlsAndUnpairedSurrogatesAreSurvived)
{
    std::wstring huge = L"TOVEVENT:";
    huge.append(1u << 20, L'x');
    EXPECT_EQ(1, browser->ClickLink(huge).cancel);
    EXPECT_EQ(static_cast<LONG>(huge.size()), Property(&ITOVHTMLControl::get_URLLength));
    EXPECT_EQ(huge.substr(0, 2040), JoinedUrl(BeforeNavigates().at(0)));

    sink.events.clear();
    EXPECT_EQ(1, browser->ClickLink(std::wstring(L"TOVEVENT:a\xD800") + L"b\xDC00").cancel);
    ASSERT_EQ(1u, BeforeNavigates().size());
    EXPECT_EQ(0u, JoinedUrl(BeforeNavigates()[0]).rfind(L"TOVEVENT:a", 0));
}
