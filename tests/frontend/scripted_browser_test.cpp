// The scripted browser on its own: what it records, what it answers, its window and its references.
#include <gtest/gtest.h>
#include <stdexcept>
#include "frontend/scripted_browser.h"
#include "framework/bstr.h"

using tov::Bstr;
using tov::ComPtr;
using tov::Variant;
using tovfe::ScriptedBrowser;

namespace {

ULONG Refs(IUnknown* p)
{
    p->AddRef();
    return p->Release();
}

class TestSite final : public tov::ObjectRoot, public IOleClientSite {
public:
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override { return Lookup(riid, {tov::Entry<IOleClientSite>(IID_IOleClientSite, this)}); }
    STDMETHODIMP SaveObject() override { return E_NOTIMPL; }
    STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker** pp) override { if (pp) *pp = nullptr; return E_NOTIMPL; }
    STDMETHODIMP GetContainer(IOleContainer** pp) override { if (pp) *pp = nullptr; return E_NOTIMPL; }
    STDMETHODIMP ShowObject() override { return S_OK; }
    STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
    STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }
};

// {0C6E2A51-7D3B-4E0A-9F11-2B6C8D4E5A01}
const GUID kGroup = {0x0c6e2a51, 0x7d3b, 0x4e0a, {0x9f, 0x11, 0x2b, 0x6c, 0x8d, 0x4e, 0x5a, 0x01}};

class ScriptedBrowserTest : public testing::Test {
protected:
    ComPtr<ScriptedBrowser> browser = ScriptedBrowser::Create();
    ComPtr<IOleObject> ole = browser.Get();
    ComPtr<IWebBrowser2> web = browser.Get();
};

} // namespace

TEST_F(ScriptedBrowserTest, RecordsASequenceOfCallsInOrder)
{
    auto site = tovfe::CreateStandIn<TestSite, IOleClientSite>(IID_IOleClientSite);
    ComPtr<IUnknown> unknown;
    ComPtr<IDispatch> disp;
    ComPtr<IOleCommandTarget> commands;
    ComPtr<IOleInPlaceObject> inPlace;
    ASSERT_EQ(S_OK, web->QueryInterface(IID_IUnknown, unknown.PutVoid()));
    ASSERT_EQ(S_OK, web->QueryInterface(IID_IDispatch, disp.PutVoid()));
    ASSERT_EQ(S_OK, web->QueryInterface(IID_IOleCommandTarget, commands.PutVoid()));
    ASSERT_EQ(S_OK, ole->QueryInterface(IID_IOleInPlaceObject, inPlace.PutVoid()));
    EXPECT_EQ(S_OK, ole->SetClientSite(site.Get()));
    EXPECT_EQ(S_OK, ole->DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 0, nullptr, nullptr));
    EXPECT_EQ(S_OK, web->GoBack());
    EXPECT_EQ(S_OK, web->put_Visible(VARIANT_FALSE));
    Variant zoom = Variant::I4(100);
    EXPECT_EQ(S_OK, web->ExecWB(OLECMDID_OPTICAL_ZOOM, OLECMDEXECOPT_DONTPROMPTUSER, &zoom, nullptr));
    EXPECT_EQ(S_OK, commands->Exec(nullptr, OLECMDID_PRINT, OLECMDEXECOPT_DODEFAULT, nullptr, nullptr));
    EXPECT_EQ(S_OK, commands->Exec(&kGroup, 3, 0, nullptr, nullptr));
    OLECMD query[2] = {{OLECMDID_PRINT, 0}, {OLECMDID_COPY, 0}};
    EXPECT_EQ(S_OK, commands->QueryStatus(nullptr, 2, query, nullptr));
    EXPECT_EQ(static_cast<DWORD>(OLECMDF_SUPPORTED | OLECMDF_ENABLED), query[1].cmdf);
    Variant level = Variant::I4(REFRESH_COMPLETELY);
    EXPECT_EQ(S_OK, web->Refresh2(&level));
    EXPECT_EQ(S_OK, web->put_RegisterAsDropTarget(VARIANT_TRUE));
    const RECT rc{1, 2, 3, 4};
    EXPECT_EQ(S_OK, inPlace->SetObjectRects(&rc, &rc));
    EXPECT_EQ(S_OK, inPlace->UIDeactivate());
    EXPECT_EQ(S_OK, inPlace->InPlaceDeactivate());
    EXPECT_EQ(S_OK, ole->SetClientSite(nullptr));
    EXPECT_EQ(S_OK, ole->Close(OLECLOSE_NOSAVE));
    EXPECT_EQ((std::vector<std::wstring>{
                  L"QueryInterface(IOleCommandTarget)",
                  L"QueryInterface(IOleInPlaceObject)",
                  L"SetClientSite(site)",
                  L"DoVerb(-1, 0x0, <null>)",
                  L"GoBack()",
                  L"put_Visible(false)",
                  L"ExecWB(63, 2, I4:100, <null>)",
                  L"Exec(null, 6, 0, <null>, <null>)",
                  L"Exec({0C6E2A51-7D3B-4E0A-9F11-2B6C8D4E5A01}, 3, 0, <null>, <null>)",
                  L"QueryStatus(null, 6, 12)",
                  L"Refresh2(I4:3)",
                  L"put_RegisterAsDropTarget(true)",
                  L"SetObjectRects(1,2,3,4)",
                  L"UIDeactivate()",
                  L"InPlaceDeactivate()",
                  L"SetClientSite(null)",
                  L"Close(1)",
              }),
              browser->Log().Texts());
}

