#include "navigation/url_packing.h"
#include "navigation/url_rules.h"

namespace tov::url {

bool IsEventUrl(std::wstring_view url)
{
    return StartsWithNoCase(url.substr(0, url.find(L'\0')), kEventPrefix);
}

UrlPieces PackUrl(std::wstring_view url)
{
    UrlPieces pieces;
    for (size_t i = 0; i < kPieceCount && i * kPieceLength < url.size(); ++i)
        pieces[i] = url.substr(i * kPieceLength, kPieceLength);
    return pieces;
}

bool SchemeAllowedWhenRestricted(std::wstring_view url)
{
    std::wstring_view head = url.substr(0, 11);
    head = head.substr(0, head.find(L'\0'));
    if (head.find(L':') == std::wstring_view::npos) return true;
    for (std::wstring_view own : {L"tovhtmlp:", L"mk:@TOVHTML", L"tovq5:", L"TOVQ5:"})
        if (head.find(own) != std::wstring_view::npos) return true;
    return false;
}

} // namespace tov::url
