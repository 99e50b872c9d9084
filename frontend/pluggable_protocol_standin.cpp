#include "frontend/pluggable_protocol_standin.h"
#include <shlwapi.h>
#include <string>
#include "framework/simple_object.h"
#include "frontend/static_class_factory.h"

namespace tovfe {
namespace {

HRESULT g_creationResult = S_OK;
int g_created = 0;

class Handler final : public tov::SimpleObject<Handler, tov::Lifetime::DeleteOnLastRelease, tov::Implements<IUnknown>> {};

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
