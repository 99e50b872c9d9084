#pragma once
// The demo's front end: the control in a real container window, a scripted browser inside it, a data
// provider serving a sample folder, and a printout of what happens at each step.
#include <string>

namespace tovfe {

// Runs the whole session with the files of `samples`; 0 when every step could be played.
int RunDemoSession(const std::wstring& samples);

} // namespace tovfe
