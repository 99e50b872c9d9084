#pragma once
// Renders the members of a type description as text, one line per function:
// "<dispid> <kind><name>(<flags><type> <name>, ...) [help]". Used by the demo host to show what the
// control offers and by tests to compare the embedded type library with its table.
#include <windows.h>
#include <oaidl.h>
#include <string>
#include <vector>

namespace tovfe {

std::wstring GuidText(const GUID& g);
std::vector<std::wstring> Functions(ITypeInfo* typeInfo);

} // namespace tovfe
