#pragma once
// A frame of the browser's page as the platform browser hands it to events: a browser object of its
// own (IWebBrowser2) that knows its URL, its document and how to navigate itself.
#include <windows.h>
#include <exdisp.h>
#include <string>
#include "framework/web_browser_stubs.h"
#include "framework/com_ptr.h"
#include "framework/object_root.h"

namespace tovengine {

class CEngineBrowser;

class CEngineFrame final : public tov::ObjectRoot, public tov::WebBrowser2Stubs {
public:
    static tov::ComPtr<CEngineFrame> Create(CEngineBrowser& top, std::string frameId);
    // The top browser goes away: the frame answers E_FAIL from now on.
    void Detach() { m_top = nullptr; }

    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override;

    STDMETHODIMP GetTypeInfoCount(UINT* n) override { return tov::NotImplemented(n); }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** pp) override { return tov::NotImplemented(pp); }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override { return E_NOTIMPL; }

    STDMETHODIMP Navigate(BSTR URL, VARIANT* Flags, VARIANT* TargetFrameName, VARIANT* PostData, VARIANT* Headers) override;
    STDMETHODIMP get_Application(IDispatch** ppDisp) override;
    STDMETHODIMP get_Parent(IDispatch** ppDisp) override { return get_Application(ppDisp); }
    STDMETHODIMP get_Document(IDispatch** ppDisp) override;
    STDMETHODIMP get_LocationURL(BSTR* url) override;
    STDMETHODIMP get_LocationName(BSTR* name) override;
    STDMETHODIMP get_TopLevelContainer(VARIANT_BOOL* p) override;

private:
    friend class tov::ObjectRoot;
    CEngineFrame() = default;
    CEngineBrowser* m_top = nullptr;
    std::string m_frameId;
};

} // namespace tovengine
