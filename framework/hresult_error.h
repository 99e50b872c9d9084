#pragma once
// Failures inside the control travel as exceptions carrying an HRESULT and are caught at every COM boundary.
#include <windows.h>
#include <exception>
#include <string_view>

namespace tov {

class HResultError : public std::exception {
public:
    explicit HResultError(HRESULT hr) noexcept : m_hr(hr) {}
    HRESULT Code() const noexcept { return m_hr; }
    const char* what() const noexcept override { return "HRESULT failure"; }

private:
    HRESULT m_hr;
};

[[noreturn]] inline void Throw(HRESULT hr) { throw HResultError(hr); }

inline HRESULT ThrowIfFailed(HRESULT hr)
{
    if (FAILED(hr)) Throw(hr);
    return hr;
}

template <class T> T* ThrowIfNull(T* p, HRESULT hr = E_OUTOFMEMORY)
{
    if (!p) Throw(hr);
    return p;
}

// The HRESULT that an exception caught at a COM boundary stands for.
inline HRESULT HResultFromCurrentException() noexcept
{
    try {
        throw;
    } catch (const HResultError& e) {
        return e.Code();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

// Runs a body at a COM boundary: no exception leaves it.
template <class F> HRESULT GuardedCall(F&& body) noexcept
{
    try {
        return body();
    } catch (...) {
        return HResultFromCurrentException();
    }
}

// The answer of an operation an object does not offer: E_NOTIMPL, with its out-argument cleared.
template <class T> HRESULT NotImplemented(T* out) noexcept
{
    if (out) *out = T{};
    return E_NOTIMPL;
}

// Where an object's boundaries report what they caught: the HRESULT and the boundary's name. Objects
// that keep a trace write it there (the others report nowhere); the report itself never fails.
class FailureReport {
public:
    virtual void CaughtFailure(HRESULT, std::string_view) noexcept {}

protected:
    ~FailureReport() = default;
};

// Inside a catch block: the HRESULT the caught exception stands for, reported.
inline HRESULT ReportCaught(FailureReport& report, std::string_view where) noexcept
{
    const HRESULT hr = HResultFromCurrentException();
    report.CaughtFailure(hr, where);
    return hr;
}

// GuardedCall for an object that reports what its boundaries catch.
template <class F> HRESULT GuardedCall(F&& body, FailureReport& report, std::string_view where) noexcept
{
    try {
        return body();
    } catch (...) {
        return ReportCaught(report, where);
    }
}

} // namespace tov
