#include "engine/browser_events.h"
#include <algorithm>
#include <vector>

namespace tovengine {

void FireEvent(const tov::EventConnectionPoint& point, DISPID id, std::initializer_list<VARIANT> args)
{
    std::vector<VARIANT> reversed(args.begin(), args.end());
    std::reverse(reversed.begin(), reversed.end());
    DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    // Slot by slot: a sink may unadvise itself or another one while it is called.
    for (size_t slot = 0; slot < point.SlotCount(); ++slot) {
        const tov::ComPtr<IUnknown> sink = point.SinkAt(slot);
        if (!sink) continue;
        auto* dispatch = static_cast<IDispatch*>(sink.Get());
        VARIANT result;
        VariantInit(&result);
        dispatch->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, &result, nullptr, nullptr);
        VariantClear(&result);
    }
}

} // namespace tovengine
