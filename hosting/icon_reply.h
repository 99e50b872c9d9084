#pragma once
// The answer to an icon-font request: which children of an icon element are read, and the reply text,
// built by plain concatenation (no declaration, no white space, no escaping). Standard C++ only.
#include <string>
#include <string_view>

namespace tov::icons {

// What a child of an icon element holds, by its base name (letter case ignored).
enum class IconField { Other, Name, Size };
IconField ClassifyIconChild(std::wstring_view baseName);

// The reply as it grows: the opening tag, one element per answered icon, the closing tag. What was
// appended stays, so an answer cut short by a failure is the text built so far.
class IconReply {
public:
    void Open();
    void AddIcon(std::wstring_view name, std::wstring_view size, std::wstring_view description);
    void Close();

    const std::wstring& Text() const { return m_text; }
    bool Empty() const { return m_text.empty(); }

private:
    std::wstring m_text;
};

} // namespace tov::icons
