#pragma once
// Decodes the engine's renderings on a thread of its own with the platform's imaging component, so that
// the browser's thread never waits for a picture: engine events go on while a rendering is decoded, and
// of a burst of renderings only the newest is decoded.
#include <windows.h>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace tovengine {

class PictureDecoder {
public:
    PictureDecoder() = default;
    ~PictureDecoder();
    PictureDecoder(const PictureDecoder&) = delete;
    PictureDecoder& operator=(const PictureDecoder&) = delete;

    // Queues a picture (a PNG or JPEG file in base64), replacing one not decoded yet; `message` is posted
    // to `notify` when a decoded picture is ready to Take.
    void Submit(std::string base64, HWND notify, UINT message);
    // The newest decoded picture, the caller's to delete, or null; `size` its pixels.
    HBITMAP Take(SIZE& size);

private:
    void Run();

    std::mutex m_lock;
    std::condition_variable m_wake;
    std::thread m_thread;
    std::string m_pending;
    HWND m_notify = nullptr;
    UINT m_message = 0;
    HBITMAP m_ready = nullptr;
    SIZE m_readySize{};
    bool m_stop = false;
};

// 32-bit top-down pixels of an encoded picture; null when it is no picture.
HBITMAP DecodePicture(const std::string& encoded, SIZE& size);

} // namespace tovengine
