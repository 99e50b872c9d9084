// Icon-font requests: the reply to an XML request read with the platform's parser, the descriptions from
// the front end's icon-font service, the failure answers and their trace texts, and bad requests.
// (Late-bound calls and a control without a front end: tests/integration/create_by_progid.vbs.)
#include <windows.h>
#include <algorithm>
#include <msxml2.h>
#include "support/control_fixture.h"
#include "frontend/class_registration.h"
#include "frontend/gui_service_standin.h"
#include "framework/bstr.h"
#include "framework/simple_object.h"

using tov::Bstr;
using tov::ComPtr;

namespace {

constexpr CLSID kDOMDocumentClass = {0x2933bf90, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};
constexpr IID kDOMDocumentIid = {0x2933bf81, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};
const std::wstring kS1 = L"<Desc font=\"TOV Icons\" glyph=\"&#xE001;\"/>", kS2 = L"<Desc glyph=\"2\"/>";

struct Reply { HRESULT hr = E_UNEXPECTED; std::wstring text; bool isNull = true; };

std::wstring Icon(const std::wstring& name, const std::wstring& size, const std::wstring& description)
{
    return L"<Icon><Icon_Name>" + name + L"</Icon_Name><Font_Size>" + size + L"</Font_Size>" + description + L"</Icon>";
}

// The DOM document class through a class object that keeps every document the platform's class made
// for it, or fails every creation when it has no platform class.
class DocumentFactory
    : public tov::SimpleObject<DocumentFactory, tov::Lifetime::CountOnly, tov::Implements<IClassFactory, IID_IClassFactory>> {
public:
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID riid, void** ppv) override
    {
        *ppv = nullptr;
        const HRESULT hr = platform ? platform->CreateInstance(outer, riid, ppv) : E_OUTOFMEMORY;
        if (SUCCEEDED(hr)) made.emplace_back(static_cast<IUnknown*>(*ppv));
        return hr;
    }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }

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
        auto& descriptions = services.gui->IconFonts().descriptions;
        descriptions[L"S1"] = kS1;
        descriptions[L"S2"] = kS2;
        Connect(2);
        ClearLines();
    }
    Reply Load(const Bstr& request)
    {
        Reply r;
        BSTR out = reinterpret_cast<BSTR>(1);
        r.hr = control->LoadIconFont(request.Get(), &out);
        r.isNull = out == nullptr;
        r.text = Bstr::Adopt(out).View();
        return r;
    }
    Reply Load(const std::wstring& request) { return Load(Bstr(request)); }

    tovfe::GUIServices services;
};

