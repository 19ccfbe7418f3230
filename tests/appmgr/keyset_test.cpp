// Private data (keyset, current channel, free memory) and keysets.
#include <gtest/gtest.h>

#include "appmgr_fixture.h"
#include "sim/receiver_sim.h"

namespace {

class PrivateDataTest : public AppMgrTest {
 protected:
  void SetUp() override {
    AppMgrTest::SetUp();
    OpenManager();
    app_ = OwnerApp();
    ASSERT_NE(nullptr, app_);
    ASSERT_TRUE(Read(app_, "privateData"));
    data_ = Take();
    ASSERT_NE(nullptr, data_);
  }
  void TearDown() override {
    Drop(data_);
    Drop(app_);
    AppMgrTest::TearDown();
  }
  NPObject* NewKeyset() {
    EXPECT_TRUE(Read(data_, "keyset"));
    return Take();
  }
  // A property's value, or with `args` a method's result.
  int32_t IntOf(const char* name, NPObject* o, std::vector<NPVariant> args = {}) {
    EXPECT_TRUE(args.empty() ? Read(o, name) : Call(o, name, args)) << name;
    EXPECT_EQ(NPVariantType_Int32, result_.type) << name;
    return result_.value.intValue;
  }
  NPObject* app_ = nullptr;
  NPObject* data_ = nullptr;
};

TEST_F(PrivateDataTest, FreeMemoryAndCurrentChannel) {
  {
    sim::SetFreeMemory(12345678);
  }
  EXPECT_EQ(12345678, IntOf("getFreeMem", data_, {host::Int(1), host::Int(2)}));

  // Nothing presented: a failed read, not a null value.
  sim::PresentNothing();
  EXPECT_FALSE(Read(data_, "currentChannel"));
  EXPECT_EQ(NPVariantType_Null, result_.type);
  EXPECT_FALSE(host::Set(npp_, data_, "keyset", host::Null()));
  EXPECT_FALSE(Call(data_, "getKeyset"));
}

TEST_F(PrivateDataTest, KeysetConstantsAndMasks) {
  NPObject* keys = NewKeyset();
  ASSERT_NE(nullptr, keys);
  EXPECT_EQ(0, IntOf("value", keys));

  // The grant may be smaller than the request.
  {
    sim::SetKeyGroups(0x13);  // RED, GREEN, NAVIGATION
  }
  EXPECT_EQ(0x13, IntOf("setValue", keys, {host::Int(0x1f)}));
  EXPECT_EQ(0x13, IntOf("value", keys));

  // Numbers are truncated toward zero; other values request nothing.
  EXPECT_EQ(3, IntOf("setValue", keys, {host::Double(3.9)}));
  EXPECT_EQ("3", sim::CallsTo("MwKeysetSetValue").back().args[1]);
  EXPECT_TRUE(Call(keys, "setValue", {host::Str("17")}));
  EXPECT_EQ("0", sim::CallsTo("MwKeysetSetValue").back().args[1]);

  // value only changes through setValue.
  EXPECT_TRUE(Call(keys, "setValue", {host::Int(1)}));
  EXPECT_FALSE(host::Set(npp_, keys, "value", host::Int(2)));
  EXPECT_EQ(1, IntOf("value", keys));
  Drop(keys);
}

TEST_F(PrivateDataTest, OtherKeysIsAScriptArray) {
  {
    sim::SetOtherKeys({0x1cd, 0x1ce, -7});
  }
  NPObject* keys = NewKeyset();
  ASSERT_TRUE(Read(keys, "otherKeys"));
  ASSERT_EQ(NPVariantType_Object, result_.type);
  EXPECT_EQ((std::vector<int32_t>{0x1cd, 0x1ce, -7}), host::ArrayValues(result_.value.objectValue));
  Drop(keys);
}

TEST_F(PrivateDataTest, KeysetFailures) {
  sim::Force("MwPrivateDataGetKeyset", 0);
  EXPECT_FALSE(Read(data_, "keyset"));
  EXPECT_EQ(NPVariantType_Null, result_.type);
  sim::Unforce("MwPrivateDataGetKeyset");

  // No memory for the keyset or the channel object: a failed read, handles given back.
  host::FailRecordAllocation(1);
  EXPECT_FALSE(Read(data_, "keyset"));
  host::FailRecordAllocation(1);
  EXPECT_FALSE(Read(data_, "currentChannel"));
  host::FailAllocation(1);
  EXPECT_FALSE(Read(data_, "keyset"));
}

}  // namespace
