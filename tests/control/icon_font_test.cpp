// Icon-font requests: the reply to an XML request read with the platform's parser, the descriptions from
// the front end's icon-font service, the failure answers and their trace texts, and requests built to hurt.
#include <windows.h>
#include <msxml2.h>
#include <algorithm>
#include <fstream>
#include <string>
#include <vector>
#include "support/control_fixture.h"
#include "frontend/class_registration.h"
#include "frontend/gui_service_standin.h"
#include "framework/bstr.h"
#include "framework/variant.h"

using tov::Bstr;
using tov::ComPtr;

namespace {

constexpr CLSID kDOMDocumentClass = {0x2933bf90, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};
constexpr IID kDOMDocumentIid = {0x2933bf81, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};
constexpr DISPID kLoadIconFontDispId = 47;

struct Reply {
    HRESULT hr = E_UNEXPECTED;
    std::wstring text;
    bool isNull = true;
};

std::wstring Icon(const std::wstring& name, const std::wstring& size, const std::wstring& description)
{
    return L"<Icon><Icon_Name>" + name + L"</Icon_Name><Font_Size>" + size + L"</Font_Size>" + description + L"</Icon>";
}

// A class object whose every instance fails to be made.
class FailingFactory : public IClassFactory {
public:
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override
    {
        if (!ppv) return E_POINTER;
        *ppv = (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IClassFactory)) ? this : nullptr;
        return *ppv ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP CreateInstance(IUnknown*, REFIID, void** ppv) override
    {
        if (ppv) *ppv = nullptr;
        ++attempts;
        return E_OUTOFMEMORY;
    }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }
    int attempts = 0;
};

// The platform's DOM document class through a class object that keeps every document it made, so that a
// test can read the settings the control gave the parser.
class KeepingFactory : public IClassFactory {
public:
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override
    {
        if (!ppv) return E_POINTER;
        *ppv = (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IClassFactory)) ? this : nullptr;
        return *ppv ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID riid, void** ppv) override
    {
        const HRESULT hr = platform->CreateInstance(outer, riid, ppv);
        if (SUCCEEDED(hr)) made.emplace_back(static_cast<IUnknown*>(*ppv));
        return hr;
    }
    STDMETHODIMP LockServer(BOOL lock) override { return platform->LockServer(lock); }

    ComPtr<IClassFactory> platform;
    std::vector<ComPtr<IUnknown>> made;
};

} // namespace

class IconFonts : public tovtest::ControlFixture {
protected:
    void SetUp() override
    {
        ControlFixture::SetUp();
        services = tovfe::AddGUIServices(*container.Get());
        services.gui->IconFonts().descriptions[L"S1"] = L"<Desc font=\"TOV Icons\" glyph=\"&#xE001;\"/>";
        services.gui->IconFonts().descriptions[L"S2"] = L"<Desc glyph=\"2\"/>";
        Connect(2);
        ClearLines();
    }

    Reply Load(const wchar_t* request) { return Load(request ? Bstr(request) : Bstr()); }
    Reply Load(const std::wstring& request) { return Load(Bstr(request)); }
    Reply Load(const Bstr& request)
    {
        Reply r;
        BSTR out = reinterpret_cast<BSTR>(1);
        r.hr = control->LoadIconFont(request.Get(), &out);
        r.isNull = out == nullptr;
        r.text = Bstr::Adopt(out).View();
        return r;
    }
    std::vector<std::wstring> ServiceCalls() const { return services.gui->Log().Texts(); }
    bool Traced(const std::string& line) const
    {
        const auto lines = Lines();
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }

    tovfe::GUIServices services;
};

