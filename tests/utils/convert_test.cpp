// Conversions between middleware values and script values.
#include <gtest/gtest.h>

#include "host/fixture.h"
#include "npapi/browser.h"
#include "sim/sim.h"
#include "utils/convert.h"

namespace {

using ConvertTest = OrvaneTest;

TEST_F(ConvertTest, TextsBecomeBrowserOwnedStringsOrNull) {
  NPVariant v;
  NP_UtilsStringToResult(0, "ignored", &v);
  EXPECT_EQ(NPVariantType_Null, v.type);
  NP_UtilsStringToResult(1, "7x", &v);
  EXPECT_EQ("7", host::AsString(v));
  host::Release(&v);
  NP_UtilsStringToResult(5, "ab\0cd", &v);  // cut at an embedded NUL
  EXPECT_EQ(2u, v.value.stringValue.UTF8Length);
  host::Release(&v);
  host::FailAllocation(1);
  NP_UtilsStringToResult(3, "abc", &v);
  EXPECT_EQ(NPVariantType_Null, v.type);
}

TEST_F(ConvertTest, MiddlewareStringsAreReleasedOnEveryPath) {
  NPVariant v;
  NP_UtilsHbbtvStringToResult(sim::NewString("Orvane One"), &v);
  EXPECT_EQ("Orvane One", host::AsString(v));
  EXPECT_EQ(10u, v.value.stringValue.UTF8Length);
  host::Release(&v);
  NP_UtilsHbbtvStringToResult(sim::NewInvalidString(), &v);
  EXPECT_EQ(NPVariantType_Null, v.type);
  host::FailAllocation(1);
  NP_UtilsHbbtvStringToResult(sim::NewString("x"), &v);
  EXPECT_EQ(NPVariantType_Null, v.type);
  NP_UtilsHbbtvStringToResult(0, &v);
  EXPECT_EQ(NPVariantType_Null, v.type);
  EXPECT_EQ(0u, sim::CountCalls("MwObjectRelease") - 3);  // the null handle is not released
}

TEST_F(ConvertTest, NumbersFromVariants) {
  uint32_t out = 99;
  NPVariant d = host::Double(-3.7);
  EXPECT_EQ(1, NP_UtilsGetU32BIT(&d, &out));
  EXPECT_EQ(0u, out);
  d = host::Double(3.9);
  NP_UtilsGetU32BIT(&d, &out);
  EXPECT_EQ(3u, out);
  d = host::Double(1e12);
  NP_UtilsGetU32BIT(&d, &out);
  EXPECT_EQ(4294967295u, out);
  NPVariant i = host::Int(-1);
  EXPECT_EQ(1, NP_UtilsGetU32BIT(&i, &out));
  EXPECT_EQ(4294967295u, out);
  out = 5;
  for (NPVariant other : {host::Str("12"), host::Bool(true), host::Null(), host::Void()}) {
    EXPECT_EQ(0, NP_UtilsGetU32BIT(&other, &out));
    EXPECT_EQ(5u, out);
  }
  EXPECT_EQ(1, NP_UtilsStringIsNumeric(""));
  EXPECT_EQ(1, NP_UtilsStringIsNumeric("0123"));
  EXPECT_EQ(0, NP_UtilsStringIsNumeric("12a"));
  EXPECT_EQ(0, NP_UtilsStringIsNumeric("-1"));
}

TEST_F(ConvertTest, ArraysAreMadeByThePagesArrayConstructor) {
  NPP npp = host::NewInstance(host::NewPage());
  const int32_t values[] = {0x1CD, -2, 7};
  NPVariant v = host::Void();
  NP_UtilsArrayToResult(npp, values, 3, &v);
  ASSERT_EQ(NPVariantType_Object, v.type);
  EXPECT_EQ((std::vector<int32_t>{0x1CD, -2, 7}), host::ArrayValues(v.value.objectValue));
  host::Release(&v);
  NP_UtilsArrayToResult(npp, values, 0, &v);
  ASSERT_EQ(NPVariantType_Object, v.type);  // empty, not Null
  EXPECT_TRUE(host::ArrayValues(v.value.objectValue).empty());
  host::Release(&v);
}

}  // namespace
