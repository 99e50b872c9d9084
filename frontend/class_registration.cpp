#include "frontend/class_registration.h"
#include "frontend/scripted_browser.h"

namespace tovfe {

// ---- RegisteredClass ----------------------------------------------------------------------------------

RegisteredClass::RegisteredClass(REFCLSID clsid, IUnknown* classObject)
{
    tov::ThrowIfFailed(Register(clsid, classObject));
}

RegisteredClass::RegisteredClass(RegisteredClass&& o) noexcept : m_cookie(std::exchange(o.m_cookie, 0)) {}

RegisteredClass& RegisteredClass::operator=(RegisteredClass&& o) noexcept
{
    if (this != &o) {
        Revoke();
        m_cookie = std::exchange(o.m_cookie, 0);
    }
    return *this;
}

HRESULT RegisteredClass::Register(REFCLSID clsid, IUnknown* classObject) noexcept
{
    Revoke();
    if (!classObject) return E_POINTER;
    return CoRegisterClassObject(clsid, classObject, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &m_cookie);
}

void RegisteredClass::Revoke() noexcept
{
    if (m_cookie) CoRevokeClassObject(std::exchange(m_cookie, 0));
}

// ---- ScriptedBrowserFactory ---------------------------------------------------------------------------

ScriptedBrowserFactory::ScriptedBrowserFactory() : m_log(std::make_shared<CallLog>()) {}

ScriptedBrowserFactory::~ScriptedBrowserFactory() = default;

STDMETHODIMP ScriptedBrowserFactory::CreateInstance(IUnknown* pOuter, REFIID riid, void** ppv)
{
    if (!ppv) return E_POINTER;
    *ppv = nullptr;
    return StandInCall([&] {
        m_log->Add(L"CoCreateInstance", {m_className});
        if (pOuter) return CLASS_E_NOAGGREGATION;
        if (FAILED(m_createResult)) {
            // A class that can say why it failed leaves that as the thread's error information.
            tov::ComPtr<ICreateErrorInfo> info;
            if (!m_createFailure.empty() && SUCCEEDED(CreateErrorInfo(info.Put()))) {
                info->SetDescription(const_cast<LPOLESTR>(m_createFailure.c_str()));
                tov::ComPtr<IErrorInfo> error;
                info->QueryInterface(IID_IErrorInfo, error.PutVoid());
                SetErrorInfo(0, error.Get());
            }
            return m_createResult;
        }
        auto browser = ScriptedBrowser::Create(m_log, m_plan);
        // Handing out the first interface is part of creating, not a query of the caller's: not recorded.
        const HRESULT hr = browser->InternalQueryInterface(riid, ppv);
        if (SUCCEEDED(hr)) m_created.push_back(browser);
        return hr;
    });
}

// ---- ScriptedBrowserClass -----------------------------------------------------------------------------

ScriptedBrowserClass::ScriptedBrowserClass() : m_factory(ScriptedBrowserFactory::Create()) {}

} // namespace tovfe
