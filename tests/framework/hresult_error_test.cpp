// The helpers that raise the HRESULT exception, and the COM boundary that turns every exception into a code.
#include <gtest/gtest.h>
#include <new>
#include <stdexcept>
#include "framework/hresult_error.h"

using tov::GuardedCall;

TEST(HResultError, OnlyFailuresAreRaisedAndTheBoundaryAnswersEveryExceptionWithItsCode)
{
    EXPECT_EQ(S_FALSE, GuardedCall([] { return tov::ThrowIfFailed(S_FALSE); })) << "a success code is passed through";
    EXPECT_EQ(E_ACCESSDENIED, GuardedCall([] { return tov::ThrowIfFailed(E_ACCESSDENIED); }));
    EXPECT_EQ(E_OUTOFMEMORY, GuardedCall([] { return *tov::ThrowIfNull(static_cast<HRESULT*>(nullptr)); }));
    EXPECT_EQ(E_POINTER, GuardedCall([] { return *tov::ThrowIfNull(static_cast<HRESULT*>(nullptr), E_POINTER); }));
    EXPECT_EQ(E_OUTOFMEMORY, GuardedCall([]() -> HRESULT { throw std::bad_alloc(); }));
    EXPECT_EQ(E_UNEXPECTED, GuardedCall([]() -> HRESULT { throw std::runtime_error("other"); }));
    EXPECT_EQ(E_UNEXPECTED, GuardedCall([]() -> HRESULT { throw 42; }));
}