TEST_F(IconFonts, TheRequestOfOneIconIsAnsweredByteForByte)
{
    const Reply r = Load(L"<Icons><Icon><Icon_Name>S1</Icon_Name><Font_Size>12</Font_Size></Icon></Icons>");
    EXPECT_EQ(S_OK, r.hr);
    EXPECT_EQ(L"<Icons><Icon><Icon_Name>S1</Icon_Name><Font_Size>12</Font_Size>"
              L"<Desc font=\"TOV Icons\" glyph=\"&#xE001;\"/></Icon></Icons>",
              r.text);
    EXPECT_EQ((std::vector<std::wstring>{L"GetIconFontService()", L"GetIconFontDescByName(S1)"}), ServiceCalls());
    EXPECT_EQ((std::vector<std::string>{"=> ParseXMLIconRequest", "==> getGUIIconResource", "<== getGUIIconResource",
                                        "<= ParseXMLIconRequest"}),
              Lines());
}

TEST_F(IconFonts, ChildrenMatchInAnyCaseTheLastOneWinsAndOthersAreIgnored)
{
    const Reply r = Load(L"<Icons><Icon><ICON_NAME>S2</ICON_NAME><font_size>9</font_size><Colour>red</Colour>"
                         L"<icon_NAME>S1</icon_NAME><FONT_size>14</FONT_size></Icon></Icons>");
    EXPECT_EQ(S_OK, r.hr);
    EXPECT_EQ(L"<Icons>" + Icon(L"S1", L"14", L"<Desc font=\"TOV Icons\" glyph=\"&#xE001;\"/>") + L"</Icons>", r.text);
    EXPECT_EQ((std::vector<std::wstring>{L"GetIconFontService()", L"GetIconFontDescByName(S1)"}), ServiceCalls());

    // Elements of any name at the upper two levels; a namespace prefix is not part of the base name.
    const Reply prefixed = Load(L"<r xmlns:f=\"urn:fonts\"><x><f:Icon_Name>S2</f:Icon_Name><f:Font_Size>8</f:Font_Size></x></r>");
    EXPECT_EQ(S_OK, prefixed.hr);
    EXPECT_EQ(L"<Icons>" + Icon(L"S2", L"8", L"<Desc glyph=\"2\"/>") + L"</Icons>", prefixed.text);
}

TEST_F(IconFonts, ValuesAreCopiedWithoutEscaping)
{
    services.gui->IconFonts().descriptions[L"a<b&c"] = L"<D v=\"&amp;\">";
    const Reply r = Load(L"<Icons><Icon><Icon_Name>a&lt;b&amp;c</Icon_Name><Font_Size><![CDATA[1<2&3]]></Font_Size></Icon></Icons>");
    EXPECT_EQ(S_OK, r.hr);
    EXPECT_EQ(L"<Icons>" + Icon(L"a<b&c", L"1<2&3", L"<D v=\"&amp;\">") + L"</Icons>", r.text);
    EXPECT_EQ(1u, services.gui->Log().Count(L"GetIconFontDescByName"));
    EXPECT_EQ(L"GetIconFontDescByName(a<b&c)", ServiceCalls().back());
}

TEST_F(IconFonts, MissingNameOrSizeGivesEmptyElements)
{
    services.gui->IconFonts().descriptions[L""] = L"<Nameless/>";
    const Reply r = Load(L"<Icons><Icon><Icon_Name>S2</Icon_Name></Icon><Icon><Font_Size>7</Font_Size></Icon></Icons>");
    EXPECT_EQ(S_OK, r.hr);
    EXPECT_EQ(L"<Icons>" + Icon(L"S2", L"", L"<Desc glyph=\"2\"/>") + Icon(L"", L"7", L"<Nameless/>") + L"</Icons>", r.text);
    EXPECT_EQ((std::vector<std::wstring>{L"GetIconFontService()", L"GetIconFontDescByName(S2)", L"GetIconFontService()",
                                         L"GetIconFontDescByName()"}),
              ServiceCalls())
        << "the service is asked for the empty name, and is asked again for every icon";
}

