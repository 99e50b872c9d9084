#include "ocx.h"
#include <stdexcept>

namespace tovtest {

std::wstring OcxPath()
{
    wchar_t path[MAX_PATH * 4];
    const std::wstring exe(path, GetModuleFileNameW(nullptr, path, MAX_PATH * 4));
    return exe.substr(0, exe.find_last_of(L"\\/")) + L"\\TOVHTML.OCX";
}

std::wstring TempDir()
{
    wchar_t buf[MAX_PATH + 1];
    DWORD n = GetTempPathW(MAX_PATH + 1, buf);
    return std::wstring(buf, n);
}

Ocx::Ocx() : m_module(LoadLibraryW(OcxPath().c_str()))
{
    if (!m_module) throw std::runtime_error("TOVHTML.OCX did not load");
}

Ocx::~Ocx() { FreeLibrary(m_module); }

HRESULT Ocx::GetClassObject(REFCLSID clsid, REFIID riid, void** ppv) const
{
    return Proc<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>("DllGetClassObject")(clsid, riid, ppv);
}
HRESULT Ocx::CanUnloadNow() const { return Proc<HRESULT(STDAPICALLTYPE*)()>("DllCanUnloadNow")(); }
HRESULT Ocx::Register() const { return Proc<HRESULT(STDAPICALLTYPE*)()>("DllRegisterServer")(); }
HRESULT Ocx::Unregister() const { return Proc<HRESULT(STDAPICALLTYPE*)()>("DllUnregisterServer")(); }

tov::ComPtr<ITOVHTMLControl> Ocx::CreateControl() const
{
    tov::ComPtr<IClassFactory> factory;
    if (FAILED(GetClassObject(CLSID_TOVHTMLControl, IID_IClassFactory, factory.PutVoid()))) return nullptr;
    tov::ComPtr<ITOVHTMLControl> control;
    factory->CreateInstance(nullptr, IID_ITOVHTMLControl, control.PutVoid());
    return control;
}

bool StartProcess(const std::wstring& commandLine, PROCESS_INFORMATION& started)
{
    for (int attempt = 0; attempt < 5; ++attempt) {
        if (attempt) Sleep(200);
        STARTUPINFOW si{sizeof(si)};
        std::wstring cmd = commandLine; // CreateProcessW may write to it
        if (CreateProcessW(nullptr, cmd.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &started)) return true;
    }
    return false;
}

int RunProcess(const std::wstring& commandLine, DWORD timeoutMs)
{
    PROCESS_INFORMATION pi{};
    if (!StartProcess(commandLine, pi)) return -1;
    DWORD code = static_cast<DWORD>(-1);
    if (WaitForSingleObject(pi.hProcess, timeoutMs) == WAIT_OBJECT_0) GetExitCodeProcess(pi.hProcess, &code);
    else TerminateProcess(pi.hProcess, 1);
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
    return static_cast<int>(code);
}

} // namespace tovtest
