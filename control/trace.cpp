#include "control/trace.h"
#include "framework/code_pages.h"

namespace {

tov::trace::LineWriter SinkWriter(ITOVTraceSink* pSink, const GUID& component)
{
    return [pSink, component](const std::string& line) {
        if (pSink) pSink->WriteLine(component, line.c_str());
    };
}

} // namespace

std::string ToAnsi(std::wstring_view text)
{
    return tov::Narrow(text, CP_THREAD_ACP);
}

CTrace::CTrace() : m_clsid(GUID_NULL)
{
    if (FAILED(CLSIDFromProgID(L"TOV.HTMLControl.1", &m_clsid))) m_clsid = GUID_NULL;
}

void CTrace::RefreshLevel(ITOVTraceSink* pSink)
{
    if (!pSink) return;
    ULONG level = 0;
    if (FAILED(pSink->GetTraceLevel(m_clsid, &level))) level = 0;
    m_lines.SetLevel(level);
}

void CTrace::WriteLine(ITOVTraceSink* pSink, const std::string& line) const
{
    if (pSink) pSink->WriteLine(m_clsid, line.c_str());
}

void CTrace::CaughtFailure(ITOVTraceSink* pSink, HRESULT hr, std::string_view where) const noexcept
{
    if (!pSink) return;
    try {
        m_lines.CaughtFailure(static_cast<uint32_t>(hr), where, SinkWriter(pSink, m_clsid));
    } catch (...) {
    }
}

CTraceScope::CTraceScope(CTrace& trace, tov::ComPtr<ITOVTraceSink> sink, std::string_view name, unsigned level)
    : m_trace(trace), m_pSink(std::move(sink))
{
    try {
        m_strLine = m_trace.Lines().Open(name, level, m_pSink.Get() != nullptr,
                                         SinkWriter(m_pSink.Get(), m_trace.ComponentId()), m_nDepth);
    } catch (...) {
        m_strLine.clear(); // tracing never fails the traced operation
    }
}

CTraceScope::~CTraceScope()
{
    try {
        if (m_pSink) m_trace.Lines().Close(m_strLine, m_nDepth, SinkWriter(m_pSink.Get(), m_trace.ComponentId()));
    } catch (...) {
    }
}

void CTraceScope::Write(std::string_view text, int kind) const
{
    if (!m_pSink) return;
    try {
        m_trace.Lines().Write(m_strLine, text, kind, SinkWriter(m_pSink.Get(), m_trace.ComponentId()));
    } catch (...) {
    }
}

void CTraceScope::Detail(const std::string& line, unsigned minLevel) const
{
    if (m_pSink && m_trace.Level() >= minLevel) m_trace.WriteLine(m_pSink.Get(), line);
}
