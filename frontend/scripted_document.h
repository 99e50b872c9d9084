#pragma once
// The scripted document: what the platform browser's get_Document hands out, as far as the control
// uses it. The document (IHTMLDocument2) with charset and default charset, its body and the root element
// above it with the page's outer HTML, its parent window whose execScript records every script with its
// language, and the window's event object with the script-error properties late-bound. Every step is
// recorded, can be planned to fail (by call name or full text) or to hand out null.
#include <windows.h>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>
#include "frontend/call_log.h"
#include "frontend/frontend_container.h"
#include "framework/html_dom_stubs.h"
#include "framework/com_ptr.h"
#include "framework/variant.h"

namespace tovfe {

// What one scripted page knows and records; shared by its document, elements, window and event object.
struct ScriptedPage {
    // The event object starts with a script error: line 3, character 7, code 0, a message and a URL.
    ScriptedPage();

    Recorder rec;
    std::wstring charset = L"utf-8";
    std::wstring defaultCharset = L"windows-1252";
    std::wstring outerHTML = L"<HTML><HEAD></HEAD>\r\n<BODY></BODY></HTML>";
    std::wstring bodyHTML = L"<BODY></BODY>";
    // The document does not answer IHTMLDocument2 (only IDispatch).
    bool withoutDocument2 = false;
    // Steps that answer S_OK with null instead of their object.
    bool nullBody = false;
    bool nullRoot = false;
    bool nullWindow = false;
    bool nullEvent = false;

    struct Script {
        std::wstring text;
        std::wstring language;
    };
    // Every script execScript received, in order.
    std::vector<Script> scripts;
    // Global variables that scripts of the form  name = "text"  set.
    std::map<std::wstring, std::wstring> variables;
    // Late-bound properties of the event object, in the order of their dispatch identifiers (from 1).
    std::vector<std::pair<std::wstring, tov::Variant>> eventProperties;
    void SetEventProperty(const std::wstring& name, tov::Variant value);
};

class ScriptedEventObject final : public tov::ObjectRoot, public tov::HTMLEventObjStubs {
public:
    static tov::ComPtr<ScriptedEventObject> Create(std::shared_ptr<ScriptedPage> page);
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override;

    STDMETHODIMP GetTypeInfoCount(UINT* n) override;
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** pp) override;
    STDMETHODIMP GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID lcid, DISPID* ids) override;
    STDMETHODIMP Invoke(DISPID id, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result,
                        EXCEPINFO* excepInfo, UINT* argErr) override;

private:
    friend class tov::ObjectRoot;
    ScriptedEventObject() = default;
    std::shared_ptr<ScriptedPage> m_page;
};

class ScriptedWindow final : public tov::ObjectRoot, public EarlyBoundOnly<tov::HTMLWindow2Stubs> {
public:
    static tov::ComPtr<ScriptedWindow> Create(std::shared_ptr<ScriptedPage> page);
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override;

    STDMETHODIMP get_event(IHTMLEventObj** p) override;
    STDMETHODIMP execScript(BSTR code, BSTR language, VARIANT* pvarRet) override;

private:
    friend class tov::ObjectRoot;
    ScriptedWindow() = default;
    std::shared_ptr<ScriptedPage> m_page;
    tov::ComPtr<ScriptedEventObject> m_event;
};

// The body ("body") or the root element ("html") of the page; the body's parent is the root.
class ScriptedElement final : public tov::ObjectRoot, public EarlyBoundOnly<tov::HTMLElementStubs> {
public:
    static tov::ComPtr<ScriptedElement> Create(std::shared_ptr<ScriptedPage> page, std::wstring tag,
                                               ScriptedElement* parent);
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override;

    STDMETHODIMP get_parentElement(IHTMLElement** p) override;
    STDMETHODIMP get_outerHTML(BSTR* p) override;

private:
    friend class tov::ObjectRoot;
    ScriptedElement() = default;
    std::shared_ptr<ScriptedPage> m_page;
    std::wstring m_tag;
    tov::ComPtr<ScriptedElement> m_parent;
};

class ScriptedDocument final : public tov::ObjectRoot, public EarlyBoundOnly<tov::HTMLDocument2Stubs> {
public:
    static tov::ComPtr<ScriptedDocument> Create(std::shared_ptr<ScriptedPage> page = std::make_shared<ScriptedPage>());
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override;

    ScriptedPage& Page() { return *m_page; }
    CallLog& Log() { return m_page->rec.log; }
    FailurePlan& Plan() { return m_page->rec.plan; }
    // The document as the browser hands it out.
    IDispatch* AsDispatch() { return static_cast<IHTMLDocument2*>(this); }

    STDMETHODIMP get_body(IHTMLElement** p) override;
    STDMETHODIMP get_charset(BSTR* p) override;
    STDMETHODIMP get_defaultCharset(BSTR* p) override;
    STDMETHODIMP get_parentWindow(IHTMLWindow2** p) override;

private:
    friend class tov::ObjectRoot;
    ScriptedDocument() = default;
    std::shared_ptr<ScriptedPage> m_page;
    tov::ComPtr<ScriptedElement> m_body;
    tov::ComPtr<ScriptedWindow> m_window;
};

} // namespace tovfe
