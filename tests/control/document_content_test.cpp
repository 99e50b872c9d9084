// The document shown in the browser: its outer HTML, content replaced through a file in the temporary
// folder, and its charset; with a document failing or answering null at every step. (The format rule of
// the written content in detail: tests/native/content_format_test.cpp.)
#include <fstream>
#include <functional>
#include <iterator>
#include "framework/bstr.h"
#include "support/page_fixture.h"
#include "frontend/table_standin.h"

using tov::Bstr;
using tov::ComPtr;

namespace {

// A string the control must leave alone when it writes nothing.
struct Untouched {
    Untouched() : original(SysAllocString(L"untouched")), value(original) {}
    ~Untouched() { (value != original ? SysFreeString(value) : void()), SysFreeString(original); }
    bool IsUntouched() const { return value == original; }
    std::wstring Text() const { return value ? std::wstring(value, SysStringLen(value)) : L"<null>"; }
    BSTR original;
    BSTR value;
};

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
        for (const auto& path : written) EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(path.c_str())) << "deleted at release";
    }
    // SetHTMLSourceContent; the path it navigated to, or empty.
    std::wstring SetContent(const Bstr& content, HRESULT expected = S_OK)
    {
        BSTR arg = content.Get();
        browser->Log().Clear();
        EXPECT_EQ(expected, control->SetHTMLSourceContent(&arg));
        const auto& calls = browser->Log().Calls();
        if (calls.empty() || calls.back().name != L"Navigate") return std::wstring();
        written.push_back(calls.back().args[0]);
        return written.back();
    }
    // Undoes what a case of a table arranged.
    void Restore()
    {
        browser->ClearFailures();
        browser->SetDocument(document->AsDispatch());
        document->Plan().Clear();
        Page().withoutDocument2 = Page().nullRoot = false;
    }

    std::vector<std::wstring> written;
};

TEST_F(DocumentContent, SourceIsTheRootElementsOuterHTMLOrNothingWhenAStepFails)
{
    Page().outerHTML = L"<HTML><HEAD><TITLE>T\u00FCr</TITLE></HEAD><BODY>x</BODY></HTML>";
    Untouched html;
    EXPECT_EQ(S_OK, control->GetHTMLSourceContent(&html.value));
    EXPECT_EQ(Page().outerHTML, html.Text());

    const struct {
        const char* name;
        std::function<void()> arrange;
        HRESULT result;
        std::vector<std::string> trace;
    } cases[] = {
        {"no document", [&] { browser->SetDocument(nullptr); }, S_OK, {"get_Document() failed"}},
        {"no IHTMLDocument2", [&] { Page().withoutDocument2 = true; }, S_OK, {"CComQIPtr<IHTMLDocument2...> failed"}},
        {"get_body fails", [&] { document->Plan().Fail(L"get_body", E_ABORT); }, E_ABORT, {"get_body() failed"}},
        {"body without parent", [&] { Page().nullRoot = true; }, S_OK, {"get_parentElement() failed"}},
        {"the browser throws", [&] { browser->ThrowOn(L"get_Document"); }, E_UNEXPECTED, {}},
    };
    Connect(2);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        c.arrange();
        ClearLines();
        Untouched out;
        const HRESULT hr = control->GetHTMLSourceContent(&out.value);
        EXPECT_TRUE(c.result == E_UNEXPECTED ? FAILED(hr) : hr == c.result) << std::hex << hr;
        EXPECT_TRUE(out.IsUntouched());
        if (c.result != E_UNEXPECTED) {
            EXPECT_EQ(c.trace, DetailLines());
        }
        Restore();
    }
}

TEST_F(DocumentContent, SetContentWritesAGuidNamedFileThroughTheFormatRuleAndNavigatesAfterTheZoom)
{
    const std::wstring path = SetContent(Bstr(L"<p>%d|%s|%%|%-5.2lf|100%</p>\n<i>%"));
    ASSERT_FALSE(path.empty());
    const std::wstring folder = tovtest::TempDir();
    EXPECT_EQ(folder + path.substr(folder.size(), 36) + L"}.html", path) << "the GUID text without its opening brace";
    EXPECT_EQ("<p>||%||100%</p>\r\n<i>%", FileBytes(path)) << "directives write nothing, %% is %, text-mode line ends";

    const auto texts = browser->Log().Texts();
    ASSERT_EQ(3u, texts.size());
    EXPECT_EQ(0u, texts[1].rfind(L"ExecWB(63, 0, I4:", 0)) << "zoom first: " << texts[1];
    EXPECT_EQ(L"Navigate(" + path + L", <null>, <empty>, <null>, <null>)", texts[2]);

    EXPECT_NE(path, SetContent(Bstr(L"<p>again</p>"))) << "each call has a file of its own";
    EXPECT_NE(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(path.c_str())) << "kept alive while the control lives";
}

