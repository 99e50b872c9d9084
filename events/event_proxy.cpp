#include "events/event_proxy.h"
#include <vector>
#include "framework/com_ptr.h"
#include "framework/hresult_error.h"
#include "framework/variant.h"

namespace {

// A copy of the string (null stays null).
tov::Variant BstrArg(BSTR b)
{
    tov::Variant v;
    v.vt = VT_BSTR;
    v.bstrVal = b ? tov::ThrowIfNull(SysAllocStringLen(b, SysStringLen(b))) : nullptr;
    return v;
}

tov::Variant LongArg(LONG l)
{
    return tov::Variant::I4(l);
}

} // namespace

HRESULT CProxy_TOVHTMLControlEvents::Fire(DISPID id, std::vector<tov::Variant> args)
{
    // Dispatch wants the last argument first.
    std::vector<VARIANTARG> list(args.rbegin(), args.rend());
    HRESULT hr = S_OK;
    // A snapshot: a sink may unadvise itself or another sink while it handles the event.
    for (const auto& sink : m_point.Sinks()) {
        if (!sink) continue;
        // The connection holds the sink's dispatch interface for the event interface: no QueryInterface.
        auto* disp = reinterpret_cast<IDispatch*>(sink.Get());
        DISPPARAMS params{list.empty() ? nullptr : list.data(), nullptr, static_cast<UINT>(list.size()), 0};
        tov::Variant result;
        disp->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, &result, nullptr, nullptr);
        hr = result.lVal;
    }
    return hr;
}
HRESULT CProxy_TOVHTMLControlEvents::Fire_BeforeNavigate(BSTR FrameName, LONG PostDataLen, BSTR pURL1, BSTR pURL2,
                                                         BSTR pURL3, BSTR pURL4, BSTR pURL5, BSTR pURL6, BSTR pURL7,
                                                         BSTR pURL8)
{
    return Fire(1, {BstrArg(FrameName), LongArg(PostDataLen), BstrArg(pURL1), BstrArg(pURL2), BstrArg(pURL3),
                    BstrArg(pURL4), BstrArg(pURL5), BstrArg(pURL6), BstrArg(pURL7), BstrArg(pURL8)});
}

HRESULT CProxy_TOVHTMLControlEvents::Fire_NavigateComplete(BSTR strURL) { return Fire(2, {BstrArg(strURL)}); }
HRESULT CProxy_TOVHTMLControlEvents::Fire_ContextMenuSelected(BSTR strFCode) { return Fire(3, {BstrArg(strFCode)}); }
HRESULT CProxy_TOVHTMLControlEvents::Fire_ContextMenuRequest(LONG PosX, LONG PosY) { return Fire(4, {LongArg(PosX), LongArg(PosY)}); }
