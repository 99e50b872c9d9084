// Fuzz target: packing arbitrary wide text into the event's eight pieces, and the scheme guard.
#include <cstdint>
#include <cstdlib>
#include <string>
#include "navigation/url_packing.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::wstring url;
    for (size_t i = 0; i + 1 < size; i += 2) url += static_cast<wchar_t>(data[i] | (data[i + 1] << 8));
    const auto pieces = tov::url::PackUrl(url);
    std::wstring joined;
    bool ended = false;
    for (const auto& piece : pieces) {
        if (!piece) { ended = true; continue; }
        if (ended || piece->empty() || piece->size() > tov::url::kPieceLength) std::abort();
        joined += *piece;
    }
    if (joined != url.substr(0, tov::url::kPackedLength)) std::abort();
    // An event URL has its colon at position 8 and none of the own schemes fits before it.
    if (tov::url::IsEventUrl(url) && tov::url::SchemeAllowedWhenRestricted(url)) std::abort();
    return 0;
}
