#pragma once
// The document object model as far as hosts of the browser use it: a frame's document (charset, body,
// root element, parent window, write and close to replace the content), its two outermost elements with
// their HTML, and the window that runs scripts. Every call asks the engine's page; a page that is gone
// answers E_FAIL.
#include <windows.h>
#include <mshtml.h>
#include <memory>
#include <string>
#include "framework/html_dom_stubs.h"
#include "framework/com_ptr.h"
#include "framework/object_root.h"
#include "framework/early_bound.h"

namespace tovengine {

class Page;


// Where a document object's questions go: one frame ("" the top document) of one page.
struct DocumentPlace {
    std::weak_ptr<Page> page;
    std::string frameId;
    // Runs script there and hands back its result as text; throws tov::HResultError.
    std::string Evaluate(const std::string& expression) const;
};

class CEngineDocument final : public tov::ObjectRoot, public tov::EarlyBoundOnly<tov::HTMLDocument2Stubs> {
public:
    static HRESULT Create(const std::shared_ptr<Page>& page, const std::string& frameId, IDispatch** document);
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override;

    STDMETHODIMP get_body(IHTMLElement** p) override;
    STDMETHODIMP get_charset(BSTR* p) override;
    STDMETHODIMP put_charset(BSTR) override { return S_OK; }
    STDMETHODIMP get_defaultCharset(BSTR* p) override;
    STDMETHODIMP get_parentWindow(IHTMLWindow2** p) override;
    STDMETHODIMP get_URL(BSTR* p) override;
    STDMETHODIMP get_title(BSTR* p) override;
    STDMETHODIMP get_readyState(BSTR* p) override;
    STDMETHODIMP write(SAFEARRAY* psarray) override;
    STDMETHODIMP writeln(SAFEARRAY* psarray) override;
    STDMETHODIMP close() override;

private:
    friend class tov::ObjectRoot;
    CEngineDocument() = default;
    HRESULT Write(SAFEARRAY* psarray, bool newline);
    DocumentPlace m_place;
};

// The body ("body") or the root element ("html").
class CEngineElement final : public tov::ObjectRoot, public tov::EarlyBoundOnly<tov::HTMLElementStubs> {
public:
    static HRESULT Create(const DocumentPlace& place, const char* which, IHTMLElement** element);
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override;

    STDMETHODIMP get_parentElement(IHTMLElement** p) override;
    STDMETHODIMP get_tagName(BSTR* p) override;
    STDMETHODIMP get_outerHTML(BSTR* p) override;
    STDMETHODIMP get_innerHTML(BSTR* p) override;
    STDMETHODIMP get_innerText(BSTR* p) override;

private:
    friend class tov::ObjectRoot;
    CEngineElement() = default;
    HRESULT Property(const char* name, BSTR* p);
    DocumentPlace m_place;
    std::string m_which;
};

class CEngineWindow final : public tov::ObjectRoot, public tov::EarlyBoundOnly<tov::HTMLWindow2Stubs> {
public:
    static HRESULT Create(const DocumentPlace& place, IHTMLWindow2** window);
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override;

    STDMETHODIMP execScript(BSTR code, BSTR language, VARIANT* pvarRet) override;
    STDMETHODIMP get_document(IHTMLDocument2** p) override;
    STDMETHODIMP get_event(IHTMLEventObj** p) override;
    STDMETHODIMP get_name(BSTR* p) override;

private:
    friend class tov::ObjectRoot;
    CEngineWindow() = default;
    DocumentPlace m_place;
};

} // namespace tovengine
