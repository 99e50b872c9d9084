#pragma once
// How the engine's URLs relate to the browser's. The engine loads http(s), data and about:blank itself.
// Every other URL (the front end's provider schemes, files, the control's own about: pages) is given to
// the engine under a reserved host and served by this DLL; TOVEVENT links and forms arrive under a host
// of their own, pointed there by the page hooks just before the engine builds the request.
// Portable: text in, text out, all UTF-8.
#include <string>
#include <string_view>

namespace tovengine::urls {

inline constexpr std::string_view kServedRoot = "http://tovurl.invalid/";
inline constexpr std::string_view kEventRoot = "http://tovevent.invalid/";

// True for URLs the engine fetches on its own.
bool EngineLoadsItself(std::string_view url);
// A Windows path ("C:\x\y.gif", "\\server\share\f") as a file URL; other text unchanged.
std::string PathToFileUrl(std::string_view url);
// The URL the engine is told to load for a URL the browser was asked to show.
std::string ToEngine(std::string_view url);
// The browser's URL for an engine URL (the inverse of ToEngine; a TOVEVENT URL for the event host).
std::string FromEngine(std::string_view engineUrl);
// True when the engine URL stands for a URL this DLL serves.
bool IsServed(std::string_view engineUrl);
bool IsEvent(std::string_view engineUrl);

// Percent-decoding of every "%XX" (invalid escapes stay as they are).
std::string PercentDecode(std::string_view text);

} // namespace tovengine::urls
