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
#include "frontend/engine_session.h"
#include "frontend/event_printer.h"
#include "frontend/screenshot.h"
#include "frontend/workbench.h"

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
    const std::wstring mode = argc > 1 ? argv[1] : L"";
    if (mode == L"--members") rc = ShowMembers();
    else if (mode == L"--scripted-session" && argc > 2) rc = tovfe::RunDemoSession(argv[2]);
    else if (mode == L"--session" && argc > 3) rc = tovfe::RunEngineSession(argv[2], argv[3]);
    else if (mode == L"--pages" && argc > 2) rc = tovfe::RunWorkbench(tovfe::WorkbenchOptions::FromArguments(argc - 2, argv + 2));
    else if (mode == L"--colours" && argc > 2) {
        const size_t colours = tovfe::PictureColours(argv[2]);
        std::printf("%zu\n", colours);
        rc = colours > 1 ? 0 : 1;
    } else {
        std::printf("usage: tovdemo --members\n"
                    "       tovdemo --session <sample folder> <picture folder>      the front end on the engine\n"
                    "       tovdemo --scripted-session <sample folder>              the front end on the scripted browser\n"
                    "       tovdemo --pages <folder> [--start <page>] [--pictures <folder>]   the page author's workbench\n"
                    "       tovdemo --colours <picture>                             colours in a picture (up to 16)\n");
    }
    OleUninitialize();
    return rc;
}
