#include "frontend/data_provider_standin.h"
#include <filesystem>
#include <fstream>
#include <iterator>
#include "frontend/folders.h"
#include "frontend/static_class_factory.h"

namespace tovfe {
namespace {

std::wstring Text(const wchar_t* s) { return s ? std::wstring(s) : L"<null>"; }
std::wstring Text(BSTR s) { return s ? std::wstring(s, SysStringLen(s)) : L"<null>"; }

std::wstring SubtypeOf(const std::wstring& name)
{
    const size_t dot = name.rfind(L'.');
    std::wstring ext = dot == std::wstring::npos ? L"" : name.substr(dot + 1);
    for (auto& c : ext) c = static_cast<wchar_t>(towlower(c));
    if (ext == L"htm" || ext == L"html") return L"html";
    return ext.empty() ? L"octet-stream" : ext;
}

class Format final : public tov::SimpleObject<Format, tov::Lifetime::DeleteOnLastRelease,
                                              tov::Implements<ITOVDataFormat, IID_ITOVDataFormat>> {
public:
    explicit Format(std::wstring subtype) : m_subtype(std::move(subtype)) {}
    STDMETHODIMP GetTypeInfoCount(UINT* n) override { if (n) *n = 0; return S_OK; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP Reserved7() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved8() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved9() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved10() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved11() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved12() override { return E_NOTIMPL; }
    STDMETHODIMP get_SubType(BSTR* pSubType) override
    {
        auto& store = DataStore::Instance();
        store.calls.push_back(L"get_SubType()");
        if (auto f = store.failures.find(L"get_SubType"); f != store.failures.end()) return f->second;
        if (!pSubType) return E_POINTER;
        *pSubType = SysAllocStringLen(m_subtype.data(), static_cast<UINT>(m_subtype.size()));
        return S_OK;
    }

private:
    std::wstring m_subtype;
};

class Container final : public tov::SimpleObject<Container, tov::Lifetime::DeleteOnLastRelease,
                                                 tov::Implements<ITOVDataContainer, IID_ITOVDataContainer>> {
public:
    explicit Container(DataProviderStandIn* owner) : m_owner(owner) { m_owner->AddRef(); }
    ~Container() { m_owner->Release(); }
    STDMETHODIMP GetTypeInfoCount(UINT* n) override { if (n) *n = 0; return S_OK; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP Reserved7() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved8() override { return E_NOTIMPL; }
    STDMETHODIMP ResetContainer() override
    {
        auto& store = DataStore::Instance();
        store.calls.push_back(L"ResetContainer()");
        if (auto f = store.failures.find(L"ResetContainer"); f != store.failures.end()) return f->second;
        m_owner->posted.clear();
        ++m_owner->resets;
        return S_OK;
    }

private:
    DataProviderStandIn* m_owner;
};

// Creation answers as the test planned it and is counted.
HRESULT AllowProvider()
{
    auto& store = DataStore::Instance();
    if (FAILED(store.creationResult)) return store.creationResult;
    ++store.creations;
    return S_OK;
}
DataProviderStandIn* MakeProvider() { return DataProviderStandIn::Create(); }

StaticClassFactory<DataProviderStandIn, &MakeProvider> g_factory(&AllowProvider);

} // namespace

DataStore& DataStore::Instance()
{
    static DataStore store;
    return store;
}

void DataStore::Put(const std::wstring& url, std::string bytes, std::wstring subtype)
{
    m_data[url] = HeldData{std::move(bytes), std::move(subtype)};
}

void DataStore::ServeFolder(const std::wstring& folder, const std::wstring& urlPrefix)
{
    for (const auto& name : FilesIn(folder)) {
        std::ifstream in(std::filesystem::path(folder + L"\\" + name), std::ios::binary);
        std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        Put(urlPrefix + name, std::move(bytes), SubtypeOf(name));
    }
}

const HeldData* DataStore::Find(const std::wstring& url) const
{
    auto it = m_data.find(url);
    return it == m_data.end() ? nullptr : &it->second;
}

void DataStore::Clear()
{
    m_data.clear();
    calls.clear();
    failures.clear();
    creations = 0;
    creationResult = S_OK;
}

DataProviderStandIn* DataProviderStandIn::Create() { return new DataProviderStandIn(); }

HRESULT DataProviderStandIn::Failure(const wchar_t* method) const
{
    const auto& failures = DataStore::Instance().failures;
    auto f = failures.find(method);
    return f == failures.end() ? S_OK : f->second;
}

STDMETHODIMP DataProviderStandIn::SetDataFromURL(LPCWSTR s1, LPCWSTR s2, BSTR url)
{
    auto& store = DataStore::Instance();
    store.calls.push_back(L"SetDataFromURL(" + Text(s1) + L", " + Text(s2) + L", " + Text(url) + L")");
    if (HRESULT hr = Failure(L"SetDataFromURL"); FAILED(hr)) return hr;
    m_selected = url ? std::wstring(url, SysStringLen(url)) : std::wstring();
    return store.Find(m_selected) ? S_OK : E_FAIL;
}

STDMETHODIMP DataProviderStandIn::GetDataAsFormat(LPCWSTR, LPCWSTR, ITOVDataFormat** ppFormat)
{
    auto& store = DataStore::Instance();
    store.calls.push_back(L"GetDataAsFormat()");
    if (!ppFormat) return E_POINTER;
    *ppFormat = nullptr;
    if (HRESULT hr = Failure(L"GetDataAsFormat"); FAILED(hr)) return hr;
    const HeldData* data = store.Find(m_selected);
    if (!data) return E_FAIL;
    *ppFormat = new Format(data->subtype);
    return S_OK;
}

STDMETHODIMP DataProviderStandIn::GetDataAsStream(LPCWSTR, LPCWSTR, IStream** ppStream)
{
    auto& store = DataStore::Instance();
    store.calls.push_back(L"GetDataAsStream()");
    if (!ppStream) return E_POINTER;
    *ppStream = nullptr;
    if (HRESULT hr = Failure(L"GetDataAsStream"); FAILED(hr)) return hr;
    const HeldData* data = store.Find(m_selected);
    if (!data) return E_FAIL;
    HRESULT hr = CreateStreamOnHGlobal(nullptr, TRUE, ppStream);
    if (FAILED(hr)) return hr;
    ULONG written = 0;
    (*ppStream)->Write(data->bytes.data(), static_cast<ULONG>(data->bytes.size()), &written);
    LARGE_INTEGER zero{};
    (*ppStream)->Seek(zero, STREAM_SEEK_SET, nullptr);
    return S_OK;
}

STDMETHODIMP DataProviderStandIn::SaveDataToFile(BSTR s1, BSTR s2, BSTR path)
{
    auto& store = DataStore::Instance();
    store.calls.push_back(L"SaveDataToFile(" + Text(s1) + L", " + Text(s2) + L", " + Text(path) + L")");
    if (HRESULT hr = Failure(L"SaveDataToFile"); FAILED(hr)) return hr;
    const HeldData* data = store.Find(m_selected);
    if (!data || !path) return E_FAIL;
    HANDLE file = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return HRESULT_FROM_WIN32(GetLastError());
    DWORD written = 0;
    const BOOL ok = WriteFile(file, data->bytes.data(), static_cast<DWORD>(data->bytes.size()), &written, nullptr);
    CloseHandle(file);
    return ok ? S_OK : E_FAIL;
}

STDMETHODIMP DataProviderStandIn::GetDataContainer(IUnknown** ppContainer)
{
    auto& store = DataStore::Instance();
    store.calls.push_back(L"GetDataContainer()");
    if (!ppContainer) return E_POINTER;
    *ppContainer = nullptr;
    if (HRESULT hr = Failure(L"GetDataContainer"); FAILED(hr)) return hr;
    *ppContainer = new Container(this);
    return S_OK;
}

STDMETHODIMP DataProviderStandIn::SetDataFromStream(LPCWSTR url, BSTR name, IStream* pStream)
{
    auto& store = DataStore::Instance();
    store.calls.push_back(L"SetDataFromStream(" + Text(url) + L", " + Text(name) + L")");
    if (HRESULT hr = Failure(L"SetDataFromStream"); FAILED(hr)) return hr;
    if (!pStream) return E_POINTER;
    std::string bytes;
    LARGE_INTEGER zero{};
    pStream->Seek(zero, STREAM_SEEK_SET, nullptr);
    // One read of the whole stream when it tells its size, then whatever else it still has.
    STATSTG stat{};
    if (SUCCEEDED(pStream->Stat(&stat, STATFLAG_NONAME)) && stat.cbSize.QuadPart > 0 && stat.cbSize.QuadPart < 0x7FFFFFFF) {
        bytes.resize(static_cast<size_t>(stat.cbSize.QuadPart));
        ULONG got = 0;
        if (FAILED(pStream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &got))) got = 0;
        bytes.resize(got);
    }
    char chunk[4096];
    ULONG read = 0;
    while (SUCCEEDED(pStream->Read(chunk, sizeof chunk, &read)) && read > 0) bytes.append(chunk, read);
    posted[Text(url) + L"|" + Text(name)] = std::move(bytes);
    return S_OK;
}

DataProviderRegistration::DataProviderRegistration()
{
    CoRegisterClassObject(CLSID_TOVDataProvider, &g_factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &m_cookie);
}

DataProviderRegistration::~DataProviderRegistration()
{
    CoRevokeClassObject(m_cookie);
}

} // namespace tovfe