TEST_F(IconFonts, TwoIconsInRequestOrderAndAnUnknownIconWithoutDescription)
{
    const Reply r = Load(L"<Icons>\r\n  <Icon><Icon_Name>S2</Icon_Name><Font_Size>10</Font_Size></Icon>\r\n"
                         L"  <Icon><Icon_Name>unknown</Icon_Name><Font_Size>11</Font_Size></Icon>\r\n"
                         L"  <Icon><Icon_Name>S1</Icon_Name><Font_Size>12</Font_Size></Icon>\r\n</Icons>");
    EXPECT_EQ(S_OK, r.hr);
    EXPECT_EQ(L"<Icons>" + Icon(L"S2", L"10", L"<Desc glyph=\"2\"/>") + Icon(L"unknown", L"11", L"") +
                  Icon(L"S1", L"12", L"<Desc font=\"TOV Icons\" glyph=\"&#xE001;\"/>") + L"</Icons>",
              r.text);
    const auto lines = Lines();
    EXPECT_EQ(1, std::count(lines.begin(), lines.end(), std::string("GetIconFontDescByName() failed")));
}

TEST_F(IconFonts, ChildlessIconsAreSkipped)
{
    const Reply r = Load(L"<Icons><Icon/><Icon></Icon>loose text<!-- note --></Icons>");
    EXPECT_EQ(S_OK, r.hr);
    EXPECT_EQ(L"<Icons></Icons>", r.text);
    EXPECT_TRUE(ServiceCalls().empty());

    const Reply mixed = Load(L"<Icons><Icon/><Icon><Icon_Name>S2</Icon_Name></Icon><Icon/></Icons>");
    EXPECT_EQ(L"<Icons>" + Icon(L"S2", L"", L"<Desc glyph=\"2\"/>") + L"</Icons>", mixed.text);
}

TEST_F(IconFonts, RequestsWithoutAnAnswerGiveAnEmptyStringAndSFalse)
{
    struct Case {
        const wchar_t* request;
        const char* trace; // the level-2 line, or null for none
    };
    const Case cases[] = {
        {nullptr, nullptr},
        {L"", nullptr},
        {L"<Icons><Icon><Icon_Name>S1</Icon_Name></Icon>", "loadXML Failed"},
        {L"<Icons><Icon></Icons>", "loadXML Failed"},
        {L"just text", "loadXML Failed"},
        {L"<?xml version=\"1.0\"?><!-- no element -->", "loadXML Failed"},
        {L"<Icons/>", nullptr},
        {L"<Icons>   </Icons>", nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "request: " << (c.request ? Bstr(c.request).View().size() : 0));
        ClearLines();
        const Reply r = Load(c.request);
        EXPECT_EQ(S_FALSE, r.hr);
        EXPECT_FALSE(r.isNull) << "an empty string, not a null one";
        EXPECT_EQ(L"", r.text);
        std::vector<std::string> expected{"=> ParseXMLIconRequest"};
        if (c.trace) expected.push_back(c.trace);
        expected.push_back("<= ParseXMLIconRequest");
        EXPECT_EQ(expected, Lines());
    }
    EXPECT_TRUE(ServiceCalls().empty());
    EXPECT_EQ(E_POINTER, control->LoadIconFont(Bstr(L"<Icons/>").Get(), nullptr));
}

TEST_F(IconFonts, AParserThatCannotBeMadeIsTraced)
{
    FailingFactory factory;
    {
        tovfe::RegisteredClass registration(kDOMDocumentClass, &factory);
        const Reply r = Load(L"<Icons><Icon><Icon_Name>S1</Icon_Name></Icon></Icons>");
        EXPECT_EQ(S_FALSE, r.hr);
        EXPECT_EQ(L"", r.text);
    }
    EXPECT_EQ(1, factory.attempts);
    EXPECT_EQ((std::vector<std::string>{"=> ParseXMLIconRequest", "CoCreateInstance Failed", "<= ParseXMLIconRequest"}), Lines());
    EXPECT_EQ(S_OK, Load(L"<Icons><Icon><Icon_Name>S1</Icon_Name></Icon></Icons>").hr) << "the platform's parser again";
}

