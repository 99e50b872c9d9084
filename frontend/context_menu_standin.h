#pragma once
// Stand-ins for the front end's context menus: the menu service that shows a menu, the menu built from
// a test's description (its entries' function codes and the entry the user chose) and its entries.
// Every call is recorded in one log that a menu shares with its entries and, if a test wants, with the
// service, so the order of placing and showing can be checked.
#include <windows.h>
#include <functional>
#include <memory>
#include <string>
#include <vector>
#include "frontend/frontend_container.h"

namespace tovfe {

class ContextMenuItemStandIn final : public tov::ObjectRoot, public EarlyBoundOnly<ITOVContextMenuItem> {
public:
    static tov::ComPtr<ContextMenuItemStandIn> Create(std::wstring functionCode, std::shared_ptr<CallLog> log);

    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override
    {
        return Lookup(riid, {tov::Entry<ITOVContextMenuItem>(IID_ITOVContextMenuItem, this),
                             tov::Entry<ITOVContextMenuItem>(IID_IDispatch, this)});
    }
    STDMETHODIMP GetFunctionCode(BSTR* pFCode) override;

    void FailGetFunctionCode(HRESULT hr) { m_failure = hr; }

private:
    friend class tov::ObjectRoot;
    ContextMenuItemStandIn() = default;

    std::wstring m_functionCode;
    std::shared_ptr<CallLog> m_log;
    HRESULT m_failure = S_OK;
};

// What a menu holds: its entries' function codes and the index of the entry the user chose.
struct ContextMenuDescription {
    std::vector<std::wstring> functionCodes;
    LONG selectedIndex = 0;
};

class ContextMenuStandIn final : public tov::ObjectRoot, public EarlyBoundOnly<ITOVContextMenu> {
public:
    static tov::ComPtr<ContextMenuStandIn> Create(const ContextMenuDescription& description,
                                                  std::shared_ptr<CallLog> log = nullptr);

    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override
    {
        return Lookup(riid, {tov::Entry<ITOVContextMenu>(IID_ITOVContextMenu, this),
                             tov::Entry<ITOVContextMenu>(IID_IDispatch, this)});
    }
    // An index outside the entries gives E_INVALIDARG and no entry.
    STDMETHODIMP GetItem(LONG index, IUnknown** ppItem) override;
    STDMETHODIMP GetSelectedIndex(LONG* pIndex) override;
    STDMETHODIMP put_PosX(LONG x) override;
    STDMETHODIMP put_PosY(LONG y) override;

    CallLog& Log() { return *m_log; }
    const std::shared_ptr<CallLog>& SharedLog() const { return m_log; }
    ContextMenuItemStandIn* Item(size_t index) const { return m_items.at(index).Get(); }
    // Calls by name ("GetSelectedIndex", "GetItem", "put_PosX" …) that answer `hr` from now on.
    void FailCall(const std::wstring& name, HRESULT hr) { m_plan.Fail(name, hr); }
    POINT Position() const { return m_position; }

private:
    friend class tov::ObjectRoot;
    ContextMenuStandIn() = default;
    HRESULT Record(const std::wstring& name, std::vector<std::wstring> args = {});

    std::vector<tov::ComPtr<ContextMenuItemStandIn>> m_items;
    LONG m_selected = 0;
    POINT m_position{};
    std::shared_ptr<CallLog> m_log;
    FailurePlan m_plan;
};

// The context-menu service: records each menu it is asked to show.
class ContextMenuServiceStandIn final : public tov::ObjectRoot, public EarlyBoundOnly<ITOVContextMenuService> {
public:
    static tov::ComPtr<ContextMenuServiceStandIn> Create(std::shared_ptr<CallLog> log = nullptr);

    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override
    {
        return Lookup(riid, {tov::Entry<ITOVContextMenuService>(IID_ITOVContextMenuService, this),
                             tov::Entry<ITOVContextMenuService>(IID_IDispatch, this)});
    }
    // Recorded as "ShowContextMenu(menu)", "ShowContextMenu(<null>)" or "ShowContextMenu(<not a menu>)".
    STDMETHODIMP ShowContextMenu(IDispatch* pMenu) override;

    CallLog& Log() { return *m_log; }
    void FailShow(HRESULT hr) { m_failure = hr; }
    // Runs inside ShowContextMenu, as a modal menu loop would run the front end's code.
    std::function<void()> whileShowing;

private:
    friend class tov::ObjectRoot;
    ContextMenuServiceStandIn() = default;

    std::shared_ptr<CallLog> m_log;
    HRESULT m_failure = S_OK;
};

} // namespace tovfe