TEST_F(ScriptedBrowserTest, NavigateFormatsEachArgumentAndSetsTheLocation)
{
    Bstr location;
    EXPECT_EQ(S_OK, web->get_LocationURL(location.Put()));
    EXPECT_FALSE(location.IsNull());
    EXPECT_EQ(L"", location.View());

    Variant empty;
    Variant flags = Variant::I4(12);
    Variant frame;
    frame.vt = VT_BSTR;
    frame.bstrVal = SysAllocString(L"_top");
    EXPECT_EQ(S_OK, web->Navigate(nullptr, nullptr, &empty, &flags, &frame));

    Bstr url(L"http://host/a b");
    LONG byrefFlags = 4;
    Variant flagsRef;
    flagsRef.vt = VT_BYREF | VT_I4;
    flagsRef.plVal = &byrefFlags;
    Variant headersRef;
    headersRef.vt = VT_BYREF | VT_VARIANT;
    headersRef.pvarVal = &frame;
    EXPECT_EQ(S_OK, web->Navigate(url.Get(), &flagsRef, nullptr, nullptr, &headersRef));
    EXPECT_EQ(S_OK, web->Navigate2(&frame, nullptr, nullptr, nullptr, nullptr));

    EXPECT_EQ((std::vector<std::wstring>{L"get_LocationURL()", L"Navigate(<null>, <null>, <empty>, I4:12, BSTR:_top)",
                                         L"Navigate(http://host/a b, ref I4:4, <null>, <null>, ref BSTR:_top)",
                                         L"Navigate2(BSTR:_top, <null>, <null>, <null>, <null>)"}),
              browser->Log().Texts());
    EXPECT_EQ(S_OK, web->Navigate(url.Get(), nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(S_OK, web->get_LocationURL(location.Put()));
    EXPECT_EQ(L"http://host/a b", location.View());
}

TEST_F(ScriptedBrowserTest, FailuresRepeatUntilClearedAndAreStillRecorded)
{
    browser->FailCall(L"GoBack", E_ACCESSDENIED);
    browser->FailCall(L"QueryInterface(IOleCommandTarget)", E_NOINTERFACE);
    browser->FailCall(L"Navigate", E_FAIL);
    EXPECT_EQ(E_ACCESSDENIED, web->GoBack());
    EXPECT_EQ(E_ACCESSDENIED, web->GoBack());
    EXPECT_EQ(S_OK, web->GoForward());
    ComPtr<IOleCommandTarget> commands;
    EXPECT_EQ(E_NOINTERFACE, web->QueryInterface(IID_IOleCommandTarget, commands.PutVoid()));
    EXPECT_FALSE(commands);
    Bstr url(L"about:x");
    EXPECT_EQ(E_FAIL, web->Navigate(url.Get(), nullptr, nullptr, nullptr, nullptr));
    Bstr location;
    web->get_LocationURL(location.Put());
    EXPECT_EQ(L"", location.View()) << "a failed navigation goes nowhere";
    EXPECT_EQ(2u, browser->Log().Count(L"GoBack"));
    EXPECT_EQ(1u, browser->Log().Count(L"QueryInterface"));

    browser->ClearFailures();
    EXPECT_EQ(S_OK, web->GoBack());
    EXPECT_EQ(S_OK, web->QueryInterface(IID_IOleCommandTarget, commands.PutVoid()));
}

TEST_F(ScriptedBrowserTest, ThrowingIsOnRequestOnly)
{
    browser->ThrowOn(L"GoHome");
    EXPECT_THROW(web->GoHome(), std::runtime_error);
    EXPECT_EQ(1u, browser->Log().Count(L"GoHome")) << "recorded before it throws";
    EXPECT_EQ(S_OK, web->GoSearch());
    browser->ClearFailures();
    EXPECT_EQ(S_OK, web->GoHome());
}

TEST_F(ScriptedBrowserTest, PropertiesAnswerWhatTheTestSet)
{
    SHANDLE_PTR hwnd = 0;
    EXPECT_EQ(S_OK, web->get_HWND(&hwnd));
    EXPECT_NE(0, hwnd);
    browser->SetHwnd(0x4711);
    EXPECT_EQ(S_OK, web->get_HWND(&hwnd));
    EXPECT_EQ(0x4711, hwnd);

    ComPtr<IDispatch> document;
    EXPECT_EQ(S_OK, web->get_Document(document.Put()));
    EXPECT_FALSE(document);
    browser->SetDocument(web.Get());
    EXPECT_EQ(S_OK, web->get_Document(document.Put()));
    EXPECT_EQ(static_cast<IDispatch*>(web.Get()), document.Get());
    browser->SetDocument(nullptr);

    ComPtr<IDispatch> application;
    EXPECT_EQ(S_OK, web->get_Application(application.Put()));
    ComPtr<IWebBrowser2> same;
    ASSERT_EQ(S_OK, application.As(IID_IWebBrowser2, same));
    EXPECT_EQ(web.Get(), same.Get());

    for (HRESULT hr : {web->get_HWND(nullptr), web->get_Document(nullptr), web->get_Application(nullptr),
                       web->get_LocationURL(nullptr), ole->GetClientSite(nullptr), ole->GetUserClassID(nullptr)})
        EXPECT_EQ(E_POINTER, hr);
}

TEST_F(ScriptedBrowserTest, InPlaceActivationMakesAChildWindowThatDeactivationDestroys)
{
    tov::UniqueWindow parent(CreateWindowExW(0, L"Static", L"parent", WS_OVERLAPPEDWINDOW, 0, 0, 400, 300, nullptr, nullptr,
                                             GetModuleHandleW(nullptr), nullptr));
    ASSERT_TRUE(parent);
    const RECT rc{10, 20, 110, 220};
    EXPECT_EQ(S_OK, ole->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, nullptr, 0, parent.Get(), &rc));
    EXPECT_EQ(L"DoVerb(-5, " + tovfe::HexArg(reinterpret_cast<uintptr_t>(parent.Get())) + L", 10,20,110,220)",
              browser->Log().Texts().back());
    const HWND child = browser->ChildWindow();
    ASSERT_TRUE(IsWindow(child));
    EXPECT_EQ(parent.Get(), GetParent(child));
    RECT placed{};
    GetWindowRect(child, &placed);
    MapWindowPoints(nullptr, parent.Get(), reinterpret_cast<POINT*>(&placed), 2);
    EXPECT_TRUE(EqualRect(&rc, &placed));

    ComPtr<IOleInPlaceObject> inPlace;
    ASSERT_EQ(S_OK, ole->QueryInterface(IID_IOleInPlaceObject, inPlace.PutVoid()));
    HWND reported = nullptr;
    EXPECT_EQ(S_OK, inPlace->GetWindow(&reported));
    EXPECT_EQ(child, reported);
    EXPECT_EQ(S_OK, inPlace->InPlaceDeactivate());
    EXPECT_FALSE(IsWindow(child));
    EXPECT_EQ(E_FAIL, inPlace->GetWindow(&reported));

    // The last release takes a window that is still there with it.
    EXPECT_EQ(S_OK, ole->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, nullptr, 0, parent.Get(), &rc));
    const HWND second = browser->ChildWindow();
    ASSERT_TRUE(IsWindow(second));
    inPlace.Reset();
    ole.Reset();
    web.Reset();
    browser.Reset();
    EXPECT_FALSE(IsWindow(second));
}

