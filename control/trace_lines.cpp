#include "trace_lines.h"
#include <cstdio>

namespace tov::trace {

const std::string& Separator(int kind)
{
    static const std::string separators[3] = {std::string(), std::string(45, '-'), std::string(45, '#')};
    return separators[(kind >= 0 && kind <= 2) ? kind : 0];
}

std::string TraceLines::Open(std::string_view name, unsigned scopeLevel, bool hasSink, const LineWriter& write,
                             size_t& depth)
{
    depth = 0;
    if (m_nLevel == 0 || m_nLevel < scopeLevel || !hasSink) return std::string();
    depth = m_strDepth.size();
    std::string line = m_strDepth;
    line += "=> ";
    line += name;
    write(line);
    m_strDepth += '=';
    return line;
}

void TraceLines::Close(const std::string& entryLine, size_t depth, const LineWriter& write)
{
    if (entryLine.empty()) return;
    std::string line = entryLine;
    line[0] = '<';
    if (depth + 1 < line.size()) line[depth + 1] = '=';
    write(line);
    if (!m_strDepth.empty()) m_strDepth.pop_back();
}

void TraceLines::Write(const std::string& scopeLine, std::string_view text, int kind, const LineWriter& write) const
{
    if (kind == kDetail) {
        if (m_nLevel >= 2) write(std::string(text));
        return;
    }
    write(Separator(kind));
    if (!scopeLine.empty()) write(scopeLine);
    write(std::string(text));
    write(Separator(kind));
}

void TraceLines::CaughtFailure(uint32_t code, std::string_view where, const LineWriter& write) const
{
    if (m_nLevel < kCaughtFailureLevel) return;
    char hex[16];
    std::snprintf(hex, sizeof hex, "0x%08X", static_cast<unsigned>(code));
    std::string text = "Caught failure ";
    text += hex;
    text += " in ";
    text += where;
    Write(std::string(), text, kFailure, write);
}

} // namespace tov::trace
