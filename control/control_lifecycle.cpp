// InitControl: the browser created in the control's window and wired to it; FinalRelease: taken down.
#include "control/automation_call.h"
#include <wininet.h>
#include "guicontrol/registry_config.h"

using namespace tov;

namespace {
// {8856F961-340A-11D0-A96B-00C04FD705A2}
constexpr CLSID kWebBrowserClass = {0x8856f961, 0x340a, 0x11d0, {0xa9, 0x6b, 0x00, 0xc0, 0x4f, 0xd7, 0x05, 0xa2}};

HRESULT ConnectSink(IUnknown* source, REFIID iid, IUnknown* sink, DWORD& cookie)
{
    ComPtr<IConnectionPointContainer> container;
    HRESULT hr = source->QueryInterface(IID_IConnectionPointContainer, container.PutVoid());
    if (FAILED(hr)) return hr;
    ComPtr<IConnectionPoint> point;
    hr = container->FindConnectionPoint(iid, point.Put());
    if (FAILED(hr)) return hr;
    return point->Advise(sink, &cookie);
}
// The description a failed creation left as error information of this thread, "" when none.
std::string CreationFailure()
{
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, info.Put()) != S_OK || !info) return {};
    Bstr description;
    if (FAILED(info->GetDescription(description.Put())) || description.Length() == 0) return {};
    return "CoCreateInstance: " + ToAnsi(description.View());
}
} // namespace

STDMETHODIMP CTOVHTMLControl::InitControl(LONG* pRetCode)
{
    OnTraceSettingsChanged();
    return AutomationCall("InitControl: TOV HTML control supports Microsoft Internet Explorer.", nullptr, pRetCode,
                          [&](CTraceScope& scope, LONG& code) {
        // Deliberate: a second call does nothing, also when the first failed after creating the browser.
        if (m_pOleObject) return;

        SetErrorInfo(0, nullptr); // what a failed creation says must be its own
        HRESULT hr = CoCreateInstance(kWebBrowserClass, nullptr, CLSCTX_INPROC_SERVER, IID_IOleObject, m_pOleObject.PutVoid());
        const std::string why = FAILED(hr) ? CreationFailure() : std::string();
        if (SUCCEEDED(hr)) {
            RECT rc{};
            const HWND hwnd = ControlWindow();
            hr = GetClientRect(hwnd, &rc) ? S_OK : E_FAIL;
            if (SUCCEEDED(hr)) {
                ComPtr<IOleClientSite> site;
                QueryInterface(IID_IOleClientSite, site.PutVoid());
                hr = m_pOleObject->SetClientSite(site.Get());
                if (SUCCEEDED(hr)) {
                    MSG msg{};
                    hr = m_pOleObject->DoVerb(OLEIVERB_INPLACEACTIVATE, &msg, site.Get(), 0, hwnd, &rc);
                }
            }
            if (SUCCEEDED(hr)) hr = m_pOleObject->QueryInterface(IID_IWebBrowser, m_pWebBrowser.PutVoid());
        }
        const bool created = SUCCEEDED(hr);
        if (!created) scope.Write("InitControl: m_pOleObject->QueryInterface(IID_IWebBrowser...)", trace::kFailure);
        // A browser class that tells why it could not be made is heard.
        if (!why.empty()) scope.Write(why, trace::kFailure);

        SetProtocolMode(m_nProtocolMode);
        m_bShellOpenDetached = config::ReadProxyAdminCondition();

        HRESULT connected = E_FAIL;
        if (created) {
            // Only the second connection counts: the first browser generation's events are optional.
            ConnectSink(m_pOleObject.Get(), IID_IWebBrowserEvents, static_cast<IWebBrowserEvents*>(&m_eventsSink),
                        m_dwEventsCookie);
            connected = ConnectSink(m_pOleObject.Get(), IID_IWebBrowserEvents2,
                                    static_cast<IWebBrowserEvents2*>(&m_events2Sink), m_dwEvents2Cookie);
        }
        if (!created || FAILED(connected)) {
            scope.Write("InitControl: AtlAdvise(m_pWebBrowser...)", trace::kFailure);
            code = codes::kInitFailed;
        }

        m_pCommandTarget.Reset();
        if (m_pWebBrowser) m_pWebBrowser->QueryInterface(IID_IOleCommandTarget, m_pCommandTarget.PutVoid());
        m_bInternalPage = true;
        // Without a browser there is nothing to show and nothing more to configure.
        if (!m_pWebBrowser) return;
        Bstr blank(L"about:blank");
        m_pWebBrowser->Navigate(blank.Get(), nullptr, nullptr, nullptr, nullptr);
        config::ReadEnableOutputFile(m_bEnableOutputFile);
    });
}

