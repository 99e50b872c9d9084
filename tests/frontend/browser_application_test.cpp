// The scripted browser as the browser application class, and the NewWindow2 event it raises with both
// arguments by reference.
#include <gtest/gtest.h>
#include "frontend/browser_application_class.h"
#include "frontend/scripted_browser.h"

using tov::ComPtr;

namespace {

// A DWebBrowserEvents2 sink that answers NewWindow2 with a window of its own and sets Cancel.
class NewWindowSink final : public tov::ObjectRoot, public IDispatch {
public:
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override { return Lookup(riid, {tov::Entry<IDispatch>(DIID_DWebBrowserEvents2, this)}); }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*, UINT*) override
    {
        dispid = id;
        if (!params || params->cArgs != 2) return E_INVALIDARG;
        // The last argument comes first.
        VARIANT& cancel = params->rgvarg[0];
        VARIANT& disp = params->rgvarg[1];
        if (cancel.vt != (VT_BYREF | VT_BOOL) || disp.vt != (VT_BYREF | VT_DISPATCH)) return DISP_E_TYPEMISMATCH;
        *cancel.pboolVal = VARIANT_TRUE;
        *disp.ppdispVal = window.CopyOut();
        return S_OK;
    }

    DISPID dispid = 0;
    ComPtr<IDispatch> window;
};

} // namespace

TEST(BrowserApplicationClass, ServesTheApplicationIdentityWithItsOwnLogName)
{
    tovfe::BrowserApplicationClass applications;
    ASSERT_EQ(S_OK, applications.Register());
    ComPtr<IWebBrowser2> app;
    ASSERT_EQ(S_OK, CoCreateInstance(tovfe::kBrowserApplicationClass, nullptr, CLSCTX_SERVER, IID_IWebBrowser2, app.PutVoid()));
    ASSERT_EQ(1u, applications.Created().size());
    EXPECT_EQ(L"CoCreateInstance(InternetExplorer)", applications.Log().Texts().front());

    SHANDLE_PTR hwnd = 0;
    EXPECT_EQ(S_OK, app->get_HWND(&hwnd));
    EXPECT_NE(0, hwnd);
    applications.Last()->SetHwnd(0); // the user closed the window
    EXPECT_EQ(S_OK, app->get_HWND(&hwnd));
    EXPECT_EQ(0, hwnd);
    EXPECT_EQ(S_OK, app->put_Visible(VARIANT_TRUE));
    EXPECT_EQ(S_OK, app->Quit());
    EXPECT_EQ((std::vector<std::wstring>{L"get_HWND()", L"get_HWND()", L"put_Visible(true)", L"Quit()"}),
              applications.Last()->OwnLog().Texts());
}

TEST(ScriptedBrowserNewWindow2, PassesBothArgumentsByReference)
{
    auto browser = tovfe::ScriptedBrowser::Create();
    auto sink = tovfe::CreateStandIn<NewWindowSink, IDispatch>(IID_IUnknown);
    sink->window = static_cast<IWebBrowser2*>(tovfe::ScriptedBrowser::Create().Get());
    ComPtr<IConnectionPointContainer> container;
    ASSERT_EQ(S_OK, browser->QueryInterface(IID_IConnectionPointContainer, container.PutVoid()));
    ComPtr<IConnectionPoint> point;
    ASSERT_EQ(S_OK, container->FindConnectionPoint(DIID_DWebBrowserEvents2, point.Put()));
    DWORD cookie = 0;
    ASSERT_EQ(S_OK, point->Advise(static_cast<IDispatch*>(sink.Get()), &cookie));

    IDispatch* disp = nullptr;
    VARIANT_BOOL cancel = VARIANT_FALSE;
    EXPECT_EQ(S_OK, browser->FireNewWindow2(&disp, &cancel));
    EXPECT_EQ(251, sink->dispid);
    EXPECT_EQ(VARIANT_TRUE, cancel);
    EXPECT_EQ(sink->window.Get(), disp);
    if (disp) disp->Release();
    point->Unadvise(cookie);
}
