#include "frontend/workbench.h"
#include <windows.h>
#include <cstdio>
#include <vector>
#include "frontend/engine_frontend.h"
#include "frontend/folders.h"
#include "frontend/engine_session.h"
#include "frontend/screenshot.h"

namespace tovfe {
namespace {

// Ctrl+C ends the session as closing the window does: the engine is told to end, not left to notice.
HWND g_workbenchWindow = nullptr;
BOOL WINAPI OnConsoleBreak(DWORD)
{
    if (g_workbenchWindow) PostMessageW(g_workbenchWindow, WM_CLOSE, 0, 0);
    return TRUE;
}

} // namespace

WorkbenchOptions WorkbenchOptions::FromArguments(int argc, wchar_t** argv)
{
    WorkbenchOptions o;
    for (int i = 0; i < argc; ++i) {
        const std::wstring word = argv[i] ? argv[i] : L"";
        if (word == L"--start" && i + 1 < argc) o.start = argv[++i];
        else if (word == L"--pictures" && i + 1 < argc) o.pictures = argv[++i];
        else if (o.pages.empty() && word.rfind(L"--", 0) != 0) o.pages = word;
        else return WorkbenchOptions{L"", L"", L""};
    }
    return o;
}

int RunWorkbench(const WorkbenchOptions& options)
{
    // A person (or a program) reads the events as they happen.
    setvbuf(stdout, nullptr, _IONBF, 0);
    if (options.pages.empty() || options.start.empty()) {
        std::printf("workbench: usage: --pages <folder> [--start <page>] [--pictures <folder>]\n");
        return 4;
    }
    std::wstring folder = options.pages;
    while (folder.size() > 3 && (folder.back() == L'\\' || folder.back() == L'/')) folder.pop_back();
    const DWORD attributes = GetFileAttributesW(folder.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
        std::printf("workbench: the pages folder %s does not exist\n", ShownPath(folder).c_str());
        return 2;
    }
    const DWORD start = GetFileAttributesW((folder + L"\\" + options.start).c_str());
    if (start == INVALID_FILE_ATTRIBUTES || (start & FILE_ATTRIBUTE_DIRECTORY)) {
        std::printf("workbench: the start page \"%s\" is not in %s\n", ConsoleText(options.start).c_str(), ShownPath(folder).c_str());
        const auto pages = FilesIn(folder, L"*.htm*");
        if (pages.empty()) std::printf("workbench: the folder holds no .htm page\n");
        else {
            std::printf("workbench: pages there (choose one with --start):");
            for (const auto& p : pages) std::printf(" \"%s\"", ConsoleText(p).c_str());
            std::printf("\n");
        }
        return 3;
    }
    if (!options.pictures.empty()) CreateDirectoryW(options.pictures.c_str(), nullptr);

    EngineFrontEnd fe(1000, 720, (L"TOV workbench \x2014 " + options.start).c_str());
    int pictures = 0;
    fe.onEvent = [&](const std::wstring& name) {
        if (options.pictures.empty()) return;
        wchar_t file[96];
        swprintf(file, 96, L"%03d-%ls.png", ++pictures, name.c_str());
        const std::wstring path = options.pictures + L"\\" + file;
        if (SUCCEEDED(SaveWindowPng(fe.Frame(), path))) std::printf("  screenshot: %s\n", ShownPath(path).c_str());
    };
    std::printf("workbench: serving %s through the front end's data provider (process %lu)\n", ShownPath(folder).c_str(),
                static_cast<unsigned long>(GetCurrentProcessId()));
    if (!fe.Start(folder)) return 1;
    const LONG code = fe.ShowData(options.start);
    if (code == -1) std::printf("workbench: \"%s\" has not completed yet (a script that does not end?)\n", ConsoleText(options.start).c_str());
    else if (code != 0) std::printf("workbench: ShowData answered %ld\n", static_cast<long>(code));
    std::printf("workbench: ready. Click and type in the window; every event the front end receives is printed here.\n"
                "workbench: close the window (or press Ctrl+C here) to end the session.\n");
    g_workbenchWindow = fe.Frame();
    SetConsoleCtrlHandler(OnConsoleBreak, TRUE);
    while (fe.WindowOpen()) fe.WaitFor([] { return false; }, 1000);
    SetConsoleCtrlHandler(OnConsoleBreak, FALSE);
    g_workbenchWindow = nullptr;
    fe.Close();
    std::printf("workbench: the window was closed; the session has ended\n");
    return 0;
}

} // namespace tovfe
