#include "events/script_table.h"
#include <cstring>
#include <new>
#include <stdexcept>
#include <vector>
#include "framework/com_ptr.h"
#include "framework/hresult_error.h"
#include "tov_frontend.h"

namespace tov::scripts {
namespace {

ComPtr<ITOVTableData> TableDataOf(IDispatch* object)
{
    ComPtr<ITOVTable> table;
    if (SUCCEEDED(object->QueryInterface(IID_ITOVTable, table.PutVoid())) && table) {
        ComPtr<IUnknown> data;
        if (FAILED(table->GetDataObject(data.Put())) || !data) return nullptr;
        return QueryAs<ITOVTableData>(data.Get(), IID_ITOVTableData);
    }
    return QueryAs<ITOVTableData>(object, IID_ITOVTableData);
}

std::string* Destination(int kind, const ScriptSlots& slots)
{
    switch (kind) {
    case 1: return slots.general;
    case 2: return slots.onCompleted;
    case 3: return slots.onDataSubmitted;
    default: return nullptr;
    }
}

std::string ReadLines(ITOVTableLineReader* reader)
{
    LONG width = 0;
    LONG count = 0;
    std::string script;
    if (FAILED(reader->GetLineWidth(&width)) || FAILED(reader->GetLineCount(&count))) return script;
    if (width < 0 || count <= 0) return script;
    try {
        std::vector<char> buffer(static_cast<size_t>(width) + 1);
        for (LONG line = 1; line <= count; ++line) {
            buffer[0] = '\0';
            if (FAILED(reader->CopyLine(line, width, buffer.data()))) continue;
            buffer[static_cast<size_t>(width)] = '\0';
            script.append(buffer.data(), std::strlen(buffer.data()));
        }
    } catch (const std::bad_alloc&) {
        Throw(E_OUTOFMEMORY);
    } catch (const std::length_error&) {
        Throw(E_OUTOFMEMORY);
    }
    return script;
}

} // namespace

TableRead ReadScriptTable(IDispatch* table, int kind, const ScriptSlots& slots)
{
    if (!table) return TableRead::InvalidObject;
    const ComPtr<ITOVTableData> data = TableDataOf(table);
    if (!data) return TableRead::InvalidObject;
    ComPtr<ITOVTableLineReader> reader;
    if (FAILED(data->GetLineReader(reader.Put())) || !reader) return TableRead::NoReader;
    std::string* destination = Destination(kind, slots);
    if (!destination) return TableRead::UnknownKind;
    *destination = ReadLines(reader.Get());
    return TableRead::Read;
}

} // namespace tov::scripts
