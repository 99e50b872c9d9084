#include "control/TOVHTMLControl.h"
#include <cwchar>
#include "navigation/url_rules.h"

using namespace tov;

namespace {
// Keeps the XML parser library in memory for the icon-font requests; loaded once, never freed.
HMODULE g_hMsxml3 = nullptr;
} // namespace

CTOVHTMLControl::CTOVHTMLControl()
    : m_bstrURLPrefixLocal(L""), m_bstrURLPrefixGlobal(L""), m_bstrHeaders(L""), m_bstrTargetFrame(L""),
      m_bstrTessarilSavedURL(L"")
{
    if (!g_hMsxml3) g_hMsxml3 = LoadLibraryW(L"msxml3.dll");
    wcsncpy(m_szInstanceTag, url::InstanceTag(reinterpret_cast<uintptr_t>(this)).c_str(), 63);
}

// Torn down in OnLastRelease, which is the only way to the destructor.
CTOVHTMLControl::~CTOVHTMLControl() = default;

void CTOVHTMLControl::FinalConstruct() {}

void* CTOVHTMLControl::FindInterface(REFIID riid) noexcept
{
    if (void* site = m_site.FindInterface(riid)) return site;
    if (void* control = FindControlInterface(riid)) return control;
    return Lookup(riid, {
        Entry<ITOVHTMLControl>(IID_ITOVHTMLControl, this),
        Entry<ITOVHTMLControl>(IID_IDispatch, this),
        Entry<IWebBrowserEvents>(IID_IWebBrowserEvents, &m_eventsSink),
        Entry<IWebBrowserEvents2>(IID_IWebBrowserEvents2, &m_events2Sink),
        Entry<IProvideClassInfo2>(IID_IProvideClassInfo2, this),
        Entry<IProvideClassInfo2>(IID_IProvideClassInfo, this),
        Entry<ISupportErrorInfo>(IID_ISupportErrorInfo, this),
        Entry<IConnectionPointContainer>(IID_IConnectionPointContainer, this),
        Entry<ITOVGUIControl>(IID_ITOVGUIControl, this),
        Entry<ITOVGUITessarilControl>(IID_ITOVGUITessarilControl, this),
        Entry<_ITOVDataProviderEvents>(IID__ITOVDataProviderEvents, this),
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

ComPtr<ITOVTraceSink> CTOVHTMLControl::TraceSinkRef()
{
    return ComPtr<ITOVTraceSink>(GetTraceSink());
}

void CTOVHTMLControl::CaughtFailure(HRESULT hr, std::string_view where) noexcept
{
    m_trace.CaughtFailure(TraceSinkRef().Get(), hr, where);
}

std::string_view CTOVHTMLControl::BoundaryName(const std::source_location& where) noexcept
{
    // "virtual HRESULT CTOVHTMLControl::ShowURL(BSTR, BSTR, LONG*)" gives "CTOVHTMLControl::ShowURL".
    const std::string_view name = where.function_name();
    const std::string_view head = name.substr(0, name.find('('));
    const size_t blank = head.rfind(' ');
    return blank == std::string_view::npos ? head : head.substr(blank + 1);
}

LONG CTOVHTMLControl::OnContainerConnected()
{
    return OnTraceSettingsChanged();
}

LONG CTOVHTMLControl::OnTraceSettingsChanged()
{
    m_trace.RefreshLevel(GetTraceSink());
    return 0;
}
