#include "frontend/gui_service_standin.h"
#include <utility>
#include "framework/bstr.h"

namespace tovfe {

namespace {

// Hands `object` out through `pp` as `Itf`, or null when `absent`.
template <class Itf, class T> void HandOut(T* object, bool absent, Itf** pp)
{
    *pp = absent || !object ? nullptr : static_cast<Itf*>(object);
    if (*pp) (*pp)->AddRef();
}

HRESULT CopyText(const std::wstring& text, BSTR* out)
{
    *out = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *out ? S_OK : E_OUTOFMEMORY;
}

} // namespace

tov::ComPtr<GUIServiceChildStandIn> GUIServiceChildStandIn::Create(std::shared_ptr<Recorder> rec)
{
    auto p = CreateStandIn<GUIServiceChildStandIn, ITOVGUIServiceChild>(IID_ITOVGUIServiceChild);
    p->m_rec = std::move(rec);
    return p;
}

void* GUIServiceChildStandIn::FindInterface(REFIID riid) noexcept
{
    return Lookup(riid, {tov::Entry<ITOVGUIServiceChild>(IID_ITOVGUIServiceChild, this), tov::Entry<ITOVGUIServiceChild>(IID_IDispatch, this)});
}

STDMETHODIMP GUIServiceChildStandIn::GetCodePage(UINT* pCodePage)
{
    if (pCodePage) *pCodePage = 0;
    return StandInCall([&] {
        const HRESULT hr = m_rec->Record(L"GetCodePage");
        if (FAILED(hr)) return hr;
        if (!pCodePage) return E_POINTER;
        *pCodePage = codePage;
        return S_OK;
    });
}

tov::ComPtr<GUIForwardTargetStandIn> GUIForwardTargetStandIn::Create(std::shared_ptr<Recorder> rec)
{
    auto p = CreateStandIn<GUIForwardTargetStandIn, ITOVGUIForwardTarget>(IID_ITOVGUIForwardTarget);
    p->m_rec = std::move(rec);
    return p;
}

void* GUIForwardTargetStandIn::FindInterface(REFIID riid) noexcept
{
    return Lookup(riid, {tov::Entry<ITOVGUIForwardTarget>(IID_ITOVGUIForwardTarget, this), tov::Entry<ITOVGUIForwardTarget>(IID_IDispatch, this)});
}

STDMETHODIMP GUIForwardTargetStandIn::Forward(LONG lValue)
{
    return StandInCall([&] { return m_rec->Record(L"Forward", {std::to_wstring(lValue)}); });
}

tov::ComPtr<IconFontServiceStandIn> IconFontServiceStandIn::Create(std::shared_ptr<Recorder> rec)
{
    auto p = CreateStandIn<IconFontServiceStandIn, ITOVIconFontService>(IID_ITOVIconFontService);
    p->m_rec = std::move(rec);
    return p;
}

void* IconFontServiceStandIn::FindInterface(REFIID riid) noexcept
{
    return Lookup(riid, {tov::Entry<ITOVIconFontService>(IID_ITOVIconFontService, this), tov::Entry<ITOVIconFontService>(IID_IDispatch, this)});
}

STDMETHODIMP IconFontServiceStandIn::GetIconFontDescByName(BSTR name, BSTR* pDescription)
{
    if (pDescription) *pDescription = nullptr;
    return StandInCall([&] {
        const HRESULT hr = m_rec->Record(L"GetIconFontDescByName", {ArgText(name)});
        if (FAILED(hr)) return hr;
        if (!pDescription) return E_POINTER;
        auto found = descriptions.find(name ? std::wstring(name, SysStringLen(name)) : std::wstring());
        return found == descriptions.end() ? E_FAIL : CopyText(found->second, pDescription);
    });
}

tov::ComPtr<GUIServiceStandIn> GUIServiceStandIn::Create(std::shared_ptr<Recorder> rec)
{
    auto p = CreateStandIn<GUIServiceStandIn, ITOVGUIService>(IID_ITOVGUIService);
    p->m_rec = rec;
    p->m_child = GUIServiceChildStandIn::Create(rec);
    p->m_forward = GUIForwardTargetStandIn::Create(rec);
    p->m_iconFonts = IconFontServiceStandIn::Create(rec);
    return p;
}

void* GUIServiceStandIn::FindInterface(REFIID riid) noexcept
{
    return Lookup(riid, {tov::Entry<ITOVGUIService>(IID_ITOVGUIService, this), tov::Entry<ITOVGUIService>(IID_IDispatch, this)});
}

STDMETHODIMP GUIServiceStandIn::GetIconFontService(IUnknown** ppService)
{
    if (ppService) *ppService = nullptr;
    return StandInCall([&] {
        const HRESULT hr = m_rec->Record(L"GetIconFontService");
        if (FAILED(hr)) return hr;
        if (!ppService) return E_POINTER;
        HandOut<IUnknown>(static_cast<ITOVIconFontService*>(m_iconFonts.Get()), withoutIconFonts, ppService);
        return S_OK;
    });
}

STDMETHODIMP GUIServiceStandIn::GetServiceChild(ITOVGUIServiceChild** ppChild)
{
    if (ppChild) *ppChild = nullptr;
    return StandInCall([&] {
        const HRESULT hr = m_rec->Record(L"GetServiceChild");
        if (FAILED(hr)) return hr;
        if (!ppChild) return E_POINTER;
        HandOut<ITOVGUIServiceChild>(m_child.Get(), withoutChild, ppChild);
        return S_OK;
    });
}

STDMETHODIMP GUIServiceStandIn::GetForwardTarget(IUnknown** ppTarget)
{
    if (ppTarget) *ppTarget = nullptr;
    return StandInCall([&] {
        const HRESULT hr = m_rec->Record(L"GetForwardTarget");
        if (FAILED(hr)) return hr;
        if (!ppTarget) return E_POINTER;
        HandOut<IUnknown>(static_cast<ITOVGUIForwardTarget*>(m_forward.Get()), withoutForwardTarget, ppTarget);
        return S_OK;
    });
}

STDMETHODIMP GUIServiceStandIn::OnDpiChanged(LONG dpi, LONG scalingFactorX, LONG scalingFactorY)
{
    return StandInCall([&] {
        return m_rec->Record(L"OnDpiChanged", {std::to_wstring(dpi), std::to_wstring(scalingFactorX), std::to_wstring(scalingFactorY)});
    });
}

tov::ComPtr<FrontendInfoStandIn> FrontendInfoStandIn::Create(std::shared_ptr<Recorder> rec)
{
    auto p = CreateStandIn<FrontendInfoStandIn, ITOVFrontendInfoService>(IID_ITOVFrontendInfoService);
    p->m_rec = std::move(rec);
    return p;
}

void* FrontendInfoStandIn::FindInterface(REFIID riid) noexcept
{
    return Lookup(riid, {tov::Entry<ITOVFrontendInfoService>(IID_ITOVFrontendInfoService, this),
                         tov::Entry<ITOVFrontendInfoService>(IID_IDispatch, this)});
}

STDMETHODIMP FrontendInfoStandIn::GetLanguageKey(BSTR* pKey)
{
    if (pKey) *pKey = nullptr;
    return StandInCall([&] {
        const HRESULT hr = m_rec->Record(L"GetLanguageKey");
        if (FAILED(hr)) return hr;
        return pKey ? CopyText(languageKey, pKey) : E_POINTER;
    });
}

STDMETHODIMP FrontendInfoStandIn::GetPluginValue(BSTR* pValue)
{
    if (pValue) *pValue = nullptr;
    return StandInCall([&] {
        const HRESULT hr = m_rec->Record(L"GetPluginValue");
        if (FAILED(hr)) return hr;
        return pValue ? CopyText(pluginValue, pValue) : E_POINTER;
    });
}

GUIServices AddGUIServices(FrontendContainer& container, UINT codePage, std::wstring languageKey)
{
    auto rec = std::make_shared<Recorder>();
    GUIServices s{GUIServiceStandIn::Create(rec), FrontendInfoStandIn::Create(rec)};
    s.gui->Child().codePage = codePage;
    s.info->languageKey = std::move(languageKey);
    container.AddService(SID_TOVGUIService, static_cast<ITOVGUIService*>(s.gui.Get()));
    container.AddService(SID_TOVFrontendInfoService, static_cast<ITOVFrontendInfoService*>(s.info.Get()));
    return s;
}

} // namespace tovfe
