// The application's own context menu in the page: placing and showing the front end's menu, and the
// chosen entry's function code back to the front end.
#include "control/TOVHTMLControl.h"

using namespace tov;

STDMETHODIMP CTOVHTMLControl::TrackContextMenu(IDispatch* pMenu, LONG nPosX, LONG nPosY)
{
    MethodCall([&] {
        auto menu = QueryAs<ITOVContextMenu>(pMenu, IID_ITOVContextMenu);
        CTraceScope scope(m_trace, TraceSinkRef(), "TrackContextMenu");
        if (!menu || !GetContextMenuService()) return S_OK;
        // 0, 0 stands for the cursor position: a menu cannot be asked for at the screen's origin.
        if (nPosX == 0 && nPosY == 0) {
            POINT pt{};
            GetCursorPos(&pt);
            menu->put_PosX(pt.x);
            menu->put_PosY(pt.y);
        } else {
            menu->put_PosX(nPosX);
            menu->put_PosY(nPosY);
        }
        if (ComPtr<ITOVContextMenuService> service = GetContextMenuService()) service->ShowContextMenu(menu.Get());
        return S_OK;
    });
    return S_OK;
}

LONG CTOVHTMLControl::OnContextMenuItemSelected(IUnknown* /*pMenu*/, IUnknown* pItem)
{
    auto item = QueryAs<ITOVContextMenuItem>(pItem, IID_ITOVContextMenuItem);
    Bstr functionCode;
    if (item && SUCCEEDED(item->GetFunctionCode(functionCode.Put())))
        FireEvent([&] { m_events.Fire_ContextMenuSelected(functionCode.Get()); });
    return 0;
}
