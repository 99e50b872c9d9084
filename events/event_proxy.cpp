#include "events/event_proxy.h"
#include <vector>
#include "framework/com_ptr.h"
#include "framework/hresult_error.h"
#include "framework/variant.h"

namespace {

// Arguments are made in place: a copy through VariantCopy may turn a null string into an empty one.
void SetBstr(VARIANT& v, BSTR b)
{
    v.vt = VT_BSTR;
    v.bstrVal = b ? tov::ThrowIfNull(SysAllocStringLen(b, SysStringLen(b))) : nullptr; // null stays null
}

void SetLong(VARIANT& v, LONG l)
{
    v.vt = VT_I4;
    v.lVal = l;
}

} // namespace

HRESULT CProxy_TOVHTMLControlEvents::Fire(DISPID id, const std::vector<tov::Variant>& args)
{
    // Dispatch wants the last argument first; `args` keeps owning the values.
    std::vector<VARIANTARG> list(args.rbegin(), args.rend());
    HRESULT hr = S_OK;
    // Slot by slot on the live array: a handler may unadvise itself or another sink, or advise a new one.
    for (size_t slot = 0; slot < m_point.SlotCount(); ++slot) {
        const tov::ComPtr<IUnknown> sink = m_point.SinkAt(slot);
        if (!sink) continue;
        // The connection holds the sink's dispatch interface for the event interface: no QueryInterface.
        auto* disp = reinterpret_cast<IDispatch*>(sink.Get());
        DISPPARAMS params{list.empty() ? nullptr : list.data(), nullptr, static_cast<UINT>(list.size()), 0};
        tov::Variant result; // a sink that leaves the result alone answers success
        disp->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, &result, nullptr, nullptr);
        // Only a number or an error code is an answer; the bits of a string or object pointer are none.
        hr = result.vt == VT_I4 ? static_cast<HRESULT>(result.lVal) : result.vt == VT_ERROR ? result.scode : S_OK;
    }
    return hr;
}
HRESULT CProxy_TOVHTMLControlEvents::Fire_BeforeNavigate(BSTR FrameName, LONG PostDataLen, BSTR pURL1, BSTR pURL2,
                                                         BSTR pURL3, BSTR pURL4, BSTR pURL5, BSTR pURL6, BSTR pURL7,
                                                         BSTR pURL8)
{
    std::vector<tov::Variant> args(10);
    SetBstr(args[0], FrameName);
    SetLong(args[1], PostDataLen);
    BSTR pieces[] = {pURL1, pURL2, pURL3, pURL4, pURL5, pURL6, pURL7, pURL8};
    for (size_t i = 0; i < 8; ++i) SetBstr(args[2 + i], pieces[i]);
    return Fire(1, args);
}

HRESULT CProxy_TOVHTMLControlEvents::Fire_NavigateComplete(BSTR strURL)
{
    std::vector<tov::Variant> args(1);
    SetBstr(args[0], strURL);
    return Fire(2, args);
}

HRESULT CProxy_TOVHTMLControlEvents::Fire_ContextMenuSelected(BSTR strFCode)
{
    std::vector<tov::Variant> args(1);
    SetBstr(args[0], strFCode);
    return Fire(3, args);
}

HRESULT CProxy_TOVHTMLControlEvents::Fire_ContextMenuRequest(LONG PosX, LONG PosY)
{
    std::vector<tov::Variant> args(2);
    SetLong(args[0], PosX);
    SetLong(args[1], PosY);
    return Fire(4, args);
}
