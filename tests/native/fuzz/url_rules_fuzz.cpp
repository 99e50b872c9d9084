// Fuzz target: URL classification and composition on arbitrary wide text.
#include <cstdint>
#include <cstdlib>
#include <string>
#include "navigation/url_rules.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::wstring url;
    for (size_t i = 0; i + 1 < size; i += 2) url += static_cast<wchar_t>(data[i] | (data[i + 1] << 8));
    const bool data1 = tov::url::IsDataUrl(url);
    const bool separate = tov::url::IsDataUrlForSeparateWindow(url);
    if (separate && !data1) std::abort(); // the separate window's schemes are a subset
    if (data1 && url.size() < 6) std::abort();
    const auto composed = tov::url::ShowDataUrl(1, L"@TOVHTML://", url);
    if (composed.size() != url.size() + 14) std::abort();
    if (tov::url::NavigableUrl(url).empty()) std::abort();
    return 0;
}
