// The module's file name and its embedded type library: a module without one answers with an error, and
// an IDispatch built on it fails cleanly instead of calling through nothing.
#include <gtest/gtest.h>
#include <ocidl.h>
#include "framework/dispatch_impl.h"
#include "framework/module.h"

namespace {

// The smallest dual interface there is: IDispatch itself, answered through the module's type library.
class DispatchOnly final : public tov::DispatchImpl<IDispatch, &IID_IDispatch> {
public:
    STDMETHODIMP QueryInterface(REFIID, void** ppv) override { if (ppv) *ppv = nullptr; return E_NOINTERFACE; }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
};

} // namespace

TEST(Module, FileNameAndAMissingTypeLibrary)
{
    wchar_t exe[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, exe, MAX_PATH);
    EXPECT_EQ(std::wstring(exe), tov::Module::FileName()) << "a module not yet initialised is the process's file";

    ITypeLib* lib = reinterpret_cast<ITypeLib*>(1);
    EXPECT_TRUE(FAILED(tov::Module::GetTypeLib(&lib))) << "this test executable embeds no type library";
    EXPECT_EQ(nullptr, lib);
    ITypeInfo* info = reinterpret_cast<ITypeInfo*>(1);
    EXPECT_TRUE(FAILED(tov::Module::GetTypeInfo(IID_IDispatch, &info)));
    EXPECT_EQ(nullptr, info);
    EXPECT_EQ(E_POINTER, tov::Module::GetTypeLib(nullptr));
    EXPECT_EQ(E_POINTER, tov::Module::GetTypeInfo(IID_IDispatch, nullptr));
}

TEST(Module, DispatchWithoutTypeLibraryFailsCleanly)
{
    DispatchOnly disp;
    UINT count = 0;
    EXPECT_EQ(S_OK, disp.GetTypeInfoCount(&count));
    EXPECT_EQ(1u, count);
    EXPECT_EQ(E_POINTER, disp.GetTypeInfoCount(nullptr));
    ITypeInfo* info = reinterpret_cast<ITypeInfo*>(1);
    EXPECT_EQ(DISP_E_BADINDEX, disp.GetTypeInfo(1, 0, &info));
    EXPECT_EQ(nullptr, info);
    EXPECT_TRUE(FAILED(disp.GetTypeInfo(0, 0, &info)));

    LPOLESTR name = const_cast<LPOLESTR>(L"Anything");
    DISPID id = 0;
    EXPECT_EQ(DISP_E_UNKNOWNINTERFACE, disp.GetIDsOfNames(IID_IDispatch, &name, 1, 0, &id));
    EXPECT_TRUE(FAILED(disp.GetIDsOfNames(IID_NULL, &name, 1, 0, &id)));
    EXPECT_EQ(DISP_E_UNKNOWNINTERFACE, disp.Invoke(1, IID_IDispatch, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr));
    EXPECT_TRUE(FAILED(disp.Invoke(1, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr)));
}
