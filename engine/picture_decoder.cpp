#include "engine/picture_decoder.h"
#include <objbase.h>
#include <wincodec.h>
#include "engine/base64.h"
#include "framework/com_ptr.h"

namespace tovengine {

HBITMAP DecodePicture(const std::string& encoded, SIZE& size)
{
    tov::ComPtr<IWICImagingFactory> factory;
    if (FAILED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                                factory.PutVoid())))
        return nullptr;
    tov::ComPtr<IWICStream> stream;
    tov::ComPtr<IWICBitmapDecoder> decoder;
    tov::ComPtr<IWICBitmapFrameDecode> frame;
    tov::ComPtr<IWICFormatConverter> converter;
    if (encoded.empty() || FAILED(factory->CreateStream(stream.Put())) ||
        FAILED(stream->InitializeFromMemory(reinterpret_cast<BYTE*>(const_cast<char*>(encoded.data())),
                                            static_cast<DWORD>(encoded.size()))) ||
        FAILED(factory->CreateDecoderFromStream(stream.Get(), nullptr, WICDecodeMetadataCacheOnDemand, decoder.Put())) ||
        FAILED(decoder->GetFrame(0, frame.Put())) || FAILED(factory->CreateFormatConverter(converter.Put())) ||
        FAILED(converter->Initialize(frame.Get(), GUID_WICPixelFormat32bppBGRA, WICBitmapDitherTypeNone, nullptr, 0,
                                     WICBitmapPaletteTypeCustom)))
        return nullptr;
    UINT width = 0, height = 0;
    if (FAILED(converter->GetSize(&width, &height)) || width == 0 || height == 0 || width > 16384 || height > 16384)
        return nullptr;
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = static_cast<LONG>(width);
    info.bmiHeader.biHeight = -static_cast<LONG>(height);
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    HBITMAP bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (!bitmap) return nullptr;
    if (FAILED(converter->CopyPixels(nullptr, width * 4, width * height * 4, static_cast<BYTE*>(bits)))) {
        DeleteObject(bitmap);
        return nullptr;
    }
    size = {static_cast<LONG>(width), static_cast<LONG>(height)};
    return bitmap;
}

PictureDecoder::~PictureDecoder()
{
    {
        std::lock_guard<std::mutex> hold(m_lock);
        m_stop = true;
    }
    m_wake.notify_all();
    if (m_thread.joinable()) m_thread.join();
    if (m_ready) DeleteObject(m_ready);
}

void PictureDecoder::Submit(std::string base64, HWND notify, UINT message)
{
    {
        std::lock_guard<std::mutex> hold(m_lock);
        m_pending = std::move(base64);
        m_notify = notify;
        m_message = message;
        if (!m_thread.joinable()) m_thread = std::thread([this] { Run(); });
    }
    m_wake.notify_all();
}

HBITMAP PictureDecoder::Take(SIZE& size)
{
    std::lock_guard<std::mutex> hold(m_lock);
    size = m_readySize;
    return std::exchange(m_ready, nullptr);
}

void PictureDecoder::Run()
{
    const bool com = SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED));
    std::unique_lock<std::mutex> hold(m_lock);
    for (;;) {
        m_wake.wait(hold, [&] { return m_stop || !m_pending.empty(); });
        if (m_stop) break;
        const std::string base64 = std::move(m_pending);
        m_pending.clear();
        hold.unlock();
        SIZE size{};
        HBITMAP picture = DecodePicture(Base64Decode(base64), size);
        hold.lock();
        if (!picture) continue;
        if (m_ready) DeleteObject(m_ready); // never shown: a newer one is here
        m_ready = picture;
        m_readySize = size;
        if (m_notify) PostMessageW(m_notify, m_message, 0, 0);
    }
    hold.unlock();
    if (com) CoUninitialize();
}

} // namespace tovengine
