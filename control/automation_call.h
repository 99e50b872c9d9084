#pragma once
// The pattern every automation method follows: a trace scope named after the method, return code 0,
// code 3 with the method's "is invalid" text when the browser is missing, code 1 for an exception unless
// a code is already set, the code stored only through a non-null pointer, and S_OK.
#include "control/TOVHTMLControl.h"

namespace tov::codes {
inline constexpr LONG kSuccess = 0;
inline constexpr LONG kException = 1;
inline constexpr LONG kNoBrowser = 3;
inline constexpr LONG kInitFailed = 4;
inline constexpr LONG kBrowserFailed = 5;
} // namespace tov::codes

// `body(scope, code)` runs only when the browser exists (or always when `invalidText` is null).
template <class Body>
HRESULT CTOVHTMLControl::AutomationCall(std::string_view scopeName, const char* invalidText, LONG* pRetCode, Body&& body)
{
    tov::ComPtr<IUnknown> keepAlive(ControllingUnknown());
    LONG code = tov::codes::kSuccess;
    try {
        CTraceScope scope(m_trace, TraceSinkRef(), scopeName);
        try {
            if (invalidText && !m_pWebBrowser) {
                scope.Write(invalidText, tov::trace::kFailure);
                code = tov::codes::kNoBrowser;
            } else {
                body(scope, code);
            }
        } catch (...) {
            tov::ReportCaught(Failures(), scopeName);
            if (code == tov::codes::kSuccess) code = tov::codes::kException;
        }
    } catch (...) {
        tov::ReportCaught(Failures(), scopeName);
        if (code == tov::codes::kSuccess) code = tov::codes::kException;
    }
    if (pRetCode) *pRetCode = code;
    return S_OK;
}
