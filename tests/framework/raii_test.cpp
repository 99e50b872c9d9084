// Owning wrappers: COM pointers, BSTRs, VARIANTs and handles take and give back exactly the references
// and resources they own.
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

TEST(ComPtr, CopiesAddAReferenceMovesAndScopeEndsGiveThemBack)
{
    CountingObject obj;
    {
        ComPtr<IPersist> a(&obj);
        EXPECT_EQ(2u, obj.refs);
        ComPtr<IPersist> b(a);
        EXPECT_EQ(3u, obj.refs);
        ComPtr<IPersist> c(std::move(a));
        EXPECT_EQ(3u, obj.refs) << "a move takes the reference over";
        EXPECT_FALSE(a);
        b = c;
        EXPECT_EQ(3u, obj.refs) << "assigning the same object keeps the count";
        b = b.Get();
        EXPECT_EQ(3u, obj.refs) << "self assignment";
        c = std::move(c);
        EXPECT_EQ(3u, obj.refs);
        b = nullptr;
        EXPECT_EQ(2u, obj.refs);
    }
    EXPECT_EQ(1u, obj.refs);
    EXPECT_EQ(obj.addRefs, obj.releases);
}

TEST(ComPtr, AttachDetachPutAndCopyOut)
{
    CountingObject obj;
    CountingObject other;
    {
        ComPtr<IPersist> p;
        obj.AddRef();
        p.Attach(&obj);
        EXPECT_EQ(2u, obj.refs) << "Attach adds nothing";
        IPersist* out = p.CopyOut();
        EXPECT_EQ(&obj, out);
        EXPECT_EQ(3u, obj.refs);
        out->Release();
        IPersist** slot = p.Put();
        EXPECT_EQ(1u, obj.refs) << "Put releases what was held";
        EXPECT_EQ(nullptr, *slot);
        *slot = &other;
        other.AddRef();
        IPersist* detached = p.Detach();
        EXPECT_EQ(&other, detached);
        EXPECT_FALSE(p);
        EXPECT_EQ(2u, other.refs) << "Detach gives the reference away";
        detached->Release();
        EXPECT_EQ(nullptr, ComPtr<IPersist>().CopyOut());
    }
    EXPECT_EQ(1u, obj.refs);
    EXPECT_EQ(1u, other.refs);
}

TEST(ComPtr, QueriesForOtherInterfaces)
{
    CountingObject obj;
    ComPtr<IUnknown> unk(&obj);
    ComPtr<IPersist> persist;
    EXPECT_EQ(S_OK, unk.As(IID_IPersist, persist));
    EXPECT_EQ(&obj, persist.Get());
    ComPtr<IStream> stream;
    EXPECT_EQ(E_NOINTERFACE, unk.As(IID_IStream, stream));
    EXPECT_FALSE(stream);
    EXPECT_EQ(E_POINTER, ComPtr<IUnknown>().As(IID_IPersist, persist));
    EXPECT_FALSE(persist) << "the target is emptied when there is nothing to ask";
    EXPECT_TRUE(tov::QueryAs<IPersist>(&obj, IID_IPersist));
    EXPECT_FALSE(tov::QueryAs<IPersist>(static_cast<IUnknown*>(nullptr), IID_IPersist));
    unk.Reset();
    EXPECT_EQ(1u, obj.refs);
}

TEST(Bstr, CopiesOwnTheirTextAndKeepItsLength)
{
    const std::wstring text(L"a\0b", 3);
    Bstr a(text);
    EXPECT_EQ(3u, a.Length());
    EXPECT_EQ(text, a.View());
    Bstr b(a);
    EXPECT_NE(a.Get(), b.Get()) << "a copy is a new string";
    EXPECT_EQ(text, b.View());
    BSTR out = a.CopyOut();
    EXPECT_NE(a.Get(), out);
    EXPECT_EQ(3u, SysStringLen(out));
    SysFreeString(out);

    Bstr moved(std::move(a));
    EXPECT_TRUE(a.IsNull());
    EXPECT_EQ(text, moved.View());

    BSTR raw = moved.Detach();
    EXPECT_TRUE(moved.IsNull());
    Bstr adopted = Bstr::Adopt(raw);
    EXPECT_EQ(raw, adopted.Get()) << "Adopt takes the string itself";
    Bstr copied = Bstr::CopyOf(raw);
    EXPECT_NE(raw, copied.Get());
    EXPECT_EQ(text, copied.View());
    *adopted.Put() = SysAllocString(L"new");
    EXPECT_EQ(L"new", adopted.View());
}

