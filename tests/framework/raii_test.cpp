// Owning wrappers: COM pointers, BSTRs, VARIANTs and handles give back exactly the references and
// resources they own, whatever was copied, moved, assigned to itself, attached or detached on the way.
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>
#include "counting_object.h"
#include "framework/bstr.h"
#include "framework/com_ptr.h"
#include "framework/handles.h"
#include "framework/variant.h"

using tov::Bstr;
using tov::ComPtr;
using tovtest::CountingObject;

TEST(ComPtr, EveryReferenceTakenIsGivenBack)
{
    CountingObject obj, other;
    {
        ComPtr<IPersist> a(&obj), b(a);
        ComPtr<IPersist> c(std::move(a));
        EXPECT_FALSE(a);
        b = c;
        b = b.Get();
        c = std::move(c);
        EXPECT_EQ(3u, obj.RefCount()) << "a move takes the reference over; assigning the same object keeps the count";
        c.Put();
        ComPtr<IPersist> copy;
        copy.Attach(b.CopyOut());
        other.AddRef();
        c.Attach(&other);
        copy.Attach(c.Detach());
        ComPtr<IStream> stream;
        EXPECT_EQ(E_NOINTERFACE, b.As(IID_IStream, stream));
        EXPECT_EQ(E_POINTER, ComPtr<IUnknown>().As(IID_IPersist, b));
        EXPECT_FALSE(b) << "the target is emptied when there is nothing to ask";
    }
    EXPECT_EQ(1u, obj.RefCount());
    EXPECT_EQ(1u, other.RefCount());
}

TEST(Bstr, CopiesOwnTheirTextNullAndEmptyStayApartAndTooLongThrows)
{
    const std::wstring text(L"a\0b", 3);
    Bstr a(text), b(a);
    EXPECT_NE(a.Get(), b.Get()) << "a copy is a new string";
    EXPECT_EQ(text, b.View()) << "embedded zeros are kept";
    Bstr moved(std::move(a));
    EXPECT_TRUE(a.IsNull());
    Bstr adopted = Bstr::Adopt(moved.Detach());
    EXPECT_EQ(text, adopted.View());

    EXPECT_TRUE(Bstr(static_cast<const wchar_t*>(nullptr)).IsNull());
    EXPECT_EQ(nullptr, Bstr().CopyOut());
    EXPECT_FALSE(Bstr::Adopt(Bstr(L"").CopyOut()).IsNull()) << "an empty string is no null string";
    // The length is checked before a character is read.
    const std::wstring_view tooLong(L"x", 0x40000000);
    EXPECT_EQ(E_OUTOFMEMORY, tov::GuardedCall([&] { return Bstr(tooLong).IsNull() ? S_FALSE : S_OK; }));
}

TEST(Variant, CopiesHoldTheirOwnReferences)
{
    CountingObject obj;
    {
        tov::Variant v, copy;
        v.vt = VT_UNKNOWN;
        v.punkVal = &obj;
        obj.AddRef();
        copy = v;
        copy = copy;
        tov::Variant another(copy);
        EXPECT_EQ(4u, obj.RefCount()) << "every copy holds its own reference";
    }
    EXPECT_EQ(1u, obj.RefCount());
}

TEST(UniqueHandle, AMoveHandsTheWindowOverAndAssigningClosesWhatWasOwned)
{
    const auto make = [] { return CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr); };
    HWND first = make(), second = make();
    {
        tov::UniqueWindow a(first), b(second);
        b = std::move(a);
        b = std::move(b);
        EXPECT_EQ((std::vector<BOOL>{TRUE, FALSE}), (std::vector<BOOL>{IsWindow(first), IsWindow(second)}));
    }
    EXPECT_FALSE(IsWindow(first));
}
