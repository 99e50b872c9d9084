#pragma once
// IUnknown for a small COM object on its own: no aggregation, no module lock (ObjectRoot is the root for
// those). QueryInterface answers the listed interfaces, IUnknown always and IDispatch when a listed
// interface derives from it. The object starts with one reference, its creator's; what the last Release
// does is the lifetime policy's choice.
#include <windows.h>
#include <oaidl.h>
#include <type_traits>

namespace tov {

enum class Lifetime {
    DeleteOnLastRelease, // made with new: the last Release deletes it
    CountOnly,           // static, on a stack, or counted by a test that reads the count: never deleted
};

// An interface the object implements and the identities it answers with that interface: its own, and any
// base interface or dispinterface that the same pointer stands for. None at all is allowed: the interface
// is then reached only through IUnknown, IDispatch or AlsoAnswers.
template <class Itf, const IID&... iids> struct Implements : Itf {
    using Interface = Itf;
    static bool Answers(REFIID riid) noexcept { return (IsEqualIID(riid, iids) || ...); }
};

// Derived may declare `bool AlsoAnswers(REFIID) const noexcept` for identities known only at run time;
// they are answered with the first interface of the list, the object's IUnknown.
template <class Derived, Lifetime lifetime, class First, class... Rest>
class SimpleObject : public First, public Rest... {
public:
    SimpleObject(const SimpleObject&) = delete;
    SimpleObject& operator=(const SimpleObject&) = delete;

    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override
    {
        if (!ppv) return E_POINTER;
        *ppv = Find<First, Rest...>(riid);
        if (!*ppv) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&m_refs)); }
    STDMETHODIMP_(ULONG) Release() override
    {
        const ULONG n = static_cast<ULONG>(InterlockedDecrement(&m_refs));
        if constexpr (lifetime == Lifetime::DeleteOnLastRelease) {
            static_assert(std::is_final_v<Derived> || std::has_virtual_destructor_v<Derived>,
                          "deleted as Derived: a class derived from it would not be destroyed whole");
            if (n == 0) delete static_cast<Derived*>(this);
        }
        return n;
    }

    ULONG RefCount() const noexcept { return static_cast<ULONG>(m_refs); }

protected:
    SimpleObject() = default;
    ~SimpleObject() = default;

    bool AlsoAnswers(REFIID) const noexcept { return false; }

private:
    template <class Entry> void* PointerTo() noexcept
    {
        return static_cast<typename Entry::Interface*>(static_cast<Entry*>(this));
    }
    template <class Entry> void* DispatchOf() noexcept
    {
        if constexpr (std::is_base_of_v<IDispatch, typename Entry::Interface>) return PointerTo<Entry>();
        else return nullptr;
    }
    template <class... Entries> void* Find(REFIID riid) noexcept
    {
        void* found = nullptr;
        if (((found = Entries::Answers(riid) ? PointerTo<Entries>() : nullptr) || ...)) return found;
        if (IsEqualIID(riid, IID_IUnknown)) return PointerTo<First>();
        if (IsEqualIID(riid, IID_IDispatch) && ((found = DispatchOf<Entries>()) || ...)) return found;
        return static_cast<const Derived*>(this)->AlsoAnswers(riid) ? PointerTo<First>() : nullptr;
    }

    volatile LONG m_refs = 1;
};

} // namespace tov
