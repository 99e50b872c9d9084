#pragma once
// A table of fixed-width text lines as the front end hands it to the control for a script: the table,
// its data object and the data's line reader, all recording into one Recorder. A line is given as the
// bytes the table holds; copying it fills the rest of the width with zero bytes.
#include <windows.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>
#include "frontend/call_log.h"
#include "frontend/frontend_container.h"
#include "tov_frontend.h"

namespace tovfe {

class TableLineReaderStandIn final : public tov::ObjectRoot, public EarlyBoundOnly<ITOVTableLineReader> {
public:
    static tov::ComPtr<TableLineReaderStandIn> Create(std::shared_ptr<Recorder> rec);
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override;

    STDMETHODIMP GetLineWidth(LONG* pWidth) override;
    STDMETHODIMP GetLineCount(LONG* pCount) override;
    // Planned failures by full text fail single lines, e.g. "CopyLine(2, 9)".
    STDMETHODIMP CopyLine(LONG line, LONG width, LPSTR buffer) override;

    std::vector<std::string> lines;
    LONG width = 0;
    // Reported instead of the real width or count.
    std::optional<LONG> reportedWidth;
    std::optional<LONG> reportedCount;

private:
    friend class tov::ObjectRoot;
    TableLineReaderStandIn() = default;
    std::shared_ptr<Recorder> m_rec;
};

class TableDataStandIn final : public tov::ObjectRoot, public EarlyBoundOnly<ITOVTableData> {
public:
    static tov::ComPtr<TableDataStandIn> Create(std::shared_ptr<Recorder> rec, TableLineReaderStandIn* reader);
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override;
    STDMETHODIMP GetLineReader(ITOVTableLineReader** ppReader) override;

    // Hands out null with S_OK.
    bool withoutReader = false;

private:
    friend class tov::ObjectRoot;
    TableDataStandIn() = default;
    std::shared_ptr<Recorder> m_rec;
    tov::ComPtr<TableLineReaderStandIn> m_reader;
};

class TableStandIn final : public tov::ObjectRoot, public EarlyBoundOnly<ITOVTable> {
public:
    static tov::ComPtr<TableStandIn> Create(std::shared_ptr<Recorder> rec, TableDataStandIn* data);
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override;
    STDMETHODIMP GetDataObject(IUnknown** ppData) override;

    // Hands out null with S_OK.
    bool withoutData = false;
    // When false the object answers IDispatch alone.
    bool answersTable = true;

private:
    friend class tov::ObjectRoot;
    TableStandIn() = default;
    std::shared_ptr<Recorder> m_rec;
    tov::ComPtr<TableDataStandIn> m_data;
};

// How the table reaches the control: as the table, as its data object alone, or as an object that
// answers neither table interface.
enum class TableShape { Table, DataObject, Neither };

struct ScriptTable {
    std::shared_ptr<Recorder> rec;
    tov::ComPtr<TableStandIn> table;
    tov::ComPtr<TableDataStandIn> data;
    tov::ComPtr<TableLineReaderStandIn> reader;
    // What the front end passes to the control.
    IDispatch* Object() const;
    TableShape shape = TableShape::Table;
};
ScriptTable MakeScriptTable(std::vector<std::string> lines, LONG width, TableShape shape = TableShape::Table);

} // namespace tovfe
