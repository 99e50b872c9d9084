#pragma once
// Owning BSTR.
#include <windows.h>
#include <oleauto.h>
#include <string>
#include <string_view>
#include <utility>
#include "hresult_error.h"

namespace tov {

class Bstr {
public:
    Bstr() noexcept = default;
    // A copy of the text; throws E_OUTOFMEMORY when it cannot be allocated.
    explicit Bstr(std::wstring_view s) : m_b(Alloc(s.data(), s.size())) {}
    explicit Bstr(const wchar_t* s) : m_b(s ? Alloc(s, wcslen(s)) : nullptr) {}
    Bstr(const Bstr& o) : m_b(o.m_b ? Alloc(o.m_b, SysStringLen(o.m_b)) : nullptr) {}
    Bstr(Bstr&& o) noexcept : m_b(std::exchange(o.m_b, nullptr)) {}
    ~Bstr() { SysFreeString(m_b); }
    Bstr& operator=(Bstr o) noexcept { std::swap(m_b, o.m_b); return *this; }

    static Bstr CopyOf(BSTR b) { Bstr r; if (b) r.m_b = Alloc(b, SysStringLen(b)); return r; }
    static Bstr Adopt(BSTR b) noexcept { Bstr r; r.m_b = b; return r; }

    BSTR Get() const noexcept { return m_b; }
    BSTR* Put() noexcept { Reset(); return &m_b; }
    BSTR Detach() noexcept { return std::exchange(m_b, nullptr); }
    void Reset() noexcept { SysFreeString(std::exchange(m_b, nullptr)); }
    // A fresh copy for an [out] argument.
    BSTR CopyOut() const { return m_b ? Alloc(m_b, SysStringLen(m_b)) : nullptr; }

    UINT Length() const noexcept { return SysStringLen(m_b); }
    bool IsNull() const noexcept { return m_b == nullptr; }
    std::wstring_view View() const noexcept { return m_b ? std::wstring_view(m_b, SysStringLen(m_b)) : std::wstring_view(); }
    const wchar_t* CStr() const noexcept { return m_b ? m_b : L""; }

private:
    static BSTR Alloc(const wchar_t* s, size_t n)
    {
        if (n > 0x7FFFFFF0u / sizeof(wchar_t)) Throw(E_OUTOFMEMORY);
        return ThrowIfNull(SysAllocStringLen(s, static_cast<UINT>(n)));
    }
    BSTR m_b = nullptr;
};

// The text of a BSTR owned by someone else; a null BSTR is the empty text.
inline std::wstring_view BstrView(BSTR b) noexcept { return b ? std::wstring_view(b, SysStringLen(b)) : std::wstring_view(); }

// A property's text as a new BSTR for its caller, whole (embedded zeros too); a null member reads as an
// empty string.
inline HRESULT CopyOutOrEmpty(const Bstr& member, BSTR* out) noexcept
{
    if (!out) return E_POINTER;
    *out = member.IsNull() ? SysAllocString(L"") : SysAllocStringLen(member.Get(), member.Length());
    return *out ? S_OK : E_OUTOFMEMORY;
}

// Replaces a property's text with a copy of `value` (null stays null); false when no copy could be made,
// and the member is then null.
inline bool ReplaceWithCopy(Bstr& member, BSTR value) noexcept
{
    member.Reset();
    if (!value) return true;
    BSTR copy = SysAllocStringLen(value, SysStringLen(value));
    if (!copy) return false;
    member = Bstr::Adopt(copy);
    return true;
}

// Orders BSTR keys as the user's locale compares them (case-sensitive).
struct BstrLocaleLess {
    bool operator()(const Bstr& a, const Bstr& b) const noexcept
    {
        return VarBstrCmp(a.Get(), b.Get(), LOCALE_USER_DEFAULT, 0) == static_cast<HRESULT>(VARCMP_LT);
    }
};

} // namespace tov
