#include "frontend/scripted_document.h"
#include <cwctype>
#include "framework/bstr.h"

namespace tovfe {
namespace {

HRESULT CopyText(const std::wstring& text, BSTR* out)
{
    *out = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *out ? S_OK : E_OUTOFMEMORY;
}

// One step of the page handing out an object: recorded, planned failure, or `object` (null when `absent`).
template <class Itf>
HRESULT ObjectStep(Recorder& rec, std::wstring name, std::vector<std::wstring> args, Itf* object, bool absent, Itf** pp)
{
    if (pp) *pp = nullptr;
    return StandInCall([&] {
        const HRESULT hr = rec.Record(std::move(name), std::move(args));
        if (FAILED(hr)) return hr;
        if (!pp) return E_POINTER;
        *pp = absent ? nullptr : object;
        if (*pp) (*pp)->AddRef();
        return hr;
    });
}

// One step of the page handing out a text.
HRESULT TextStep(Recorder& rec, std::wstring name, std::vector<std::wstring> args, const std::wstring& text, BSTR* p)
{
    if (p) *p = nullptr;
    return StandInCall([&] {
        const HRESULT hr = rec.Record(std::move(name), std::move(args));
        if (FAILED(hr)) return hr;
        return p ? CopyText(text, p) : E_POINTER;
    });
}

std::wstring Trimmed(std::wstring_view s)
{
    size_t b = 0, e = s.size();
    while (b < e && std::iswspace(s[b])) ++b;
    while (e > b && (std::iswspace(s[e - 1]) || s[e - 1] == L';')) --e;
    return std::wstring(s.substr(b, e - b));
}

// A script of the form  name = "text"  (or with single quotes) sets a global variable of the page.
void RememberVariable(ScriptedPage& page, std::wstring_view script)
{
    const size_t eq = script.find(L'=');
    if (eq == std::wstring_view::npos) return;
    const std::wstring name = Trimmed(script.substr(0, eq));
    const std::wstring value = Trimmed(script.substr(eq + 1));
    if (name.empty() || value.size() < 2 || (value.front() != L'"' && value.front() != L'\'') || value.back() != value.front())
        return;
    for (wchar_t c : name)
        if (!std::iswalnum(c) && c != L'_' && c != L'$') return;
    page.variables[name] = value.substr(1, value.size() - 2);
}

std::wstring NameText(LPOLESTR name)
{
    return name ? std::wstring(name) : std::wstring(L"<null>");
}

} // namespace

ScriptedPage::ScriptedPage()
{
    SetEventProperty(L"errorLine", tov::Variant::I4(3));
    SetEventProperty(L"errorCharacter", tov::Variant::I4(7));
    SetEventProperty(L"errorCode", tov::Variant::I4(0));
    tov::Variant message;
    message.vt = VT_BSTR;
    message.bstrVal = tov::Bstr(L"'x' is undefined").Detach();
    SetEventProperty(L"errorMessage", message);
    tov::Variant url;
    url.vt = VT_BSTR;
    url.bstrVal = tov::Bstr(L"about:blank").Detach();
    SetEventProperty(L"errorUrl", url);
}

void ScriptedPage::SetEventProperty(const std::wstring& name, tov::Variant value)
{
    for (auto& [n, v] : eventProperties) {
        if (n == name) {
            v = value;
            return;
        }
    }
    eventProperties.emplace_back(name, std::move(value));
}

// ---- Event object -------------------------------------------------------------------------------------

tov::ComPtr<ScriptedEventObject> ScriptedEventObject::Create(std::shared_ptr<ScriptedPage> page)
{
    auto p = CreateStandIn<ScriptedEventObject, IHTMLEventObj>(IID_IHTMLEventObj);
    p->m_page = std::move(page);
    return p;
}

void* ScriptedEventObject::FindInterface(REFIID riid) noexcept
{
    return Lookup(riid, {tov::Entry<IHTMLEventObj>(IID_IHTMLEventObj, this), tov::Entry<IHTMLEventObj>(IID_IDispatch, this)});
}

STDMETHODIMP ScriptedEventObject::GetTypeInfoCount(UINT* n)
{
    if (n) *n = 0;
    return S_OK;
}

STDMETHODIMP ScriptedEventObject::GetTypeInfo(UINT, LCID, ITypeInfo** pp)
{
    if (pp) *pp = nullptr;
    return E_NOTIMPL;
}

STDMETHODIMP ScriptedEventObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID lcid, DISPID* ids)
{
    return StandInCall([&] {
        if (!names || !ids || count == 0) return E_INVALIDARG;
        const HRESULT hr = m_page->rec.Record(L"GetIDsOfNames", {NameText(names[0]), HexArg(lcid)});
        for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;
        if (FAILED(hr)) return hr;
        HRESULT answer = S_OK;
        for (UINT i = 0; i < count; ++i) {
            const auto& props = m_page->eventProperties;
            for (size_t k = 0; names[i] && k < props.size(); ++k)
                if (_wcsicmp(props[k].first.c_str(), names[i]) == 0) ids[i] = static_cast<DISPID>(k + 1);
            if (ids[i] == DISPID_UNKNOWN) answer = DISP_E_UNKNOWNNAME;
        }
        return answer;
    });
}

