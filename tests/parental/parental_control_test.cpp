// The parental control manager and its rating schemes.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/fixture.h"
#include "parental/parental_control.h"
#include "sim/description.h"
#include "sim/sim.h"

namespace {

using ParentalControlTest = ScriptTest;

TEST_F(ParentalControlTest, SchemesWithTheirValuesIconsAndThreshold) {
  ASSERT_TRUE(sim::LoadDescriptionText(R"({"ratingSchemes": [
      {"name": "dvb-si", "values": ["12", "16"], "icons": ["i12", "i16"], "threshold": "16"},
      {"name": "bare", "values": ["A"]}]})", nullptr));
  npp_ = NewPlugin("application/oipfparentalcontrolmanager");
  NPObject* manager = Scriptable(npp_);
  NPObject* schemes = Get(manager, "parentalRatingSchemes").value.objectValue;
  ASSERT_NE(nullptr, schemes);
  EXPECT_EQ(2, Get(schemes, "length").value.intValue);
  NPObject* dvb = Call(schemes, "item", {host::Int(0)}).value.objectValue;
  ASSERT_NE(nullptr, dvb);
  EXPECT_EQ("dvb-si", host::AsString(Get(dvb, "name")));
  EXPECT_EQ(1, Call(dvb, "indexOf", {host::Str("16")}).value.intValue);
  EXPECT_EQ("i12", host::AsString(Call(dvb, "iconUrl", {host::Int(0)})));
  NPObject* threshold = Get(dvb, "threshold").value.objectValue;
  ASSERT_NE(nullptr, threshold);
  EXPECT_EQ(16, Get(threshold, "value").value.intValue);

  bool ok = true;
  Call(dvb, "indexOf", {}, &ok);
  EXPECT_FALSE(ok) << "indexOf without its argument fails";
  Call(dvb, "item", {host::Str("x")}, &ok);
  EXPECT_FALSE(ok) << "an index that is no number fails";
  NPObject* bare = Call(schemes, "item", {host::Int(1)}).value.objectValue;
  Get(bare, "threshold", &ok);
  EXPECT_FALSE(ok) << "no threshold: a failed read, not Null";
  EXPECT_FALSE(host::Set(npp_, dvb, "name", host::Str("x")));
}

TEST_F(ParentalControlTest, TheManagersHandleGoesWithItsObject) {
  npp_ = NewPlugin("application/oipfparentalcontrolmanager");
  ParentalControlRecord* r = static_cast<ParentalControlRecord*>(npp_->pdata);
  NPObject* manager = host::Funcs()->retainobject(Scriptable(npp_));
  DestroyPlugin(npp_);  // the browser's reference goes; the test's keeps the object
  bool ok = true;
  Get(manager, "parentalRatingSchemes", &ok);
  EXPECT_FALSE(ok) << "no record";
  host::Funcs()->releaseobject(manager);

  // A record that is not on the list stays allocated.
  ParentalControlRecord stranger{};
  OipfParentalControlManagerDestroy(&stranger);
  (void)r;

  sim::Force("MwParentalControlOpen", 0);
  npp_ = NewPlugin("application/oipfparentalcontrolmanager");
  Get(Scriptable(npp_), "parentalRatingSchemes", &ok);
  EXPECT_FALSE(ok) << "without a middleware handle the only property fails";
}

}  // namespace
