#pragma once
// The demo front end's sink for the control's events: names each event and its arguments from the
// control's type library and prints them, one event per block.
#include <windows.h>
#include <oaidl.h>
#include <functional>
#include <string>
#include <string_view>
#include <vector>
#include "framework/com_ptr.h"
#include "framework/object_root.h"
#include "framework/hresult_error.h"

namespace tovfe {

class EventPrinter final : public tov::ObjectRoot, public IDispatch {
public:
    static tov::ComPtr<EventPrinter> Create(ITypeInfo* events);

    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override;
    STDMETHODIMP GetTypeInfoCount(UINT* n) override { if (n) *n = 0; return S_OK; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** pp) override { return tov::NotImplemented(pp); }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*, UINT*) override;

    // Every event printed so far, as "Name" texts.
    const std::vector<std::wstring>& Names() const { return m_names; }
    // Runs after each event is printed, with its name and arguments in the order of the declaration.
    std::function<void(const std::wstring& name, const std::vector<VARIANT>& args)> afterEach;

private:
    friend class tov::ObjectRoot;
    EventPrinter() = default;
    tov::ComPtr<ITypeInfo> m_events;
    std::vector<std::wstring> m_names;
};

// The control's outgoing event interface as its own type library describes it (null when it does not):
// what names the events and their arguments for a printer.
tov::ComPtr<ITypeInfo> ControlEventsTypeInfo(IUnknown* control);

// Text for a person: strings in quotes (long ones shortened in the middle), "null", numbers as they are.
std::wstring DisplayText(const VARIANT& v, size_t maxChars = 120);

// UTF-8 for the console, whose output code page the demo sets to UTF-8: national characters reach a
// terminal as they are rather than as bytes of the ANSI code page.
std::string ConsoleText(std::wstring_view text);

} // namespace tovfe
