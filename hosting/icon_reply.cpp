#include "hosting/icon_reply.h"
#include <algorithm>

namespace tov::icons {
namespace {

// Element names are ASCII; other characters only ever match themselves.
bool EqualsIgnoringCase(std::wstring_view text, std::wstring_view ascii)
{
    if (text.size() != ascii.size()) return false;
    for (size_t i = 0; i < text.size(); ++i) {
        wchar_t c = text[i];
        if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c - L'A' + L'a');
        wchar_t a = ascii[i];
        if (a >= L'A' && a <= L'Z') a = static_cast<wchar_t>(a - L'A' + L'a');
        if (c != a) return false;
    }
    return true;
}

} // namespace

IconField ClassifyIconChild(std::wstring_view baseName)
{
    if (EqualsIgnoringCase(baseName, L"Icon_Name")) return IconField::Name;
    if (EqualsIgnoringCase(baseName, L"Font_Size")) return IconField::Size;
    return IconField::Other;
}

void IconReply::Open()
{
    m_text += L"<Icons>";
}

void IconReply::AddIcon(std::wstring_view name, std::wstring_view size, std::wstring_view description)
{
    static constexpr std::wstring_view kParts[] = {L"<Icon><Icon_Name>", L"</Icon_Name><Font_Size>", L"</Font_Size>", L"</Icon>"};
    size_t needed = name.size() + size.size() + description.size();
    for (auto part : kParts) needed += part.size();
    // Room first, growing geometrically: a failure leaves the text as it was before this icon, and the
    // appends after it cannot fail.
    if (m_text.capacity() - m_text.size() < needed) m_text.reserve(std::max(m_text.size() + needed, 2 * m_text.capacity()));
    m_text += kParts[0];
    m_text += name;
    m_text += kParts[1];
    m_text += size;
    m_text += kParts[2];
    m_text += description;
    m_text += kParts[3];
}

void IconReply::Close()
{
    m_text += L"</Icons>";
}

} // namespace tov::icons
