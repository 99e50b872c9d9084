// A second process for the tests of foreign messages: sends or posts a registered message by its name to a
// window, with the given wParam and lParam (hexadecimal), and ends.
//   message_sender <window> <message name> <wParam> <lParam> send|post
#include <windows.h>
#include <cstdlib>
#include <string>

int wmain(int argc, wchar_t** argv)
{
    if (argc != 6) return 2;
    const auto number = [](const wchar_t* text) { return static_cast<ULONG_PTR>(wcstoull(text, nullptr, 16)); };
    const HWND window = reinterpret_cast<HWND>(number(argv[1]));
    const UINT message = RegisterWindowMessageW(argv[2]);
    const WPARAM wParam = number(argv[3]);
    const LPARAM lParam = static_cast<LPARAM>(number(argv[4]));
    if (std::wstring(argv[5]) == L"post") return PostMessageW(window, message, wParam, lParam) ? 0 : 1;
    DWORD_PTR answer = 0;
    return SendMessageTimeoutW(window, message, wParam, lParam, SMTO_NORMAL, 10000, &answer) ? 0 : 1;
}
