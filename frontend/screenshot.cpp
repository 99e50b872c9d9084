#include "frontend/screenshot.h"
#include <wincodec.h>
#include <set>
#include <vector>
#include "framework/com_ptr.h"
#include "framework/handles.h"

using tov::ComPtr;

namespace tovfe {
namespace {

ComPtr<IWICImagingFactory> Imaging()
{
    ComPtr<IWICImagingFactory> factory;
    CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory, factory.PutVoid());
    return factory;
}

} // namespace

HRESULT SaveWindowPng(HWND window, const std::wstring& path)
{
    RECT rc{};
    if (!IsWindow(window) || !GetClientRect(window, &rc)) return E_INVALIDARG;
    const int width = rc.right - rc.left, height = rc.bottom - rc.top;
    if (width <= 0 || height <= 0) return E_INVALIDARG;
    // The window brings itself up to date first: a picture of half-painted content helps nobody.
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);

    tov::WindowDc source(window);
    tov::UniqueMemoryDc memory(CreateCompatibleDC(source.Get()));
    tov::UniqueGdiObject bitmap(CreateCompatibleBitmap(source.Get(), width, height));
    if (!source.Get() || !memory || !bitmap) return E_OUTOFMEMORY;
    const HGDIOBJ previous = SelectObject(memory.Get(), bitmap.Get());
    const BOOL copied = BitBlt(memory.Get(), 0, 0, width, height, source.Get(), 0, 0, SRCCOPY);
    SelectObject(memory.Get(), previous);
    if (!copied) return HRESULT_FROM_WIN32(GetLastError());

    auto factory = Imaging();
    if (!factory) return REGDB_E_CLASSNOTREG;
    ComPtr<IWICBitmap> picture;
    HRESULT hr = factory->CreateBitmapFromHBITMAP(static_cast<HBITMAP>(bitmap.Get()), nullptr, WICBitmapIgnoreAlpha, picture.Put());
    ComPtr<IWICStream> stream;
    if (SUCCEEDED(hr)) hr = factory->CreateStream(stream.Put());
    if (SUCCEEDED(hr)) hr = stream->InitializeFromFilename(path.c_str(), GENERIC_WRITE);
    ComPtr<IWICBitmapEncoder> encoder;
    if (SUCCEEDED(hr)) hr = factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, encoder.Put());
    if (SUCCEEDED(hr)) hr = encoder->Initialize(stream.Get(), WICBitmapEncoderNoCache);
    ComPtr<IWICBitmapFrameEncode> frame;
    if (SUCCEEDED(hr)) hr = encoder->CreateNewFrame(frame.Put(), nullptr);
    if (SUCCEEDED(hr)) hr = frame->Initialize(nullptr);
    if (SUCCEEDED(hr)) hr = frame->SetSize(static_cast<UINT>(width), static_cast<UINT>(height));
    WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
    if (SUCCEEDED(hr)) hr = frame->SetPixelFormat(&format);
    if (SUCCEEDED(hr)) hr = frame->WriteSource(picture.Get(), nullptr);
    if (SUCCEEDED(hr)) hr = frame->Commit();
    if (SUCCEEDED(hr)) hr = encoder->Commit();
    if (FAILED(hr)) {
        stream.Reset();
        DeleteFileW(path.c_str());
    }
    return hr;
}

size_t PictureColours(const std::wstring& path, size_t enough)
{
    auto factory = Imaging();
    ComPtr<IWICBitmapDecoder> decoder;
    ComPtr<IWICBitmapFrameDecode> frame;
    ComPtr<IWICFormatConverter> converter;
    UINT width = 0, height = 0;
    if (!factory ||
        FAILED(factory->CreateDecoderFromFilename(path.c_str(), nullptr, GENERIC_READ, WICDecodeMetadataCacheOnDemand, decoder.Put())) ||
        FAILED(decoder->GetFrame(0, frame.Put())) || FAILED(factory->CreateFormatConverter(converter.Put())) ||
        FAILED(converter->Initialize(frame.Get(), GUID_WICPixelFormat32bppBGRA, WICBitmapDitherTypeNone, nullptr, 0,
                                     WICBitmapPaletteTypeCustom)) ||
        FAILED(converter->GetSize(&width, &height)) || width == 0 || height == 0)
        return 0;
    std::vector<UINT> row(width);
    std::set<UINT> colours;
    for (UINT y = 0; y < height && colours.size() < enough; ++y) {
        const WICRect line{0, static_cast<INT>(y), static_cast<INT>(width), 1};
        if (FAILED(converter->CopyPixels(&line, width * 4, width * 4, reinterpret_cast<BYTE*>(row.data())))) return 0;
        for (UINT pixel : row)
            if (colours.insert(pixel).second && colours.size() >= enough) break;
    }
    return colours.size();
}

} // namespace tovfe
