#include "engine/engine_frame.h"
#include "engine/engine_browser.h"
#include "engine/engine_document.h"
#include "framework/hresult_error.h"

namespace tovengine {

tov::ComPtr<CEngineFrame> CEngineFrame::Create(CEngineBrowser& top, std::string frameId)
{
    void* made = nullptr;
    tov::ThrowIfFailed(tov::ObjectRoot::CreateInstance<CEngineFrame>(nullptr, IID_IWebBrowser2, &made));
    tov::ComPtr<CEngineFrame> frame;
    frame.Attach(static_cast<CEngineFrame*>(static_cast<IWebBrowser2*>(made)));
    frame->m_top = &top;
    frame->m_frameId = std::move(frameId);
    return frame;
}

void* CEngineFrame::FindInterface(REFIID riid) noexcept
{
    using tov::Entry;
    return Lookup(riid, {Entry<IWebBrowser2>(IID_IWebBrowser2, this), Entry<IWebBrowser2>(IID_IWebBrowserApp, this),
                         Entry<IWebBrowser2>(IID_IWebBrowser, this), Entry<IWebBrowser2>(IID_IDispatch, this)});
}

STDMETHODIMP CEngineFrame::Navigate(BSTR URL, VARIANT* Flags, VARIANT* TargetFrameName, VARIANT* PostData, VARIANT* Headers)
{
    if (!m_top) return E_FAIL;
    return m_top->NavigateFrame(m_frameId, URL, Flags, TargetFrameName, PostData, Headers);
}

STDMETHODIMP CEngineFrame::get_Application(IDispatch** ppDisp)
{
    if (!ppDisp) return E_POINTER;
    *ppDisp = nullptr;
    return m_top ? m_top->get_Application(ppDisp) : E_FAIL;
}

STDMETHODIMP CEngineFrame::get_Document(IDispatch** ppDisp)
{
    if (!ppDisp) return E_POINTER;
    *ppDisp = nullptr;
    if (!m_top || !m_top->CurrentPage()) return E_FAIL;
    return tov::GuardedCall([&] { return CEngineDocument::Create(m_top->CurrentPage(), m_frameId, ppDisp); });
}

STDMETHODIMP CEngineFrame::get_LocationURL(BSTR* url)
{
    if (!url) return E_POINTER;
    *url = nullptr;
    if (!m_top || !m_top->CurrentPage()) return E_FAIL;
    const std::wstring text = m_top->CurrentPage()->FrameUrl(m_frameId);
    *url = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *url ? S_OK : E_OUTOFMEMORY;
}

STDMETHODIMP CEngineFrame::get_LocationName(BSTR* name)
{
    if (!name) return E_POINTER;
    *name = nullptr;
    if (!m_top || !m_top->CurrentPage()) return E_FAIL;
    const std::wstring text = m_top->CurrentPage()->FrameName(m_frameId);
    *name = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *name ? S_OK : E_OUTOFMEMORY;
}

STDMETHODIMP CEngineFrame::get_TopLevelContainer(VARIANT_BOOL* p)
{
    if (!p) return E_POINTER;
    *p = VARIANT_FALSE;
    return S_OK;
}

} // namespace tovengine
