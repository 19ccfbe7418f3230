// The channel configuration over the simulator's default line-up: its
// channel list and genres as collections, and their lifetimes.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "objects/channel.h"
#include "objects/channel_config.h"
#include "host/fixture.h"
#include "sim/channel_sim.h"
#include "sim/sim.h"

namespace {

// Name and ccid identify a channel here; its triplet is checked through the lookups.
struct Expected {
  const char* name;
  const char* ccid;
};
const Expected kLineUp[] = {{"Orvane One", "ccid:dvbt.1"}, {"Orvane Two", "ccid:dvbt.2"},
                            {"Orvane News", "ccid:dvbt.3"}, {"Orvane Radio", "ccid:dvbt.4"}};

class ChannelConfigTest : public OrvaneTest {
 protected:
  void SetUp() override {
    OrvaneTest::SetUp();
    npp_ = host::NewInstance(host::NewPage());
  }
  NPObject* Collection(NPObject* o, const char* name) {
    NPVariant v = host::Void();
    EXPECT_TRUE(host::Get(npp_, o, name, &v)) << name;
    EXPECT_EQ(NPVariantType_Object, v.type) << name;
    return v.type == NPVariantType_Object ? v.value.objectValue : nullptr;
  }
  NPVariant Call(NPObject* o, const char* method, std::vector<NPVariant> args) {
    NPVariant r = host::Void();
    EXPECT_TRUE(host::Invoke(npp_, o, method, args, &r)) << method;
    return r;
  }
  int32_t Int(NPObject* o, const char* name) {
    NPVariant v = host::Void();
    EXPECT_TRUE(host::Get(npp_, o, name, &v)) << name;
    return v.type == NPVariantType_Int32 ? v.value.intValue : -99999;
  }
  std::string Text(NPObject* o, const char* name) {
    NPVariant v = host::Void();
    EXPECT_TRUE(host::Get(npp_, o, name, &v)) << name;
    return Text(v);
  }
  std::string Text(NPVariant v) {
    std::string s = host::AsString(v);
    host::Release(&v);
    return s;
  }
  void ExpectChannel(NPVariant v, const Expected& e) {
    ASSERT_EQ(NPVariantType_Object, v.type) << e.name;
    NPObject* ch = v.value.objectValue;
    EXPECT_EQ(e.name, Text(ch, "name"));
    EXPECT_EQ(e.ccid, Text(ch, "ccid"));
    host::Release(&v);
  }
  static void Drop(NPObject* o) { host::Funcs()->releaseobject(o); }
  NPP npp_ = nullptr;
};

TEST_F(ChannelConfigTest, ReadsTheDefaultLineUpAndGenres) {
  NPObject* config = ChannelConfigCreate(npp_, sim::NewChannelConfig());
  ASSERT_NE(nullptr, config);

  NPObject* list = Collection(config, "channelList");
  ASSERT_EQ(4, Int(list, "length"));
  for (int32_t i = 0; i < 4; i++) ExpectChannel(Call(list, "item", {host::Int(i)}), kLineUp[i]);

  ExpectChannel(Call(list, "getChannel", {host::Str("ccid:dvbt.3")}), kLineUp[2]);
  EXPECT_EQ(NPVariantType_Null, Call(list, "getChannel", {host::Str("ccid:dvbt.9")}).type);
  ExpectChannel(Call(list, "getChannelByTriplet", {host::Int(8468), host::Int(4102), host::Int(4352)}),
                kLineUp[3]);
  ExpectChannel(Call(list, "getChannelByTriplet", {host::Double(8468), host::Null(), host::Int(4228)}),
                kLineUp[1]);
  EXPECT_EQ(NPVariantType_Null,
            Call(list, "getChannelByTriplet", {host::Int(8468), host::Int(4101), host::Int(4228)}).type);

  NPObject* genres = Collection(config, "genres");
  ASSERT_EQ(4, Int(genres, "length"));
  const char* expected[] = {"Drama", "Comedy", "News", "Music"};
  for (int32_t i = 0; i < 4; i++) EXPECT_EQ(expected[i], Text(Call(genres, "item", {host::Int(i)})));
  EXPECT_EQ(NPVariantType_Void, Call(genres, "item", {host::Int(4)}).type);
  for (NPObject* o : {genres, list, config}) Drop(o);
}

TEST_F(ChannelConfigTest, CollectionsOutliveTheConfiguration) {
  NPObject* config = ChannelConfigCreate(npp_, sim::NewChannelConfig());
  NPObject* a = Collection(config, "channelList");
  NPObject* b = Collection(config, "channelList");
  EXPECT_NE(a, b) << "every read is a new collection";
  EXPECT_EQ(2u, sim::CountCalls("MwChannelConfigGetChannelList"));
  NPObject* genres = Collection(config, "genres");
  Drop(config);
  EXPECT_EQ(1u, sim::CountCalls("MwObjectRelease")) << "only the configuration went";

  ExpectChannel(Call(b, "getChannel", {host::Str("ccid:dvbt.1")}), kLineUp[0]);
  EXPECT_EQ("News", Text(Call(genres, "item", {host::Int(2)})));
  for (NPObject* o : {a, b, genres}) Drop(o);
}

TEST_F(ChannelConfigTest, MissingHandlesAndListsAndLookups) {
  MwHandle handle = sim::NewChannelConfig();
  NPObject* config = ChannelConfigCreate(npp_, handle);
  NPObject* second = ChannelConfigCreate(npp_, sim::Ref(handle));
  EXPECT_NE(config, second) << "no sharing for configurations";
  EXPECT_EQ(second, ChannelConfigFindNPAPIObj(handle)) << "the newest first";
  ChannelConfigRecord stranger{};
  FreeChanconfigHandle(&stranger);  // not on the list: left alone

  NPVariant v = host::Int(7);
  sim::Force("MwChannelConfigGetChannelList", 0);
  EXPECT_FALSE(host::Get(npp_, config, "channelList", &v));
  EXPECT_EQ(NPVariantType_Null, v.type);
  host::FailRecordAllocation(1);
  EXPECT_FALSE(host::Get(npp_, config, "genres", &v)) << "no collection could be made";
  EXPECT_EQ(NPVariantType_Null, v.type);
  for (NPObject* o : {config, second}) Drop(o);
  EXPECT_EQ(0, sim::RefsOf(handle));

  // A configuration that cannot be made gives its handle back.
  host::FailRecordAllocation(1);
  EXPECT_EQ(nullptr, ChannelConfigCreate(npp_, sim::NewChannelConfig()));
  host::FailAllocation(1);
  EXPECT_EQ(nullptr, ChannelConfigCreate(npp_, sim::NewChannelConfig()));
}

}  // namespace
