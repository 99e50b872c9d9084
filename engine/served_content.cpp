#include "engine/served_content.h"
#include <urlmon.h>
#include "engine/text.h"
#include "framework/com_ptr.h"
#include "framework/simple_object.h"

namespace tovengine {
namespace {

constexpr size_t kMaxBody = size_t{512} << 20;

// One binding of a URL, read as the data arrives. The binding is asynchronous, as the platform browser
// binds: a handler that answers at once is done before BindToStorage returns, one that answers later is
// waited for, with messages pumped meanwhile, but not the engine connection's (its events wait).
// It lives on the caller's stack until the binding has stopped.
class Download final : public tov::SimpleObject<Download, tov::Lifetime::CountOnly,
                                                tov::Implements<IBindStatusCallback, IID_IBindStatusCallback>> {
public:
    STDMETHODIMP OnStartBinding(DWORD, IBinding* binding) override
    {
        m_binding = binding;
        return S_OK;
    }
    STDMETHODIMP GetPriority(LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP OnLowResource(DWORD) override { return S_OK; }
    STDMETHODIMP OnProgress(ULONG, ULONG, ULONG status, LPCWSTR text) override
    {
        if ((status == BINDSTATUS_MIMETYPEAVAILABLE || status == BINDSTATUS_VERIFIEDMIMETYPEAVAILABLE) && text)
            mimeType = Utf8(text);
        return S_OK;
    }
    STDMETHODIMP OnStopBinding(HRESULT hr, LPCWSTR) override
    {
        result = hr;
        stopped = true;
        m_binding.Reset();
        return S_OK;
    }
    STDMETHODIMP GetBindInfo(DWORD* flags, BINDINFO* info) override
    {
        if (flags)
            *flags = BINDF_ASYNCHRONOUS | BINDF_ASYNCSTORAGE | BINDF_PULLDATA | BINDF_GETNEWESTVERSION | BINDF_NOWRITECACHE;
        if (info && info->cbSize >= sizeof(BINDINFO)) {
            const ULONG size = info->cbSize;
            memset(info, 0, size);
            info->cbSize = size;
            info->dwBindVerb = BINDVERB_GET;
        }
        return S_OK;
    }
    STDMETHODIMP OnDataAvailable(DWORD, DWORD, FORMATETC*, STGMEDIUM* medium) override
    {
        if (!medium || medium->tymed != TYMED_ISTREAM || !medium->pstm) return S_OK;
        char buffer[65536];
        for (;;) {
            ULONG read = 0;
            const HRESULT hr = medium->pstm->Read(buffer, sizeof buffer, &read);
            if (read > 0 && body.size() < kMaxBody) body.append(buffer, read);
            if (hr != S_OK || read == 0) break;
        }
        return S_OK;
    }
    STDMETHODIMP OnObjectAvailable(REFIID, IUnknown*) override { return S_OK; }
    void Abort()
    {
        if (m_binding) m_binding->Abort();
    }

    std::string mimeType;
    std::string body;
    HRESULT result = E_PENDING;
    bool stopped = false;

private:
    tov::ComPtr<IBinding> m_binding;
};

constexpr DWORD kBindTimeoutMs = 15000;
constexpr UINT kEngineDelivery = WM_APP + 0x2A; // the engine connection's, left queued

HRESULT Bind(const std::wstring& url, Download& download)
{
    tov::ComPtr<IMoniker> moniker;
    tov::ComPtr<IBindCtx> context;
    HRESULT hr = CreateURLMonikerEx(nullptr, url.c_str(), moniker.Put(), URL_MK_UNIFORM);
    if (SUCCEEDED(hr)) hr = CreateAsyncBindCtx(0, &download, nullptr, context.Put());
    if (FAILED(hr)) return hr;
    tov::ComPtr<IStream> stream;
    hr = moniker->BindToStorage(context.Get(), nullptr, IID_IStream, stream.PutVoid());
    if (FAILED(hr)) return hr;
    const ULONGLONG deadline = GetTickCount64() + kBindTimeoutMs;
    while (!download.stopped) {
        if (GetTickCount64() > deadline) {
            download.Abort();
            return HRESULT_FROM_WIN32(ERROR_TIMEOUT);
        }
        MSG msg;
        if (PeekMessageW(&msg, nullptr, 0, kEngineDelivery - 1, PM_REMOVE) ||
            PeekMessageW(&msg, nullptr, kEngineDelivery + 1, 0xFFFF, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        } else {
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
        }
    }
    return download.result;
}

std::string Escaped(std::wstring_view text)
{
    std::string out;
    for (char c : Utf8(text)) {
        switch (c) {
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '&': out += "&amp;"; break;
        case '"': out += "&quot;"; break;
        default: out.push_back(c);
        }
    }
    return out;
}

ServedResponse NotFound(const std::wstring& url)
{
    return {404, "text/html; charset=utf-8",
            "<!DOCTYPE html><html><head><title>Not found</title></head><body><p>Not found: " + Escaped(url) +
                "</p></body></html>"};
}

} // namespace

ServedResponse LoadServed(const std::wstring& url)
{
    // The control's own about: pages show their text, as the platform browser shows an about: URL.
    if (url.size() > 6 && _wcsnicmp(url.c_str(), L"about:", 6) == 0)
        return {200, "text/html; charset=utf-8",
                "<!DOCTYPE html><html><body>" + Escaped(std::wstring_view(url).substr(6)) + "</body></html>"};

    Download download;
    if (FAILED(Bind(url, download))) return NotFound(url);
    ServedResponse response;
    response.body = std::move(download.body);
    response.mimeType = download.mimeType;
    if (response.mimeType.empty()) {
        LPWSTR guessed = nullptr;
        if (SUCCEEDED(FindMimeFromData(nullptr, url.c_str(), response.body.data(),
                                       static_cast<DWORD>(std::min<size_t>(response.body.size(), 4096)), nullptr, 0,
                                       &guessed, 0)) &&
            guessed) {
            response.mimeType = Utf8(guessed);
            CoTaskMemFree(guessed);
        }
    }
    return response;
}

} // namespace tovengine
