// The scripted browser's page-author actions: the argument shapes of BeforeNavigate as the platform
// browser delivers them, Cancel read back, and the event order of a page load with frames.
#include <gtest/gtest.h>
#include "frontend/call_log.h"
#include "frontend/scripted_browser.h"

using tov::ComPtr;
using tovfe::ScriptedBrowser;

namespace {

// Both browser event interfaces; records "<dispid>: <args in array order>" and can write Cancel.
class NavigationSink final : public tov::ObjectRoot, public IDispatch {
public:
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override
    {
        return Lookup(riid, {tov::Entry<IDispatch>(DIID_DWebBrowserEvents, this), tov::Entry<IDispatch>(DIID_DWebBrowserEvents2, this)});
    }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*, UINT*) override
    {
        std::wstring text = std::to_wstring(id) + L":";
        for (UINT i = 0; i < params->cArgs; ++i) text += L" [" + tovfe::ArgText(&params->rgvarg[i]) + L"]";
        seen.push_back(text);
        if ((id == 100 || id == 200) && params->cArgs == 6 && params->rgvarg[0].vt == (VT_BYREF | VT_BOOL))
            *params->rgvarg[0].pboolVal = cancelWith;
        if (id == 259 && params->cArgs == 2 && params->rgvarg[1].vt == VT_DISPATCH)
            frames.push_back(params->rgvarg[1].pdispVal);
        return S_OK;
    }
    std::vector<std::wstring> seen;
    std::vector<IDispatch*> frames;
    VARIANT_BOOL cancelWith = 1;
};

class ScriptedNavigation : public testing::Test {
protected:
    void SetUp() override
    {
        sink = tovfe::CreateStandIn<NavigationSink, IDispatch>(IID_IUnknown);
        ComPtr<IConnectionPointContainer> container;
        ASSERT_EQ(S_OK, browser->QueryInterface(IID_IConnectionPointContainer, container.PutVoid()));
        for (const IID* iid : {&DIID_DWebBrowserEvents, &DIID_DWebBrowserEvents2}) {
            ComPtr<IConnectionPoint> point;
            ASSERT_EQ(S_OK, container->FindConnectionPoint(*iid, point.Put()));
            DWORD cookie = 0;
            ASSERT_EQ(S_OK, point->Advise(sink.Get(), &cookie));
        }
    }
    ComPtr<ScriptedBrowser> browser = ScriptedBrowser::Create();
    ComPtr<NavigationSink> sink;
};

} // namespace

TEST_F(ScriptedNavigation, FormPostDataIsAByteArrayBehindAVariantReference)
{
    const auto outcome = browser->SubmitForm(L"TOVEVENT:Save", std::string("a=1\0b", 5), L"left");
    EXPECT_EQ(1, outcome.cancel) << "Cancel is read back after the sinks";
    ASSERT_EQ(1u, sink->seen.size());
    EXPECT_EQ(L"200: [ref BOOL:false] [BSTR:Content-Type: application/x-www-form-urlencoded\r\n] [ref ARRAY:5 bytes] "
              L"[BSTR:left] [I4:0] [BSTR:TOVEVENT:Save]",
              sink->seen[0]);
}

TEST_F(ScriptedNavigation, LinkInTheTopDocumentHasNoPostDataAndNullStringsStayNull)
{
    sink->cancelWith = 0;
    EXPECT_EQ(0, browser->ClickLink(L"http://x/").cancel);
    browser->FireBeforeNavigate(nullptr, 4, nullptr, nullptr, nullptr, false);
    ASSERT_EQ(2u, sink->seen.size());
    EXPECT_EQ(L"100: [ref BOOL:false] [BSTR:] [ref <empty>] [BSTR:] [I4:0] [BSTR:http://x/]", sink->seen[0]);
    EXPECT_EQ(L"100: [ref BOOL:false] [BSTR:<null>] [ref <empty>] [BSTR:<null>] [I4:4] [BSTR:<null>]", sink->seen[1]);
}

TEST_F(ScriptedNavigation, PageWithFramesCompletesFramesFirstAndTheTopDocumentLast)
{
    sink->cancelWith = 0;
    browser->LoadPage(L"http://x/top", {L"http://x/f0", L"http://x/f1"});
    EXPECT_EQ((std::vector<std::wstring>{L"100: [ref BOOL:false] [BSTR:] [ref <empty>] [BSTR:] [I4:0] [BSTR:http://x/top]",
                                         L"101: [BSTR:http://x/top]", L"201: [BSTR:http://x/f0]",
                                         L"259: [BSTR:http://x/f0] [DISPATCH:object]", L"201: [BSTR:http://x/f1]",
                                         L"259: [BSTR:http://x/f1] [DISPATCH:object]",
                                         L"259: [BSTR:http://x/top] [DISPATCH:object]"}),
              sink->seen);
    ASSERT_EQ(3u, sink->frames.size());
    EXPECT_NE(sink->frames[0], sink->frames[1]) << "every frame is an object of its own";
    EXPECT_EQ(static_cast<IDispatch*>(static_cast<IWebBrowser2*>(browser.Get())), sink->frames[2]);

    sink->seen.clear();
    sink->cancelWith = 1;
    browser->LoadPage(L"TOVEVENT:x", {L"http://x/f0"});
    EXPECT_EQ(1u, sink->seen.size()) << "a cancelled navigation loads nothing";
}
