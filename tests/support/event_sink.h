#pragma once
// A front end's sink for the control's outgoing events (or, with another `iid`, for the browser's):
// records every Invoke with its arguments in declaration order, and can run a handler inside the call.
#include <windows.h>
#include <oaidl.h>
#include <functional>
#include <string>
#include <vector>
#include "TOVHTML_h.h"
#include "framework/simple_object.h"

namespace tovtest {

struct FiredEvent {
    DISPID id;
    std::vector<std::wstring> args; // declaration order; numbers as decimal text, null BSTR as "<null>"
};

// Owned by the test's stack frame; tests read its count to see that the control let go of it.
class RecordingEventSink : public tov::SimpleObject<RecordingEventSink, tov::Lifetime::CountOnly, tov::Implements<IDispatch>> {
public:
    bool AlsoAnswers(REFIID riid) const noexcept { return IsEqualIID(riid, iid); }
    STDMETHODIMP GetTypeInfoCount(UINT* n) override { if (n) *n = 0; return S_OK; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result, EXCEPINFO*,
                        UINT*) override;

    std::vector<FiredEvent> events;
    std::vector<LCID> locales;
    std::function<void(const FiredEvent&)> onEvent;
    HRESULT answer = S_OK;
    // When set, the sink answers with this VARIANT instead of `answer` as a VT_I4 (the test owns it).
    const VARIANT* answerVariant = nullptr;
    IID iid = DIID__TOVHTMLControlEvents;
};

} // namespace tovtest
