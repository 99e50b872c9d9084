#include "frontend/pluggable_protocol_standin.h"
#include <shlwapi.h>
#include <string>
#include "frontend/static_class_factory.h"

namespace tovfe {
namespace {

HRESULT g_creationResult = S_OK;
int g_created = 0;

class Handler final : public IUnknown {
public:
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override
    {
        if (!ppv) return E_POINTER;
        if (!IsEqualIID(riid, IID_IUnknown)) { *ppv = nullptr; return E_NOINTERFACE; }
        *ppv = this;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++m_refs; }
    STDMETHODIMP_(ULONG) Release() override
    {
        const ULONG n = --m_refs;
        if (n == 0) delete this;
        return n;
    }

private:
    ULONG m_refs = 0;
};

// Creation answers as the test planned it and is counted.
HRESULT AllowCreation()
{
    if (FAILED(g_creationResult)) return g_creationResult;
    ++g_created;
    return S_OK;
}

StaticClassFactory<Handler> g_factory(&AllowCreation);
const wchar_t kProgIdKey[] = L"TOV.HTMLPlug.1";

} // namespace

PluggableProtocolInstallation::PluggableProtocolInstallation(HRESULT creationResult)
{
    g_creationResult = creationResult;
    g_created = 0;
    wchar_t text[40];
    StringFromGUID2(CLSID_PluggableProtocolStandIn, text, 40);
    RegSetKeyValueW(HKEY_CLASSES_ROOT, (std::wstring(kProgIdKey) + L"\\CLSID").c_str(), nullptr, REG_SZ, text,
                    static_cast<DWORD>((wcslen(text) + 1) * sizeof(wchar_t)));
    CoRegisterClassObject(CLSID_PluggableProtocolStandIn, &g_factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &m_cookie);
}

PluggableProtocolInstallation::~PluggableProtocolInstallation()
{
    CoRevokeClassObject(m_cookie);
    SHDeleteKeyW(HKEY_CLASSES_ROOT, kProgIdKey);
}

int PluggableProtocolInstallation::Created() const { return g_created; }

} // namespace tovfe
