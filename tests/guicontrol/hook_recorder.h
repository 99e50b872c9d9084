#pragma once
// A GUI control of the test's own on the common base: every hook records its call, can be told what to
// answer and can throw.
#include <string>
#include <vector>
#include "guicontrol/TOVGUIControlBase.h"
#include "framework/object_root.h"

namespace tovtest {

class HookRecorder final : public tov::ObjectRoot, public CTOVGUIControlBase {
public:
    static tov::ComPtr<HookRecorder> Create()
    {
        void* pv = nullptr;
        tov::ThrowIfFailed(tov::ObjectRoot::CreateInstance<HookRecorder>(nullptr, IID_ITOVGUIControl, &pv));
        tov::ComPtr<HookRecorder> object;
        object.Attach(static_cast<HookRecorder*>(static_cast<ITOVGUIControl*>(pv)));
        return object;
    }

    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override
    {
        return Lookup(riid, {tov::Entry<ITOVGUIControl>(IID_ITOVGUIControl, this),
                             tov::Entry<ITOVGUITessarilControl>(IID_ITOVGUITessarilControl, this),
                             tov::Entry<_ITOVDataProviderEvents>(IID__ITOVDataProviderEvents, this)});
    }

    LONG FrontendActive() const { return m_bFrontendActive; }
    IDataObject* DragData() const { return m_pDragData.Get(); }

    std::vector<std::wstring> hooks;
    LONG preHandleAnswer = 1;
    LONG hookAnswer = 0;
    std::wstring throwIn; // the hook (by name) that throws

protected:
    LONG PreHandleEvent(LONG lEvent, IUnknown*) override { return preHandleAnswer; }
    LONG OnContainerConnected() override { return Hook(L"OnContainerConnected"); }
    LONG OnContainerDisconnecting() override { return Hook(L"OnContainerDisconnecting"); }
    LONG OnTraceSettingsChanged() override { return Hook(L"OnTraceSettingsChanged"); }
    LONG OnEvent101() override { return Hook(L"OnEvent101"); }
    LONG OnEvent102() override { return Hook(L"OnEvent102"); }
    LONG OnEvent105() override { return Hook(L"OnEvent105"); }
    LONG OnEvent106(IUnknown* p) override { return Hook(L"OnEvent106", p); }
    LONG OnContextMenuItemSelected(IUnknown* menu, IUnknown* item) override
    {
        return Hook(L"OnContextMenuItemSelected", menu, item ? L"item" : L"<null>");
    }
    LONG OnEvent301(IUnknown* p) override { return Hook(L"OnEvent301", p); }
    LONG OnEvent302(IUnknown* p) override { return Hook(L"OnEvent302", p); }
    LONG OnDragEvent(LONG lEvent, IDataObject* data, const std::wstring& firstFile) override
    {
        return Hook(L"OnDragEvent " + std::to_wstring(lEvent), data, L"'" + firstFile + L"'");
    }
    LONG OnEvent5xx(LONG lEvent, IUnknown* p) override { return Hook(L"OnEvent5xx " + std::to_wstring(lEvent), p); }
    LONG OnEvent104() override { return Hook(L"OnEvent104"); }
    LONG OnEvent101WithParameter(IUnknown* p) override { return Hook(L"OnEvent101WithParameter", p); }
    LONG OnDataEvent3(IUnknown* p) override { return Hook(L"OnDataEvent3", p); }
    LONG OnDataEvent5(IUnknown* p, LPCWSTR url, LONG kind, LONG value) override
    {
        return Hook(L"OnDataEvent5", p, Text(url) + L" " + std::to_wstring(kind) + L" " + std::to_wstring(value));
    }
    LONG OnDataEvent6(IUnknown* p) override { return Hook(L"OnDataEvent6", p); }
    LONG OnSetTessarilProperty(LPCWSTR name, LPCWSTR value) override
    {
        return Hook(L"OnSetTessarilProperty", nullptr, Text(name) + L"=" + Text(value));
    }
    LONG OnTessarilMethod4(LPCWSTR name, LONG kind, VARIANT* value, LONG* result) override
    {
        if (result) *result = 44;
        return Hook(L"OnTessarilMethod4", nullptr, Text(name) + L" " + std::to_wstring(kind) + (value ? L" value" : L" <null>"));
    }
    LONG OnResetTessarilProperty() override { return Hook(L"OnResetTessarilProperty"); }
    LONG OnTessarilMethod6(LPCWSTR name) override { return Hook(L"OnTessarilMethod6", nullptr, Text(name)); }
    LONG OnTessarilMethod7(LPCWSTR name, VARIANT* value) override { return Hook(L"OnTessarilMethod7", nullptr, Text(name)); }
    LONG OnTessarilMethod8(IUnknown* tool) override { return Hook(L"OnTessarilMethod8", tool); }

private:
    friend class tov::ObjectRoot;
    HookRecorder() = default;

    static std::wstring Text(LPCWSTR s) { return s ? s : L"<null>"; }
    LONG Hook(const std::wstring& name, IUnknown* parameter = nullptr, const std::wstring& detail = {})
    {
        std::wstring entry = name;
        if (parameter) entry += L" with parameter";
        if (!detail.empty()) entry += L" " + detail;
        hooks.push_back(entry);
        if (throwIn == name) tov::Throw(E_FAIL);
        return hookAnswer;
    }
};

} // namespace tovtest
