// Unloading the OCX leaves nothing of it registered in the process: a later load, wherever it lands,
// registers its window class afresh instead of finding one whose procedure is gone.
#include <gtest/gtest.h>
#include "support/atl_host.h"
#include "support/ocx.h"

TEST(ModuleUnload, TheControlWindowClassGoesWithTheModule)
{
    HMODULE loadedAt = nullptr;
    {
        tovtest::Ocx ocx;
        loadedAt = ocx.Handle();
        ASSERT_TRUE(loadedAt);
        auto control = ocx.CreateControl();
        ASSERT_TRUE(control);
        {
            tovtest::AtlHost host;
            ASSERT_EQ(S_OK, host.Attach(control.Get()));
            control.Reset();
            WNDCLASSEXW wc{sizeof(wc)};
            ASSERT_TRUE(GetClassInfoExW(loadedAt, L"TOVHTMLControlWindow", &wc)) << "the control made its window";
            host.Destroy();
        }
        ASSERT_EQ(S_OK, ocx.CanUnloadNow());
    }
    ASSERT_EQ(nullptr, GetModuleHandleW(tovtest::OcxPath().c_str())) << "the OCX was unloaded";
    WNDCLASSEXW wc{sizeof(wc)};
    EXPECT_FALSE(GetClassInfoExW(loadedAt, L"TOVHTMLControlWindow", &wc));

    // Loaded again, the control still gets its window.
    tovtest::Ocx again;
    auto control = again.CreateControl();
    ASSERT_TRUE(control);
    tovtest::AtlHost host;
    ASSERT_EQ(S_OK, host.Attach(control.Get()));
    EXPECT_TRUE(GetClassInfoExW(again.Handle(), L"TOVHTMLControlWindow", &wc));
    control.Reset();
    host.Destroy();
}
