// The document shown in the browser: its outer HTML, content replaced through a file in the temporary
// folder, and its charset; with a document failing or answering null at every step.
#include <cwctype>
#include <fstream>
#include <functional>
#include <iterator>
#include "framework/bstr.h"
#include "support/ocx.h"
#include "support/page_fixture.h"
#include "frontend/data_provider_standin.h"
#include "frontend/table_standin.h"

using tov::Bstr;
using tov::ComPtr;

namespace {

// A string the control must leave alone when it writes nothing.
struct Untouched {
    Untouched() : original(SysAllocString(L"untouched")), value(original) {}
    ~Untouched()
    {
        if (value != original) SysFreeString(value);
        SysFreeString(original);
    }
    bool IsUntouched() const { return value == original; }
    std::wstring Text() const { return value ? std::wstring(value, SysStringLen(value)) : L"<null>"; }
    BSTR original;
    BSTR value;
};

bool FileExists(const std::wstring& path)
{
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::string FileBytes(const std::wstring& path)
{
    std::ifstream in(path.c_str(), std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

} // namespace

class DocumentContent : public tovtest::PageFixture {
protected:
    void TearDown() override
    {
        PageFixture::TearDown();
        tovfe::DataStore::Instance().Clear();
        for (const auto& path : written) EXPECT_FALSE(FileExists(path)) << "deleted at release";
    }

    // SetHTMLSourceContent; the path it navigated to, or empty.
    std::wstring SetContent(std::wstring_view html, HRESULT expected = S_OK)
    {
        Bstr content(html);
        BSTR arg = content.Get();
        browser->Log().Clear();
        EXPECT_EQ(expected, control->SetHTMLSourceContent(&arg));
        const auto& calls = browser->Log().Calls();
        if (calls.empty() || calls.back().name != L"Navigate") return std::wstring();
        std::wstring path = calls.back().args[0];
        written.push_back(path);
        return path;
    }

    std::vector<std::wstring> written;
};

TEST_F(DocumentContent, SourceIsTheRootElementsOuterHTML)
{
    Page().outerHTML = L"<HTML><HEAD><TITLE>T\u00FCr</TITLE></HEAD><BODY>x</BODY></HTML>";
    Connect(1);
    Untouched out;
    EXPECT_EQ(S_OK, control->GetHTMLSourceContent(&out.value));
    EXPECT_EQ(Page().outerHTML, out.Text());
    EXPECT_EQ((std::vector<std::wstring>{L"get_body()", L"get_parentElement(body)", L"get_outerHTML(html)"}),
              document->Log().Texts());
    EXPECT_EQ((std::vector<std::string>{"=> GetDocumentHTML", "<= GetDocumentHTML"}), Lines());
    EXPECT_EQ(E_POINTER, control->GetHTMLSourceContent(nullptr));
}

TEST_F(DocumentContent, SourceWithADocumentFailingAtEachStep)
{
    struct Case {
        const char* name;
        std::function<void()> arrange;
        HRESULT result;
        std::vector<std::string> trace;
    };
    const Case cases[] = {
        {"no document", [&] { browser->SetDocument(nullptr); }, S_OK, {"get_Document() failed"}},
        {"get_Document fails", [&] { browser->FailCall(L"get_Document", E_ACCESSDENIED); }, S_OK, {"get_Document() failed"}},
        {"no IHTMLDocument2", [&] { Page().withoutDocument2 = true; }, S_OK, {"CComQIPtr<IHTMLDocument2...> failed"}},
        {"get_body fails", [&] { document->Plan().Fail(L"get_body", E_ABORT); }, E_ABORT, {"get_body() failed"}},
        {"no body", [&] { Page().nullBody = true; }, S_OK, {"get_body() failed"}},
        {"get_parentElement fails", [&] { document->Plan().Fail(L"get_parentElement", E_ACCESSDENIED); }, E_ACCESSDENIED, {}},
        {"body without parent", [&] { Page().nullRoot = true; }, S_OK, {"get_parentElement() failed"}},
        {"get_outerHTML fails", [&] { document->Plan().Fail(L"get_outerHTML", E_OUTOFMEMORY); }, E_OUTOFMEMORY, {}},
    };
    Connect(2);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        c.arrange();
        ClearLines();
        Untouched out;
        EXPECT_EQ(c.result, control->GetHTMLSourceContent(&out.value));
        EXPECT_TRUE(out.IsUntouched());
        EXPECT_EQ(c.trace, DetailLines());
        browser->ClearFailures();
        browser->SetDocument(document->AsDispatch());
        document->Plan().Clear();
        Page().withoutDocument2 = Page().nullBody = Page().nullRoot = false;
    }
    document->Plan().Throw(L"get_parentElement");
    Untouched out;
    EXPECT_TRUE(FAILED(control->GetHTMLSourceContent(&out.value))) << "an exception in the document is an error";
    EXPECT_TRUE(out.IsUntouched());
}

TEST_F(DocumentContent, SetContentWritesAGuidNamedFileAndNavigatesAfterTheZoom)
{
    const std::wstring path = SetContent(L"<html><body>Hello</body></html>");
    ASSERT_FALSE(path.empty());
    const std::wstring folder = tovtest::TempDir();
    ASSERT_EQ(folder, path.substr(0, folder.size()));
    const std::wstring name = path.substr(folder.size());
    ASSERT_EQ(37u + 5u, name.size()) << "the GUID text without its opening brace, then .html";
    EXPECT_EQ(L'}', name[36]);
    EXPECT_EQ(L".html", name.substr(37));
    for (size_t i = 0; i < 36; ++i) {
        const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
        EXPECT_TRUE(dash ? name[i] == L'-' : std::iswxdigit(name[i]) != 0) << "character " << i;
    }
    EXPECT_EQ("<html><body>Hello</body></html>", FileBytes(path));

    const auto texts = browser->Log().Texts();
    ASSERT_EQ(3u, texts.size());
    EXPECT_EQ(L"get_Document()", texts[0]);
    EXPECT_EQ(0u, texts[1].rfind(L"ExecWB(63, 0, I4:", 0)) << "zoom first: " << texts[1];
    EXPECT_EQ(L"Navigate(" + path + L", <null>, <empty>, <null>, <null>)", texts[2]);

    const std::wstring second = SetContent(L"<p>again</p>");
    EXPECT_NE(path, second) << "each call has a file of its own";
    EXPECT_TRUE(FileExists(path)) << "kept alive while the control lives";
}

TEST_F(DocumentContent, PercentSignsAreReadAsAFormatWithoutArguments)
{
    const std::wstring path = SetContent(L"<p>%d|%s|%%|%-5.2lf|100%</p>\n<i>%");
    ASSERT_FALSE(path.empty());
    EXPECT_EQ("<p>||%||100%</p>\r\n<i>%", FileBytes(path));

    const std::wstring atEnd = SetContent(L"<p>x</p>%I64");
    EXPECT_EQ("<p>x</p>%I64", FileBytes(atEnd)) << "a directive cut off by the end of the content";
    const std::wstring consumed = SetContent(L"<p>x</p>%ls");
    EXPECT_EQ("<p>x</p>", FileBytes(consumed));
}

TEST_F(DocumentContent, SetContentWithLargeEmptyAndNullContent)
{
    std::wstring big(10u << 20, L'a');
    big.replace(0, 6, L"<html>");
    big += L"%";
    const std::wstring path = SetContent(big);
    ASSERT_FALSE(path.empty());
    EXPECT_EQ((10u << 20) + 1, FileBytes(path).size());

    EXPECT_EQ("", FileBytes(SetContent(L"")));
    BSTR none = nullptr;
    browser->Log().Clear();
    EXPECT_EQ(S_OK, control->SetHTMLSourceContent(&none));
    ASSERT_EQ(1u, browser->Log().Count(L"Navigate"));
    written.push_back(browser->Log().Calls().back().args[0]);
    EXPECT_EQ(E_POINTER, control->SetHTMLSourceContent(nullptr));
}

TEST_F(DocumentContent, SetContentWithoutADocumentOrWithAFailingNavigate)
{
    Connect(2);
    browser->SetDocument(nullptr);
    EXPECT_TRUE(SetContent(L"<p>x</p>").empty());
    EXPECT_EQ((std::vector<std::string>{"get_Document() failed"}), DetailLines());
    EXPECT_EQ(0u, browser->Log().Count(L"ExecWB"));

    browser->SetDocument(document->AsDispatch());
    Page().withoutDocument2 = true;
    ClearLines();
    EXPECT_TRUE(SetContent(L"<p>x</p>").empty());
    EXPECT_EQ((std::vector<std::string>{"CComQIPtr<IHTMLDocument2...> failed"}), DetailLines());
    Page().withoutDocument2 = false;

    browser->FailCall(L"Navigate", E_ACCESSDENIED);
    EXPECT_FALSE(SetContent(L"<p>x</p>", E_ACCESSDENIED).empty()) << "Navigate's result is the method's result";
    browser->ClearFailures();
}

TEST_F(DocumentContent, CharsetOfTheDocumentOrItsDefault)
{
    Connect(2);
    Page().charset = L"iso-8859-2";
    Untouched out;
    EXPECT_EQ(S_OK, control->GetCharsetString(&out.value));
    EXPECT_EQ(L"iso-8859-2", out.Text());
    EXPECT_EQ((std::vector<std::string>{"iso-8859-2"}), DetailLines());

    for (auto arrange : std::vector<std::function<void()>>{[&] { Page().charset.clear(); },
                                                           [&] { document->Plan().Fail(L"get_charset", E_FAIL); }}) {
        arrange();
        Untouched fallback;
        EXPECT_EQ(S_OK, control->GetCharsetString(&fallback.value));
        EXPECT_EQ(L"windows-1252", fallback.Text());
    }
    document->Plan().Fail(L"get_defaultCharset", E_FAIL);
    Untouched none;
    EXPECT_EQ(S_OK, control->GetCharsetString(&none.value));
    EXPECT_TRUE(none.IsUntouched());
    document->Plan().Clear();

    browser->SetDocument(nullptr);
    ClearLines();
    EXPECT_EQ(S_OK, control->GetCharsetString(&none.value));
    EXPECT_TRUE(none.IsUntouched());
    EXPECT_EQ((std::vector<std::string>{"get_Document() failed"}), DetailLines());
    EXPECT_EQ(E_POINTER, control->GetCharsetString(nullptr));
}

TEST_F(DocumentContent, CharsetAfterShownDataWithAndWithoutMetaTag)
{
    tovfe::DataProviderRegistration provider;
    auto& store = tovfe::DataStore::Instance();
    store.Put(L"tovq5:meta.htm", "<html><head><meta charset=utf-8;></head></html>", L"html");
    store.Put(L"tovq5:plain.htm", "<html><body>no tag</body></html>", L"html");
    LONG code = -1;

    Bstr plain(L"tovq5:plain.htm");
    ASSERT_EQ(S_OK, control->ShowData(plain.Get(), nullptr, 0, &code));
    document->Log().Clear();
    Untouched kept;
    EXPECT_EQ(S_OK, control->GetCharsetString(&kept.value));
    EXPECT_TRUE(kept.IsUntouched()) << "data without a charset tag: the caller keeps its default";
    EXPECT_TRUE(document->Log().Calls().empty());

    Bstr meta(L"tovq5:meta.htm");
    ASSERT_EQ(S_OK, control->ShowData(meta.Get(), nullptr, 0, &code));
    Page().charset.clear();
    Untouched fromPage;
    EXPECT_EQ(S_OK, control->GetCharsetString(&fromPage.value));
    EXPECT_EQ(L"", fromPage.Text()) << "with a tag the document's charset counts, even empty";
    EXPECT_EQ(0u, document->Log().Count(L"get_defaultCharset"));
}

using DocumentWithoutBrowser = tovtest::ControlFixture;

TEST_F(DocumentWithoutBrowser, NothingHappens)
{
    Connect(2);
    Untouched out;
    EXPECT_EQ(S_OK, control->GetHTMLSourceContent(&out.value));
    EXPECT_EQ(S_OK, control->GetCharsetString(&out.value));
    Bstr content(L"<p>x</p>");
    BSTR arg = content.Get();
    EXPECT_EQ(S_OK, control->SetHTMLSourceContent(&arg));
    EXPECT_TRUE(out.IsUntouched());
    for (const auto& line : Lines()) EXPECT_TRUE(line.rfind("=", 0) == 0 || line.rfind("<=", 0) == 0) << line;
}

TEST_F(DocumentContent, NoReferenceToThePageIsKeptByAnyDocumentOperation)
{
    const auto refs = [](IUnknown* p) {
        p->AddRef();
        return p->Release();
    };
    ComPtr<IHTMLWindow2> window;
    ComPtr<IHTMLElement> body;
    ComPtr<IHTMLEventObj> event;
    ASSERT_EQ(S_OK, document->get_parentWindow(window.Put()));
    ASSERT_EQ(S_OK, document->get_body(body.Put()));
    ASSERT_EQ(S_OK, window->get_event(event.Put()));
    IUnknown* objects[] = {document->AsDispatch(), window.Get(), body.Get(), event.Get()};
    std::vector<ULONG> before;
    for (IUnknown* p : objects) before.push_back(refs(p));

    Untouched html, charset;
    EXPECT_EQ(S_OK, control->GetHTMLSourceContent(&html.value));
    EXPECT_EQ(S_OK, control->GetCharsetString(&charset.value));
    EXPECT_FALSE(SetContent(L"<p>x</p>").empty());
    Page().nullRoot = true;
    EXPECT_EQ(S_OK, control->GetHTMLSourceContent(&html.value));
    document->Plan().Fail(L"get_outerHTML", E_FAIL);
    Page().nullRoot = false;
    EXPECT_EQ(E_FAIL, control->GetHTMLSourceContent(&html.value));
    auto script = tovfe::MakeScriptTable({"x();"}, 4);
    EXPECT_EQ(S_OK, control->putref_ScriptText(script.Object()));
    EXPECT_EQ(S_OK, control->ExecuteScript());
    EXPECT_EQ(1u, Page().scripts.size());

    std::vector<ULONG> after;
    for (IUnknown* p : objects) after.push_back(refs(p));
    EXPECT_EQ(before, after);
}

TEST_F(DocumentContent, ExceptionsFromTheBrowserStayInTheControl)
{
    browser->ThrowOn(L"get_Document");
    Untouched out;
    EXPECT_TRUE(FAILED(control->GetHTMLSourceContent(&out.value)));
    EXPECT_EQ(S_OK, control->GetCharsetString(&out.value)) << "the front end keeps its default";
    EXPECT_TRUE(SetContent(L"<p>x</p>", E_UNEXPECTED).empty());
    EXPECT_EQ(S_OK, control->ExecuteScript());
    EXPECT_TRUE(out.IsUntouched());
    browser->ClearFailures();

    document->Plan().Throw(L"get_charset");
    EXPECT_EQ(S_OK, control->GetCharsetString(&out.value));
    EXPECT_TRUE(out.IsUntouched());
}
