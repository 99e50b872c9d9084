// The control's side of the front end's data provider: subtypes, the meta charset of HTML data, temporary
// files for other data and output copies.
#include <objbase.h>
#include "control/automation_call.h"
#include "framework/code_pages.h"
#include "framework/handles.h"
#include "navigation/meta_charset.h"
#include "navigation/unescape_url.h"
#include "navigation/url_rules.h"

using namespace tov;

namespace {

// A fresh provider per operation: the provider finds the data by URL alone.
ComPtr<ITOVDataProvider> CreateProvider()
{
    ComPtr<ITOVDataProvider> provider;
    if (FAILED(CoCreateInstance(CLSID_TOVDataProvider, nullptr, CLSCTX_INPROC_SERVER, IID_ITOVDataProvider,
                                provider.PutVoid())))
        return nullptr;
    return provider;
}

HRESULT SelectData(ITOVDataProvider* provider, const std::wstring& url)
{
    Bstr b(url);
    return provider->SetDataFromURL(L"", L"", b.Get());
}

std::string TempFolderA()
{
    char buffer[256] = {};
    const DWORD n = GetTempPathA(sizeof(buffer), buffer);
    return (n > 0 && n < sizeof(buffer)) ? std::string(buffer, n) : std::string();
}

} // namespace

Bstr CTOVHTMLControl::GetDataSubtype(std::wstring_view url)
{
    CTraceScope scope(m_trace, TraceSinkRef(), "GetDataSubtype");
    auto provider = CreateProvider();
    if (!provider) {
        scope.Write("GetDataSubtype: CoCreateInstance failed", trace::kDetail);
        return Bstr();
    }
    if (FAILED(SelectData(provider.Get(), url::ProviderUrl(url, m_bstrURLPrefixLocal.View())))) {
        scope.Write("GetDataSubtype: pDPShowData->SetDataFromURL() failed", trace::kDetail);
        return Bstr();
    }
    ComPtr<ITOVDataFormat> format;
    if (FAILED(provider->GetDataAsFormat(L"", L"", format.Put())) || !format) {
        scope.Write("GetDataSubtype: pDPShowData->GetDataAsFormat() failed", trace::kDetail);
        return Bstr();
    }
    Bstr subtype;
    if (FAILED(format->get_SubType(subtype.Put()))) {
        scope.Write("GetDataSubtype: pFormat->get_SubType() failed", trace::kDetail);
        return Bstr();
    }
    return subtype;
}

HRESULT CTOVHTMLControl::CheckMetaTag(std::wstring_view url)
{
    CTraceScope scope(m_trace, TraceSinkRef(), "CheckMetaTag");
    m_bMetaTagFound = false;
    m_bDataCharsetChecked = true;
    auto provider = CreateProvider();
    if (!provider) {
        scope.Write("CoCreateInstance() failed", trace::kDetail);
        return S_OK;
    }
    if (FAILED(SelectData(provider.Get(), url::ProviderUrl(url, m_bstrURLPrefixLocal.View())))) {
        scope.Write("pDPShowData->SetDataFromUR() failed", trace::kDetail);
        return S_OK;
    }
    ComPtr<IStream> stream;
    if (SUCCEEDED(provider->GetDataAsStream(L"", L"", stream.Put())) && stream) {
        LARGE_INTEGER zero{};
        ULARGE_INTEGER end{};
        std::string page;
        if (SUCCEEDED(stream->Seek(zero, STREAM_SEEK_END, &end))) {
            const ULONG size = static_cast<ULONG>(end.QuadPart);
            stream->Seek(zero, STREAM_SEEK_SET, nullptr);
            page.resize(size);
            ULONG read = 0;
            if (size && FAILED(stream->Read(page.data(), size, &read))) read = 0;
            page.resize(read);
        }
        if (auto charset = meta::FindMetaCharset(page)) {
            m_strMetaCharset = *charset;
            m_bMetaTagFound = true;
        }
    }
    scope.Write("Meta Tag Found: " + std::to_string(m_bMetaTagFound ? 1 : 0), trace::kDetail);
    return S_OK;
}

