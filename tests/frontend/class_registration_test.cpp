// Stand-in class objects registered in the process: CoCreateInstance on the class identity reaches them.
#include <gtest/gtest.h>
#include "frontend/scripted_browser.h"

using tov::ComPtr;
using tovfe::ScriptedBrowserClass;

namespace {

// An identity nothing else in the process or the registry uses. {5F0B7C1E-8A2D-4C39-B6E4-1D7A9E3F2C80}
const CLSID kPrivateClass = {0x5f0b7c1e, 0x8a2d, 0x4c39, {0xb6, 0xe4, 0x1d, 0x7a, 0x9e, 0x3f, 0x2c, 0x80}};

HRESULT CreateBrowser(REFCLSID clsid, ComPtr<IOleObject>& out)
{
    return CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IOleObject, out.PutVoid());
}

} // namespace

TEST(ScriptedBrowserClass, CoCreateInstanceMakesScriptedBrowsersThatShareOneLog)
{
    ScriptedBrowserClass browsers;
    ASSERT_EQ(S_OK, browsers.Register());
    ComPtr<IOleObject> first;
    ASSERT_EQ(S_OK, CreateBrowser(CLSID_WebBrowser, first));
    ASSERT_EQ(1u, browsers.Created().size());
    EXPECT_EQ(static_cast<IOleObject*>(browsers.Last()), first.Get());
    first->SetClientSite(nullptr);
    ComPtr<IWebBrowser2> web;
    ASSERT_EQ(S_OK, first.As(IID_IWebBrowser2, web));

    ComPtr<IOleObject> second;
    ASSERT_EQ(S_OK, CreateBrowser(CLSID_WebBrowser, second));
    ASSERT_EQ(2u, browsers.Created().size());
    second->Close(OLECLOSE_NOSAVE);

    EXPECT_EQ((std::vector<std::wstring>{L"CoCreateInstance(WebBrowser)", L"SetClientSite(null)", L"QueryInterface(IWebBrowser2)",
                                         L"CoCreateInstance(WebBrowser)", L"Close(1)"}),
              browsers.Log().Texts());
    EXPECT_EQ(&browsers.Log(), &browsers.Last()->Log());
    EXPECT_EQ(std::vector<std::wstring>{L"Close(1)"}, browsers.Last()->OwnLog().Texts());

    first.Reset();
    web.Reset();
    second.Reset();
    for (const auto& browser : browsers.Created()) EXPECT_EQ(1u, browser->RefCount()) << "only the class keeps them";
}

TEST(ScriptedBrowserClass, CreationAndCallFailuresAsPlanned)
{
    ScriptedBrowserClass browsers;
    ASSERT_EQ(S_OK, browsers.Register());
    browsers.FailCreate(REGDB_E_CLASSNOTREG);
    ComPtr<IOleObject> ole;
    EXPECT_EQ(REGDB_E_CLASSNOTREG, CreateBrowser(CLSID_WebBrowser, ole));
    EXPECT_FALSE(ole);
    EXPECT_TRUE(browsers.Created().empty());
    EXPECT_EQ(std::vector<std::wstring>{L"CoCreateInstance(WebBrowser)"}, browsers.Log().Texts());

    browsers.FailCreate(S_OK);
    browsers.FailCallOnNext(L"SetClientSite", E_ACCESSDENIED);
    ASSERT_EQ(S_OK, CreateBrowser(CLSID_WebBrowser, ole));
    EXPECT_EQ(E_ACCESSDENIED, ole->SetClientSite(nullptr));
    browsers.ClearFailurePlan();
    ComPtr<IOleObject> later;
    ASSERT_EQ(S_OK, CreateBrowser(CLSID_WebBrowser, later));
    EXPECT_EQ(S_OK, later->SetClientSite(nullptr));
    EXPECT_EQ(E_ACCESSDENIED, ole->SetClientSite(nullptr)) << "a browser keeps the plan it was made with";
}

TEST(RegisteredClass, RegistrationLastsAsLongAsTheObject)
{
    ComPtr<IOleObject> ole;
    ASSERT_EQ(REGDB_E_CLASSNOTREG, CreateBrowser(kPrivateClass, ole));
    auto factory = tovfe::ScriptedBrowserFactory::Create();
    {
        tovfe::RegisteredClass registration(kPrivateClass, static_cast<IClassFactory*>(factory.Get()));
        tovfe::RegisteredClass moved = std::move(registration);
        EXPECT_FALSE(registration.IsRegistered());
        EXPECT_TRUE(moved.IsRegistered());
        EXPECT_EQ(S_OK, CreateBrowser(kPrivateClass, ole));
        EXPECT_EQ(1u, factory->Created().size());
    }
    ole.Reset();
    EXPECT_EQ(REGDB_E_CLASSNOTREG, CreateBrowser(kPrivateClass, ole));
    EXPECT_THROW(tovfe::RegisteredClass(kPrivateClass, nullptr), tov::HResultError);
}