TEST_F(IconFonts, RepliesToWellFormedRequests)
{
    const struct {
        const char* what;
        std::wstring request, reply;
    } cases[] = {
        {"the example, byte for byte", L"<Icons><Icon><Icon_Name>S1</Icon_Name><Font_Size>12</Font_Size></Icon></Icons>",
         L"<Icon><Icon_Name>S1</Icon_Name><Font_Size>12</Font_Size><Desc font=\"TOV Icons\" glyph=\"&#xE001;\"/></Icon>"},
        {"children in any case, the last one wins, others ignored",
         L"<Icons><Icon><ICON_NAME>S2</ICON_NAME><font_size>9</font_size><Colour>red</Colour>"
         L"<icon_NAME>S1</icon_NAME><FONT_size>14</FONT_size></Icon></Icons>",
         Icon(L"S1", L"14", kS1)},
        {"icons in request order, an unknown one without description, childless ones skipped",
         L"<Icons>\r\n <Icon><Icon_Name>S2</Icon_Name><Font_Size>10</Font_Size></Icon><Icon/>text<!-- c -->\r\n"
         L" <Icon><Icon_Name>unknown</Icon_Name><Font_Size>11</Font_Size></Icon><Icon><Icon_Name>S1</Icon_Name></Icon></Icons>",
         Icon(L"S2", L"10", kS2) + Icon(L"unknown", L"11", L"") + Icon(L"S1", L"", kS1)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const Reply r = Load(c.request);
        EXPECT_EQ(S_OK, r.hr);
        EXPECT_EQ(L"<Icons>" + c.reply + L"</Icons>", r.text);
    }
}

TEST_F(IconFonts, TheParserIsMadeWithoutOutsideAccessOrItsFailureIsTraced)
{
    const std::wstring request = L"<Icons><Icon><Icon_Name>S1</Icon_Name></Icon></Icons>";
    DocumentFactory factory;
    {
        tovfe::RegisteredClass registration(kDOMDocumentClass, &factory);
        EXPECT_EQ(S_FALSE, Load(request).hr);
    }
    EXPECT_EQ((std::vector<std::string>{"=> ParseXMLIconRequest", "CoCreateInstance Failed", "<= ParseXMLIconRequest"}), Lines());

    ASSERT_EQ(S_OK, CoGetClassObject(kDOMDocumentClass, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                                     factory.platform.PutVoid()));
    {
        tovfe::RegisteredClass registration(kDOMDocumentClass, &factory);
        EXPECT_EQ(S_OK, Load(request).hr);
    }
    ASSERT_EQ(1u, factory.made.size());
    auto document = tov::QueryAs<IXMLDOMDocument>(factory.made[0].Get(), kDOMDocumentIid);
    ASSERT_TRUE(document);
    VARIANT_BOOL resolve = VARIANT_TRUE, validate = VARIANT_TRUE;
    document->get_resolveExternals(&resolve);
    document->get_validateOnParse(&validate);
    EXPECT_TRUE(resolve == VARIANT_FALSE && validate == VARIANT_FALSE) << "whatever the parser starts with";
}

TEST_F(IconFonts, AFailingServiceCostsThatIconItsDescriptionAnExceptionTheRest)
{
    services.gui->IconFonts().descriptions[L"S3"] = L"<Desc glyph=\"3\"/>";
    const std::wstring request = L"<Icons><Icon><Icon_Name>S1</Icon_Name></Icon><Icon><Icon_Name>S2</Icon_Name></Icon>"
                                 L"<Icon><Icon_Name>S3</Icon_Name></Icon></Icons>";
    services.gui->Plan().Fail(L"GetIconFontDescByName(S2)", E_ACCESSDENIED);
    Reply r = Load(request);
    EXPECT_EQ(S_OK, r.hr);
    EXPECT_EQ(L"<Icons>" + Icon(L"S1", L"", kS1) + Icon(L"S2", L"", L"") + Icon(L"S3", L"", L"<Desc glyph=\"3\"/>") + L"</Icons>",
              r.text);
    const auto failed = [&] {
        const auto lines = Lines();
        return std::count(lines.begin(), lines.end(), "GetIconFontDescByName() failed");
    };
    EXPECT_EQ(1, failed());

    services.gui->Plan().Clear();
    services.gui->Plan().Throw(L"GetIconFontDescByName(S2)");
    services.gui->Log().Clear();
    r = Load(request);
    EXPECT_EQ(S_OK, r.hr);
    EXPECT_EQ(L"<Icons>" + Icon(L"S1", L"", kS1), r.text) << "the answer built so far, without the closing tag";
    EXPECT_EQ(2u, services.gui->Log().Count(L"GetIconFontDescByName")) << "the third icon was never asked for";
    EXPECT_EQ("<= ParseXMLIconRequest", Lines().back()) << "the scopes close on the way out";

    services.gui->Plan().Clear();
    services.gui->Plan().Fail(L"GetIconFontService", E_NOINTERFACE);
    ClearLines();
    EXPECT_EQ(L"<Icons>" + Icon(L"S1", L"", L"") + Icon(L"S2", L"", L"") + Icon(L"S3", L"", L"") + L"</Icons>", Load(request).text)
        << "without the icon-font service only names and sizes";
    EXPECT_EQ(0, failed()) << "and nothing traced";
}

TEST_F(IconFonts, BadInput)
{
    const std::pair<std::optional<std::wstring>, bool> cases[] = { // the request, and whether it fails to parse
        {std::nullopt, false}, {L"<Icons><Icon><Icon_Name>S1</Icon_Name></Icon>", true}, {L"<Icons/>", false}};
    for (const auto& [request, parseFails] : cases) {
        SCOPED_TRACE(testing::Message() << "request of " << (request ? request->size() : 0) << " characters");
        ClearLines();
        const Reply r = Load(request ? Bstr(*request) : Bstr());
        EXPECT_EQ(S_FALSE, r.hr);
        EXPECT_TRUE(r.text.empty() && !r.isNull) << "an empty string, not a null one";
        std::vector<std::string> expected{"=> ParseXMLIconRequest", "loadXML Failed", "<= ParseXMLIconRequest"};
        if (!parseFails) expected.erase(expected.begin() + 1);
        EXPECT_EQ(expected, Lines());
    }
    EXPECT_TRUE(services.gui->Log().Texts().empty());
}
