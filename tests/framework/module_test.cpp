// This test executable embeds no type library: the module answers with an error, and an IDispatch built
// on it fails cleanly instead of calling through nothing.
#include <gtest/gtest.h>
#include "framework/dispatch_impl.h"

namespace {

class DispatchOnly final : public tov::DispatchImpl<IDispatch, &IID_IDispatch> {
public:
    STDMETHODIMP QueryInterface(REFIID, void** ppv) override { *ppv = nullptr; return E_NOINTERFACE; }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
};

} // namespace

TEST(Module, WithoutATypeLibraryDispatchFailsCleanly)
{
    DispatchOnly disp;
    tov::ComPtr<ITypeInfo> info;
    EXPECT_TRUE(FAILED(disp.GetTypeInfo(0, 0, info.Put())));
    EXPECT_FALSE(info);
    LPOLESTR name = const_cast<LPOLESTR>(L"Anything");
    DISPID id = 0;
    EXPECT_TRUE(FAILED(disp.GetIDsOfNames(IID_NULL, &name, 1, 0, &id)));
    EXPECT_TRUE(FAILED(disp.Invoke(1, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr)));
}
