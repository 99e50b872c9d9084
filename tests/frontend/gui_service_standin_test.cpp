// The GUI service stand-in as the control reaches it: through the container by service identity.
#include <gtest/gtest.h>
#include "frontend/gui_service_standin.h"
#include "framework/bstr.h"

using tov::ComPtr;

namespace {

template <class Itf> ComPtr<Itf> Service(tovfe::FrontendContainer& c, REFGUID sid, REFIID iid)
{
    ComPtr<IUnknown> unk;
    EXPECT_EQ(S_OK, c.GetService(sid, iid, unk.Put()));
    ComPtr<Itf> itf;
    if (unk) unk->QueryInterface(iid, itf.PutVoid());
    return itf;
}

} // namespace

TEST(GUIServiceStandIn, ChildCodePageLanguageKeyAndIconFontsThroughTheContainer)
{
    auto container = tovfe::FrontendContainer::Create();
    auto services = tovfe::AddGUIServices(*container.Get(), 65001, L"JA");
    services.gui->IconFonts().descriptions[L"save"] = L"font=A;glyph=1";

    auto gui = Service<ITOVGUIService>(*container.Get(), SID_TOVGUIService, IID_ITOVGUIService);
    ASSERT_TRUE(gui);
    ComPtr<ITOVGUIServiceChild> child;
    ASSERT_EQ(S_OK, gui->GetServiceChild(child.Put()));
    UINT cp = 0;
    EXPECT_EQ(S_OK, child->GetCodePage(&cp));
    EXPECT_EQ(65001u, cp);

    ComPtr<IUnknown> fonts;
    ASSERT_EQ(S_OK, gui->GetIconFontService(fonts.Put()));
    ComPtr<ITOVIconFontService> iconFonts;
    ASSERT_EQ(S_OK, fonts->QueryInterface(IID_ITOVIconFontService, iconFonts.PutVoid()));
    tov::Bstr name(L"save"), unknown(L"open");
    BSTR desc = nullptr;
    EXPECT_EQ(S_OK, iconFonts->GetIconFontDescByName(name.Get(), &desc));
    EXPECT_STREQ(L"font=A;glyph=1", desc);
    SysFreeString(desc);
    EXPECT_EQ(E_FAIL, iconFonts->GetIconFontDescByName(unknown.Get(), &desc));
    EXPECT_EQ(nullptr, desc);

    auto info = Service<ITOVFrontendInfoService>(*container.Get(), SID_TOVFrontendInfoService, IID_ITOVFrontendInfoService);
    ASSERT_TRUE(info);
    BSTR key = nullptr;
    EXPECT_EQ(S_OK, info->GetLanguageKey(&key));
    EXPECT_STREQ(L"JA", key);
    SysFreeString(key);

    EXPECT_EQ(S_OK, gui->OnDpiChanged(120, 125, -1));
    const std::vector<std::wstring> expected{L"GetServiceChild()", L"GetCodePage()", L"GetIconFontService()",
                                             L"GetIconFontDescByName(save)", L"GetIconFontDescByName(open)",
                                             L"GetLanguageKey()", L"OnDpiChanged(120, 125, -1)"};
    EXPECT_EQ(expected, services.gui->Log().Texts());
}

TEST(GUIServiceStandIn, PlannedFailuresAndMissingObjects)
{
    auto gui = tovfe::GUIServiceStandIn::Create();
    gui->Plan().Fail(L"GetCodePage", E_ACCESSDENIED);
    gui->withoutForwardTarget = true;
    ComPtr<ITOVGUIServiceChild> child;
    ASSERT_EQ(S_OK, gui->GetServiceChild(child.Put()));
    UINT cp = 7;
    EXPECT_EQ(E_ACCESSDENIED, child->GetCodePage(&cp));
    EXPECT_EQ(0u, cp);
    ComPtr<IUnknown> target;
    EXPECT_EQ(S_OK, gui->GetForwardTarget(target.Put()));
    EXPECT_FALSE(target);
    EXPECT_EQ(E_POINTER, gui->GetServiceChild(nullptr));
}
