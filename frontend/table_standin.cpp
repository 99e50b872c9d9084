#include "frontend/table_standin.h"
#include <algorithm>
#include <cstring>
#include <utility>

namespace tovfe {

tov::ComPtr<TableLineReaderStandIn> TableLineReaderStandIn::Create(std::shared_ptr<Recorder> rec)
{
    auto p = CreateStandIn<TableLineReaderStandIn, ITOVTableLineReader>(IID_ITOVTableLineReader);
    p->m_rec = std::move(rec);
    return p;
}

void* TableLineReaderStandIn::FindInterface(REFIID riid) noexcept
{
    return Lookup(riid, {tov::Entry<ITOVTableLineReader>(IID_ITOVTableLineReader, this),
                         tov::Entry<ITOVTableLineReader>(IID_IDispatch, this)});
}

STDMETHODIMP TableLineReaderStandIn::GetLineWidth(LONG* pWidth)
{
    if (pWidth) *pWidth = 0;
    return StandInCall([&] {
        const HRESULT hr = m_rec->Record(L"GetLineWidth");
        if (FAILED(hr)) return hr;
        if (!pWidth) return E_POINTER;
        *pWidth = reportedWidth.value_or(width);
        return hr;
    });
}

STDMETHODIMP TableLineReaderStandIn::GetLineCount(LONG* pCount)
{
    if (pCount) *pCount = 0;
    return StandInCall([&] {
        const HRESULT hr = m_rec->Record(L"GetLineCount");
        if (FAILED(hr)) return hr;
        if (!pCount) return E_POINTER;
        *pCount = reportedCount.value_or(static_cast<LONG>(lines.size()));
        return hr;
    });
}

STDMETHODIMP TableLineReaderStandIn::CopyLine(LONG line, LONG lineWidth, LPSTR buffer)
{
    return StandInCall([&] {
        const HRESULT hr = m_rec->Record(L"CopyLine", {std::to_wstring(line), std::to_wstring(lineWidth)});
        if (FAILED(hr)) return hr;
        if (!buffer) return E_POINTER;
        if (line < 1 || static_cast<size_t>(line) > lines.size() || lineWidth < 0) return E_INVALIDARG;
        const std::string& text = lines[static_cast<size_t>(line) - 1];
        const size_t n = std::min(text.size(), static_cast<size_t>(lineWidth));
        std::memcpy(buffer, text.data(), n);
        std::memset(buffer + n, 0, static_cast<size_t>(lineWidth) - n);
        return hr;
    });
}

tov::ComPtr<TableDataStandIn> TableDataStandIn::Create(std::shared_ptr<Recorder> rec, TableLineReaderStandIn* reader)
{
    auto p = CreateStandIn<TableDataStandIn, ITOVTableData>(IID_ITOVTableData);
    p->m_rec = std::move(rec);
    p->m_reader = reader;
    return p;
}

void* TableDataStandIn::FindInterface(REFIID riid) noexcept
{
    return Lookup(riid, {tov::Entry<ITOVTableData>(IID_ITOVTableData, this), tov::Entry<ITOVTableData>(IID_IDispatch, this)});
}

STDMETHODIMP TableDataStandIn::GetLineReader(ITOVTableLineReader** ppReader)
{
    if (ppReader) *ppReader = nullptr;
    return StandInCall([&] {
        const HRESULT hr = m_rec->Record(L"GetLineReader");
        if (FAILED(hr)) return hr;
        if (!ppReader) return E_POINTER;
        if (!withoutReader) *ppReader = m_reader.CopyOut();
        return hr;
    });
}

tov::ComPtr<TableStandIn> TableStandIn::Create(std::shared_ptr<Recorder> rec, TableDataStandIn* data)
{
    auto p = CreateStandIn<TableStandIn, ITOVTable>(IID_ITOVTable);
    p->m_rec = std::move(rec);
    p->m_data = data;
    return p;
}

void* TableStandIn::FindInterface(REFIID riid) noexcept
{
    if (!answersTable && IsEqualIID(riid, IID_ITOVTable)) return nullptr;
    return Lookup(riid, {tov::Entry<ITOVTable>(IID_ITOVTable, this), tov::Entry<ITOVTable>(IID_IDispatch, this)});
}

STDMETHODIMP TableStandIn::GetDataObject(IUnknown** ppData)
{
    if (ppData) *ppData = nullptr;
    return StandInCall([&] {
        const HRESULT hr = m_rec->Record(L"GetDataObject");
        if (FAILED(hr)) return hr;
        if (!ppData) return E_POINTER;
        if (!withoutData && m_data) *ppData = static_cast<ITOVTableData*>(m_data.CopyOut());
        return hr;
    });
}

IDispatch* ScriptTable::Object() const
{
    if (shape == TableShape::DataObject) return static_cast<ITOVTableData*>(data.Get());
    return static_cast<ITOVTable*>(table.Get());
}

ScriptTable MakeScriptTable(std::vector<std::string> lines, LONG width, TableShape shape)
{
    ScriptTable t;
    t.rec = std::make_shared<Recorder>();
    t.reader = TableLineReaderStandIn::Create(t.rec);
    t.reader->lines = std::move(lines);
    t.reader->width = width;
    t.data = TableDataStandIn::Create(t.rec, t.reader.Get());
    t.table = TableStandIn::Create(t.rec, t.data.Get());
    t.table->answersTable = shape != TableShape::Neither;
    t.shape = shape;
    return t;
}

} // namespace tovfe
