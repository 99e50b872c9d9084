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

inline VARIANT ByRef(VARIANT* target)
{
    VARIANT v;
    VariantInit(&v);
    v.vt = VT_VARIANT | VT_BYREF;
    v.pvarVal = target;
    return v;
}
inline VARIANT BoolRef(VARIANT_BOOL* target)
{
    VARIANT v;
    VariantInit(&v);
    v.vt = VT_BOOL | VT_BYREF;
    v.pboolVal = target;
    return v;
}
inline VARIANT DispatchArg(IDispatch* value)
{
    VARIANT v;
    VariantInit(&v);
    v.vt = VT_DISPATCH;
    v.pdispVal = value;
    return v;
}
inline VARIANT DispatchRef(IDispatch** target)
{
    VARIANT v;
    VariantInit(&v);
    v.vt = VT_DISPATCH | VT_BYREF;
    v.ppdispVal = target;
    return v;
}
inline VARIANT BstrArg(BSTR value)
{
    VARIANT v;
    VariantInit(&v);
    v.vt = VT_BSTR;
    v.bstrVal = value;
    return v;
}
inline VARIANT LongArg(LONG value)
{
    VARIANT v;
    VariantInit(&v);
    v.vt = VT_I4;
    v.lVal = value;
    return v;
}

} // namespace tovengine
