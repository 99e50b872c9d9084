#include "frontend/call_log.h"
#include <cstdio>

namespace tovfe {
namespace {

std::string Narrow(const std::wstring& s)
{
    std::string out;
    for (wchar_t c : s) out += c < 0x80 ? static_cast<char>(c) : '?';
    return out;
}

std::wstring ArrayText(const SAFEARRAY* a)
{
    if (!a) return L"ARRAY:<null>";
    unsigned long long elements = a->cDims ? 1 : 0;
    for (USHORT d = 0; d < a->cDims; ++d) elements *= a->rgsabound[d].cElements;
    return L"ARRAY:" + std::to_wstring(elements * a->cbElements) + L" bytes";
}

// The value a VT_BYREF variant points at, as a variant of its own that borrows it.
bool Dereference(const VARIANT& ref, VARIANT& target)
{
    if (!ref.byref) return false;
    VariantInit(&target);
    target.vt = ref.vt & ~VT_BYREF;
    if (target.vt & VT_ARRAY) {
        target.parray = *ref.pparray;
        return true;
    }
    switch (target.vt) {
    case VT_I4: target.lVal = *ref.plVal; return true;
    case VT_BSTR: target.bstrVal = *ref.pbstrVal; return true;
    case VT_BOOL: target.boolVal = *ref.pboolVal; return true;
    case VT_DISPATCH: target.pdispVal = *ref.ppdispVal; return true;
    default: return true; // shown by its type alone
    }
}

} // namespace

std::wstring Call::Text() const
{
    std::wstring t = name + L"(";
    for (size_t i = 0; i < args.size(); ++i) t += (i ? L", " : L"") + args[i];
    return t + L")";
}

void CallLog::Add(std::wstring name, std::vector<std::wstring> args)
{
    m_calls.push_back({std::move(name), std::move(args)});
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

AskedToThrow::AskedToThrow(const std::wstring& call) : std::runtime_error("stand-in told to throw in " + Narrow(call)) {}

void FailurePlan::Clear()
{
    m_failures.clear();
    m_throwing.clear();
}

HRESULT FailurePlan::Outcome(const Call& call) const
{
    const std::wstring text = call.Text();
    for (const std::wstring* key : {&text, &call.name}) {
        if (m_throwing.count(*key)) throw AskedToThrow(text);
        auto f = m_failures.find(*key);
        if (f != m_failures.end()) return f->second;
    }
    return S_OK;
}

std::wstring ArgText(BSTR value)
{
    return value ? std::wstring(value, SysStringLen(value)) : L"<null>";
}

std::wstring ArgText(const VARIANT* v)
{
    if (!v) return L"<null>";
    if (v->vt & VT_BYREF) {
        if (v->vt == (VT_BYREF | VT_VARIANT)) return L"ref " + ArgText(v->pvarVal);
        VARIANT target;
        return L"ref " + (Dereference(*v, target) ? ArgText(&target) : std::wstring(L"<null>"));
    }
    if (v->vt & VT_ARRAY) return ArrayText(v->parray);
    switch (v->vt) {
    case VT_EMPTY: return L"<empty>";
    case VT_I4: return L"I4:" + std::to_wstring(v->lVal);
    case VT_BSTR: return L"BSTR:" + ArgText(v->bstrVal);
    case VT_BOOL: return std::wstring(L"BOOL:") + (v->boolVal ? L"true" : L"false");
    case VT_DISPATCH: return std::wstring(L"DISPATCH:") + (v->pdispVal ? L"object" : L"<null>");
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
