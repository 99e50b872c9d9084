#include "engine/engine_registration.h"
#include <objbase.h>
#include <olectl.h>
#include <string>
#include "framework/handles.h"

namespace tovengine {

const CLSID kWebBrowserClass = {0x8856f961, 0x340a, 0x11d0, {0xa9, 0x6b, 0x00, 0xc0, 0x4f, 0xd7, 0x05, 0xa2}};
const CLSID kBrowserApplicationClass = {0x0002df01, 0x0000, 0x0000, {0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

namespace {

const wchar_t kSavedKey[] = L"Software\\TOV\\Engine\\PreviousServers";

std::wstring ClassText(const CLSID& clsid)
{
    wchar_t text[64] = {};
    StringFromGUID2(clsid, text, 64);
    return text;
}

std::wstring ServerKey(const CLSID& clsid)
{
    return L"Software\\Classes\\CLSID\\" + ClassText(clsid) + L"\\InprocServer32";
}

bool ReadText(HKEY key, const wchar_t* name, std::wstring& value)
{
    DWORD type = 0, size = 0;
    if (RegQueryValueExW(key, name, nullptr, &type, nullptr, &size) != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ))
        return false;
    value.assign(size / sizeof(wchar_t) + 1, L'\0');
    if (RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(value.data()), &size) != ERROR_SUCCESS)
        return false;
    value.resize(wcsnlen(value.c_str(), value.size()));
    return true;
}

LSTATUS WriteText(HKEY key, const wchar_t* name, const std::wstring& value)
{
    return RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                          static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

HRESULT RegisterClass(const CLSID& clsid, const wchar_t* modulePath)
{
    tov::UniqueHKey server;
    if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, ServerKey(clsid).c_str(), 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr,
                        server.Put(), nullptr) != ERROR_SUCCESS)
        return SELFREG_E_CLASS;
    std::wstring previous, model;
    ReadText(server.Get(), nullptr, previous);
    ReadText(server.Get(), L"ThreadingModel", model);
    // Kept once: registering twice must not lose the platform's own entry.
    if (!previous.empty() && _wcsicmp(previous.c_str(), modulePath) != 0) {
        tov::UniqueHKey saved;
        if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, (std::wstring(kSavedKey) + L"\\" + ClassText(clsid)).c_str(), 0, nullptr, 0,
                            KEY_WRITE, nullptr, saved.Put(), nullptr) == ERROR_SUCCESS) {
            WriteText(saved.Get(), nullptr, previous);
            WriteText(saved.Get(), L"ThreadingModel", model.empty() ? L"Apartment" : model);
        }
    }
    if (WriteText(server.Get(), nullptr, modulePath) != ERROR_SUCCESS ||
        WriteText(server.Get(), L"ThreadingModel", L"Apartment") != ERROR_SUCCESS)
        return SELFREG_E_CLASS;
    return S_OK;
}

void UnregisterClass(const CLSID& clsid)
{
    const std::wstring savedPath = std::wstring(kSavedKey) + L"\\" + ClassText(clsid);
    tov::UniqueHKey saved;
    std::wstring previous, model;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, savedPath.c_str(), 0, KEY_READ, saved.Put()) == ERROR_SUCCESS) {
        ReadText(saved.Get(), nullptr, previous);
        ReadText(saved.Get(), L"ThreadingModel", model);
    }
    saved.Reset();
    if (previous.empty()) {
        RegDeleteKeyW(HKEY_LOCAL_MACHINE, ServerKey(clsid).c_str());
    } else {
        tov::UniqueHKey server;
        if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, ServerKey(clsid).c_str(), 0, KEY_WRITE, server.Put()) == ERROR_SUCCESS) {
            WriteText(server.Get(), nullptr, previous);
            WriteText(server.Get(), L"ThreadingModel", model);
        }
    }
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, savedPath.c_str());
}

} // namespace

HRESULT RegisterEngine(const wchar_t* modulePath) noexcept
{
    HRESULT hr = RegisterClass(kWebBrowserClass, modulePath);
    if (SUCCEEDED(hr)) hr = RegisterClass(kBrowserApplicationClass, modulePath);
    return hr;
}

HRESULT UnregisterEngine() noexcept
{
    UnregisterClass(kWebBrowserClass);
    UnregisterClass(kBrowserApplicationClass);
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kSavedKey);
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, L"Software\\TOV\\Engine");
    return S_OK;
}

} // namespace tovengine
