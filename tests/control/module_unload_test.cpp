// Unloading the OCX takes its window class with it: a later load, wherever it lands, registers the class
// afresh instead of finding one whose window procedure is gone.
#include <gtest/gtest.h>
#include "support/atl_host.h"
#include "support/ocx.h"

namespace {

// Hosts one control of `ocx` in a container; true when the control's window class was registered meanwhile.
bool HostOnce(const tovtest::Ocx& ocx)
{
    auto control = ocx.CreateControl();
    tovtest::AtlHost host;
    WNDCLASSEXW wc{sizeof(wc)};
    const bool registered = control && host.Attach(control.Get()) == S_OK &&
                            GetClassInfoExW(ocx.Handle(), L"TOVHTMLControlWindow", &wc);
    control.Reset();
    host.Destroy();
    return registered;
}

} // namespace

TEST(ModuleUnload, TheControlWindowClassGoesWithTheModule)
{
    HMODULE loadedAt = nullptr;
    {
        tovtest::Ocx ocx;
        loadedAt = ocx.Handle();
        ASSERT_TRUE(HostOnce(ocx));
        ASSERT_EQ(S_OK, ocx.CanUnloadNow());
    }
    ASSERT_EQ(nullptr, GetModuleHandleW(tovtest::OcxPath().c_str())) << "the OCX was unloaded";
    WNDCLASSEXW wc{sizeof(wc)};
    EXPECT_FALSE(GetClassInfoExW(loadedAt, L"TOVHTMLControlWindow", &wc));
    tovtest::Ocx again;
    EXPECT_TRUE(HostOnce(again)) << "loaded again, the control still gets its window";
}