TEST(Bstr, NullAndEmptyStayApart)
{
    Bstr none;
    EXPECT_TRUE(none.IsNull());
    EXPECT_EQ(0u, none.Length());
    EXPECT_STREQ(L"", none.CStr());
    EXPECT_EQ(nullptr, none.CopyOut());
    EXPECT_TRUE(Bstr(static_cast<const wchar_t*>(nullptr)).IsNull());
    EXPECT_TRUE(Bstr::CopyOf(nullptr).IsNull());
    Bstr empty(L"");
    EXPECT_FALSE(empty.IsNull());
    EXPECT_EQ(0u, empty.Length());
    BSTR out = empty.CopyOut();
    EXPECT_NE(nullptr, out);
    SysFreeString(out);
}

TEST(Bstr, ALengthBeyondWhatABstrCanHoldThrowsOutOfMemory)
{
    // The length is checked before a character is read.
    const std::wstring_view tooLong(L"x", 0x40000000);
    try {
        Bstr b(tooLong);
        FAIL() << "no exception";
    } catch (const tov::HResultError& e) {
        EXPECT_EQ(E_OUTOFMEMORY, e.Code());
    }
}

TEST(Variant, OwnsItsStringAndInterfaceReferences)
{
    CountingObject obj;
    {
        tov::Variant v;
        EXPECT_EQ(VT_EMPTY, v.vt);
        v.vt = VT_UNKNOWN;
        v.punkVal = &obj;
        obj.AddRef();
        tov::Variant copy(v);
        EXPECT_EQ(3u, obj.refs) << "a copy holds its own reference";
        tov::Variant assigned;
        assigned = copy;
        EXPECT_EQ(4u, obj.refs);
        assigned = assigned;
        EXPECT_EQ(4u, obj.refs);
        copy.Clear();
        EXPECT_EQ(VT_EMPTY, copy.vt);
        EXPECT_EQ(3u, obj.refs);
    }
    EXPECT_EQ(1u, obj.refs);

    tov::Variant s;
    s.vt = VT_BSTR;
    s.bstrVal = SysAllocString(L"text");
    tov::Variant sc(s);
    EXPECT_NE(s.bstrVal, sc.bstrVal);
    EXPECT_STREQ(L"text", sc.bstrVal);
    const tov::Variant i = tov::Variant::I4(-7);
    EXPECT_EQ(VT_I4, i.vt);
    EXPECT_EQ(-7, i.lVal);
}

namespace {

struct CountedTraits {
    static int Invalid() noexcept { return -1; }
    static void Close(int h) noexcept { closed.push_back(h); }
    static inline std::vector<int> closed;
};
using CountedHandle = tov::UniqueHandle<int, CountedTraits>;

} // namespace

TEST(UniqueHandle, ClosesWhatItOwnsExactlyOnce)
{
    CountedTraits::closed.clear();
    {
        CountedHandle a(1);
        CountedHandle b(std::move(a));
        EXPECT_FALSE(a);
        EXPECT_TRUE(b);
        CountedHandle c(2);
        c = std::move(b);
        EXPECT_EQ(std::vector<int>{2}, CountedTraits::closed) << "the replaced handle is closed";
        c = std::move(c);
        EXPECT_EQ(1, c.Get());
        CountedHandle d(3);
        EXPECT_EQ(3, d.Release());
        EXPECT_FALSE(d);
        CountedHandle e(4);
        int* slot = e.Put();
        EXPECT_EQ(-1, *slot);
        *slot = 5;
        e.Reset(6);
        CountedHandle none;
    }
    EXPECT_EQ((std::vector<int>{2, 4, 5, 6, 1}), CountedTraits::closed) << "nothing released or empty is closed";
}

TEST(UniqueHandle, PlatformHandlesWindowsKeysAndModules)
{
    HANDLE raw = nullptr;
    {
        tov::UniqueKernelHandle event(CreateEventW(nullptr, TRUE, FALSE, nullptr));
        ASSERT_TRUE(event);
        raw = event.Get();
        DWORD flags = 0;
        EXPECT_TRUE(GetHandleInformation(raw, &flags));
    }
    DWORD flags = 0;
    EXPECT_FALSE(GetHandleInformation(raw, &flags)) << "the event handle is closed";

    HWND hwnd = nullptr;
    {
        tov::UniqueWindow window(CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr));
        ASSERT_TRUE(window);
        hwnd = window.Get();
        EXPECT_TRUE(IsWindow(hwnd));
    }
    EXPECT_FALSE(IsWindow(hwnd));
    {
        // A window destroyed by someone else is not destroyed twice.
        tov::UniqueWindow window(CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr));
        DestroyWindow(window.Get());
    }

    tov::UniqueHKey key;
    ASSERT_EQ(ERROR_SUCCESS, RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, KEY_READ, key.Put()));
    EXPECT_TRUE(key);
    key.Reset();
    EXPECT_FALSE(key);

    tov::UniqueLibrary lib(LoadLibraryW(L"shlwapi.dll"));
    EXPECT_TRUE(lib);
}
