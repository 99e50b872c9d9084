#pragma once
// The control's trace: lines go to the front end's trace sink, scopes write entry and exit lines.
#include <windows.h>
#include <string>
#include <string_view>
#include "tov_frontend.h"
#include "control/trace_lines.h"
#include "framework/com_ptr.h"

class CTrace {
public:
    CTrace();

    unsigned Level() const { return m_lines.Level(); }
    const GUID& ComponentId() const { return m_clsid; }
    const std::string& Depth() const { return m_lines.Depth(); }
    tov::trace::TraceLines& Lines() { return m_lines; }

    // Asks the sink for the level; a failure means level 0, no sink leaves it as it is.
    void RefreshLevel(ITOVTraceSink* pSink);
    // One line straight to the sink, under the caller's own level test.
    void WriteLine(ITOVTraceSink* pSink, const std::string& line) const;
    // The failure block for what the boundary `where` caught, when the level asks for it; never fails.
    void CaughtFailure(ITOVTraceSink* pSink, HRESULT hr, std::string_view where) const noexcept;

private:
    tov::trace::TraceLines m_lines;
    GUID m_clsid;
};

class CTraceScope {
public:
    // Takes over the reference in `sink` for the scope's lifetime.
    CTraceScope(CTrace& trace, tov::ComPtr<ITOVTraceSink> sink, std::string_view name, unsigned level = 1);
    ~CTraceScope();
    CTraceScope(const CTraceScope&) = delete;
    CTraceScope& operator=(const CTraceScope&) = delete;

    // A message of kind 0 (detail, level 2 and above), 1 or 2 (framed block at any level).
    void Write(std::string_view text, int kind) const;
    // A plain line when the trace level is at least `minLevel`.
    void Detail(const std::string& line, unsigned minLevel = 2) const;
    ITOVTraceSink* Sink() const { return m_pSink.Get(); }
    CTrace& Trace() const { return m_trace; }

private:
    CTrace& m_trace;
    tov::ComPtr<ITOVTraceSink> m_pSink;
    size_t m_nDepth = 0;
    std::string m_strLine;
};

// Narrow text of a wide string in the thread's ANSI code page, as trace lines carry it.
std::string ToAnsi(std::wstring_view text);
