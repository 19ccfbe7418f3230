// Channel objects: one object per channel handle, handle ownership, the
// property table over the simulated receiver's channels.
#include <gtest/gtest.h>

#include <string>

#include "objects/channel.h"
#include "host/fixture.h"
#include "sim/receiver_sim.h"
#include "sim/sim.h"

namespace {

class ChannelTest : public OrvaneTest {
 protected:
  void SetUp() override {
    OrvaneTest::SetUp();
    npp_ = host::NewInstance(host::NewPage());
    first_ = sim::Channels()[0];
  }
  NPVariant Read(NPObject* o, const char* name) {
    NPVariant v = host::Void();
    EXPECT_TRUE(host::Get(npp_, o, name, &v)) << name;
    return v;
  }
  bool Bool(NPObject* o, const char* name) {
    NPVariant v = Read(o, name);
    EXPECT_EQ(NPVariantType_Bool, v.type) << name;
    return v.value.boolValue;
  }
  std::string Text(NPObject* o, const char* name) {
    NPVariant v = Read(o, name);
    EXPECT_EQ(NPVariantType_String, v.type) << name;
    std::string s = host::AsString(v);
    host::Release(&v);
    return s;
  }
  static void Drop(NPObject* o) { host::Funcs()->releaseobject(o); }
  NPP npp_ = nullptr;
  MwHandle first_ = 0;
};

TEST_F(ChannelTest, SecondCreateSharesTheObjectAndGivesItsHandleBack) {
  NPObject* a = ChannelCreate(npp_, sim::Ref(first_));
  NPObject* b = ChannelCreate(npp_, sim::Ref(first_));
  ASSERT_NE(nullptr, a);
  EXPECT_EQ(a, b);
  EXPECT_EQ(2u, host::RefCount(a));
  EXPECT_EQ(1, sim::RefsOf(first_)) << "the second reference was released at once";
  EXPECT_EQ(first_, ChannelGetHandle(a));

  Drop(b);
  EXPECT_EQ(1, sim::RefsOf(first_));
  Drop(a);
  EXPECT_EQ(0, sim::RefsOf(first_)) << "deallocation releases the channel";
  EXPECT_EQ(0u, host::LiveRecords());

  // After that, the handle gets a fresh object.
  NPObject* c = ChannelCreate(npp_, sim::Ref(first_));
  ASSERT_NE(nullptr, c);
  EXPECT_EQ(1u, host::RefCount(c));
  Drop(c);
}

TEST_F(ChannelTest, FlagsAreNonZeroAndMissingValuesFailOrAreNull) {
  NPObject* ch = ChannelCreate(npp_, sim::Ref(first_));
  ASSERT_NE(nullptr, ch);
  EXPECT_EQ("dsd:8468.4100", Text(ch, "dsd"));
  // Flags are booleans of "non-zero"; the running status is no DVB code.
  sim::Force("MwChannelGetRunningStatus", 4);
  sim::Force("MwChannelIsLocked", 2);
  EXPECT_TRUE(Bool(ch, "runningStatus"));
  EXPECT_TRUE(Bool(ch, "locked"));

  NPVariant v = host::Void();
  sim::Force("MwChannelGetMajorChannel", -1);
  EXPECT_FALSE(host::Get(npp_, ch, "majorChannel", &v)) << "no major channel: the read fails";
  sim::ForceString("MwChannelGetName", nullptr);
  EXPECT_EQ(NPVariantType_Null, Read(ch, "name").type);
  EXPECT_FALSE(host::Set(npp_, ch, "name", host::Str("x")));
  Drop(ch);

  // Anything but a channel has handle 0; a channel without a handle reads nothing.
  EXPECT_EQ(0u, ChannelGetHandle(host::Window(host::PageOf(npp_))));
  NPObject* empty = ChannelCreate(npp_, 0);
  ASSERT_NE(nullptr, empty);
  EXPECT_FALSE(host::Get(npp_, empty, "TYPE_TV", &v));
  Drop(empty);
}

TEST_F(ChannelTest, CreationFailuresReleaseTheHandle) {
  host::FailRecordAllocation(1);
  EXPECT_EQ(nullptr, ChannelCreate(npp_, sim::Ref(first_)));
  EXPECT_EQ(0, sim::RefsOf(first_));
  host::FailAllocation(1);
  EXPECT_EQ(nullptr, ChannelCreate(npp_, sim::Ref(first_)));
  EXPECT_EQ(0, sim::RefsOf(first_));
  EXPECT_EQ(0u, host::LiveRecords());
}

}  // namespace
