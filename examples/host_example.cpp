// A complete front end in one file: creates the control by its ProgID in the platform's ActiveX container
// window, listens to its events, initialises it and shows a URL. Uses only the control's generated
// header and the platform; link with ole32, oleaut32, uuid, user32 and atl.
#include <windows.h>
#include <ocidl.h>
#include <cstdio>
#include "TOVHTML_h.h"

extern "C" {
BOOL WINAPI AtlAxWinInit();
HRESULT WINAPI AtlAxCreateControl(LPCOLESTR name, HWND hwnd, IStream* stream, IUnknown** ppContainer);
HRESULT WINAPI AtlAxGetControl(HWND hwnd, IUnknown** ppControl);
HRESULT WINAPI AtlAdvise(IUnknown* source, IUnknown* sink, const IID* iid, DWORD* cookie);
HRESULT WINAPI AtlUnadvise(IUnknown* source, const IID* iid, DWORD cookie);
}

// The front end's event sink: counts NavigateComplete and prints every event's DISPID.
class EventSink : public IDispatch {
public:
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override
    {
        if (!ppv) return E_POINTER;
        *ppv = nullptr;
        if (riid == IID_IUnknown || riid == IID_IDispatch || riid == DIID__TOVHTMLControlEvents) *ppv = this;
        if (!*ppv) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++refs; }
    STDMETHODIMP_(ULONG) Release() override { return --refs; } // lives on main's stack
    STDMETHODIMP GetTypeInfoCount(UINT* n) override { if (n) *n = 0; return S_OK; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*, UINT*) override
    {
        std::printf("event %ld with %u arguments\n", static_cast<long>(id), params ? params->cArgs : 0u);
        // NavigateComplete(URL) is DISPID 2.
        if (id == 2 && params && params->cArgs == 1 && params->rgvarg[0].vt == VT_BSTR) {
            std::printf("  NavigateComplete %ls\n", params->rgvarg[0].bstrVal ? params->rgvarg[0].bstrVal : L"");
            ++navigateCompletes;
        }
        return S_OK;
    }
    ULONG refs = 1;
    int navigateCompletes = 0;
};

int wmain()
{
    if (FAILED(OleInitialize(nullptr))) return 2;
    int failures = 0;
    AtlAxWinInit();
    HWND frame = CreateWindowExW(0, L"Static", L"front end", WS_OVERLAPPEDWINDOW, 0, 0, 640, 480, nullptr, nullptr, nullptr, nullptr);
    HWND host = CreateWindowExW(0, L"AtlAxWin", nullptr, WS_CHILD | WS_VISIBLE, 0, 0, 600, 400, frame, nullptr, nullptr, nullptr);
    IUnknown* container = nullptr;
    IUnknown* unknown = nullptr;
    ITOVHTMLControl* control = nullptr;
    EventSink sink;
    DWORD cookie = 0;

    HRESULT hr = AtlAxCreateControl(L"TOV.HTMLIEControl", host, nullptr, &container);
    if (SUCCEEDED(hr)) hr = AtlAxGetControl(host, &unknown);
    if (SUCCEEDED(hr)) hr = unknown->QueryInterface(IID_ITOVHTMLControl, reinterpret_cast<void**>(&control));
    if (FAILED(hr)) {
        std::printf("creating the control failed: 0x%08lx (is TOVHTML.OCX registered?)\n", static_cast<unsigned long>(hr));
        failures++;
    } else {
        hr = AtlAdvise(unknown, &sink, &DIID__TOVHTMLControlEvents, &cookie);
        std::printf("AtlAdvise: 0x%08lx\n", static_cast<unsigned long>(hr));
        if (FAILED(hr)) failures++;

        LONG version = 0, code = -1;
        control->get_Version(&version);
        std::printf("Version %ld\n", static_cast<long>(version));
        control->InitControl(&code);
        std::printf("InitControl -> %ld\n", static_cast<long>(code));
        if (code != 0) failures++;

        BSTR url = SysAllocString(L"about:blank");
        code = -1;
        control->ShowURL(url, nullptr, &code);
        std::printf("ShowURL(about:blank) -> %ld\n", static_cast<long>(code));
        if (code != 0) failures++;
        SysFreeString(url);

        // The front end can fire the control's events itself, e.g. to share one handler.
        BSTR done = SysAllocString(L"about:front-end");
        control->DoNavigateComplete(done);
        SysFreeString(done);
        if (sink.navigateCompletes != 1) failures++;

        AtlUnadvise(unknown, &DIID__TOVHTMLControlEvents, cookie);
        control->Release();
        unknown->Release();
    }
    if (container) container->Release();
    DestroyWindow(frame); // the container closes and releases the control
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&msg);
    OleUninitialize();
    if (failures == 0) std::printf("EXAMPLE-OK\n");
    return failures;
}
