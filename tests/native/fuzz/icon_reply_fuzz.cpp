// Fuzz target: icon replies from arbitrary names, sizes and descriptions; the reply is exactly the
// concatenation and a child name is recognised only when it folds to one of the two field names.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include "hosting/icon_reply.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::wstring all;
    for (size_t i = 0; i + 1 < size; i += 2) all += static_cast<wchar_t>(data[i] | (data[i + 1] << 8));
    const size_t a = all.size() / 3, b = 2 * all.size() / 3;
    const std::wstring name = all.substr(0, a), fontSize = all.substr(a, b - a), desc = all.substr(b);

    tov::icons::IconReply reply;
    reply.Open();
    reply.AddIcon(name, fontSize, desc);
    reply.Close();
    const std::wstring expected = L"<Icons><Icon><Icon_Name>" + name + L"</Icon_Name><Font_Size>" + fontSize +
                                  L"</Font_Size>" + desc + L"</Icon></Icons>";
    if (reply.Text() != expected) std::abort();

    const bool nonAscii = std::any_of(name.begin(), name.end(), [](wchar_t c) { return c > 0x7f; });
    if (tov::icons::ClassifyIconChild(name) != tov::icons::IconField::Other && (name.size() != 9 || nonAscii)) std::abort();
    return 0;
}
