// The scripted browser's calls on its client site, shaped like the platform browser's: what it asks its
// host while it shows a page.
#include "frontend/scripted_browser.h"
#include <servprov.h>
#include <urlmon.h>

namespace tovfe {
namespace {

// Calls `call` on the site's interface `Itf`; E_UNEXPECTED without a site, E_NOINTERFACE without `Itf`.
template <class Itf, class Call> HRESULT OnSite(IOleClientSite* site, REFIID iid, Call&& call)
{
    if (!site) return E_UNEXPECTED;
    tov::ComPtr<Itf> itf;
    const HRESULT hr = site->QueryInterface(iid, itf.PutVoid());
    if (FAILED(hr) || !itf) return FAILED(hr) ? hr : E_NOINTERFACE;
    return call(itf.Get());
}

} // namespace

HRESULT ScriptedBrowser::CallGetHostInfo(DOCHOSTUIINFO* info) const
{
    return OnSite<IDocHostUIHandler>(m_site.Get(), IID_IDocHostUIHandler,
                                     [&](IDocHostUIHandler* host) { return host->GetHostInfo(info); });
}

HRESULT ScriptedBrowser::CallShowContextMenu(DWORD id, POINT* pt) const
{
    return OnSite<IDocHostUIHandler>(m_site.Get(), IID_IDocHostUIHandler,
                                     [&](IDocHostUIHandler* host) { return host->ShowContextMenu(id, pt, nullptr, nullptr); });
}

HRESULT ScriptedBrowser::CallQueryService(REFGUID service, REFIID riid, void** ppv) const
{
    return OnSite<IServiceProvider>(m_site.Get(), IID_IServiceProvider,
                                    [&](IServiceProvider* provider) { return provider->QueryService(service, riid, ppv); });
}

// The browser asks its host's security manager first, through the service provider.
HRESULT ScriptedBrowser::CallProcessUrlAction(const wchar_t* url, DWORD action, BYTE* policy, DWORD cbPolicy) const
{
    tov::ComPtr<IInternetSecurityManager> manager;
    const HRESULT hr = CallQueryService(SID_SInternetSecurityManager, IID_IInternetSecurityManager, manager.PutVoid());
    if (FAILED(hr) || !manager) return FAILED(hr) ? hr : E_NOINTERFACE;
    return manager->ProcessUrlAction(url, action, policy, cbPolicy, nullptr, 0, PUAF_DEFAULT, 0);
}

HRESULT ScriptedBrowser::CallExec(const GUID* group, DWORD command, VARIANT* in, VARIANT* out) const
{
    return OnSite<IOleCommandTarget>(m_site.Get(), IID_IOleCommandTarget, [&](IOleCommandTarget* target) {
        return target->Exec(group, command, OLECMDEXECOPT_DODEFAULT, in, out);
    });
}

HRESULT ScriptedBrowser::CallAllowFocusChange(BOOL* allow) const
{
    tov::ComPtr<IProtectFocus> focus;
    const HRESULT hr = CallQueryService(SID_SProtectFocus, IID_IProtectFocus, focus.PutVoid());
    if (FAILED(hr) || !focus) return FAILED(hr) ? hr : E_NOINTERFACE;
    return focus->AllowFocusChange(allow);
}

HRESULT ScriptedBrowser::CallGetExternal(IDispatch** external) const
{
    return OnSite<IDocHostUIHandler>(m_site.Get(), IID_IDocHostUIHandler,
                                     [&](IDocHostUIHandler* host) { return host->GetExternal(external); });
}

HRESULT ScriptedBrowser::CallTranslateAccelerator(MSG* msg) const
{
    return OnSite<IOleControlSite>(m_site.Get(), IID_IOleControlSite,
                                   [&](IOleControlSite* site) { return site->TranslateAccelerator(msg, 0); });
}

HRESULT ScriptedBrowser::CallShowObject() const
{
    return m_site ? m_site->ShowObject() : E_UNEXPECTED;
}

HRESULT ScriptedBrowser::CallGetWindowContext(RECT* pos, RECT* clip) const
{
    return OnSite<IOleInPlaceSite>(m_site.Get(), IID_IOleInPlaceSite, [&](IOleInPlaceSite* site) {
        tov::ComPtr<IOleInPlaceFrame> frame;
        tov::ComPtr<IOleInPlaceUIWindow> document;
        OLEINPLACEFRAMEINFO info{sizeof(info)};
        return site->GetWindowContext(frame.Put(), document.Put(), pos, clip, &info);
    });
}

} // namespace tovfe
