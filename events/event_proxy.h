#pragma once
// Fires the control's outgoing events to every connected front-end sink, in slot order.
#include <windows.h>
#include <oaidl.h>
#include <vector>
#include "framework/connection_points.h"
#include "framework/variant.h"

class CProxy_TOVHTMLControlEvents {
public:
    explicit CProxy_TOVHTMLControlEvents(tov::EventConnectionPoint& point) : m_point(point) {}

    HRESULT Fire_BeforeNavigate(BSTR FrameName, LONG PostDataLen, BSTR pURL1, BSTR pURL2, BSTR pURL3, BSTR pURL4,
                                BSTR pURL5, BSTR pURL6, BSTR pURL7, BSTR pURL8);
    HRESULT Fire_NavigateComplete(BSTR strURL);
    HRESULT Fire_ContextMenuSelected(BSTR strFCode);
    HRESULT Fire_ContextMenuRequest(LONG PosX, LONG PosY);

private:
    // Arguments in declaration order; dispatch wants them reversed. Returns the last sink's result.
    HRESULT Fire(DISPID id, const std::vector<tov::Variant>& args);

    tov::EventConnectionPoint& m_point;
};
