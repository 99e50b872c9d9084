// The HRESULT exception and the helpers that raise it and catch it at a COM boundary.
#include <gtest/gtest.h>
#include <new>
#include <stdexcept>
#include "framework/hresult_error.h"

using tov::HResultError;

namespace {

HRESULT CodeOf(void (*raise)())
{
    try {
        raise();
    } catch (const HResultError& e) {
        return e.Code();
    } catch (...) {
        return E_UNEXPECTED;
    }
    return S_OK;
}

} // namespace

TEST(HResultError, ThrowHelpersRaiseOnlyFailures)
{
    EXPECT_EQ(S_OK, tov::ThrowIfFailed(S_OK));
    EXPECT_EQ(S_FALSE, tov::ThrowIfFailed(S_FALSE)) << "a success code is passed through";
    EXPECT_EQ(E_ACCESSDENIED, CodeOf([] { tov::ThrowIfFailed(E_ACCESSDENIED); }));
    EXPECT_EQ(E_OUTOFMEMORY, CodeOf([] { tov::ThrowIfNull(static_cast<int*>(nullptr)); }));
    EXPECT_EQ(E_POINTER, CodeOf([] { tov::ThrowIfNull(static_cast<int*>(nullptr), E_POINTER); }));
    EXPECT_EQ(E_FAIL, CodeOf([] { tov::Throw(E_FAIL); }));
    int value = 0;
    EXPECT_EQ(&value, tov::ThrowIfNull(&value));
    EXPECT_STRNE("", HResultError(E_FAIL).what());
}

TEST(HResultError, GuardedCallTurnsEveryExceptionIntoItsCode)
{
    EXPECT_EQ(S_FALSE, tov::GuardedCall([] { return S_FALSE; }));
    EXPECT_EQ(E_NOINTERFACE, tov::GuardedCall([]() -> HRESULT { tov::Throw(E_NOINTERFACE); }));
    EXPECT_EQ(E_OUTOFMEMORY, tov::GuardedCall([]() -> HRESULT { throw std::bad_alloc(); }));
    EXPECT_EQ(E_UNEXPECTED, tov::GuardedCall([]() -> HRESULT { throw std::runtime_error("other"); }));
    EXPECT_EQ(E_UNEXPECTED, tov::GuardedCall([]() -> HRESULT { throw 42; }));
    // Nested: the inner boundary answers, the outer one sees a plain result.
    EXPECT_EQ(E_ABORT, tov::GuardedCall([] { return tov::GuardedCall([]() -> HRESULT { tov::Throw(E_ABORT); }); }));
}
