#pragma once
// A COM object for framework tests whose reference count is observable: it answers IUnknown and one extra
// interface (IPersist by default) and lives on the test's stack, which holds the first reference. The
// extra interface is answered with the IPersist pointer whatever it is: the tests that connect it as a
// sink only hold and compare what they are given, they never call it.
#include <windows.h>
#include <ocidl.h>
#include "framework/simple_object.h"

namespace tovtest {

class CountingObject : public tov::SimpleObject<CountingObject, tov::Lifetime::CountOnly, tov::Implements<IPersist>> {
public:
    explicit CountingObject(const IID& extra = IID_IPersist) : m_extra(extra) {}
    bool AlsoAnswers(REFIID riid) const noexcept { return IsEqualIID(riid, m_extra); }
    STDMETHODIMP GetClassID(CLSID*) override { return E_NOTIMPL; }

private:
    IID m_extra;
};

} // namespace tovtest
