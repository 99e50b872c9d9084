#pragma once
// An ordered record of the calls stand-ins receive, as "Name(arg, arg)" texts, and the failures a test
// plans for them.
#include <windows.h>
#include <oaidl.h>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>
#include "framework/hresult_error.h"

namespace tovfe {

struct Call {
    std::wstring name;
    std::vector<std::wstring> args;
    std::wstring Text() const;
};

class CallLog {
public:
    void Add(std::wstring name, std::vector<std::wstring> args = {});
    const std::vector<Call>& Calls() const { return m_calls; }
    std::vector<std::wstring> Texts() const;
    std::vector<std::wstring> Names() const;
    size_t Count(const std::wstring& name) const;
    void Clear() { m_calls.clear(); }

private:
    std::vector<Call> m_calls;
};

// Thrown by a stand-in that a test told to throw: the one exception meant to escape a COM method, so
// that the caller's guard can be tested.
class AskedToThrow : public std::runtime_error {
public:
    explicit AskedToThrow(const std::wstring& call);
};

// What recorded calls answer, keyed by call name ("GoBack") or full text ("Advise(DWebBrowserEvents2)");
// the full text wins.
class FailurePlan {
public:
    void Fail(const std::wstring& key, HRESULT hr) { m_failures[key] = hr; }
    void Throw(const std::wstring& key) { m_throwing.insert(key); }
    void Clear();
    // S_OK, the planned failure, or AskedToThrow.
    HRESULT Outcome(const Call& call) const;

private:
    std::map<std::wstring, HRESULT> m_failures;
    std::set<std::wstring> m_throwing;
};

// The log and failure plan a group of stand-ins shares: each call is recorded, then answered as planned.
class Recorder {
public:
    HRESULT Record(std::wstring name, std::vector<std::wstring> args = {})
    {
        log.Add(std::move(name), std::move(args));
        return plan.Outcome(log.Calls().back());
    }
    CallLog log;
    FailurePlan plan;
};

// Runs the body of a stand-in's COM method: AskedToThrow passes, any other exception becomes its HRESULT.
template <class F> HRESULT StandInCall(F&& body)
{
    try {
        return body();
    } catch (const AskedToThrow&) {
        throw;
    } catch (...) {
        return tov::HResultFromCurrentException();
    }
}

// Argument texts: "<null>" for a null string or VARIANT pointer, "<empty>" for VT_EMPTY, "I4:12",
// "BSTR:text", "BOOL:true", "DISPATCH:object" or "DISPATCH:<null>", "ref " before a referenced value,
// "ARRAY:16 bytes", otherwise "vt<N>".
std::wstring ArgText(BSTR value);
std::wstring ArgText(const VARIANT* value);
std::wstring HexArg(unsigned long long value);

} // namespace tovfe
