#pragma once
// URLs the engine cannot fetch itself (the front end's provider schemes, files, the control's own
// about: pages) are loaded here the way the platform browser loads them: through urlmon, which reaches
// the protocol handlers the front end registered.
#include <string>

namespace tovengine {

struct ServedResponse {
    int status = 200;
    std::string mimeType;
    std::string body;
};

// The response for a browser URL; status 404 with a short page when nothing could be loaded.
ServedResponse LoadServed(const std::wstring& url);

} // namespace tovengine
