#include "hosting/browser_rules.h"

namespace tov::browser {

int ScreenZoom(int logPixelsX, int logPixelsY)
{
    const int dpi = static_cast<int>((static_cast<double>(logPixelsX) + static_cast<double>(logPixelsY)) * 0.5);
    return dpi > 100 ? dpi + 5 : 100;
}

NavigationStyleLetters ParseNavigationStyle(std::string_view style)
{
    NavigationStyleLetters letters;
    letters.pluggableProtocol = style.find('A') != std::string_view::npos;
    letters.newWindowNavFlags = style.find('B') != std::string_view::npos ? 1 : 0;
    letters.restrictSchemes = style.find('C') != std::string_view::npos;
    return letters;
}

} // namespace tov::browser
