#pragma once
// The back channel's URL rules: recognising a "TOVEVENT:" URL, cutting it into the eight pieces of the
// outgoing event, and the scheme guard of the restricted navigation style. Standard C++ only.
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace tov::url {

inline constexpr std::wstring_view kEventPrefix = L"TOVEVENT:";
inline constexpr size_t kPieceLength = 255;
inline constexpr size_t kPieceCount = 8;
// Characters past kPieceCount * kPieceLength do not travel with the event.
inline constexpr size_t kPackedLength = kPieceLength * kPieceCount;

// The first nine characters equal "TOVEVENT:", letter case ignored.
bool IsEventUrl(std::wstring_view url);

// Piece i holds the characters from i * 255, at most 255 of them; pieces past the URL's end are absent.
// The pieces view the URL's characters.
using UrlPieces = std::array<std::optional<std::wstring_view>, kPieceCount>;
UrlPieces PackUrl(std::wstring_view url);

// The restricted style lets a navigation go on only when its first 11 characters (up to a zero character)
// contain one of the control's own schemes, case-sensitive, or no ":" at all.
bool SchemeAllowedWhenRestricted(std::wstring_view url);

} // namespace tov::url
