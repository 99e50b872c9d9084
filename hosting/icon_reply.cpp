#include "hosting/icon_reply.h"

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
    // One allocation per icon; a failure leaves the text as it was before this icon.
    std::wstring icon;
    icon.reserve(name.size() + size.size() + description.size() + 64);
    icon += L"<Icon><Icon_Name>";
    icon += name;
    icon += L"</Icon_Name><Font_Size>";
    icon += size;
    icon += L"</Font_Size>";
    icon += description;
    icon += L"</Icon>";
    m_text += icon;
}

void IconReply::Close()
{
    m_text += L"</Icons>";
}

} // namespace tov::icons
