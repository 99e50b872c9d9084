// Object root: creation through the interface table, construction failures leave nothing behind, and
// the module stays locked exactly while an object lives. Aggregation, its refusal and the one identity of
// every interface are tested with the control's own class object.
#include <gtest/gtest.h>
#include "framework/com_ptr.h"
#include "framework/object_root.h"

using tov::ComPtr;
using tov::Module;

namespace {

class Probe final : public tov::ObjectRoot, public IPersist {
public:
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override { return Lookup(riid, {tov::Entry<IPersist>(IID_IPersist, this)}); }
    STDMETHODIMP GetClassID(CLSID*) override { return E_NOTIMPL; }
    ~Probe() override { ++destroyed; }
    static inline int destroyed = 0;
    static inline HRESULT constructResult = S_OK;

protected:
    void FinalConstruct() override
    {
        // A reference taken and given back while constructing must not end the object.
        ComPtr<IPersist> self;
        QueryInterface(IID_IPersist, self.PutVoid());
        self.Reset();
        tov::ThrowIfFailed(constructResult);
    }
};

} // namespace

TEST(ObjectRoot, CreationAndItsFailuresLeaveNothingBehind)
{
    const LONG locks = Module::LockCount();
    Probe::destroyed = 0;
    ComPtr<IUnknown> made;
    ASSERT_EQ(S_OK, tov::ObjectRoot::CreateInstance<Probe>(nullptr, IID_IUnknown, made.PutVoid()));
    EXPECT_EQ(locks + 1, Module::LockCount()) << "a live object locks the module";
    made.Reset();

    EXPECT_EQ(E_NOINTERFACE, tov::ObjectRoot::CreateInstance<Probe>(nullptr, IID_IStream, made.PutVoid()));
    Probe::constructResult = E_ACCESSDENIED;
    EXPECT_EQ(E_ACCESSDENIED, tov::ObjectRoot::CreateInstance<Probe>(nullptr, IID_IPersist, made.PutVoid()))
        << "FinalConstruct's failure is the answer";
    Probe::constructResult = S_OK;
    EXPECT_EQ(3, Probe::destroyed) << "the last release and every failed creation delete the object";
    EXPECT_EQ(E_POINTER, tov::ObjectRoot::CreateInstance<Probe>(nullptr, IID_IPersist, nullptr));
    EXPECT_EQ(locks, Module::LockCount()) << "every object let go of the module";
}