STDMETHODIMP ScriptedEventObject::Invoke(DISPID id, REFIID, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result,
                                         EXCEPINFO*, UINT*)
{
    return StandInCall([&] {
        const auto& props = m_page->eventProperties;
        const bool known = id >= 1 && static_cast<size_t>(id) <= props.size();
        const std::wstring name = known ? props[id - 1].first : std::to_wstring(id);
        const HRESULT hr = m_page->rec.Record(L"Invoke", {name, HexArg(lcid), std::to_wstring(flags),
                                                          std::to_wstring(params ? params->cArgs : 0)});
        if (FAILED(hr)) return hr;
        if (!known) return DISP_E_MEMBERNOTFOUND;
        if (!(flags & DISPATCH_PROPERTYGET)) return DISP_E_MEMBERNOTFOUND;
        if (!result) return S_OK;
        VariantInit(result);
        return VariantCopy(result, const_cast<tov::Variant*>(&props[id - 1].second));
    });
}

// ---- Window -------------------------------------------------------------------------------------------

tov::ComPtr<ScriptedWindow> ScriptedWindow::Create(std::shared_ptr<ScriptedPage> page)
{
    auto p = CreateStandIn<ScriptedWindow, IHTMLWindow2>(IID_IHTMLWindow2);
    p->m_event = ScriptedEventObject::Create(page);
    p->m_page = std::move(page);
    return p;
}

void* ScriptedWindow::FindInterface(REFIID riid) noexcept
{
    return Lookup(riid, {tov::Entry<IHTMLWindow2>(IID_IHTMLWindow2, this),
                         tov::Entry<IHTMLWindow2>(IID_IHTMLFramesCollection2, this),
                         tov::Entry<IHTMLWindow2>(IID_IDispatch, this)});
}

STDMETHODIMP ScriptedWindow::get_event(IHTMLEventObj** p)
{
    return ObjectStep<IHTMLEventObj>(m_page->rec, L"get_event", {}, m_event.Get(), m_page->nullEvent, p);
}

STDMETHODIMP ScriptedWindow::execScript(BSTR code, BSTR language, VARIANT* pvarRet)
{
    if (pvarRet) VariantInit(pvarRet);
    return StandInCall([&] {
        const HRESULT hr = m_page->rec.Record(L"execScript", {ArgText(code), ArgText(language)});
        if (FAILED(hr)) return hr;
        const tov::Bstr text = tov::Bstr::CopyOf(code);
        m_page->scripts.push_back({std::wstring(text.View()), std::wstring(tov::Bstr::CopyOf(language).View())});
        RememberVariable(*m_page, text.View());
        return hr;
    });
}

// ---- Elements -----------------------------------------------------------------------------------------

tov::ComPtr<ScriptedElement> ScriptedElement::Create(std::shared_ptr<ScriptedPage> page, std::wstring tag,
                                                     ScriptedElement* parent)
{
    auto p = CreateStandIn<ScriptedElement, IHTMLElement>(IID_IHTMLElement);
    p->m_page = std::move(page);
    p->m_tag = std::move(tag);
    p->m_parent = parent;
    return p;
}

void* ScriptedElement::FindInterface(REFIID riid) noexcept
{
    return Lookup(riid, {tov::Entry<IHTMLElement>(IID_IHTMLElement, this), tov::Entry<IHTMLElement>(IID_IDispatch, this)});
}

STDMETHODIMP ScriptedElement::get_parentElement(IHTMLElement** p)
{
    return ObjectStep<IHTMLElement>(m_page->rec, L"get_parentElement", {m_tag}, m_parent.Get(), m_page->nullRoot, p);
}

STDMETHODIMP ScriptedElement::get_outerHTML(BSTR* p)
{
    return TextStep(m_page->rec, L"get_outerHTML", {m_tag}, m_parent ? m_page->bodyHTML : m_page->outerHTML, p);
}

// ---- Document -----------------------------------------------------------------------------------------

tov::ComPtr<ScriptedDocument> ScriptedDocument::Create(std::shared_ptr<ScriptedPage> page)
{
    auto p = CreateStandIn<ScriptedDocument, IHTMLDocument2>(IID_IHTMLDocument2);
    auto root = ScriptedElement::Create(page, L"html", nullptr);
    p->m_body = ScriptedElement::Create(page, L"body", root.Get());
    p->m_window = ScriptedWindow::Create(page);
    p->m_page = std::move(page);
    return p;
}

void* ScriptedDocument::FindInterface(REFIID riid) noexcept
{
    if (m_page && m_page->withoutDocument2 && !IsEqualIID(riid, IID_IDispatch) && !IsEqualIID(riid, IID_IUnknown))
        return nullptr;
    return Lookup(riid, {tov::Entry<IHTMLDocument2>(IID_IHTMLDocument2, this),
                         tov::Entry<IHTMLDocument2>(IID_IHTMLDocument, this),
                         tov::Entry<IHTMLDocument2>(IID_IDispatch, this)});
}

STDMETHODIMP ScriptedDocument::get_body(IHTMLElement** p)
{
    return ObjectStep<IHTMLElement>(m_page->rec, L"get_body", {}, m_body.Get(), m_page->nullBody, p);
}

STDMETHODIMP ScriptedDocument::get_charset(BSTR* p)
{
    return TextStep(m_page->rec, L"get_charset", {}, m_page->charset, p);
}

STDMETHODIMP ScriptedDocument::get_defaultCharset(BSTR* p)
{
    return TextStep(m_page->rec, L"get_defaultCharset", {}, m_page->defaultCharset, p);
}

STDMETHODIMP ScriptedDocument::get_parentWindow(IHTMLWindow2** p)
{
    return ObjectStep<IHTMLWindow2>(m_page->rec, L"get_parentWindow", {}, m_window.Get(), m_page->nullWindow, p);
}

} // namespace tovfe