TEST_F(IconFonts, TheParserIsToldToLoadNothingFromOutsideTheRequest)
{
    KeepingFactory keeping;
    ASSERT_EQ(S_OK, CoGetClassObject(kDOMDocumentClass, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                                     keeping.platform.PutVoid()));
    {
        tovfe::RegisteredClass registration(kDOMDocumentClass, &keeping);
        EXPECT_EQ(S_OK, Load(L"<Icons><Icon><Icon_Name>S1</Icon_Name></Icon></Icons>").hr);
    }
    ASSERT_EQ(1u, keeping.made.size());
    // Some parsers start with externals resolved and validation on; whatever the start, both are off.
    ComPtr<IXMLDOMDocument> document;
    ASSERT_EQ(S_OK, keeping.made[0]->QueryInterface(kDOMDocumentIid, document.PutVoid()));
    VARIANT_BOOL resolve = VARIANT_TRUE, validate = VARIANT_TRUE, async = VARIANT_TRUE;
    EXPECT_EQ(S_OK, document->get_resolveExternals(&resolve));
    EXPECT_EQ(VARIANT_FALSE, resolve);
    EXPECT_EQ(S_OK, document->get_validateOnParse(&validate));
    EXPECT_EQ(VARIANT_FALSE, validate);
    EXPECT_EQ(S_OK, document->get_async(&async));
    EXPECT_EQ(VARIANT_FALSE, async);
}

TEST_F(IconFonts, AFailingServiceCostsOnlyThatIconItsDescription)
{
    services.gui->IconFonts().descriptions[L"S3"] = L"<Desc glyph=\"3\"/>";
    services.gui->Plan().Fail(L"GetIconFontDescByName(S2)", E_ACCESSDENIED);
    const Reply r = Load(L"<Icons><Icon><Icon_Name>S1</Icon_Name></Icon><Icon><Icon_Name>S2</Icon_Name></Icon>"
                         L"<Icon><Icon_Name>S3</Icon_Name></Icon></Icons>");
    EXPECT_EQ(S_OK, r.hr);
    EXPECT_EQ(L"<Icons>" + Icon(L"S1", L"", L"<Desc font=\"TOV Icons\" glyph=\"&#xE001;\"/>") + Icon(L"S2", L"", L"") +
                  Icon(L"S3", L"", L"<Desc glyph=\"3\"/>") + L"</Icons>",
              r.text);
    EXPECT_EQ((std::vector<std::string>{"=> ParseXMLIconRequest", "==> getGUIIconResource", "<== getGUIIconResource",
                                        "==> getGUIIconResource", "GetIconFontDescByName() failed", "<== getGUIIconResource",
                                        "==> getGUIIconResource", "<== getGUIIconResource", "<= ParseXMLIconRequest"}),
              Lines());
}

TEST_F(IconFonts, AnExceptionHandsOutTheAnswerBuiltSoFar)
{
    services.gui->Plan().Throw(L"GetIconFontDescByName(S2)");
    const Reply r = Load(L"<Icons><Icon><Icon_Name>S1</Icon_Name></Icon><Icon><Icon_Name>S2</Icon_Name></Icon>"
                         L"<Icon><Icon_Name>S3</Icon_Name></Icon></Icons>");
    EXPECT_EQ(S_OK, r.hr);
    EXPECT_EQ(L"<Icons>" + Icon(L"S1", L"", L"<Desc font=\"TOV Icons\" glyph=\"&#xE001;\"/>"), r.text)
        << "cut after the first icon, without the closing tag";
    EXPECT_EQ(2u, services.gui->Log().Count(L"GetIconFontDescByName")) << "the third icon was never asked for";
    EXPECT_EQ("<= ParseXMLIconRequest", Lines().back()) << "the scopes close on the way out";
}

TEST_F(IconFonts, WithoutIconFontServiceOrFrontEndOnlyNamesAndSizesAreAnswered)
{
    const std::wstring request = L"<Icons><Icon><Icon_Name>S1</Icon_Name><Font_Size>12</Font_Size></Icon></Icons>";
    const std::wstring namesOnly = L"<Icons>" + Icon(L"S1", L"12", L"") + L"</Icons>";

    services.gui->withoutIconFonts = true;
    Reply r = Load(request);
    EXPECT_EQ(S_OK, r.hr);
    EXPECT_EQ(namesOnly, r.text);

    services.gui->withoutIconFonts = false;
    services.gui->Plan().Fail(L"GetIconFontService", E_NOINTERFACE);
    r = Load(request);
    EXPECT_EQ(namesOnly, r.text);
    EXPECT_EQ(0u, services.gui->Log().Count(L"GetIconFontDescByName"));
    EXPECT_FALSE(Traced("GetIconFontDescByName() failed")) << "only a failing description call is traced";

    // A control that never met a front end.
    auto alone = ocx.CreateControl();
    ASSERT_TRUE(alone);
    BSTR out = nullptr;
    EXPECT_EQ(S_OK, alone->LoadIconFont(Bstr(request).Get(), &out));
    EXPECT_EQ(namesOnly, Bstr::Adopt(out).View());
}