TEST_F(ScriptedBrowserTest, HoldsItsSiteUntilToldToLetGo)
{
    auto site = tovfe::CreateStandIn<TestSite, IOleClientSite>(IID_IOleClientSite);
    ole->SetClientSite(site.Get());
    EXPECT_EQ(site.Get(), browser->Site());
    EXPECT_EQ(2u, Refs(site.Get()));
    ole->SetClientSite(nullptr);
    EXPECT_EQ(1u, Refs(site.Get()));

    ole->SetClientSite(site.Get());
    ole->Close(OLECLOSE_NOSAVE);
    EXPECT_EQ(nullptr, browser->Site());
    EXPECT_EQ(1u, Refs(site.Get()));

    ole->SetClientSite(site.Get());
    ole.Reset();
    web.Reset();
    browser.Reset();
    EXPECT_EQ(1u, Refs(site.Get())) << "released with the browser";
}

TEST_F(ScriptedBrowserTest, ReferenceCountsReturnToOne)
{
    ole.Reset();
    web.Reset();
    EXPECT_EQ(1u, browser->RefCount());
    {
        ComPtr<IWebBrowser2> a;
        ComPtr<IDispatch> b;
        ComPtr<IConnectionPointContainer> c;
        ComPtr<IConnectionPoint> point;
        browser->QueryInterface(IID_IWebBrowser2, a.PutVoid());
        a->get_Application(b.Put());
        browser->QueryInterface(IID_IConnectionPointContainer, c.PutVoid());
        c->FindConnectionPoint(DIID_DWebBrowserEvents2, point.Put());
        EXPECT_EQ(5u, browser->RefCount());
    }
    EXPECT_EQ(1u, browser->RefCount());
}
