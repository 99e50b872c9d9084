#pragma once
// Stand-in for the front end's data provider: holds data by URL (given by a test or served from a folder,
// the subtype taken from the file extension), answers the control's calls at their positions, keeps
// post data per provider object, records every call and can be told to fail any of them.
#include <windows.h>
#include <map>
#include <string>
#include <vector>
#include "framework/simple_object.h"
#include "tov_frontend.h"

namespace tovfe {

struct HeldData {
    std::string bytes;
    std::wstring subtype;
};

// What every provider object of the process sees, as the front end's provider component would.
class DataStore {
public:
    static DataStore& Instance();

    void Put(const std::wstring& url, std::string bytes, std::wstring subtype);
    // Every file of `folder` under `urlPrefix` + its name; subtype from the extension ("htm"/"html" → "html").
    void ServeFolder(const std::wstring& folder, const std::wstring& urlPrefix);
    const HeldData* Find(const std::wstring& url) const;
    void Clear();

    // Calls as "Method(arg, ...)" texts, in order, for every provider object.
    std::vector<std::wstring> calls;
    // Method name → the HRESULT it answers with (until cleared).
    std::map<std::wstring, HRESULT> failures;
    int creations = 0;
    HRESULT creationResult = S_OK;

private:
    std::map<std::wstring, HeldData> m_data;
};

// One provider object (also what the front end puts into the control's PostData property).
class DataProviderStandIn final
    : public tov::SimpleObject<DataProviderStandIn, tov::Lifetime::DeleteOnLastRelease,
                               tov::Implements<ITOVDataProvider, IID_ITOVDataProvider>> {
public:
    static DataProviderStandIn* Create(); // one reference for the caller

    STDMETHODIMP GetTypeInfoCount(UINT* n) override { if (n) *n = 0; return S_OK; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP Reserved7() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved8() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved9() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved10() override { return E_NOTIMPL; }
    STDMETHODIMP GetDataContainer(IUnknown** ppContainer) override;
    STDMETHODIMP Reserved12() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved13() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved14() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved15() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved16() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved17() override { return E_NOTIMPL; }
    STDMETHODIMP SaveDataToFile(BSTR s1, BSTR s2, BSTR path) override;
    STDMETHODIMP GetDataAsStream(LPCWSTR s1, LPCWSTR s2, IStream** ppStream) override;
    STDMETHODIMP Reserved20() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved21() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved22() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved23() override { return E_NOTIMPL; }
    STDMETHODIMP GetDataAsFormat(LPCWSTR s1, LPCWSTR s2, ITOVDataFormat** ppFormat) override;
    STDMETHODIMP Reserved25() override { return E_NOTIMPL; }
    STDMETHODIMP SetDataFromStream(LPCWSTR url, BSTR name, IStream* pStream) override;
    STDMETHODIMP Reserved27() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved28() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved29() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved30() override { return E_NOTIMPL; }
    STDMETHODIMP SetDataFromURL(LPCWSTR s1, LPCWSTR s2, BSTR url) override;

    // Post data stored with SetDataFromStream, by "<url>|<name>"; emptied by the container's reset.
    std::map<std::wstring, std::string> posted;
    int resets = 0;

private:
    DataProviderStandIn() = default;
    HRESULT Failure(const wchar_t* method) const;
    std::wstring m_selected;
};

// Registers the stand-in's class object for CLSID_TOVDataProvider in this process.
class DataProviderRegistration {
public:
    DataProviderRegistration();
    ~DataProviderRegistration();
    DataProviderRegistration(const DataProviderRegistration&) = delete;
    DataProviderRegistration& operator=(const DataProviderRegistration&) = delete;

private:
    DWORD m_cookie = 0;
};

} // namespace tovfe
