#include "engine/engine_document.h"
#include <cctype>
#include "engine/json.h"
#include "engine/page.h"
#include "engine/text.h"
#include "framework/bstr.h"
#include "framework/hresult_error.h"

namespace tovengine {
namespace {

HRESULT TextOut(const std::string& utf8, BSTR* p)
{
    if (!p) return E_POINTER;
    const std::wstring text = Wide(utf8);
    *p = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *p ? S_OK : E_OUTOFMEMORY;
}

// Asks the page; a failure (no page, no answer in time, a script error) becomes the call's HRESULT.
template <class F> HRESULT Ask(BSTR* p, F&& question)
{
    if (!p) return E_POINTER;
    *p = nullptr;
    return tov::GuardedCall([&] { return TextOut(question(), p); });
}

template <class T, class Itf> HRESULT Make(const IID& iid, Itf** out, T** made)
{
    void* pv = nullptr;
    const HRESULT hr = tov::ObjectRoot::CreateInstance<T>(nullptr, iid, &pv);
    if (FAILED(hr)) return hr;
    *out = static_cast<Itf*>(pv);
    *made = static_cast<T*>(*out);
    return S_OK;
}

std::string Quoted(std::wstring_view text)
{
    return JsonText(Json(Utf8(text)));
}

} // namespace

std::string DocumentPlace::Evaluate(const std::string& expression) const
{
    auto alive = page.lock();
    if (!alive) tov::Throw(E_FAIL);
    return alive->Evaluate(frameId, expression);
}

// ---- Document ------------------------------------------------------------------------------------------

HRESULT CEngineDocument::Create(const std::shared_ptr<Page>& page, const std::string& frameId, IDispatch** document)
{
    if (!document) return E_POINTER;
    *document = nullptr;
    IHTMLDocument2* itf = nullptr;
    CEngineDocument* made = nullptr;
    const HRESULT hr = Make<CEngineDocument>(IID_IHTMLDocument2, &itf, &made);
    if (FAILED(hr)) return hr;
    made->m_place = {page, frameId};
    *document = itf;
    return S_OK;
}

void* CEngineDocument::FindInterface(REFIID riid) noexcept
{
    using tov::Entry;
    return Lookup(riid, {Entry<IHTMLDocument2>(IID_IHTMLDocument2, this), Entry<IHTMLDocument2>(IID_IHTMLDocument, this),
                         Entry<IHTMLDocument2>(IID_IDispatch, this)});
}

STDMETHODIMP CEngineDocument::get_body(IHTMLElement** p)
{
    if (!p) return E_POINTER;
    *p = nullptr;
    return tov::GuardedCall([&] { return CEngineElement::Create(m_place, "body", p); });
}

STDMETHODIMP CEngineDocument::get_charset(BSTR* p)
{
    // The platform browser names charsets in lower case.
    return Ask(p, [&] {
        std::string name = m_place.Evaluate("document.characterSet");
        for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        return name;
    });
}

STDMETHODIMP CEngineDocument::get_defaultCharset(BSTR* p)
{
    return TextOut("windows-1252", p);
}

STDMETHODIMP CEngineDocument::get_parentWindow(IHTMLWindow2** p)
{
    if (!p) return E_POINTER;
    *p = nullptr;
    return CEngineWindow::Create(m_place, p);
}

STDMETHODIMP CEngineDocument::get_URL(BSTR* p)
{
    if (!p) return E_POINTER;
    *p = nullptr;
    auto page = m_place.page.lock();
    if (!page) return E_FAIL;
    const std::wstring url = page->FrameUrl(m_place.frameId);
    *p = SysAllocStringLen(url.data(), static_cast<UINT>(url.size()));
    return *p ? S_OK : E_OUTOFMEMORY;
}

STDMETHODIMP CEngineDocument::get_title(BSTR* p)
{
    return Ask(p, [&] { return m_place.Evaluate("document.title"); });
}

STDMETHODIMP CEngineDocument::get_readyState(BSTR* p)
{
    return Ask(p, [&] { return m_place.Evaluate("document.readyState"); });
}

HRESULT CEngineDocument::Write(SAFEARRAY* psarray, bool newline)
{
    if (!psarray) return E_INVALIDARG;
    return tov::GuardedCall([&] {
        std::wstring text;
        VARIANT* items = nullptr;
        if (SafeArrayGetDim(psarray) != 1 || SafeArrayGetElemsize(psarray) != sizeof(VARIANT)) return E_INVALIDARG;
        LONG lower = 0, upper = -1;
        SafeArrayGetLBound(psarray, 1, &lower);
        SafeArrayGetUBound(psarray, 1, &upper);
        if (FAILED(SafeArrayAccessData(psarray, reinterpret_cast<void**>(&items)))) return E_INVALIDARG;
        for (LONG i = 0; i <= upper - lower; ++i) {
            VARIANT converted;
            VariantInit(&converted);
            if (SUCCEEDED(VariantChangeType(&converted, &items[i], 0, VT_BSTR))) text += tov::BstrView(converted.bstrVal);
            VariantClear(&converted);
        }
        SafeArrayUnaccessData(psarray);
        // Writing into a finished document replaces it, as in the platform browser.
        m_place.Evaluate(std::string(newline ? "document.writeln(" : "document.write(") + Quoted(text) + ")");
        return S_OK;
    });
}

STDMETHODIMP CEngineDocument::write(SAFEARRAY* psarray)
{
    return Write(psarray, false);
}

STDMETHODIMP CEngineDocument::writeln(SAFEARRAY* psarray)
{
    return Write(psarray, true);
}

STDMETHODIMP CEngineDocument::close()
{
    return tov::GuardedCall([&] {
        m_place.Evaluate("document.close()");
        return S_OK;
    });
}

// ---- Elements ------------------------------------------------------------------------------------------

HRESULT CEngineElement::Create(const DocumentPlace& place, const char* which, IHTMLElement** element)
{
    if (!element) return E_POINTER;
    *element = nullptr;
    CEngineElement* made = nullptr;
    const HRESULT hr = Make<CEngineElement>(IID_IHTMLElement, element, &made);
    if (FAILED(hr)) return hr;
    made->m_place = place;
    made->m_which = which;
    return S_OK;
}

void* CEngineElement::FindInterface(REFIID riid) noexcept
{
    using tov::Entry;
    return Lookup(riid, {Entry<IHTMLElement>(IID_IHTMLElement, this), Entry<IHTMLElement>(IID_IDispatch, this)});
}

HRESULT CEngineElement::Property(const char* name, BSTR* p)
{
    const std::string element = m_which == "body" ? "document.body" : "document.documentElement";
    return Ask(p, [&] { return m_place.Evaluate("(" + element + " ? " + element + "." + name + " : '')"); });
}

STDMETHODIMP CEngineElement::get_parentElement(IHTMLElement** p)
{
    if (!p) return E_POINTER;
    *p = nullptr;
    if (m_which != "body") return S_OK; // the root element has no parent
    return CEngineElement::Create(m_place, "html", p);
}

STDMETHODIMP CEngineElement::get_tagName(BSTR* p)
{
    return TextOut(m_which == "body" ? "BODY" : "HTML", p);
}

STDMETHODIMP CEngineElement::get_outerHTML(BSTR* p)
{
    return Property("outerHTML", p);
}

STDMETHODIMP CEngineElement::get_innerHTML(BSTR* p)
{
    return Property("innerHTML", p);
}

STDMETHODIMP CEngineElement::get_innerText(BSTR* p)
{
    return Property("innerText", p);
}

// ---- Window --------------------------------------------------------------------------------------------

HRESULT CEngineWindow::Create(const DocumentPlace& place, IHTMLWindow2** window)
{
    if (!window) return E_POINTER;
    *window = nullptr;
    CEngineWindow* made = nullptr;
    const HRESULT hr = Make<CEngineWindow>(IID_IHTMLWindow2, window, &made);
    if (FAILED(hr)) return hr;
    made->m_place = place;
    return S_OK;
}

void* CEngineWindow::FindInterface(REFIID riid) noexcept
{
    using tov::Entry;
    return Lookup(riid, {Entry<IHTMLWindow2>(IID_IHTMLWindow2, this), Entry<IHTMLWindow2>(IID_IHTMLFramesCollection2, this),
                         Entry<IHTMLWindow2>(IID_IDispatch, this)});
}

STDMETHODIMP CEngineWindow::execScript(BSTR code, BSTR language, VARIANT* pvarRet)
{
    if (pvarRet) VariantInit(pvarRet);
    if (!code) return E_INVALIDARG;
    const std::wstring_view lang = tov::BstrView(language);
    // The engine runs JavaScript only.
    if (!lang.empty() && _wcsicmp(std::wstring(lang).c_str(), L"javascript") != 0 &&
        _wcsicmp(std::wstring(lang).c_str(), L"jscript") != 0 && _wcsicmp(std::wstring(lang).c_str(), L"ecmascript") != 0)
        return E_INVALIDARG;
    return tov::GuardedCall([&] {
        m_place.Evaluate(Utf8(tov::BstrView(code)));
        return S_OK;
    });
}

STDMETHODIMP CEngineWindow::get_document(IHTMLDocument2** p)
{
    if (!p) return E_POINTER;
    *p = nullptr;
    IDispatch* document = nullptr;
    const HRESULT hr = CEngineDocument::Create(m_place.page.lock(), m_place.frameId, &document);
    if (FAILED(hr)) return hr;
    *p = static_cast<IHTMLDocument2*>(document);
    return S_OK;
}

STDMETHODIMP CEngineWindow::get_event(IHTMLEventObj** p)
{
    if (!p) return E_POINTER;
    *p = nullptr;
    return S_OK;
}

STDMETHODIMP CEngineWindow::get_name(BSTR* p)
{
    return Ask(p, [&] { return m_place.Evaluate("window.name"); });
}

} // namespace tovengine
