#include "module.h"
#include <string>
#include "hresult_error.h"

namespace tov {

void Module::Term() noexcept
{
    if (s_pTypeLib) { s_pTypeLib->Release(); s_pTypeLib = nullptr; }
}

std::wstring Module::FileName()
{
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        DWORD n = GetModuleFileNameW(s_hInstance, path.data(), static_cast<DWORD>(path.size()));
        if (n == 0) Throw(HRESULT_FROM_WIN32(GetLastError()));
        if (n < path.size()) { path.resize(n); return path; }
        path.resize(path.size() * 2);
    }
}

HRESULT Module::GetTypeLib(ITypeLib** ppTypeLib) noexcept
{
    if (!ppTypeLib) return E_POINTER;
    *ppTypeLib = nullptr;
    return GuardedCall([&] {
        if (!s_pTypeLib) {
            ITypeLib* pTypeLib = nullptr;
            ThrowIfFailed(LoadTypeLibEx(FileName().c_str(), REGKIND_NONE, &pTypeLib));
            // Apartment model: a second thread racing here would only load the library twice.
            if (InterlockedCompareExchangePointer(reinterpret_cast<void**>(&s_pTypeLib), pTypeLib, nullptr))
                pTypeLib->Release();
        }
        s_pTypeLib->AddRef();
        *ppTypeLib = s_pTypeLib;
        return S_OK;
    });
}

HRESULT Module::GetTypeInfo(REFGUID guid, ITypeInfo** ppTypeInfo) noexcept
{
    if (!ppTypeInfo) return E_POINTER;
    *ppTypeInfo = nullptr;
    ComPtr<ITypeLib> typeLib;
    HRESULT hr = GetTypeLib(typeLib.Put());
    if (FAILED(hr)) return hr;
    return typeLib->GetTypeInfoOfGuid(guid, ppTypeInfo);
}

} // namespace tov
