#pragma once
// The page author's workbench: a folder of pages served through the front end's data provider and shown
// in the control's window, on the engine; a person clicks and types in it, every event the front end
// receives is printed as it happens (post data decoded as the front end reads it from its provider), and
// the session ends when the window closes. With a picture folder every event also saves a picture of the
// window (for runs without a display).
#include <string>

namespace tovfe {

struct WorkbenchOptions {
    std::wstring pages;
    std::wstring start = L"index.htm";
    std::wstring pictures;
    // Reads "<folder> [--start <page>] [--pictures <folder>]"; unknown words leave `pages` empty.
    static WorkbenchOptions FromArguments(int argc, wchar_t** argv);
};

// Exit codes: 0 the window was closed, 1 the control or the engine could not be started, 2 the pages
// folder does not exist, 3 the start page is not in it, 4 bad arguments.
int RunWorkbench(const WorkbenchOptions& options);

} // namespace tovfe
