// The Do methods: the front end makes the control fire one of its own events, unconditionally.
#include "control/automation_call.h"

template <class Fire> void CTOVHTMLControl::FireFromFrontEnd(std::string_view scopeName, Fire&& fire)
{
    CTraceScope scope(m_trace, TraceSinkRef(), scopeName);
    fire();
}

STDMETHODIMP CTOVHTMLControl::DoTOVEVENT(BSTR FrameName, LONG PostDataLen, BSTR pURL1, BSTR pURL2, BSTR pURL3,
                                         BSTR pURL4, BSTR pURL5, BSTR pURL6, BSTR pURL7, BSTR pURL8)
{
    return MethodCall([&] {
        FireFromFrontEnd("DoTOVEVENT", [&] {
            m_events.Fire_BeforeNavigate(FrameName, PostDataLen, pURL1, pURL2, pURL3, pURL4, pURL5, pURL6, pURL7, pURL8);
        });
        return S_OK;
    });
}

STDMETHODIMP CTOVHTMLControl::DoNavigateComplete(BSTR strURL)
{
    return MethodCall([&] {
        FireFromFrontEnd("DoNavigateComplete", [&] { m_events.Fire_NavigateComplete(strURL); });
        return S_OK;
    });
}

STDMETHODIMP CTOVHTMLControl::DoContextMenuSelected(BSTR strFCode)
{
    return MethodCall([&] {
        FireFromFrontEnd("DoContextMenuSelected", [&] { m_events.Fire_ContextMenuSelected(strFCode); });
        return S_OK;
    });
}

STDMETHODIMP CTOVHTMLControl::DoContextMenuRequest(LONG lPosX, LONG lPosY)
{
    return MethodCall([&] {
        FireFromFrontEnd("DoContextMenuRequest", [&] { m_events.Fire_ContextMenuRequest(lPosX, lPosY); });
        return S_OK;
    });
}
