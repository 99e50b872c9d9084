#pragma once
// Scripts arrive as the front end's tables of fixed-width lines. The line reader is reached through the
// table (its data object) or, for an object that is no table, through the object as the table's data.
#include <windows.h>
#include <oaidl.h>
#include <string>

namespace tov::scripts {

// The three scripts the control keeps, by kind: 1 general, 2 on completion, 3 on data submitted.
struct ScriptSlots {
    std::string* general;
    std::string* onCompleted;
    std::string* onDataSubmitted;
};

enum class TableRead {
    Read,          // the script of the kind was replaced
    InvalidObject, // null, or an object that leads to no table data: nothing changed
    NoReader,      // the table data yields no line reader: nothing changed
    UnknownKind,   // the kind is none of 1-3: nothing changed
};

// Reads every line of the table behind `table` into the script of `kind`: each line is the copied line
// up to its first zero byte, joined with nothing between; failing lines are skipped; a negative or failing
// width or line count reads as no lines. The script is replaced only when the whole table was read; a failed
// allocation throws HResultError(E_OUTOFMEMORY) and changes nothing.
TableRead ReadScriptTable(IDispatch* table, int kind, const ScriptSlots& slots);

} // namespace tov::scripts
