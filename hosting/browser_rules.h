#pragma once
// Small decisions about the hosted browser, kept free of the platform: the screen-resolution zoom and the
// letters of the navigation style. Standard C++ only.
#include <string_view>

namespace tov::browser {

// The browser's optical zoom for a screen of the given logical pixels per inch: (x + y) / 2, then +5
// above 100 dots per inch.
int ScreenZoom(int logPixelsX, int logPixelsY);

// The letters of a navigation style (case-sensitive, any order, among any other characters).
struct NavigationStyleLetters {
    bool pluggableProtocol = false; // "A"
    long newWindowNavFlags = 0;     // "B": re-issued navigations get flag 1
    bool restrictSchemes = false;   // "C"
};
NavigationStyleLetters ParseNavigationStyle(std::string_view style);

} // namespace tov::browser
