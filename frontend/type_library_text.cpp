#include "type_library_text.h"

namespace tovfe {
namespace {

std::wstring TypeText(const TYPEDESC& td)
{
    switch (td.vt) {
    case VT_PTR: return TypeText(*td.lptdesc) + L"*";
    case VT_I4: return L"long";
    case VT_BSTR: return L"BSTR";
    case VT_DISPATCH: return L"IDispatch*";
    case VT_VARIANT: return L"VARIANT";
    case VT_BOOL: return L"VARIANT_BOOL";
    case VT_HRESULT: return L"HRESULT";
    case VT_VOID: return L"void";
    default: return L"vt" + std::to_wstring(td.vt);
    }
}

} // namespace

std::wstring GuidText(const GUID& g)
{
    wchar_t buf[40] = {};
    StringFromGUID2(g, buf, 40);
    return buf;
}

static std::wstring FlagsText(USHORT f)
{
    std::wstring s;
    if (f & PARAMFLAG_FIN) s += L"in ";
    if (f & PARAMFLAG_FOUT) s += L"out ";
    if (f & PARAMFLAG_FRETVAL) s += L"retval ";
    return s;
}

static std::wstring KindText(INVOKEKIND k)
{
    switch (k) {
    case INVOKE_PROPERTYGET: return L"get ";
    case INVOKE_PROPERTYPUT: return L"put ";
    case INVOKE_PROPERTYPUTREF: return L"putref ";
    default: return L"";
    }
}



std::vector<std::wstring> Functions(ITypeInfo* ti)
{
    std::vector<std::wstring> out;
    TYPEATTR* attr = nullptr;
    if (FAILED(ti->GetTypeAttr(&attr))) return out;
    const WORD count = attr->cFuncs;
    ti->ReleaseTypeAttr(attr);
    for (UINT i = 0; i < count; ++i) {
        FUNCDESC* fd = nullptr;
        if (FAILED(ti->GetFuncDesc(i, &fd))) continue;
        BSTR names[16] = {};
        UINT nNames = 0;
        ti->GetNames(fd->memid, names, 16, &nNames);
        BSTR help = nullptr;
        ti->GetDocumentation(fd->memid, nullptr, &help, nullptr, nullptr);
        const bool named = fd->invkind == INVOKE_FUNC || fd->invkind == INVOKE_PROPERTYGET;
        std::wstring line = std::to_wstring(fd->memid) + L" " + KindText(fd->invkind) + (names[0] ? names[0] : L"?") + L"(";
        for (SHORT p = 0; p < fd->cParams; ++p) {
            const ELEMDESC& e = fd->lprgelemdescParam[p];
            if (p) line += L", ";
            line += FlagsText(e.paramdesc.wParamFlags) + TypeText(e.tdesc);
            if (named && UINT(p + 1) < nNames && names[p + 1]) line += std::wstring(L" ") + names[p + 1];
        }
        line += L")";
        if (help && *help) line += std::wstring(L" [") + help + L"]";
        out.push_back(line);
        for (UINT n = 0; n < nNames; ++n) SysFreeString(names[n]);
        SysFreeString(help);
        ti->ReleaseFuncDesc(fd);
    }
    return out;
}

} // namespace tovfe
