// Demo host: shows what a front end finds when it creates the control by its ProgID, and plays a
// front end's session with the control in a real container window.
#include <windows.h>
#include <ole2.h>
#include <cstdio>
#include <string>
#include "TOVHTML_h.h"
#include "framework/com_ptr.h"
#include "type_library_text.h"
#include "frontend/demo_session.h"
#include "frontend/event_printer.h"

using tov::ComPtr;

namespace {

int ShowMembers()
{
    CLSID clsid;
    if (FAILED(CLSIDFromProgID(L"TOV.HTMLIEControl", &clsid))) {
        std::printf("TOV.HTMLIEControl is not registered\n");
        return 1;
    }
    ComPtr<IProvideClassInfo> classInfo;
    HRESULT hr = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IProvideClassInfo, classInfo.PutVoid());
    if (FAILED(hr)) {
        std::printf("creating the control failed: 0x%08lx\n", static_cast<unsigned long>(hr));
        return 1;
    }
    ComPtr<ITypeInfo> coclass;
    classInfo->GetClassInfo(coclass.Put());
    ComPtr<ITypeLib> lib;
    UINT index = 0;
    if (!coclass || FAILED(coclass->GetContainingTypeLib(lib.Put(), &index))) return 1;
    for (UINT i = 0; i < lib->GetTypeInfoCount(); ++i) {
        BSTR name = nullptr, help = nullptr;
        lib->GetDocumentation(static_cast<INT>(i), &name, &help, nullptr, nullptr);
        ComPtr<ITypeInfo> ti;
        lib->GetTypeInfo(i, ti.Put());
        TYPEATTR* attr = nullptr;
        ti->GetTypeAttr(&attr);
        std::printf("\n%s %s \"%s\"\n", tovfe::ConsoleText(name ? name : L"").c_str(),
                    tovfe::ConsoleText(tovfe::GuidText(attr->guid)).c_str(), tovfe::ConsoleText(help ? help : L"").c_str());
        const bool dual = attr->typekind == TKIND_DISPATCH && (attr->wTypeFlags & TYPEFLAG_FDUAL);
        ti->ReleaseTypeAttr(attr);
        SysFreeString(name);
        SysFreeString(help);
        if (dual) {
            HREFTYPE ref = 0;
            ComPtr<ITypeInfo> vtable;
            if (SUCCEEDED(ti->GetRefTypeOfImplType(static_cast<UINT>(-1), &ref)) && SUCCEEDED(ti->GetRefTypeInfo(ref, vtable.Put())))
                ti = vtable;
        }
        for (const auto& line : tovfe::Functions(ti.Get())) std::printf("    %s\n", tovfe::ConsoleText(line).c_str());
    }
    return 0;
}

} // namespace

int wmain(int argc, wchar_t** argv)
{
    if (FAILED(OleInitialize(nullptr))) return 2;
    SetConsoleOutputCP(CP_UTF8);
    int rc = 2;
    if (argc > 1 && std::wstring(argv[1]) == L"--members") rc = ShowMembers();
    else if (argc > 2 && std::wstring(argv[1]) == L"--session") rc = tovfe::RunDemoSession(argv[2]);
    else std::printf("usage: tovdemo --members | --session <sample folder>\n");
    OleUninitialize();
    return rc;
}
