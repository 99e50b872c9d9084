#pragma once
// The front end's session on the real engine, as its users meet the control: sample pages from the data
// provider in the control's window, real clicks and a real form post, a script that changes the page, the
// front end's context menu, a separate browser window and closing. Each step prints what the front end
// received and saves a picture of the window.
#include <windows.h>
#include <string>

namespace tovfe {

// Plays the session with the pages of `samples`, saving pictures into `pictures`; 0 when every step
// gave what it should.
int RunEngineSession(const std::wstring& samples, const std::wstring& pictures);

// Where a file of this program's file system is for the person reading the output: its Unix path under
// Wine, the path itself elsewhere.
std::string ShownPath(const std::wstring& path);

} // namespace tovfe
