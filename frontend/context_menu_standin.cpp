#include "frontend/context_menu_standin.h"
#include "framework/bstr.h"

namespace tovfe {

tov::ComPtr<ContextMenuItemStandIn> ContextMenuItemStandIn::Create(std::wstring functionCode, std::shared_ptr<Recorder> rec)
{
    auto item = CreateStandIn<ContextMenuItemStandIn, ITOVContextMenuItem>(IID_ITOVContextMenuItem);
    item->m_functionCode = std::move(functionCode);
    item->m_rec = std::move(rec);
    return item;
}

STDMETHODIMP ContextMenuItemStandIn::GetFunctionCode(BSTR* pFCode)
{
    if (pFCode) *pFCode = nullptr;
    return StandInCall([&] {
        const HRESULT hr = m_rec->Record(L"GetFunctionCode", {m_functionCode});
        if (FAILED(hr)) return hr;
        if (!pFCode) return E_POINTER;
        *pFCode = tov::Bstr(m_functionCode).Detach();
        return S_OK;
    });
}

tov::ComPtr<ContextMenuStandIn> ContextMenuStandIn::Create(const ContextMenuDescription& description,
                                                           std::shared_ptr<Recorder> rec)
{
    auto menu = CreateStandIn<ContextMenuStandIn, ITOVContextMenu>(IID_ITOVContextMenu);
    menu->m_rec = rec ? std::move(rec) : std::make_shared<Recorder>();
    for (const auto& code : description.functionCodes)
        menu->m_items.push_back(ContextMenuItemStandIn::Create(code, menu->m_rec));
    menu->m_selected = description.selectedIndex;
    return menu;
}

STDMETHODIMP ContextMenuStandIn::GetItem(LONG index, IUnknown** ppItem)
{
    if (ppItem) *ppItem = nullptr;
    return StandInCall([&] {
        const HRESULT hr = m_rec->Record(L"GetItem", {std::to_wstring(index)});
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
        const HRESULT hr = m_rec->Record(L"GetSelectedIndex");
        if (FAILED(hr)) return hr;
        if (!pIndex) return E_POINTER;
        *pIndex = m_selected;
        return S_OK;
    });
}

STDMETHODIMP ContextMenuStandIn::put_PosX(LONG x)
{
    return StandInCall([&] {
        const HRESULT hr = m_rec->Record(L"put_PosX", {std::to_wstring(x)});
        if (SUCCEEDED(hr)) m_position.x = x;
        return hr;
    });
}

STDMETHODIMP ContextMenuStandIn::put_PosY(LONG y)
{
    return StandInCall([&] {
        const HRESULT hr = m_rec->Record(L"put_PosY", {std::to_wstring(y)});
        if (SUCCEEDED(hr)) m_position.y = y;
        return hr;
    });
}

tov::ComPtr<ContextMenuServiceStandIn> ContextMenuServiceStandIn::Create(std::shared_ptr<Recorder> rec)
{
    auto service = CreateStandIn<ContextMenuServiceStandIn, ITOVContextMenuService>(IID_ITOVContextMenuService);
    service->m_rec = rec ? std::move(rec) : std::make_shared<Recorder>();
    return service;
}

STDMETHODIMP ContextMenuServiceStandIn::ShowContextMenu(IDispatch* pMenu)
{
    return StandInCall([&] {
        std::wstring arg = L"<null>";
        tov::ComPtr<ITOVContextMenu> menu;
        if (pMenu) arg = SUCCEEDED(pMenu->QueryInterface(IID_ITOVContextMenu, menu.PutVoid())) ? L"menu" : L"<not a menu>";
        const HRESULT hr = m_rec->Record(L"ShowContextMenu", {arg});
        if (FAILED(hr)) return hr;
        if (whileShowing) whileShowing();
        return S_OK;
    });
}

} // namespace tovfe
