#include "frontend/provider_protocol.h"
#include <urlmon.h>
#include <algorithm>
#include <cwctype>
#include "frontend/data_provider_standin.h"
#include "framework/com_ptr.h"
#include "framework/simple_object.h"
#include "frontend/static_class_factory.h"

namespace tovfe {
namespace {

int g_requests = 0;

// The data store's key for a URL: the moniker form drops its "mk:".
std::wstring StoreKey(const wchar_t* url)
{
    std::wstring key = url ? url : L"";
    if (key.size() >= 3 && _wcsnicmp(key.c_str(), L"mk:", 3) == 0) key.erase(0, 3);
    const size_t hash = key.find(L'#');
    if (hash != std::wstring::npos) key.resize(hash);
    return key;
}

class Protocol final
    : public tov::SimpleObject<Protocol, tov::Lifetime::DeleteOnLastRelease,
                               tov::Implements<IInternetProtocol, IID_IInternetProtocol, IID_IInternetProtocolRoot>> {
public:
    STDMETHODIMP Start(LPCWSTR url, IInternetProtocolSink* sink, IInternetBindInfo*, DWORD, HANDLE_PTR) override
    {
        ++g_requests;
        if (!sink) return E_POINTER;
        const HeldData* data = DataStore::Instance().Find(StoreKey(url));
        if (!data) {
            sink->ReportResult(INET_E_RESOURCE_NOT_FOUND, 0, nullptr);
            return INET_E_RESOURCE_NOT_FOUND;
        }
        m_bytes = data->bytes;
        const std::wstring mime = MimeTypeOfSubtype(data->subtype);
        sink->ReportProgress(BINDSTATUS_MIMETYPEAVAILABLE, mime.c_str());
        const ULONG size = static_cast<ULONG>(m_bytes.size());
        // The result follows once the data has been read: reported before, urlmon takes the binding for empty.
        m_sink = sink;
        sink->ReportData(BSCF_FIRSTDATANOTIFICATION | BSCF_LASTDATANOTIFICATION | BSCF_DATAFULLYAVAILABLE, size, size);
        return S_OK;
    }
    STDMETHODIMP Continue(PROTOCOLDATA*) override { return S_OK; }
    STDMETHODIMP Abort(HRESULT, DWORD) override { return S_OK; }
    STDMETHODIMP Terminate(DWORD) override
    {
        m_sink.Reset();
        return S_OK;
    }
    STDMETHODIMP Suspend() override { return E_NOTIMPL; }
    STDMETHODIMP Resume() override { return E_NOTIMPL; }
    STDMETHODIMP Read(void* pv, ULONG cb, ULONG* pcbRead) override
    {
        const size_t n = std::min<size_t>(cb, m_bytes.size() - m_offset);
        if (n > 0 && pv) memcpy(pv, m_bytes.data() + m_offset, n);
        m_offset += n;
        if (pcbRead) *pcbRead = static_cast<ULONG>(n);
        // The end is told by a read that brings nothing.
        if (n > 0) return S_OK;
        if (auto sink = std::move(m_sink)) sink->ReportResult(S_OK, 0, nullptr);
        return S_FALSE;
    }
    STDMETHODIMP Seek(LARGE_INTEGER, DWORD, ULARGE_INTEGER*) override { return E_NOTIMPL; }
    STDMETHODIMP LockRequest(DWORD) override { return S_OK; }
    STDMETHODIMP UnlockRequest() override { return S_OK; }

private:
    tov::ComPtr<IInternetProtocolSink> m_sink;
    std::string m_bytes;
    size_t m_offset = 0;
};

StaticClassFactory<Protocol> g_factory;
const wchar_t* const kSchemes[] = {L"tovhtmlp", L"mk"};

} // namespace

std::wstring MimeTypeOfSubtype(const std::wstring& subtype)
{
    std::wstring s = subtype;
    std::transform(s.begin(), s.end(), s.begin(), [](wchar_t c) { return static_cast<wchar_t>(std::towlower(c)); });
    if (s.rfind(L"htm", 0) == 0) return L"text/html";
    if (s == L"gif" || s == L"png" || s == L"bmp") return L"image/" + s;
    if (s == L"jpg" || s == L"jpeg") return L"image/jpeg";
    if (s == L"svg") return L"image/svg+xml";
    if (s == L"css") return L"text/css";
    if (s == L"js") return L"text/javascript";
    if (s == L"txt") return L"text/plain";
    if (s == L"xml") return L"text/xml";
    if (s == L"pdf") return L"application/pdf";
    return L"application/octet-stream";
}

ProviderProtocolRegistration::ProviderProtocolRegistration()
{
    g_requests = 0;
    tov::ComPtr<IInternetSession> session;
    m_result = CoInternetGetSession(0, session.Put(), 0);
    // "mk:" too: urlmon's own moniker protocol would look for a registered class behind the ProgID
    // "TOVHTML" with a display-name parser and a moniker of its own; the stand-in answers in its place.
    for (const wchar_t* scheme : kSchemes)
        if (SUCCEEDED(m_result)) m_result = session->RegisterNameSpace(&g_factory, CLSID_ProviderProtocol, scheme, 0, nullptr, 0);
}

ProviderProtocolRegistration::~ProviderProtocolRegistration()
{
    tov::ComPtr<IInternetSession> session;
    if (FAILED(CoInternetGetSession(0, session.Put(), 0))) return;
    for (const wchar_t* scheme : kSchemes) session->UnregisterNameSpace(&g_factory, scheme);
}

int ProviderProtocolRegistration::Requests()
{
    return g_requests;
}

} // namespace tovfe
