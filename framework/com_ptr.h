#pragma once
// Owning smart pointer for COM interfaces.
#include <windows.h>
#include <unknwn.h>
#include <utility>

namespace tov {

template <class T> class ComPtr {
public:
    ComPtr() noexcept = default;
    ComPtr(std::nullptr_t) noexcept {}
    ComPtr(T* p) noexcept : m_p(p) { if (m_p) m_p->AddRef(); }
    ComPtr(const ComPtr& o) noexcept : ComPtr(o.m_p) {}
    ComPtr(ComPtr&& o) noexcept : m_p(std::exchange(o.m_p, nullptr)) {}
    ~ComPtr() { Reset(); }

    ComPtr& operator=(const ComPtr& o) noexcept { return *this = o.m_p; }
    ComPtr& operator=(ComPtr&& o) noexcept
    {
        if (this != &o) { Reset(); m_p = std::exchange(o.m_p, nullptr); }
        return *this;
    }
    ComPtr& operator=(T* p) noexcept
    {
        if (p) p->AddRef();
        T* old = std::exchange(m_p, p);
        if (old) old->Release();
        return *this;
    }
    ComPtr& operator=(std::nullptr_t) noexcept { Reset(); return *this; }

    void Reset() noexcept
    {
        if (T* old = std::exchange(m_p, nullptr)) old->Release();
    }
    // Takes over a reference the caller already owns.
    void Attach(T* p) noexcept { Reset(); m_p = p; }
    T* Detach() noexcept { return std::exchange(m_p, nullptr); }

    T* Get() const noexcept { return m_p; }
    T* operator->() const noexcept { return m_p; }
    explicit operator bool() const noexcept { return m_p != nullptr; }
    // Address for an out argument; whatever was held is released first.
    T** Put() noexcept { Reset(); return &m_p; }
    void** PutVoid() noexcept { return reinterpret_cast<void**>(Put()); }

    template <class U> HRESULT As(const IID& iid, ComPtr<U>& out) const noexcept
    {
        if (!m_p) { out.Reset(); return E_POINTER; }
        return m_p->QueryInterface(iid, out.PutVoid());
    }
    // Hands out a new reference, as an [out] parameter wants.
    T* CopyOut() const noexcept { if (m_p) m_p->AddRef(); return m_p; }

private:
    T* m_p = nullptr;
};

template <class U, class T> ComPtr<U> QueryAs(T* p, const IID& iid) noexcept
{
    ComPtr<U> out;
    if (p) p->QueryInterface(iid, out.PutVoid());
    return out;
}

} // namespace tov