// The control is torn down at its last release. When a front-end handler drops that reference inside a
// call of the browser, or a browser kept a sink it was asked to give back, the browser still holds the sink
// or site and releases it later: the memory, and with it the module, stays until the browser has let go
// of all.
void CTOVHTMLControl::OnLastRelease() noexcept
{
    FinalRelease();
    m_bLastReleased = true;
    // A browser that keeps the sinks until its own end must not be kept alive by the control in turn. Its
    // releases of the site and sinks while these let go of it must not free the control under them.
    ++m_cBrowserCalls;
    m_pCommandTarget.Reset();
    m_pOleObject.Reset();
    m_pWebBrowser.Reset();
    --m_cBrowserCalls;
    FreeOnceBrowserLetGo();
}

// The one place the control is deleted: its last reference has gone (OnLastRelease, FinalRelease done),
// no call of the browser is running in it, and the browser holds none of its site and sinks any more.
void CTOVHTMLControl::FreeOnceBrowserLetGo() noexcept
{
    if (m_bLastReleased && m_cBrowserCalls == 0 && m_cBrowserHeldRefs == 0) delete this;
}

ULONG CTOVHTMLControl::ReleaseBrowserHeld() noexcept
{
    const ULONG c = --m_cBrowserHeldRefs;
    FreeOnceBrowserLetGo();
    return c;
}

void CTOVHTMLControl::FinalRelease() noexcept
{
    try {
        CTraceScope scope(m_trace, TraceSinkRef(), "FinalRelease()");
        TakeDown(TakeDownKind::LastRelease);
    } catch (...) {
        ReportCaught(Failures(), "FinalRelease");
    }
}

void CTOVHTMLControl::TakeDown(TakeDownKind kind)
{
    const bool close = kind == TakeDownKind::ContainerClose;
    m_bTakenDown = true; // what the browser does from here on reaches no one
    if (m_pWebBrowser) {
        // The container's Close lets go of the browser's events first, the last release last.
        if (close) DisconnectBrowserEvents();
        m_pWebBrowser->Stop();
        m_pWebBrowser->Quit();
    }
    if (m_pOleObject) {
        if (close) {
            ComPtr<IOleInPlaceObject> inPlace;
            m_pOleObject->QueryInterface(IID_IOleInPlaceObject, inPlace.PutVoid());
            if (inPlace) {
                inPlace->UIDeactivate();
                inPlace->InPlaceDeactivate();
            }
        }
        m_pOleObject->SetClientSite(nullptr);
        m_pOleObject->Close(OLECLOSE_NOSAVE);
    }
    CloseBrowserWindows();
    if (!close) {
        CloseSimpleBrowseWindow();
        // Older Simple Browse dialogs are not referenced, but they are the control's windows too.
        CTovDialogBox::DestroyAllOwnedBy(static_cast<ITOVHTMLControl*>(this));
    }
    m_files.DeleteTempFiles();
    if (close) return;
    m_files.DeleteSourceFiles();
    if (m_bEndSessionWithBrowser) EndBrowserSession();
    DisconnectBrowserEvents();
}

// A browser still connected to the sinks would call into a control that is gone.
void CTOVHTMLControl::DisconnectBrowserEvents()
{
    if (!m_pOleObject) return;
    ComPtr<IConnectionPointContainer> container;
    if (FAILED(m_pOleObject->QueryInterface(IID_IConnectionPointContainer, container.PutVoid()))) return;
    for (auto [iid, cookie] : {std::pair<const IID*, DWORD*>{&IID_IWebBrowserEvents, &m_dwEventsCookie},
                               std::pair<const IID*, DWORD*>{&IID_IWebBrowserEvents2, &m_dwEvents2Cookie}}) {
        ComPtr<IConnectionPoint> point;
        if (*cookie && SUCCEEDED(container->FindConnectionPoint(*iid, point.Put()))) point->Unadvise(*cookie);
        *cookie = 0;
    }
}

void CTOVHTMLControl::EndBrowserSession() noexcept
{
    InternetSetOptionA(nullptr, INTERNET_OPTION_END_BROWSER_SESSION, nullptr, 0);
}
