#pragma once
// The front end's GUI framework object and what hangs off it: the child that tells the code page, the
// target of ForwardToGUIService, the icon-font service; and the front end's information service with
// its language key. All of them record into one shared Recorder.
#include <windows.h>
#include <map>
#include <memory>
#include <string>
#include "frontend/call_log.h"
#include "frontend/frontend_container.h"

namespace tovfe {

class GUIServiceChildStandIn final : public tov::ObjectRoot, public EarlyBoundOnly<ITOVGUIServiceChild> {
public:
    static tov::ComPtr<GUIServiceChildStandIn> Create(std::shared_ptr<Recorder> rec);
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override;
    STDMETHODIMP GetCodePage(UINT* pCodePage) override;

    UINT codePage = 1252;

private:
    friend class tov::ObjectRoot;
    GUIServiceChildStandIn() = default;
    std::shared_ptr<Recorder> m_rec;
};

class GUIForwardTargetStandIn final : public tov::ObjectRoot, public EarlyBoundOnly<ITOVGUIForwardTarget> {
public:
    static tov::ComPtr<GUIForwardTargetStandIn> Create(std::shared_ptr<Recorder> rec);
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override;
    STDMETHODIMP Forward(LONG lValue) override;

private:
    friend class tov::ObjectRoot;
    GUIForwardTargetStandIn() = default;
    std::shared_ptr<Recorder> m_rec;
};

// Icon descriptions by icon name; a name without one answers E_FAIL.
class IconFontServiceStandIn final : public tov::ObjectRoot, public EarlyBoundOnly<ITOVIconFontService> {
public:
    static tov::ComPtr<IconFontServiceStandIn> Create(std::shared_ptr<Recorder> rec);
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override;
    STDMETHODIMP GetIconFontDescByName(BSTR name, BSTR* pDescription) override;

    std::map<std::wstring, std::wstring> descriptions;

private:
    friend class tov::ObjectRoot;
    IconFontServiceStandIn() = default;
    std::shared_ptr<Recorder> m_rec;
};

class GUIServiceStandIn final : public tov::ObjectRoot, public EarlyBoundOnly<ITOVGUIService> {
public:
    static tov::ComPtr<GUIServiceStandIn> Create(std::shared_ptr<Recorder> rec = std::make_shared<Recorder>());
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override;
    STDMETHODIMP GetIconFontService(IUnknown** ppService) override;
    STDMETHODIMP GetServiceChild(ITOVGUIServiceChild** ppChild) override;
    STDMETHODIMP GetForwardTarget(IUnknown** ppTarget) override;
    STDMETHODIMP OnDpiChanged(LONG dpi, LONG scalingFactorX, LONG scalingFactorY) override;

    Recorder& Rec() { return *m_rec; }
    CallLog& Log() { return m_rec->log; }
    FailurePlan& Plan() { return m_rec->plan; }
    GUIServiceChildStandIn& Child() { return *m_child.Get(); }
    IconFontServiceStandIn& IconFonts() { return *m_iconFonts.Get(); }
    // Hands out null (with S_OK) instead of the object, as a front end without it would.
    bool withoutChild = false;
    bool withoutIconFonts = false;
    bool withoutForwardTarget = false;

private:
    friend class tov::ObjectRoot;
    GUIServiceStandIn() = default;
    std::shared_ptr<Recorder> m_rec;
    tov::ComPtr<GUIServiceChildStandIn> m_child;
    tov::ComPtr<GUIForwardTargetStandIn> m_forward;
    tov::ComPtr<IconFontServiceStandIn> m_iconFonts;
};

class FrontendInfoStandIn final : public tov::ObjectRoot, public EarlyBoundOnly<ITOVFrontendInfoService> {
public:
    static tov::ComPtr<FrontendInfoStandIn> Create(std::shared_ptr<Recorder> rec = std::make_shared<Recorder>());
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override;
    STDMETHODIMP GetLanguageKey(BSTR* pKey) override;
    STDMETHODIMP GetPluginValue(BSTR* pValue) override;

    CallLog& Log() { return m_rec->log; }
    FailurePlan& Plan() { return m_rec->plan; }
    std::wstring languageKey = L"EN";
    std::wstring pluginValue = L"plugin";

private:
    friend class tov::ObjectRoot;
    FrontendInfoStandIn() = default;
    std::shared_ptr<Recorder> m_rec;
};

// The GUI service and the information service registered with `container`, sharing one recorder.
struct GUIServices {
    tov::ComPtr<GUIServiceStandIn> gui;
    tov::ComPtr<FrontendInfoStandIn> info;
};
GUIServices AddGUIServices(FrontendContainer& container, UINT codePage = 1252, std::wstring languageKey = L"EN");

} // namespace tovfe
