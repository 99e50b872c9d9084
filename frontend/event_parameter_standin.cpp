#include "frontend/event_parameter_standin.h"
#include <shlobj.h>
#include <cstring>
#include "framework/bstr.h"
#include "framework/handles.h"

namespace tovfe {

tov::ComPtr<EventRecordStandIn> EventRecordStandIn::Create(std::map<std::wstring, std::wstring> attributes,
                                                           std::shared_ptr<Recorder> rec)
{
    auto record = CreateStandIn<EventRecordStandIn, ITOVEventRecord>(IID_ITOVEventRecord);
    record->m_attributes = std::move(attributes);
    record->m_rec = rec ? std::move(rec) : std::make_shared<Recorder>();
    return record;
}

STDMETHODIMP EventRecordStandIn::GetAttribute(BSTR name, BSTR defaultText, BSTR* pValue)
{
    if (pValue) *pValue = nullptr;
    return StandInCall([&] {
        const HRESULT hr = m_rec->Record(L"GetAttribute", {ArgText(name), ArgText(defaultText)});
        if (FAILED(hr)) return hr;
        if (!pValue) return E_POINTER;
        const auto found = m_attributes.find(std::wstring(tov::Bstr::CopyOf(name).View()));
        *pValue = found != m_attributes.end() ? tov::Bstr(found->second).Detach() : tov::Bstr::CopyOf(defaultText).Detach();
        return S_OK;
    });
}

tov::ComPtr<EventParameterStandIn> EventParameterStandIn::Create(const EventParameterDescription& description)
{
    auto parameter = CreateStandIn<EventParameterStandIn, ITOVEventParameter>(IID_ITOVEventParameter);
    parameter->m_rec = std::make_shared<Recorder>();
    for (const auto& [name, attributes] : description)
        parameter->m_children.emplace(name, EventRecordStandIn::Create(attributes, parameter->m_rec));
    return parameter;
}

STDMETHODIMP EventParameterStandIn::GetChild(BSTR name, ITOVEventRecord** ppChild)
{
    if (ppChild) *ppChild = nullptr;
    return StandInCall([&] {
        const HRESULT hr = m_rec->Record(L"GetChild", {ArgText(name)});
        if (FAILED(hr)) return hr;
        if (!ppChild) return E_POINTER;
        const auto found = m_children.find(std::wstring(tov::Bstr::CopyOf(name).View()));
        if (found == m_children.end()) return S_FALSE;
        *ppChild = found->second.CopyOut();
        return S_OK;
    });
}

tov::ComPtr<DragDataStandIn> DragDataStandIn::Create(std::vector<std::wstring> files, bool wide)
{
    auto data = CreateStandIn<DragDataStandIn, IDataObject>(IID_IDataObject);
    DROPFILES header{};
    header.pFiles = sizeof(DROPFILES);
    header.fWide = wide;
    std::string block(reinterpret_cast<const char*>(&header), sizeof(header));
    for (const auto& file : files) {
        if (wide) {
            block.append(reinterpret_cast<const char*>(file.c_str()), (file.size() + 1) * sizeof(wchar_t));
        } else {
            for (wchar_t c : file) block.push_back(static_cast<char>(c));
            block.push_back('\0');
        }
    }
    block.append(wide ? sizeof(wchar_t) : 1, '\0');
    data->m_block = std::move(block);
    return data;
}

STDMETHODIMP DragDataStandIn::QueryGetData(FORMATETC* pFormat)
{
    if (!pFormat) return E_POINTER;
    return pFormat->cfFormat == CF_HDROP && (pFormat->tymed & TYMED_HGLOBAL) ? S_OK : DV_E_FORMATETC;
}

STDMETHODIMP DragDataStandIn::GetData(FORMATETC* pFormat, STGMEDIUM* pMedium)
{
    ++m_getDataCalls;
    if (!pFormat || !pMedium) return E_POINTER;
    if (QueryGetData(pFormat) != S_OK) return DV_E_FORMATETC;
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, m_block.empty() ? 1 : m_block.size());
    if (!memory) return E_OUTOFMEMORY;
    if (const tov::GlobalMemoryLock lock(memory); void* p = lock.As<void>()) std::memcpy(p, m_block.data(), m_block.size());
    pMedium->tymed = TYMED_HGLOBAL;
    pMedium->hGlobal = memory;
    pMedium->pUnkForRelease = nullptr;
    return S_OK;
}

STDMETHODIMP DragDataStandIn::GetCanonicalFormatEtc(FORMATETC*, FORMATETC* pOut)
{
    if (pOut) pOut->ptd = nullptr;
    return DATA_S_SAMEFORMATETC;
}

} // namespace tovfe
