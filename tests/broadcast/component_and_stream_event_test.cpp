// AV component objects over the receiver's components, and stream event
// objects as self-contained copies of an event.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "objects/av_component.h"
#include "objects/stream_event.h"
#include "host/fixture.h"
#include "middleware/types.h"
#include "sim/receiver_sim.h"
#include "sim/sim.h"

namespace {

class ComponentTest : public OrvaneTest {
 protected:
  void SetUp() override {
    OrvaneTest::SetUp();
    npp_ = host::NewInstance(host::NewPage());
    parts_ = sim::ChannelComponents(0);
  }
  NPVariant Read(NPObject* o, const char* name) {
    NPVariant v = host::Void();
    EXPECT_TRUE(host::Get(npp_, o, name, &v)) << name;
    return v;
  }
  std::string Text(NPObject* o, const char* name) {
    NPVariant v = Read(o, name);
    std::string s = host::AsString(v);
    host::Release(&v);
    return s;
  }
  static void Drop(NPObject* o) { host::Funcs()->releaseobject(o); }
  NPP npp_ = nullptr;
  std::vector<MwHandle> parts_;  // video, audio eng, audio deu, subtitle
};

TEST_F(ComponentTest, PropertiesFailOrAreNullWhenMissingAndFlagsAreTrueOnlyForOne) {
  NPObject* video = AVComponentCreate(npp_, sim::Ref(parts_[0]));
  ASSERT_NE(nullptr, video);
  NPVariant v = Read(video, "aspectRatio");
  ASSERT_EQ(NPVariantType_Double, v.type);
  EXPECT_EQ(NPVariantType_Null, Read(video, "language").type) << "an empty language is no string";
  sim::Force("MwComponentGetTag", -1);
  EXPECT_FALSE(host::Get(npp_, video, "componentTag", &v));
  EXPECT_FALSE(host::Set(npp_, video, "pid", host::Int(1)));

  sim::Force("MwComponentIsEncrypted", 2);
  EXPECT_FALSE(Read(video, "encrypted").value.boolValue);
  sim::Force("MwComponentIsEncrypted", 1);
  EXPECT_TRUE(Read(video, "encrypted").value.boolValue);
  Drop(video);
}

TEST_F(ComponentTest, EveryCreateIsANewObjectOwningItsHandle) {
  NPObject* a = AVComponentCreate(npp_, sim::Ref(parts_[2]));
  NPObject* b = AVComponentCreate(npp_, sim::Ref(parts_[2]));
  EXPECT_NE(a, b);
  EXPECT_EQ(parts_[2], AVComponentGetHandle(b));
  EXPECT_EQ(2, sim::RefsOf(parts_[2]));
  Drop(a);
  Drop(b);
  EXPECT_EQ(0, sim::RefsOf(parts_[2]));

  // A failed creation leaves the handle with the caller.
  MwHandle h = sim::Ref(parts_[2]);
  host::FailRecordAllocation(1);
  EXPECT_EQ(nullptr, AVComponentCreate(npp_, h));
  host::FailAllocation(1);
  EXPECT_EQ(nullptr, AVComponentCreate(npp_, h));
  EXPECT_EQ(1, sim::RefsOf(parts_[2]));
  MwObjectRelease(h);
}

class StreamEventTest : public ComponentTest {
 protected:
  void SetUp() override {
    ComponentTest::SetUp();
    SEventInit();
  }
};

TEST_F(StreamEventTest, HoldsItsOwnCopyOfTheEvent) {
  std::string name = "chapter", data = "0a0b", text = "Chapter two";
  MwStreamEvent e{static_cast<uint32_t>(name.size()), name.data(), static_cast<uint32_t>(data.size()),
                  data.data(), static_cast<uint32_t>(text.size()), text.data(), 1};
  NPObject* o = SEventCreate(npp_, &e);
  ASSERT_NE(nullptr, o);
  name.assign(name.size(), 'x');
  data.assign(data.size(), 'x');
  text.assign(text.size(), 'x');
  EXPECT_EQ("chapter", Text(o, "name"));
  EXPECT_EQ("0a0b", Text(o, "data"));
  EXPECT_EQ("Chapter two", Text(o, "text"));
  EXPECT_EQ("trigger", Text(o, "status"));
  Drop(o);
}

TEST_F(StreamEventTest, AnyStatusButOneIsAnErrorAndEmptyTextsAreNull) {
  const char bytes[] = "abc";
  for (uint32_t status : {0u, 2u, 0xffffffffu}) {
    MwStreamEvent e{3, bytes, 0, nullptr, 0, bytes, status};
    NPObject* o = SEventCreate(npp_, &e);
    ASSERT_NE(nullptr, o);
    EXPECT_EQ("error", Text(o, "status")) << status;
    // Empty texts come out as Null, as every empty text the plug-in converts.
    EXPECT_EQ(NPVariantType_Null, Read(o, "data").type);
    EXPECT_EQ(NPVariantType_Null, Read(o, "text").type);
    Drop(o);
  }
}

TEST_F(StreamEventTest, FailuresLeaveNothingBehind) {
  const char bytes[] = "abc";
  MwStreamEvent e{3, bytes, 3, bytes, 3, bytes, 1};
  host::FailRecordAllocation(1);
  EXPECT_EQ(nullptr, SEventCreate(npp_, &e));
  host::FailAllocation(1);
  EXPECT_EQ(nullptr, SEventCreate(npp_, &e));
  EXPECT_EQ(nullptr, SEventCreate(npp_, nullptr));
}

}  // namespace
