#pragma once
// Firing browser events at the sinks of a connection point the way the platform browser does: by
// IDispatch::Invoke with the event's DISPID, arguments in reverse order, references where the event
// hands out a value the sink may change.
#include <windows.h>
#include <oaidl.h>
#include <initializer_list>
#include "framework/connection_points.h"

namespace tovengine {

// Calls every connected sink with `args` given in declaration order (copied shallowly: the caller owns
// what they point to). A sink that fails does not stop the others.
void FireEvent(const tov::EventConnectionPoint& point, DISPID id, std::initializer_list<VARIANT> args);

// The arguments: VARIANTs that only point at what the caller owns (nothing to clear).
template <class Set> VARIANT Shallow(VARTYPE vt, Set&& set)
{
    VARIANT v;
    VariantInit(&v);
    v.vt = vt;
    set(v);
    return v;
}
inline VARIANT ByRef(VARIANT* target) { return Shallow(VT_VARIANT | VT_BYREF, [&](VARIANT& v) { v.pvarVal = target; }); }
inline VARIANT BoolRef(VARIANT_BOOL* target) { return Shallow(VT_BOOL | VT_BYREF, [&](VARIANT& v) { v.pboolVal = target; }); }
inline VARIANT DispatchArg(IDispatch* value) { return Shallow(VT_DISPATCH, [&](VARIANT& v) { v.pdispVal = value; }); }
inline VARIANT DispatchRef(IDispatch** target) { return Shallow(VT_DISPATCH | VT_BYREF, [&](VARIANT& v) { v.ppdispVal = target; }); }
inline VARIANT BstrArg(BSTR value) { return Shallow(VT_BSTR, [&](VARIANT& v) { v.bstrVal = value; }); }
inline VARIANT LongArg(LONG value) { return Shallow(VT_I4, [&](VARIANT& v) { v.lVal = value; }); }

} // namespace tovengine