Bstr CTOVHTMLControl::CreateTempFile(std::wstring_view url, int placement)
{
    CTraceScope scope(m_trace, TraceSinkRef(), "CreateTempFile");
    auto provider = CreateProvider();
    if (!provider) {
        scope.Write("CoCreateInstance() failed", trace::kDetail);
        return Bstr();
    }
    std::string folder = TempFolderA();
    if (placement == 1) {
        // The browser cache folder beside the temporary folder, where the system has one.
        const size_t parentEnd = folder.size() >= 2 ? folder.rfind('\\', folder.size() - 2) : std::string::npos;
        if (parentEnd != std::string::npos) {
            OSVERSIONINFOA version{sizeof(version)};
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
            GetVersionExA(&version);
#pragma GCC diagnostic pop
            std::string cache = folder.substr(0, parentEnd + 1);
            if (version.dwMajorVersion == 5) cache += "Temporary Internet Files";
            else if (version.dwMajorVersion == 6) cache += "Microsoft\\Windows\\Temporary Internet Files";
            if (cache.size() < 256 && tov::Found(cache.c_str())) folder = cache + "\\";
        }
    }
    const UINT acp = GetACP();
    const std::wstring wideFolder = Widen(folder, acp).substr(0, 260);
    scope.Write("TempPath before conversion: " + folder + "\n CodePage: " + std::to_string(acp) +
                    "\n TempPath after conversion:",
                trace::kDetail);
    scope.Write(ToAnsi(wideFolder), trace::kDetail);

    std::wstring path = wideFolder + m_szInstanceTag;
    GUID guid;
    wchar_t guidText[40] = {};
    if (SUCCEEDED(CoCreateGuid(&guid)) && StringFromGUID2(guid, guidText, 40) > 1) {
        m_pszTempFileStem = guidText + 1; // the braced form without its opening brace
    } else if (m_pszTempFileStem.empty()) {
        // No GUID could be made and no earlier stem exists: tick count and a counter keep names apart.
        static unsigned counter = 0;
        m_pszTempFileStem = std::to_wstring(GetTickCount()) + L"-" + std::to_wstring(++counter);
    }
    path += m_pszTempFileStem;

    const std::wstring providerUrl = url::IsDataUrl(url) ? std::wstring(url::WithoutFragment(url))
                                                          : url::ProviderUrl(url, m_bstrURLPrefixLocal.View());
    const std::wstring name = url::SafeFileNamePart(url::UnescapeURL(url::TempFileNamePart(url)));
    scope.Write(ToAnsi(name), trace::kDetail);
    path += name;

    if (FAILED(SelectData(provider.Get(), providerUrl))) {
        scope.Write("pDPShowData->SetDataFromUR() failed", trace::kDetail);
        return Bstr();
    }
    if (tov::Found(path.c_str())) {
        scope.Write("File already exists :", trace::kDetail);
        scope.Write(ToAnsi(path), trace::kDetail);
    } else {
        Bstr empty1(L""), empty2(L""), target(path);
        if (FAILED(provider->SaveDataToFile(empty1.Get(), empty2.Get(), target.Get()))) {
            scope.Write("pDPShowData->SaveDataToFile() failed", trace::kDetail);
            return Bstr();
        }
    }
    Bstr result(path);
    m_files.AddTempFile(url, result);
    return result;
}

void CTOVHTMLControl::CreateOutputFile(std::wstring_view url)
{
    CTraceScope scope(m_trace, TraceSinkRef(), "CreateOutputFile");
    auto provider = CreateProvider();
    if (!provider) {
        scope.Write("CoCreateInstance() failed", trace::kDetail);
        return;
    }
    const std::wstring_view cut = url::WithoutFragment(url);
    std::wstring providerUrl(m_bstrURLPrefixLocal.View());
    providerUrl += cut;
    if (FAILED(SelectData(provider.Get(), providerUrl))) scope.Write("LoadDataFromURL() failed", trace::kDetail);
    std::wstring path = Widen(TempFolderA(), CP_THREAD_ACP) + L"Output";
    path += url::SafeFileNamePart(cut);
    Bstr empty1(L""), empty2(L""), target(path);
    if (FAILED(provider->SaveDataToFile(empty1.Get(), empty2.Get(), target.Get())))
        scope.Write("pDPShowData->SaveDataToFile() failed", trace::kDetail);
}
