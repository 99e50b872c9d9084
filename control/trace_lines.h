#pragma once
// The trace's line logic: entry and exit lines by depth, and message blocks by kind. Standard C++ only;
// the control binds it to the front end's trace sink (CTrace), tests bind it to a vector.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace tov::trace {

using LineWriter = std::function<void(const std::string&)>;

enum MessageKind : int { kDetail = 0, kNotice = 1, kFailure = 2 };

// Failures that a boundary caught (an exception turned into an HRESULT or a return code) are traced
// from this level on, above every level the regular lines use.
inline constexpr unsigned kCaughtFailureLevel = 3;

const std::string& Separator(int kind);

// The depth string and level of one control; scopes open and close against it.
class TraceLines {
public:
    unsigned Level() const { return m_nLevel; }
    void SetLevel(unsigned level) { m_nLevel = level; }
    const std::string& Depth() const { return m_strDepth; }

    // Writes the entry line when the level asks for it and a sink exists; returns the line written (empty
    // when none) and the depth it was written at.
    std::string Open(std::string_view name, unsigned scopeLevel, bool hasSink, const LineWriter& write, size_t& depth);
    // Writes the exit line of a scope whose entry line was `entryLine` at `depth`.
    void Close(const std::string& entryLine, size_t depth, const LineWriter& write);
    // A message of `kind` inside the scope whose entry line is `scopeLine`.
    void Write(const std::string& scopeLine, std::string_view text, int kind, const LineWriter& write) const;
    // The failure block for a failure `code` caught at the boundary `where`, when the level asks for it.
    void CaughtFailure(uint32_t code, std::string_view where, const LineWriter& write) const;

private:
    unsigned m_nLevel = 0;
    std::string m_strDepth;
};

} // namespace tov::trace
