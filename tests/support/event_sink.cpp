#include "support/event_sink.h"

namespace tovtest {

STDMETHODIMP RecordingEventSink::Invoke(DISPID id, REFIID, LCID lcid, WORD, DISPPARAMS* params, VARIANT* result,
                                        EXCEPINFO*, UINT*)
{
    FiredEvent e{id, {}};
    for (UINT i = params ? params->cArgs : 0; i-- > 0;) {
        const VARIANT& v = params->rgvarg[i];
        if (v.vt == VT_BSTR) e.args.push_back(v.bstrVal ? std::wstring(v.bstrVal, SysStringLen(v.bstrVal)) : L"<null>");
        else if (v.vt == VT_I4) e.args.push_back(std::to_wstring(v.lVal));
        else e.args.push_back(L"vt" + std::to_wstring(v.vt));
    }
    events.push_back(e);
    locales.push_back(lcid);
    if (onEvent) onEvent(e);
    if (result) {
        VariantInit(result);
        if (answerVariant) {
            VariantCopy(result, const_cast<VARIANT*>(answerVariant));
        } else {
            result->vt = VT_I4;
            result->lVal = answer;
        }
    }
    return S_OK;
}

} // namespace tovtest
