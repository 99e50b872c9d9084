#pragma once
// Pictures of windows as a person sees them, saved as PNG through the platform's imaging component, and
// the check that a saved picture shows something.
#include <windows.h>
#include <string>

namespace tovfe {

// Saves what `window` shows inside its frame (for a container: the control and the page) as a PNG file.
HRESULT SaveWindowPng(HWND window, const std::wstring& path);
// The number of different colours in a picture file, counted up to `enough`; 0 when it cannot be read.
size_t PictureColours(const std::wstring& path, size_t enough = 16);

} // namespace tovfe