TEST_F(IconFonts, LateBoundCallsByDispIdAndByName)
{
    ComPtr<IDispatch> disp;
    ASSERT_EQ(S_OK, control->QueryInterface(IID_IDispatch, disp.PutVoid()));
    LPOLESTR name = const_cast<LPOLESTR>(L"LoadIconFont");
    DISPID id = 0;
    ASSERT_EQ(S_OK, disp->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id));
    EXPECT_EQ(kLoadIconFontDispId, id);

    tov::Variant arg;
    arg.vt = VT_BSTR;
    arg.bstrVal = Bstr(L"<Icons><Icon><Icon_Name>S2</Icon_Name><Font_Size>3</Font_Size></Icon></Icons>").Detach();
    DISPPARAMS params{&arg, nullptr, 1, 0};
    tov::Variant result;
    EXPECT_EQ(S_OK, disp->Invoke(kLoadIconFontDispId, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, &result,
                                 nullptr, nullptr));
    ASSERT_EQ(VT_BSTR, result.vt);
    EXPECT_EQ(L"<Icons>" + Icon(L"S2", L"3", L"<Desc glyph=\"2\"/>") + L"</Icons>", std::wstring(result.bstrVal));

    // No answer: the empty string comes back late-bound too.
    tov::Variant bad;
    bad.vt = VT_BSTR;
    bad.bstrVal = Bstr(L"<unclosed>").Detach();
    DISPPARAMS badParams{&bad, nullptr, 1, 0};
    tov::Variant empty;
    EXPECT_TRUE(SUCCEEDED(disp->Invoke(kLoadIconFontDispId, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &badParams,
                                       &empty, nullptr, nullptr)));
    ASSERT_EQ(VT_BSTR, empty.vt);
    EXPECT_EQ(0u, SysStringLen(empty.bstrVal));
}

// ---- Requests built to hurt ---------------------------------------------------------------------------

TEST_F(IconFonts, ATenMegabyteRequestIsAnsweredWhole)
{
    Connect(0);
    const std::wstring bigName(5 * 1024 * 1024, L'n'); // 10 MB of UTF-16 in the request
    services.gui->IconFonts().descriptions[bigName] = L"<Big/>";
    const Reply r = Load(L"<Icons><Icon><Icon_Name>" + bigName + L"</Icon_Name><Font_Size>1</Font_Size></Icon></Icons>");
    EXPECT_EQ(S_OK, r.hr);
    EXPECT_TRUE(r.text == L"<Icons>" + Icon(bigName, L"1", L"<Big/>") + L"</Icons>") << "reply of " << r.text.size() << " characters";
}

TEST_F(IconFonts, ThousandsOfIconsInOrder)
{
    Connect(0);
    constexpr int kIcons = 5000;
    std::wstring request = L"<Icons>";
    std::wstring expected = L"<Icons>";
    for (int i = 0; i < kIcons; ++i) {
        const std::wstring name = L"I" + std::to_wstring(i), size = std::to_wstring(i % 40);
        if (i % 2 == 0) services.gui->IconFonts().descriptions[name] = L"<G n=\"" + std::to_wstring(i) + L"\"/>";
        request += L"<Icon><Icon_Name>" + name + L"</Icon_Name><Font_Size>" + size + L"</Font_Size></Icon>";
        expected += Icon(name, size, i % 2 == 0 ? L"<G n=\"" + std::to_wstring(i) + L"\"/>" : L"");
    }
    request += L"</Icons>";
    expected += L"</Icons>";
    const Reply r = Load(request);
    EXPECT_EQ(S_OK, r.hr);
    EXPECT_TRUE(r.text == expected);
    EXPECT_EQ(static_cast<size_t>(kIcons), services.gui->Log().Count(L"GetIconFontDescByName"));
}

