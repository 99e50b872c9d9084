#include "frontend/event_printer.h"
#include <ocidl.h>
#include <cstdio>
#include "TOVHTML_h.h"
#include "framework/code_pages.h"

namespace tovfe {

tov::ComPtr<EventPrinter> EventPrinter::Create(ITypeInfo* events)
{
    void* pv = nullptr;
    tov::ThrowIfFailed(tov::ObjectRoot::CreateInstance<EventPrinter>(nullptr, IID_IDispatch, &pv));
    tov::ComPtr<EventPrinter> p;
    p.Attach(static_cast<EventPrinter*>(static_cast<IDispatch*>(pv)));
    p->m_events = events;
    return p;
}

void* EventPrinter::FindInterface(REFIID riid) noexcept
{
    return Lookup(riid, {tov::Entry<IDispatch>(IID_IDispatch, this), tov::Entry<IDispatch>(DIID__TOVHTMLControlEvents, this)});
}

tov::ComPtr<ITypeInfo> ControlEventsTypeInfo(IUnknown* control)
{
    tov::ComPtr<IProvideClassInfo> info;
    tov::ComPtr<ITypeInfo> coclass, events;
    tov::ComPtr<ITypeLib> lib;
    UINT index = 0;
    if (control && SUCCEEDED(control->QueryInterface(IID_IProvideClassInfo, info.PutVoid())) &&
        SUCCEEDED(info->GetClassInfo(coclass.Put())) && SUCCEEDED(coclass->GetContainingTypeLib(lib.Put(), &index)))
        lib->GetTypeInfoOfGuid(DIID__TOVHTMLControlEvents, events.Put());
    return events;
}

std::wstring DisplayText(const VARIANT& v, size_t maxChars)
{
    const VARIANT& d = (v.vt & VT_BYREF) && v.vt == (VT_BYREF | VT_VARIANT) && v.pvarVal ? *v.pvarVal : v;
    switch (d.vt) {
    case VT_BSTR: {
        if (!d.bstrVal) return L"null";
        std::wstring s(d.bstrVal, SysStringLen(d.bstrVal));
        if (s.size() > maxChars) s = s.substr(0, maxChars / 2) + L" ... " + s.substr(s.size() - maxChars / 2);
        return L"\"" + s + L"\"";
    }
    case VT_I4: return std::to_wstring(d.lVal);
    case VT_I2: return std::to_wstring(d.iVal);
    case VT_BOOL: return d.boolVal ? L"true" : L"false";
    case VT_EMPTY: return L"(empty)";
    default: return L"(vt " + std::to_wstring(d.vt) + L")";
    }
}

std::string ConsoleText(std::wstring_view text)
{
    return tov::Narrow(text, CP_UTF8);
}

STDMETHODIMP EventPrinter::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*, UINT*)
{
    BSTR names[16] = {};
    UINT count = 0;
    if (m_events) m_events->GetNames(id, names, 16, &count);
    std::wstring name = count && names[0] ? names[0] : L"event " + std::to_wstring(id);
    m_names.push_back(name);
    std::printf("  event %s\n", ConsoleText(name).c_str());
    const UINT args = params ? params->cArgs : 0;
    for (UINT i = 0; i < args; ++i) {
        // Arguments arrive last first.
        const VARIANT& v = params->rgvarg[args - 1 - i];
        const wchar_t* argName = i + 1 < count && names[i + 1] ? names[i + 1] : L"?";
        std::printf("    %-12s %s\n", ConsoleText(argName).c_str(), ConsoleText(DisplayText(v)).c_str());
    }
    for (UINT i = 0; i < count; ++i) SysFreeString(names[i]);
    if (afterEach) {
        std::vector<VARIANT> ordered;
        for (UINT i = 0; i < args; ++i) ordered.push_back(params->rgvarg[args - 1 - i]);
        afterEach(name, ordered);
    }
    return S_OK;
}

} // namespace tovfe
