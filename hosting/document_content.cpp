// The document the browser shows: its root element's outer HTML, new content through a file, its charset.
#include "control/automation_call.h"
#include <mshtml.h>
#include <algorithm>
#include "framework/handles.h"
#include "hosting/content_format.h"

using namespace tov;

namespace {

// Writes all of `bytes`; false when the file took less.
bool WriteAll(HANDLE file, const std::string& bytes)
{
    size_t done = 0;
    while (done < bytes.size()) {
        const DWORD chunk = static_cast<DWORD>(std::min<size_t>(bytes.size() - done, 1u << 20));
        DWORD written = 0;
        if (!WriteFile(file, bytes.data() + done, chunk, &written, nullptr) || written == 0) return false;
        done += written;
    }
    return true;
}

std::wstring TempFolder()
{
    std::wstring folder(MAX_PATH + 1, L'\0');
    DWORD n = GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
    if (n > folder.size()) {
        folder.resize(n);
        n = GetTempPathW(n, folder.data());
    }
    if (n == 0 || n > folder.size()) Throw(HRESULT_FROM_WIN32(GetLastError()));
    folder.resize(n);
    return folder;
}

} // namespace

ComPtr<IHTMLDocument2> CTOVHTMLControl::CurrentDocument(const CTraceScope& scope)
{
    if (!m_pWebBrowser) return nullptr;
    ComPtr<IDispatch> dispatch;
    if (FAILED(m_pWebBrowser->get_Document(dispatch.Put())) || !dispatch) {
        scope.Write("get_Document() failed", trace::kDetail);
        return nullptr;
    }
    ComPtr<IHTMLDocument2> document;
    if (FAILED(dispatch->QueryInterface(IID_IHTMLDocument2, document.PutVoid())) || !document) {
        scope.Write("CComQIPtr<IHTMLDocument2...> failed", trace::kDetail);
        return nullptr;
    }
    return document;
}

STDMETHODIMP CTOVHTMLControl::GetHTMLSourceContent(BSTR* str)
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "GetDocumentHTML");
        if (!str) return E_POINTER;
        const ComPtr<IHTMLDocument2> document = CurrentDocument(scope);
        if (!document) return S_OK;
        ComPtr<IHTMLElement> body;
        HRESULT hr = document->get_body(body.Put());
        if (FAILED(hr) || !body) {
            scope.Write("get_body() failed", trace::kDetail);
            return hr;
        }
        ComPtr<IHTMLElement> root;
        hr = body->get_parentElement(root.Put());
        if (FAILED(hr)) return hr;
        if (!root) {
            scope.Write("get_parentElement() failed", trace::kDetail);
            return S_OK;
        }
        Bstr html;
        hr = root->get_outerHTML(html.Put());
        if (SUCCEEDED(hr)) *str = html.Detach();
        return hr;
    });
}

STDMETHODIMP CTOVHTMLControl::SetHTMLSourceContent(BSTR* str)
{
    return MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "Set DocumentHTML");
        if (!str) return E_POINTER;
        // The document only has to exist; what it holds is replaced.
        if (!CurrentDocument(scope)) return S_OK;

        GUID guid;
        HRESULT hr = CoCreateGuid(&guid);
        if (FAILED(hr)) return hr;
        wchar_t guidText[256] = {};
        if (StringFromGUID2(guid, guidText, 256) < 2) return E_UNEXPECTED;
        // The name is the GUID text without its opening brace: "XXXXXXXX-...-XXXXXXXXXXXX}.html".
        m_pszTempFileStem = guidText + 1;
        m_pszTempFileStem = TempFolder() + m_pszTempFileStem + L".html";
        const std::wstring path = m_pszTempFileStem;

        UniqueFile file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
        if (!file) return hr;
        m_files.AddSourceFile(path);
        const std::string bytes = content::SourceFileBytes(
            str && *str ? std::wstring_view(*str, SysStringLen(*str)) : std::wstring_view(),
            [](std::wstring_view text) { return ToAnsi(text); });
        const bool written = WriteAll(file.Get(), bytes);
        file.Reset();
        if (!written || !m_pWebBrowser) return hr;

        Zoom();
        Bstr target(path);
        Variant noFrame;
        return m_pWebBrowser->Navigate(target.Get(), nullptr, &noFrame, nullptr, nullptr);
    });
}

STDMETHODIMP CTOVHTMLControl::GetCharsetString(BSTR* pstrCharset)
{
    if (!pstrCharset) return E_POINTER;
    // Whatever fails, the front end keeps its own default charset and goes on.
    MethodCall([&] {
        CTraceScope scope(m_trace, TraceSinkRef(), "GetCharsetString");
        // Data scanned without a charset tag: the caller keeps its own default.
        if (!m_bMetaTagFound && m_bDataCharsetChecked) return S_OK;
        const ComPtr<IHTMLDocument2> document = CurrentDocument(scope);
        if (!document) return S_OK;
        Bstr charset;
        bool found = SUCCEEDED(document->get_charset(charset.Put()));
        if (!m_bMetaTagFound && (!found || charset.Length() == 0))
            found = SUCCEEDED(document->get_defaultCharset(charset.Put()));
        if (!found) return S_OK;
        scope.Detail(ToAnsi(charset.View()));
        *pstrCharset = charset.Detach();
        return S_OK;
    });
    return S_OK;
}
