#pragma once
// A GUI control of the test's own on the common base, whose hooks record their calls ("Name", " +p" when
// a parameter came, then details), can be told what to answer and can throw; and the front end it meets.
#include <gtest/gtest.h>
#include <string>
#include <vector>
#include "frontend/context_menu_standin.h"
#include "frontend/frontend_container.h"
#include "guicontrol/TOVGUIControlBase.h"
#include "support/registry_helpers.h"

namespace tovtest {

class HookRecorder final : public tov::ObjectRoot, public CTOVGUIControlBase {
public:
    static tov::ComPtr<HookRecorder> Create() { return tovfe::CreateStandIn<HookRecorder, ITOVGUIControl>(IID_ITOVGUIControl); }
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override { return Lookup(riid, {tov::Entry<ITOVGUIControl>(IID_ITOVGUIControl, this)}); }

    std::vector<std::wstring> hooks;
    LONG preHandleAnswer = 1;
    LONG hookAnswer = 0;
    std::wstring throwIn; // the hook (by name) that throws

protected:
    LONG PreHandleEvent(LONG, IUnknown*) override { return preHandleAnswer; }
    LONG OnContainerConnected() override { return Hook(L"OnContainerConnected"); }
    LONG OnContainerDisconnecting() override { return Hook(L"OnContainerDisconnecting"); }
    LONG OnTraceSettingsChanged() override { return Hook(L"OnTraceSettingsChanged"); }
    LONG OnEvent101() override { return Hook(L"OnEvent101"); }
    LONG OnEvent101WithParameter(IUnknown* p) override { return Hook(L"OnEvent101WithParameter", p); }
    LONG OnEvent102() override { return Hook(L"OnEvent102"); }
    LONG OnEvent104() override { return Hook(L"OnEvent104"); }
    LONG OnEvent105() override { return Hook(L"OnEvent105"); }
    LONG OnEvent106(IUnknown* p) override { return Hook(L"OnEvent106", p); }
    LONG OnContextMenuItemSelected(IUnknown* menu, IUnknown* item) override
    {
        return Hook(L"OnContextMenuItemSelected", menu, item ? L"item" : L"<null>");
    }
    LONG OnEvent301(IUnknown* p) override { return Hook(L"OnEvent301", p); }
    LONG OnEvent302(IUnknown* p) override { return Hook(L"OnEvent302", p); }
    LONG OnDragEvent(LONG event, IDataObject* data, const std::wstring& file) override
    {
        return Hook(L"OnDragEvent " + std::to_wstring(event), data, L"'" + file + L"'");
    }
    LONG OnEvent5xx(LONG event, IUnknown* p) override { return Hook(L"OnEvent5xx " + std::to_wstring(event), p); }

private:
    friend class tov::ObjectRoot;
    HookRecorder() = default;
    LONG Hook(const std::wstring& name, IUnknown* parameter = nullptr, const std::wstring& detail = {})
    {
        hooks.push_back(name + (parameter ? L" +p" : L"") + (detail.empty() ? L"" : L" " + detail));
        if (throwIn == name) tov::Throw(E_FAIL);
        return hookAnswer;
    }
};

// The control, not yet connected, and a front end offering its trace sink and context-menu service.
class GUIControlTest : public testing::Test {
protected:
    void SetUp() override
    {
        tovfe::MakeFrontend(container, sink);
        container->AddService(SID_TOVContextMenuService, static_cast<ITOVContextMenuService*>(menus.Get()));
    }
    void TearDown() override { DeleteTree(HKEY_CURRENT_USER, L"Software\\TOV"); } // the plug-in switch, perhaps volatile
    IUnknown* Container() const { return static_cast<ITOVFrontendContainer*>(container.Get()); }
    // The hooks one event calls, and its result.
    std::vector<std::wstring> Handle(LONG event, IUnknown* p, HRESULT* result = nullptr)
    {
        control->hooks.clear();
        const HRESULT hr = control->HandleEvent(event, p);
        if (result) *result = hr;
        return control->hooks;
    }

    tov::ComPtr<HookRecorder> control = HookRecorder::Create();
    tov::ComPtr<tovfe::FrontendContainer> container;
    tov::ComPtr<tovfe::TraceSinkStandIn> sink;
    tov::ComPtr<tovfe::ContextMenuServiceStandIn> menus = tovfe::ContextMenuServiceStandIn::Create();
};

} // namespace tovtest
