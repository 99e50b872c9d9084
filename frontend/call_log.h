#pragma once
// An ordered record of the calls a stand-in receives, as "Name(arg, arg)" texts.
#include <windows.h>
#include <oaidl.h>
#include <string>
#include <vector>

namespace tovfe {

struct Call {
    std::wstring name;
    std::vector<std::wstring> args;
    std::wstring Text() const;
};

class CallLog {
public:
    void Add(std::wstring name, std::vector<std::wstring> args = {}) { m_calls.push_back({std::move(name), std::move(args)}); }
    const std::vector<Call>& Calls() const { return m_calls; }
    std::vector<std::wstring> Texts() const;
    std::vector<std::wstring> Names() const;
    size_t Count(const std::wstring& name) const;
    void Clear() { m_calls.clear(); }

private:
    std::vector<Call> m_calls;
};

// Argument texts: "<null>" for a null string or pointer, "<empty>" for VT_EMPTY, "I4:12", "BSTR:text",
// "BOOL:true", "DISPATCH:object", "ref " before a referenced value, "ARRAY:<n bytes>", else "vt<N>".
std::wstring ArgText(BSTR value);
std::wstring ArgText(const VARIANT* value);
std::wstring HexArg(unsigned long long value);

} // namespace tovfe
