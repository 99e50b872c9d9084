// The scripted browser's navigation events: link clicks, form submissions and page loads with frames,
// delivered with the argument shapes of the platform browser.
#include "frontend/scripted_browser.h"
#include <cstring>
#include "framework/bstr.h"

namespace tovfe {
namespace {

constexpr DISPID kBeforeNavigate = 100;
constexpr DISPID kNavigateComplete = 101;
constexpr DISPID kFrameBeforeNavigate = 200;
constexpr DISPID kFrameNavigateComplete = 201;
constexpr DISPID kDocumentComplete = 259;

// Arguments are set in place: copying through VariantCopy would turn a null string into an empty one.
void SetBstr(VARIANT& v, BSTR b)
{
    v.vt = VT_BSTR;
    v.bstrVal = b ? tov::Bstr::CopyOf(b).Detach() : nullptr;
}

void SetBstr(VARIANT& v, const std::wstring& s)
{
    v.vt = VT_BSTR;
    v.bstrVal = tov::Bstr(s).Detach();
}

void SetDispatch(VARIANT& v, IDispatch* d)
{
    v.vt = VT_DISPATCH;
    v.pdispVal = d;
    if (d) d->AddRef();
}

// A form's body as the platform hands it over: a one-dimensional byte array.
tov::Variant ByteArray(const std::string& bytes)
{
    tov::Variant v;
    SAFEARRAY* array = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
    if (!array) tov::Throw(E_OUTOFMEMORY);
    void* data = nullptr;
    if (SUCCEEDED(SafeArrayAccessData(array, &data))) {
        if (!bytes.empty()) memcpy(data, bytes.data(), bytes.size());
        SafeArrayUnaccessData(array);
    }
    v.vt = VT_ARRAY | VT_UI1;
    v.parray = array;
    return v;
}

} // namespace

ScriptedBrowser::NavigationOutcome ScriptedBrowser::FireBeforeNavigate(BSTR url, LONG flags, BSTR frame, VARIANT* postData,
                                                                     BSTR headers, bool inFrame)
{
    tov::Variant noPostData;
    VARIANT_BOOL cancel = VARIANT_FALSE;
    std::vector<tov::Variant> args(6);
    SetBstr(args[0], url);
    args[1].vt = VT_I4;
    args[1].lVal = flags;
    SetBstr(args[2], frame);
    args[3].vt = VT_BYREF | VT_VARIANT;
    args[3].pvarVal = postData ? postData : &noPostData;
    SetBstr(args[4], headers);
    args[5].vt = VT_BYREF | VT_BOOL;
    args[5].pboolVal = &cancel;
    const HRESULT hr = FireEvent(DIID_DWebBrowserEvents, inFrame ? kFrameBeforeNavigate : kBeforeNavigate, std::move(args));
    return {hr, cancel};
}

ScriptedBrowser::NavigationOutcome ScriptedBrowser::ClickLink(const std::wstring& url, const std::wstring& frame)
{
    tov::Bstr u(url), f(frame), h(L"");
    return FireBeforeNavigate(u.Get(), 0, f.Get(), nullptr, h.Get(), !frame.empty());
}

ScriptedBrowser::NavigationOutcome ScriptedBrowser::SubmitForm(const std::wstring& url, const std::string& body,
                                                               const std::wstring& frame)
{
    tov::Bstr u(url), f(frame), h(L"Content-Type: application/x-www-form-urlencoded\r\n");
    tov::Variant post = ByteArray(body);
    return FireBeforeNavigate(u.Get(), 0, f.Get(), &post, h.Get(), !frame.empty());
}

HRESULT ScriptedBrowser::CompleteTopNavigation(const std::wstring& url)
{
    m_location = url;
    std::vector<tov::Variant> args(1);
    SetBstr(args[0], url);
    return FireEvent(DIID_DWebBrowserEvents, kNavigateComplete, std::move(args));
}

HRESULT ScriptedBrowser::CompleteFrame(size_t index, const std::wstring& url)
{
    while (m_frames.size() <= index) m_frames.push_back(ScriptedBrowser::Create());
    std::vector<tov::Variant> args(1);
    SetBstr(args[0], url);
    HRESULT hr = FireEvent(DIID_DWebBrowserEvents, kFrameNavigateComplete, std::move(args));
    if (FAILED(hr)) return hr;
    std::vector<tov::Variant> completeArgs(2);
    SetDispatch(completeArgs[0], static_cast<IWebBrowser2*>(m_frames[index].Get()));
    SetBstr(completeArgs[1], url);
    return FireEvent(DIID_DWebBrowserEvents2, kDocumentComplete, std::move(completeArgs));
}

HRESULT ScriptedBrowser::CompleteTopDocument(const std::wstring& url)
{
    std::vector<tov::Variant> args(2);
    SetDispatch(args[0], static_cast<IWebBrowser2*>(this));
    SetBstr(args[1], url);
    return FireEvent(DIID_DWebBrowserEvents2, kDocumentComplete, std::move(args));
}

ScriptedBrowser::NavigationOutcome ScriptedBrowser::LoadPage(const std::wstring& url, const std::vector<std::wstring>& frameUrls)
{
    NavigationOutcome outcome = ClickLink(url);
    if (outcome.cancel) return outcome;
    // A sink may drop the last reference to this browser while the page loads.
    tov::ComPtr<IOleObject> self(this);
    CompleteTopNavigation(url);
    for (size_t i = 0; i < frameUrls.size(); ++i) CompleteFrame(i, frameUrls[i]);
    outcome.hr = CompleteTopDocument(url);
    return outcome;
}

} // namespace tovfe
