// The protocol mode and the URL prefixes of provider data, and the switch to the pluggable protocol.
#include "control/automation_call.h"
#include "navigation/url_rules.h"

using namespace tov;

void CTOVHTMLControl::SetProtocolMode(LONG mode)
{
    const std::wstring tag = url::InstanceTag(reinterpret_cast<uintptr_t>(this));
    wcsncpy(m_szInstanceTag, tag.c_str(), 63);
    m_szInstanceTag[63] = L'\0';
    const url::Prefixes prefixes = url::PrefixesFor(mode, m_szInstanceTag);
    m_bstrURLPrefixLocal = Bstr(prefixes.local);
    m_bstrURLPrefixGlobal = Bstr(prefixes.global);
    m_nProtocolMode = url::NormalizedMode(mode);
}

STDMETHODIMP CTOVHTMLControl::get_URLPrefixLocal(BSTR* pVal)
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "get_URLPrefixLocal");
        return tov::CopyOutOrEmpty(m_bstrURLPrefixLocal, pVal);
    });
}

STDMETHODIMP CTOVHTMLControl::put_URLPrefixLocal(BSTR newVal)
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "put_URLPrefixLocal");
        if (!tov::ReplaceWithCopy(m_bstrURLPrefixLocal, newVal)) scope.Write("LPDISPATCH newVal is inalid", trace::kFailure);
        return S_OK;
    });
}

STDMETHODIMP CTOVHTMLControl::get_URLPrefixGlobal(BSTR* pVal)
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "get_URLPrefixGlobal");
        return tov::CopyOutOrEmpty(m_bstrURLPrefixGlobal, pVal);
    });
}

STDMETHODIMP CTOVHTMLControl::put_URLPrefixGlobal(BSTR newVal)
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "put_URLPrefixGlobal");
        tov::ReplaceWithCopy(m_bstrURLPrefixGlobal, newVal);
        return S_OK;
    });
}

STDMETHODIMP CTOVHTMLControl::get_TryUseTOVHTMLP(LONG* pVal)
{
    return MethodCall([&] {
        LONG result = -2;
        if (!m_pOleObject) {
            CLSID clsid;
            HRESULT hr = CLSIDFromProgID(L"TOV.HTMLPlug.1", &clsid);
            ComPtr<IUnknown> handler;
            if (SUCCEEDED(hr))
                hr = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, handler.PutVoid());
            handler.Reset(); // created only to learn that the handler is installed
            if (SUCCEEDED(hr)) {
                SetProtocolMode(2);
                result = 0;
            } else {
                // An unknown ProgID is as much "not registered" as an unknown class.
                result = (hr == REGDB_E_CLASSNOTREG || hr == CO_E_CLASSSTRING) ? -1 : -2;
            }
        }
        if (pVal) *pVal = result;
        return S_OK;
    });
}
