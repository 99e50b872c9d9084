// Icon-font requests: the request is read with the platform's XML DOM document, each icon's description
// comes from the front end's icon-font service, and the reply is plain concatenation.
#include "control/TOVHTMLControl.h"
#include <msxml2.h>
#include "hosting/icon_reply.h"

using namespace tov;

namespace {

// The system parser's DOM document and the interfaces the request is read through.
constexpr CLSID kDOMDocumentClass = {0x2933bf90, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};
constexpr IID kDOMDocumentIid = {0x2933bf81, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};
constexpr IID kDOMDocument2Iid = {0x2933bf95, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};

// The request is text from a page: the parser loads nothing from outside it and refuses a document
// type declaration where it knows how to.
void ConfineToRequestText(IXMLDOMDocument* document)
{
    document->put_async(VARIANT_FALSE);
    document->put_resolveExternals(VARIANT_FALSE);
    document->put_validateOnParse(VARIANT_FALSE);
    ComPtr<IXMLDOMDocument2> document2;
    if (SUCCEEDED(document->QueryInterface(kDOMDocument2Iid, document2.PutVoid())) && document2) {
        Variant yes;
        yes.vt = VT_BOOL;
        yes.boolVal = VARIANT_TRUE;
        document2->setProperty(Bstr(L"ProhibitDTD").Get(), yes);
    }
}

bool HasChildren(IXMLDOMNode* node)
{
    VARIANT_BOOL has = VARIANT_FALSE;
    return SUCCEEDED(node->hasChildNodes(&has)) && has != VARIANT_FALSE;
}

// An unreadable text counts as empty.
Bstr TextOf(IXMLDOMNode* node)
{
    Bstr text;
    if (FAILED(node->get_text(text.Put())) || text.IsNull()) return Bstr(L"");
    return text;
}

} // namespace

STDMETHODIMP CTOVHTMLControl::LoadIconFont(BSTR iconRequest, BSTR* iconInfo)
{
    if (!iconInfo) return E_POINTER;
    *iconInfo = nullptr;
    return MethodCall([&] {
        Bstr answer;
        const bool answered = ParseXMLIconRequest(iconRequest, answer);
        *iconInfo = answer.IsNull() ? Bstr(L"").Detach() : answer.Detach();
        return answered ? S_OK : S_FALSE;
    });
}

bool CTOVHTMLControl::ParseXMLIconRequest(BSTR request, Bstr& answer)
{
    answer.Reset();
    CTraceScope scope(m_trace, TraceSinkRef(), "ParseXMLIconRequest");
    icons::IconReply reply;
    const auto failed = [&](const char* text) {
        scope.Write(text, trace::kDetail);
        answer = Bstr(L"");
        return false;
    };
    try {
        ComPtr<IXMLDOMDocument> document;
        if (SysStringLen(request) > 0) {
            if (FAILED(CoCreateInstance(kDOMDocumentClass, nullptr, CLSCTX_INPROC_SERVER, kDOMDocumentIid,
                                        document.PutVoid())) || !document)
                return failed("CoCreateInstance Failed");
            ConfineToRequestText(document.Get());
            VARIANT_BOOL loaded = VARIANT_FALSE;
            if (FAILED(document->loadXML(request, &loaded)) || loaded == VARIANT_FALSE) return failed("loadXML Failed");
            ComPtr<IXMLDOMElement> root;
            if (FAILED(document->get_documentElement(root.Put())) || !root) return failed("get_documentElement Failed");
            if (HasChildren(root.Get())) {
                ComPtr<IXMLDOMNodeList> iconList;
                if (FAILED(root->get_childNodes(iconList.Put())) || !iconList) return failed("get_childNodes Failed");
                reply.Open();
                long iconCount = 0;
                if (FAILED(iconList->get_length(&iconCount))) iconCount = 0;
                for (long i = 0; i < iconCount; ++i) {
                    ComPtr<IXMLDOMNode> icon;
                    if (FAILED(iconList->get_item(i, icon.Put())) || !icon || !HasChildren(icon.Get())) continue;
                    Bstr name(L""), size(L"");
                    ComPtr<IXMLDOMNodeList> children;
                    long childCount = 0;
                    if (FAILED(icon->get_childNodes(children.Put())) || !children || FAILED(children->get_length(&childCount)))
                        childCount = 0;
                    // A later child of the same kind replaces an earlier one.
                    for (long j = 0; j < childCount; ++j) {
                        ComPtr<IXMLDOMNode> child;
                        if (FAILED(children->get_item(j, child.Put())) || !child) break;
                        Bstr baseName;
                        if (FAILED(child->get_baseName(baseName.Put()))) continue;
                        switch (icons::ClassifyIconChild(baseName.View())) {
                        case icons::IconField::Name: name = TextOf(child.Get()); break;
                        case icons::IconField::Size: size = TextOf(child.Get()); break;
                        case icons::IconField::Other: break;
                        }
                    }
                    const Bstr description = getGUIIconResource(name.Get());
                    reply.AddIcon(name.View(), size.View(), description.View());
                }
                reply.Close();
            }
        }
    } catch (...) {
        // The answer built so far goes out as it stands.
        ReportCaught(Failures(), "icon request");
    }
    if (reply.Empty()) {
        answer = Bstr(L"");
        return false;
    }
    answer = Bstr(reply.Text());
    return true;
}

Bstr CTOVHTMLControl::getGUIIconResource(BSTR name)
{
    CTraceScope scope(m_trace, TraceSinkRef(), "getGUIIconResource");
    Bstr description;
    const ComPtr<ITOVGUIService> gui(GetGUIService());
    if (!gui) return description;
    ComPtr<IUnknown> service;
    if (FAILED(gui->GetIconFontService(service.Put())) || !service) return description;
    ComPtr<ITOVIconFontService> iconFonts;
    if (FAILED(service->QueryInterface(IID_ITOVIconFontService, iconFonts.PutVoid())) || !iconFonts) return description;
    if (FAILED(iconFonts->GetIconFontDescByName(name, description.Put()))) {
        description.Reset();
        scope.Write("GetIconFontDescByName() failed", trace::kDetail);
    }
    return description;
}
