// The scripted browser's connection points and the events a test fires through them.
#include <gtest/gtest.h>
#include <functional>
#include <olectl.h>
#include "frontend/scripted_browser.h"
#include "framework/bstr.h"

using tov::ComPtr;
using tov::Variant;
using tovfe::ScriptedBrowser;

namespace {

struct Delivery {
    std::wstring sink;
    DISPID id;
    LCID lcid;
    WORD flags;
    UINT named;
    std::vector<std::wstring> rgvarg; // as the array holds them
};

// An event sink that answers only for its events interface and writes every Invoke into a shared list.
class RecordingSink final : public tov::ObjectRoot, public IDispatch {
public:
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override
    {
        return Lookup(riid, {tov::Entry<IDispatch>(eventsIid, this)});
    }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT*, EXCEPINFO*, UINT*) override
    {
        if (!params) return E_POINTER;
        Delivery d{name, id, lcid, flags, params->cNamedArgs, {}};
        for (UINT i = 0; i < params->cArgs; ++i) d.rgvarg.push_back(tovfe::ArgText(&params->rgvarg[i]));
        deliveries->push_back(std::move(d));
        if (onInvoke) onInvoke();
        return answer;
    }

    IID eventsIid = DIID_DWebBrowserEvents2;
    std::wstring name;
    std::vector<Delivery>* deliveries = nullptr;
    std::function<void()> onInvoke;
    HRESULT answer = S_OK;
};

ComPtr<RecordingSink> MakeSink(const wchar_t* name, std::vector<Delivery>& deliveries, const IID& iid = DIID_DWebBrowserEvents2)
{
    auto sink = tovfe::CreateStandIn<RecordingSink, IDispatch>(IID_IUnknown);
    sink->name = name;
    sink->deliveries = &deliveries;
    sink->eventsIid = iid;
    return sink;
}

ULONG Refs(IUnknown* p)
{
    p->AddRef();
    return p->Release();
}

class BrowserEvents : public testing::Test {
protected:
    void SetUp() override
    {
        ComPtr<IConnectionPointContainer> container;
        ASSERT_EQ(S_OK, browser->QueryInterface(IID_IConnectionPointContainer, container.PutVoid()));
        ASSERT_EQ(S_OK, container->FindConnectionPoint(DIID_DWebBrowserEvents, events.Put()));
        ASSERT_EQ(S_OK, container->FindConnectionPoint(DIID_DWebBrowserEvents2, events2.Put()));
        browser->Log().Clear();
    }

    ComPtr<ScriptedBrowser> browser = ScriptedBrowser::Create();
    ComPtr<IConnectionPoint> events;
    ComPtr<IConnectionPoint> events2;
    std::vector<Delivery> deliveries;
};

} // namespace

TEST_F(BrowserEvents, ExactlyTwoConnectionPoints)
{
    ComPtr<IConnectionPointContainer> container;
    ASSERT_EQ(S_OK, browser->QueryInterface(IID_IConnectionPointContainer, container.PutVoid()));
    ComPtr<IConnectionPoint> other;
    EXPECT_EQ(CONNECT_E_NOCONNECTION, container->FindConnectionPoint(IID_IPropertyNotifySink, other.Put()));
    ComPtr<IEnumConnectionPoints> points;
    ASSERT_EQ(S_OK, container->EnumConnectionPoints(points.Put()));
    IConnectionPoint* got[3] = {};
    ULONG fetched = 0;
    points->Next(3, got, &fetched);
    EXPECT_EQ(2u, fetched);
    for (ULONG i = 0; i < fetched; ++i) got[i]->Release();
}

TEST_F(BrowserEvents, AdviseAsksTheSinkForThePointsInterfaceAndCountsCookiesFromOne)
{
    auto onlyV2 = MakeSink(L"v2", deliveries);
    auto onlyV1 = MakeSink(L"v1", deliveries, DIID_DWebBrowserEvents);
    DWORD cookie = 99;
    EXPECT_EQ(CONNECT_E_CANNOTCONNECT, events->Advise(onlyV2.Get(), &cookie));
    EXPECT_EQ(0u, cookie);
    EXPECT_EQ(S_OK, events->Advise(onlyV1.Get(), &cookie));
    EXPECT_EQ(1u, cookie);
    EXPECT_EQ(S_OK, events2->Advise(onlyV2.Get(), &cookie));
    EXPECT_EQ(1u, cookie);
    EXPECT_EQ(S_OK, events2->Advise(onlyV2.Get(), &cookie));
    EXPECT_EQ(2u, cookie);
    EXPECT_EQ(S_OK, events2->Unadvise(2));
    EXPECT_EQ(CONNECT_E_NOCONNECTION, events2->Unadvise(2));
    EXPECT_EQ(1u, browser->SinkCount(DIID_DWebBrowserEvents));
    EXPECT_EQ(1u, browser->SinkCount(DIID_DWebBrowserEvents2));
    EXPECT_EQ((std::vector<std::wstring>{L"Advise(DWebBrowserEvents)", L"Advise(DWebBrowserEvents)", L"Advise(DWebBrowserEvents2)",
                                         L"Advise(DWebBrowserEvents2)", L"Unadvise(DWebBrowserEvents2, 2)",
                                         L"Unadvise(DWebBrowserEvents2, 2)"}),
              browser->Log().Texts());

    EXPECT_EQ(S_OK, events->Unadvise(1));
    EXPECT_EQ(S_OK, events2->Unadvise(1));
    EXPECT_EQ(1u, Refs(onlyV1.Get()));
    EXPECT_EQ(1u, Refs(onlyV2.Get()));
}