TEST_F(IconFonts, DeeplyNestedRequests)
{
    Connect(0);
    // Nesting below an icon's child still counts as its text.
    std::wstring moderate = L"<Icons><Icon><Icon_Name>";
    for (int i = 0; i < 100; ++i) moderate += L"<b>";
    moderate += L"S1";
    for (int i = 0; i < 100; ++i) moderate += L"</b>";
    moderate += L"</Icon_Name></Icon></Icons>";
    const Reply r = Load(moderate);
    EXPECT_EQ(S_OK, r.hr);
    EXPECT_EQ(L"<Icons>" + Icon(L"S1", L"", L"<Desc font=\"TOV Icons\" glyph=\"&#xE001;\"/>") + L"</Icons>", r.text);

    // Far deeper than any parser keeps: refused or answered, but never a crash.
    constexpr int kDepth = 200000;
    std::wstring deep;
    deep.reserve(kDepth * 7 + 64);
    for (int i = 0; i < kDepth; ++i) deep += L"<a>";
    for (int i = 0; i < kDepth; ++i) deep += L"</a>";
    const Reply d = Load(deep);
    EXPECT_TRUE((d.hr == S_FALSE && d.text.empty()) || (d.hr == S_OK && d.text == L"<Icons><Icon><Icon_Name></Icon_Name><Font_Size></Font_Size></Icon></Icons>"))
        << std::hex << d.hr << " with " << d.text.size() << " characters";
}

TEST_F(IconFonts, DocumentTypeDeclarationsNeverReachOutsideTheRequest)
{
    wchar_t dir[MAX_PATH] = {}, path[MAX_PATH] = {};
    ASSERT_NE(0u, GetTempPathW(MAX_PATH, dir));
    ASSERT_NE(0u, GetTempFileNameW(dir, L"ent", 0, path));
    {
        std::ofstream secret(path, std::ios::binary | std::ios::trunc);
        secret << "SECRET-FROM-DISK";
    }
    std::wstring url = L"file:///";
    for (const wchar_t* p = path; *p; ++p) url += *p == L'\\' ? L'/' : *p;

    const Reply external = Load(L"<!DOCTYPE Icons [<!ENTITY ext SYSTEM \"" + url + L"\">]>"
                                L"<Icons><Icon><Icon_Name>&ext;</Icon_Name></Icon></Icons>");
    const Reply externalDtd = Load(L"<!DOCTYPE Icons SYSTEM \"" + url + L"\"><Icons><Icon><Icon_Name>x</Icon_Name></Icon></Icons>");
    EXPECT_TRUE(DeleteFileW(path));

    for (const Reply* r : {&external, &externalDtd}) {
        EXPECT_TRUE(r->hr == S_OK || r->hr == S_FALSE);
        EXPECT_EQ(std::wstring::npos, r->text.find(L"SECRET-FROM-DISK"));
    }
    for (const auto& call : ServiceCalls()) EXPECT_EQ(std::wstring::npos, call.find(L"SECRET-FROM-DISK"));

    // Entities that expand a billion times: refused or cut short, never expanded in full.
    std::wstring laughs = L"<!DOCTYPE Icons [<!ENTITY l0 \"lol\">";
    for (int i = 1; i <= 9; ++i) {
        laughs += L"<!ENTITY l" + std::to_wstring(i) + L" \"";
        for (int j = 0; j < 10; ++j) laughs += L"&l" + std::to_wstring(i - 1) + L";";
        laughs += L"\">";
    }
    laughs += L"]><Icons><Icon><Icon_Name>&l9;</Icon_Name></Icon></Icons>";
    const Reply bomb = Load(laughs);
    EXPECT_TRUE(bomb.hr == S_OK || bomb.hr == S_FALSE);
    EXPECT_LT(bomb.text.size(), 1000000u);
}