TEST_F(DocumentContent, BadInput)
{
    EXPECT_EQ("", FileBytes(SetContent(Bstr()))) << "null content is empty content";

    browser->SetDocument(nullptr);
    EXPECT_TRUE(SetContent(Bstr(L"<p>x</p>")).empty());
    EXPECT_EQ(0u, browser->Log().Count(L"ExecWB")) << "without a document neither zoomed nor navigated";
    Restore();
    browser->FailCall(L"Navigate", E_ACCESSDENIED);
    EXPECT_FALSE(SetContent(Bstr(L"<p>x</p>"), E_ACCESSDENIED).empty()) << "Navigate's result is the method's result";
    browser->ClearFailures();
}

TEST_F(DocumentContent, CharsetOfTheDocumentOrItsDefaultAlsoAfterShownData)
{
    Connect(2);
    Page().charset = L"iso-8859-2";
    Untouched out;
    EXPECT_EQ(S_OK, control->GetCharsetString(&out.value));
    EXPECT_EQ(L"iso-8859-2", out.Text());
    EXPECT_EQ((std::vector<std::string>{"iso-8859-2"}), DetailLines());

    tovfe::DataStore::Instance().Put(L"tovq5:meta.htm", "<html><head><meta charset=utf-8;></head></html>", L"html");
    tovfe::DataStore::Instance().Put(L"tovq5:plain.htm", "<html><body>no tag</body></html>", L"html");
    const struct {
        std::function<void()> arrange;
        const wchar_t* charset; // null: the caller's string is left alone
    } cases[] = {
        {[&] { Page().charset.clear(); }, L"windows-1252"},
        {[&] { document->Plan().Fail(L"get_charset", E_FAIL), document->Plan().Fail(L"get_defaultCharset", E_FAIL); }, nullptr},
        {[&] { document->Plan().Throw(L"get_charset"); }, nullptr},
        {[&] { browser->SetDocument(nullptr); }, nullptr},
        // After shown data without a charset tag the caller keeps its default; with one the document's
        // charset counts, even empty, not the default.
        {[&] { ShowData(L"tovq5:plain.htm", nullptr, 0); }, nullptr},
        {[&] { ShowData(L"tovq5:meta.htm", nullptr, 0), Page().charset.clear(); }, L""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "case " << &c - cases);
        c.arrange();
        Untouched charset;
        EXPECT_EQ(S_OK, control->GetCharsetString(&charset.value)) << "the front end keeps its default";
        EXPECT_EQ(c.charset ? c.charset : L"untouched", charset.Text());
        Restore();
    }
}

TEST_F(DocumentContent, NoReferenceToThePageIsKeptByAnyDocumentOperation)
{
    const auto refs = [](IUnknown* p) { return p->AddRef(), p->Release(); };
    ComPtr<IHTMLWindow2> window;
    ComPtr<IHTMLElement> body;
    ComPtr<IHTMLEventObj> event;
    ASSERT_EQ(S_OK, document->get_parentWindow(window.Put()));
    ASSERT_EQ(S_OK, document->get_body(body.Put()));
    ASSERT_EQ(S_OK, window->get_event(event.Put()));
    IUnknown* objects[] = {document->AsDispatch(), window.Get(), body.Get(), event.Get()};
    std::vector<ULONG> before, after;
    for (IUnknown* p : objects) before.push_back(refs(p));

    Untouched html, charset;
    EXPECT_EQ(S_OK, control->GetHTMLSourceContent(&html.value));
    EXPECT_EQ(S_OK, control->GetCharsetString(&charset.value));
    EXPECT_FALSE(SetContent(Bstr(L"<p>x</p>")).empty());
    document->Plan().Fail(L"get_outerHTML", E_FAIL);
    EXPECT_EQ(E_FAIL, control->GetHTMLSourceContent(&html.value));
    auto script = tovfe::MakeScriptTable({"x();"}, 4);
    EXPECT_EQ(S_OK, control->putref_ScriptText(script.Object()));
    EXPECT_EQ(S_OK, control->ExecuteScript());
    EXPECT_EQ(1u, Page().scripts.size());
    for (IUnknown* p : objects) after.push_back(refs(p));
    EXPECT_EQ(before, after);
}
