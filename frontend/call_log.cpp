#include "frontend/call_log.h"
#include <cstdio>

namespace tovfe {

std::wstring Call::Text() const
{
    std::wstring t = name + L"(";
    for (size_t i = 0; i < args.size(); ++i) t += (i ? L", " : L"") + args[i];
    return t + L")";
}

std::vector<std::wstring> CallLog::Texts() const
{
    std::vector<std::wstring> out;
    for (const auto& c : m_calls) out.push_back(c.Text());
    return out;
}

std::vector<std::wstring> CallLog::Names() const
{
    std::vector<std::wstring> out;
    for (const auto& c : m_calls) out.push_back(c.name);
    return out;
}

size_t CallLog::Count(const std::wstring& name) const
{
    size_t n = 0;
    for (const auto& c : m_calls) n += c.name == name ? 1 : 0;
    return n;
}

std::wstring ArgText(BSTR value)
{
    return value ? std::wstring(value, SysStringLen(value)) : L"<null>";
}

std::wstring ArgText(const VARIANT* v)
{
    if (!v) return L"<null>";
    if (v->vt == (VT_BYREF | VT_VARIANT)) return L"ref " + ArgText(v->pvarVal);
    if (v->vt & VT_ARRAY) {
        SAFEARRAY* a = (v->vt & VT_BYREF) ? (v->pparray ? *v->pparray : nullptr) : v->parray;
        if (!a) return L"ARRAY:<null>";
        LONG lo = 0, hi = -1;
        SafeArrayGetLBound(a, 1, &lo);
        SafeArrayGetUBound(a, 1, &hi);
        return L"ARRAY:" + std::to_wstring((hi - lo + 1) * static_cast<LONG>(SafeArrayGetElemsize(a))) + L" bytes";
    }
    switch (v->vt) {
    case VT_EMPTY: return L"<empty>";
    case VT_NULL: return L"<vtnull>";
    case VT_I4: return L"I4:" + std::to_wstring(v->lVal);
    case VT_INT: return L"I4:" + std::to_wstring(v->intVal);
    case VT_BSTR: return L"BSTR:" + ArgText(v->bstrVal);
    case VT_BOOL: return std::wstring(L"BOOL:") + (v->boolVal ? L"true" : L"false");
    case VT_DISPATCH: return std::wstring(L"DISPATCH:") + (v->pdispVal ? L"object" : L"<null>");
    case VT_UNKNOWN: return std::wstring(L"UNKNOWN:") + (v->punkVal ? L"object" : L"<null>");
    default: return L"vt" + std::to_wstring(v->vt);
    }
}

std::wstring HexArg(unsigned long long value)
{
    wchar_t buf[32];
    swprintf(buf, 32, L"0x%llx", value);
    return buf;
}

} // namespace tovfe
