#include "TOVHTMLControl.h"

using namespace tov;

CTOVHTMLControl::CTOVHTMLControl() = default;
CTOVHTMLControl::~CTOVHTMLControl() = default;

void* CTOVHTMLControl::FindInterface(REFIID riid) noexcept
{
    return Lookup(riid, {
        Entry<ITOVHTMLControl>(IID_ITOVHTMLControl, this),
        Entry<ITOVHTMLControl>(IID_IDispatch, this),
        Entry<IProvideClassInfo2>(IID_IProvideClassInfo2, this),
        Entry<IProvideClassInfo2>(IID_IProvideClassInfo, this),
        Entry<ISupportErrorInfo>(IID_ISupportErrorInfo, this),
    });
}

STDMETHODIMP CTOVHTMLControl::GetClassInfo(ITypeInfo** ppTI)
{
    return Module::GetTypeInfo(CLSID_TOVHTMLControl, ppTI);
}

STDMETHODIMP CTOVHTMLControl::GetGUID(DWORD dwGuidKind, GUID* pGUID)
{
    if (!pGUID) return E_POINTER;
    if (dwGuidKind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) { *pGUID = GUID_NULL; return E_INVALIDARG; }
    *pGUID = DIID__TOVHTMLControlEvents;
    return S_OK;
}

STDMETHODIMP CTOVHTMLControl::InterfaceSupportsErrorInfo(REFIID riid)
{
    return IsEqualIID(riid, IID_ITOVHTMLControl) ? S_OK : S_FALSE;
}

STDMETHODIMP CTOVHTMLControl::get_Version(LONG* pVal)
{
    if (!pVal) return E_POINTER;
    *pVal = 62;
    return S_OK;
}