TEST_F(BrowserEvents, PlannedAdviseFailureConnectsNothing)
{
    browser->FailCall(L"Advise(DWebBrowserEvents2)", E_FAIL);
    auto sink = MakeSink(L"a", deliveries);
    DWORD cookie = 0;
    EXPECT_EQ(E_FAIL, events2->Advise(sink.Get(), &cookie));
    EXPECT_EQ(0u, browser->SinkCount(DIID_DWebBrowserEvents2));
    EXPECT_EQ(1u, Refs(sink.Get()));
}

TEST_F(BrowserEvents, FireEventReachesEverySinkInOrderWithReversedArguments)
{
    auto first = MakeSink(L"first", deliveries);
    auto second = MakeSink(L"second", deliveries);
    first->answer = DISP_E_MEMBERNOTFOUND;
    second->answer = S_FALSE;
    DWORD c1 = 0, c2 = 0;
    ASSERT_EQ(S_OK, events2->Advise(first.Get(), &c1));
    ASSERT_EQ(S_OK, events2->Advise(second.Get(), &c2));

    VARIANT_BOOL cancel = VARIANT_FALSE;
    Variant url;
    url.vt = VT_BSTR;
    url.bstrVal = SysAllocString(L"http://a/");
    Variant cancelRef;
    cancelRef.vt = VT_BYREF | VT_BOOL;
    cancelRef.pboolVal = &cancel;
    EXPECT_EQ(S_FALSE, browser->FireEvent(DIID_DWebBrowserEvents2, 250, {url, Variant::I4(7), cancelRef}))
        << "the last sink's answer";

    ASSERT_EQ(2u, deliveries.size());
    EXPECT_EQ(L"first", deliveries[0].sink);
    EXPECT_EQ(L"second", deliveries[1].sink);
    for (const Delivery& d : deliveries) {
        EXPECT_EQ(250, d.id);
        EXPECT_EQ(0x400u, d.lcid);
        EXPECT_EQ(DISPATCH_METHOD, d.flags);
        EXPECT_EQ(0u, d.named);
        EXPECT_EQ((std::vector<std::wstring>{L"ref BOOL:false", L"I4:7", L"BSTR:http://a/"}), d.rgvarg);
    }

    deliveries.clear();
    EXPECT_EQ(S_OK, browser->FireEvent(DIID_DWebBrowserEvents, 100, {}));
    EXPECT_TRUE(deliveries.empty()) << "no sink on the other interface";
    EXPECT_EQ(E_INVALIDARG, browser->FireEvent(IID_IDispatch, 100, {}));
    events2->Unadvise(c1);
    events2->Unadvise(c2);
}

TEST_F(BrowserEvents, SinkMayUnadviseItselfWhileItIsCalled)
{
    auto leaving = MakeSink(L"leaving", deliveries);
    auto staying = MakeSink(L"staying", deliveries);
    DWORD leavingCookie = 0, stayingCookie = 0;
    ASSERT_EQ(S_OK, events2->Advise(leaving.Get(), &leavingCookie));
    ASSERT_EQ(S_OK, events2->Advise(staying.Get(), &stayingCookie));
    leaving->onInvoke = [&] { events2->Unadvise(leavingCookie); };

    EXPECT_EQ(S_OK, browser->FireEvent(DIID_DWebBrowserEvents2, 252, {Variant::I4(1)}));
    EXPECT_EQ(S_OK, browser->FireEvent(DIID_DWebBrowserEvents2, 252, {Variant::I4(2)}));
    ASSERT_EQ(3u, deliveries.size());
    EXPECT_EQ(L"leaving", deliveries[0].sink);
    EXPECT_EQ(L"staying", deliveries[1].sink);
    EXPECT_EQ(L"staying", deliveries[2].sink);
    EXPECT_EQ(1u, browser->SinkCount(DIID_DWebBrowserEvents2));
    EXPECT_EQ(1u, Refs(leaving.Get()));
    events2->Unadvise(stayingCookie);
}
