#include "frontend/context_menu_standin.h"
#include "framework/bstr.h"

namespace tovfe {
namespace {

std::shared_ptr<CallLog> LogOrNew(std::shared_ptr<CallLog> log)
{
    return log ? std::move(log) : std::make_shared<CallLog>();
}

} // namespace

tov::ComPtr<ContextMenuItemStandIn> ContextMenuItemStandIn::Create(std::wstring functionCode, std::shared_ptr<CallLog> log)
{
    auto item = CreateStandIn<ContextMenuItemStandIn, ITOVContextMenuItem>(IID_ITOVContextMenuItem);
    item->m_functionCode = std::move(functionCode);
    item->m_log = LogOrNew(std::move(log));
    return item;
}

STDMETHODIMP ContextMenuItemStandIn::GetFunctionCode(BSTR* pFCode)
{
    if (pFCode) *pFCode = nullptr;
    return StandInCall([&] {
        m_log->Add(L"GetFunctionCode", {m_functionCode});
        if (FAILED(m_failure)) return m_failure;
        if (!pFCode) return E_POINTER;
        *pFCode = tov::Bstr(m_functionCode).Detach();
        return S_OK;
    });
}

tov::ComPtr<ContextMenuStandIn> ContextMenuStandIn::Create(const ContextMenuDescription& description,
                                                           std::shared_ptr<CallLog> log)
{
    auto menu = CreateStandIn<ContextMenuStandIn, ITOVContextMenu>(IID_ITOVContextMenu);
    menu->m_log = LogOrNew(std::move(log));
    for (const auto& code : description.functionCodes)
        menu->m_items.push_back(ContextMenuItemStandIn::Create(code, menu->m_log));
    menu->m_selected = description.selectedIndex;
    return menu;
}

HRESULT ContextMenuStandIn::Record(const std::wstring& name, std::vector<std::wstring> args)
{
    m_log->Add(name, std::move(args));
    return m_plan.Outcome(m_log->Calls().back());
}

STDMETHODIMP ContextMenuStandIn::GetItem(LONG index, IUnknown** ppItem)
{
    if (ppItem) *ppItem = nullptr;
    return StandInCall([&] {
        const HRESULT hr = Record(L"GetItem", {std::to_wstring(index)});
        if (FAILED(hr)) return hr;
        if (!ppItem) return E_POINTER;
        if (index < 0 || static_cast<size_t>(index) >= m_items.size()) return E_INVALIDARG;
        *ppItem = static_cast<ITOVContextMenuItem*>(m_items[static_cast<size_t>(index)].CopyOut());
        return S_OK;
    });
}

STDMETHODIMP ContextMenuStandIn::GetSelectedIndex(LONG* pIndex)
{
    return StandInCall([&] {
        const HRESULT hr = Record(L"GetSelectedIndex");
        if (FAILED(hr)) return hr;
        if (!pIndex) return E_POINTER;
        *pIndex = m_selected;
        return S_OK;
    });
}

STDMETHODIMP ContextMenuStandIn::put_PosX(LONG x)
{
    return StandInCall([&] {
        const HRESULT hr = Record(L"put_PosX", {std::to_wstring(x)});
        if (SUCCEEDED(hr)) m_position.x = x;
        return hr;
    });
}

STDMETHODIMP ContextMenuStandIn::put_PosY(LONG y)
{
    return StandInCall([&] {
        const HRESULT hr = Record(L"put_PosY", {std::to_wstring(y)});
        if (SUCCEEDED(hr)) m_position.y = y;
        return hr;
    });
}

tov::ComPtr<ContextMenuServiceStandIn> ContextMenuServiceStandIn::Create(std::shared_ptr<CallLog> log)
{
    auto service = CreateStandIn<ContextMenuServiceStandIn, ITOVContextMenuService>(IID_ITOVContextMenuService);
    service->m_log = LogOrNew(std::move(log));
    return service;
}

STDMETHODIMP ContextMenuServiceStandIn::ShowContextMenu(IDispatch* pMenu)
{
    return StandInCall([&] {
        std::wstring arg = L"<null>";
        tov::ComPtr<ITOVContextMenu> menu;
        if (pMenu) arg = SUCCEEDED(pMenu->QueryInterface(IID_ITOVContextMenu, menu.PutVoid())) ? L"menu" : L"<not a menu>";
        m_log->Add(L"ShowContextMenu", {arg});
        if (FAILED(m_failure)) return m_failure;
        if (whileShowing) whileShowing();
        return S_OK;
    });
}

} // namespace tovfe
