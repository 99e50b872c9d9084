#pragma once
// Owning VARIANT.
#include <windows.h>
#include <oleauto.h>

namespace tov {

class Variant : public VARIANT {
public:
    Variant() noexcept { VariantInit(this); }
    Variant(const Variant& o) : Variant() { VariantCopy(this, const_cast<Variant*>(&o)); }
    Variant& operator=(const Variant& o) { if (this != &o) VariantCopy(this, const_cast<Variant*>(&o)); return *this; }
    ~Variant() { VariantClear(this); }

    static Variant I4(LONG v) noexcept { Variant r; r.vt = VT_I4; r.lVal = v; return r; }
    void Clear() noexcept { VariantClear(this); }
    VARIANT* Ptr() noexcept { return this; }
};

} // namespace tov
