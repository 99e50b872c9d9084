#pragma once
// Class objects of stand-ins registered in this process, so that CoCreateInstance on the real class
// identity finds them; and the class object of the scripted browser.
#include <windows.h>
#include <exdisp.h>
#include <memory>
#include <string>
#include <vector>
#include "frontend/call_log.h"
#include "framework/com_ptr.h"
#include "framework/object_root.h"

namespace tovfe {

class ScriptedBrowser;

// Makes a stand-in through ObjectRoot::CreateInstance and hands it out as its class; `Itf` is the
// interface `iid` stands for. Throws HResultError when creation fails.
template <class T, class Itf> tov::ComPtr<T> CreateStandIn(REFIID iid)
{
    void* pv = nullptr;
    tov::ThrowIfFailed(tov::ObjectRoot::CreateInstance<T>(nullptr, iid, &pv));
    tov::ComPtr<T> object;
    object.Attach(static_cast<T*>(static_cast<Itf*>(pv)));
    return object;
}

// CoRegisterClassObject (in-process, multiple use) for as long as it lives.
class RegisteredClass {
public:
    RegisteredClass() = default;
    // Registers or throws HResultError.
    RegisteredClass(REFCLSID clsid, IUnknown* classObject);
    ~RegisteredClass() { Revoke(); }
    RegisteredClass(RegisteredClass&& o) noexcept;
    RegisteredClass& operator=(RegisteredClass&& o) noexcept;
    RegisteredClass(const RegisteredClass&) = delete;
    RegisteredClass& operator=(const RegisteredClass&) = delete;

    // Replaces any registration this object held.
    HRESULT Register(REFCLSID clsid, IUnknown* classObject) noexcept;
    void Revoke() noexcept;
    bool IsRegistered() const noexcept { return m_cookie != 0; }

private:
    DWORD m_cookie = 0;
};

// Makes scripted browsers; all of them record into the factory's one log, after its own
// "CoCreateInstance(WebBrowser)" entry.
class ScriptedBrowserFactory final : public tov::ObjectRoot, public IClassFactory {
public:
    static tov::ComPtr<ScriptedBrowserFactory> Create() { return CreateStandIn<ScriptedBrowserFactory, IClassFactory>(IID_IClassFactory); }

    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override { return Lookup(riid, {tov::Entry<IClassFactory>(IID_IClassFactory, this)}); }
    STDMETHODIMP CreateInstance(IUnknown* pOuter, REFIID riid, void** ppv) override;
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }

    CallLog& Log() { return *m_log; }
    const std::vector<tov::ComPtr<ScriptedBrowser>>& Created() const { return m_created; }
    // Creation fails with hr from now on, leaving `why` as error information when it is not empty.
    void FailCreate(HRESULT hr, std::wstring why = {})
    {
        m_createResult = hr;
        m_createFailure = std::move(why);
    }
    // Failures every browser made from now on starts with.
    FailurePlan& PlanForNext() { return m_plan; }
    // Class name in the creation entries of the log: one factory serves the browser control, another the
    // browser application.
    void SetClassName(std::wstring name) { m_className = std::move(name); }

private:
    friend class tov::ObjectRoot;
    ScriptedBrowserFactory();
    ~ScriptedBrowserFactory() override;

    std::shared_ptr<CallLog> m_log;
    std::vector<tov::ComPtr<ScriptedBrowser>> m_created;
    FailurePlan m_plan;
    HRESULT m_createResult = S_OK;
    std::wstring m_createFailure;
    std::wstring m_className = L"WebBrowser";
};

// The scripted browser as the WebBrowser class of this process, for a test or the demo host.
class ScriptedBrowserClass {
public:
    ScriptedBrowserClass();
    ScriptedBrowserClass(const ScriptedBrowserClass&) = delete;
    ScriptedBrowserClass& operator=(const ScriptedBrowserClass&) = delete;

    HRESULT Register(REFCLSID clsid = CLSID_WebBrowser) { return m_registration.Register(clsid, m_factory.Get()); }
    void Revoke() { m_registration.Revoke(); }

    // One log for every browser of this class, beginning with their creation.
    CallLog& Log() { return m_factory->Log(); }
    const std::vector<tov::ComPtr<ScriptedBrowser>>& Created() const { return m_factory->Created(); }
    ScriptedBrowser* Last() const { return Created().empty() ? nullptr : Created().back().Get(); }
    void FailCreate(HRESULT hr, std::wstring why = {}) { m_factory->FailCreate(hr, std::move(why)); }
    void FailCallOnNext(const std::wstring& key, HRESULT hr) { m_factory->PlanForNext().Fail(key, hr); }
    void ThrowOnNext(const std::wstring& key) { m_factory->PlanForNext().Throw(key); }
    void ClearFailurePlan() { m_factory->PlanForNext().Clear(); }
    ScriptedBrowserFactory* Factory() const { return m_factory.Get(); }

private:
    // Declared first so the registration goes before the factory does.
    tov::ComPtr<ScriptedBrowserFactory> m_factory;
    RegisteredClass m_registration;
};

} // namespace tovfe
