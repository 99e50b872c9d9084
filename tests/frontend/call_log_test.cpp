// Argument formatting and planned failures shared by every stand-in.
#include <gtest/gtest.h>
#include "frontend/call_log.h"
#include "framework/bstr.h"
#include "framework/variant.h"

using tov::Bstr;
using tov::Variant;
using tovfe::ArgText;

TEST(ArgText, NullsEmptyAndScalars)
{
    EXPECT_EQ(L"<null>", ArgText(static_cast<BSTR>(nullptr)));
    EXPECT_EQ(L"<null>", ArgText(static_cast<const VARIANT*>(nullptr)));
    Bstr empty(L"");
    EXPECT_EQ(L"", ArgText(empty.Get())) << "an empty string is not a null one";
    Bstr embedded(std::wstring_view(L"a\0b", 3));
    EXPECT_EQ(std::wstring(L"a\0b", 3), ArgText(embedded.Get()));

    Variant v;
    EXPECT_EQ(L"<empty>", ArgText(&v));
    v = Variant::I4(-12);
    EXPECT_EQ(L"I4:-12", ArgText(&v));
    v.Clear();
    v.vt = VT_BOOL;
    v.boolVal = VARIANT_TRUE;
    EXPECT_EQ(L"BOOL:true", ArgText(&v));
    v.boolVal = VARIANT_FALSE;
    EXPECT_EQ(L"BOOL:false", ArgText(&v));
    v.vt = VT_DISPATCH;
    v.pdispVal = nullptr;
    EXPECT_EQ(L"DISPATCH:<null>", ArgText(&v));
    v.vt = VT_NULL;
    EXPECT_EQ(L"vt1", ArgText(&v));
    v.vt = VT_I2;
    EXPECT_EQ(L"vt2", ArgText(&v));
}

TEST(ArgText, ReferencesAreFollowedAndArraysGiveTheirSize)
{
    LONG number = 7;
    Bstr text(L"x");
    BSTR textValue = text.Get();
    VARIANT_BOOL flag = VARIANT_TRUE;
    Variant inner = Variant::I4(3);

    Variant ref;
    ref.vt = VT_BYREF | VT_I4;
    ref.plVal = &number;
    EXPECT_EQ(L"ref I4:7", ArgText(&ref));
    ref.vt = VT_BYREF | VT_BSTR;
    ref.pbstrVal = &textValue;
    EXPECT_EQ(L"ref BSTR:x", ArgText(&ref));
    ref.vt = VT_BYREF | VT_BOOL;
    ref.pboolVal = &flag;
    EXPECT_EQ(L"ref BOOL:true", ArgText(&ref));
    ref.vt = VT_BYREF | VT_VARIANT;
    ref.pvarVal = &inner;
    EXPECT_EQ(L"ref I4:3", ArgText(&ref));
    ref.pvarVal = nullptr;
    EXPECT_EQ(L"ref <null>", ArgText(&ref));

    SAFEARRAY* bytes = SafeArrayCreateVector(VT_UI1, 0, 5);
    ASSERT_NE(nullptr, bytes);
    Variant array;
    array.vt = VT_ARRAY | VT_UI1;
    array.parray = bytes;
    EXPECT_EQ(L"ARRAY:5 bytes", ArgText(&array));
    Variant arrayRef;
    arrayRef.vt = VT_BYREF | VT_ARRAY | VT_UI1;
    arrayRef.pparray = &array.parray;
    EXPECT_EQ(L"ref ARRAY:5 bytes", ArgText(&arrayRef));
}

TEST(ArgText, HexIsLowerCaseWithPrefix)
{
    EXPECT_EQ(L"0x1004a", tovfe::HexArg(0x1004A));
    EXPECT_EQ(L"0x0", tovfe::HexArg(0));
}

TEST(FailurePlan, FullTextWinsOverNameAndThrowingWinsOverFailing)
{
    tovfe::FailurePlan plan;
    const tovfe::Call v1{L"Advise", {L"DWebBrowserEvents"}};
    const tovfe::Call v2{L"Advise", {L"DWebBrowserEvents2"}};
    EXPECT_EQ(S_OK, plan.Outcome(v1));
    plan.Fail(L"Advise", E_FAIL);
    plan.Fail(L"Advise(DWebBrowserEvents2)", E_ACCESSDENIED);
    EXPECT_EQ(E_FAIL, plan.Outcome(v1));
    EXPECT_EQ(E_ACCESSDENIED, plan.Outcome(v2));
    plan.Throw(L"Advise(DWebBrowserEvents)");
    EXPECT_THROW(plan.Outcome(v1), std::runtime_error);
    EXPECT_EQ(E_ACCESSDENIED, plan.Outcome(v2));
    plan.Clear();
    EXPECT_EQ(S_OK, plan.Outcome(v1));
}
