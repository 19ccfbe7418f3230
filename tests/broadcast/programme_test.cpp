// Programme objects: the broadcast object's programme list, one object per
// programme handle and who releases the second reference, Null versus
// undefined, SI descriptors.
#include <gtest/gtest.h>

#include <string>

#include "broadcast/broadcast_fixture.h"
#include "sim/receiver_sim.h"
#include "objects/programme.h"
#include "middleware/recording.h"
#include "objects/scheduled_recording.h"

namespace {

void Drop(NPObject* o) { host::Funcs()->releaseobject(o); }

NPObject* Item(NPP npp, NPObject* collection, int32_t index) {
  NPVariant v = host::Void();
  EXPECT_TRUE(host::Invoke(npp, collection, "item", {host::Int(index)}, &v));
  return v.type == NPVariantType_Object ? v.value.objectValue : nullptr;
}

TEST_F(BroadcastTest, ProgrammesOfTheBoundChannelAreProgrammeObjects) {
  Call("bindToCurrentChannel");
  Settle();
  NPVariant list = Get("programmes");
  ASSERT_EQ(NPVariantType_Object, list.type);
  NPObject* now = Item(npp_, list.value.objectValue, 0);
  NPObject* next = Item(npp_, list.value.objectValue, 1);
  ASSERT_TRUE(now && next);
  EXPECT_EQ("Orvane One Now", Text(now, "name"));
  EXPECT_EQ("Orvane One Next", Text(next, "name"));
  NPVariant start = host::Void();
  EXPECT_TRUE(host::Get(npp_, now, "startTime", &start));
  EXPECT_EQ(1795000000 - 600, start.value.intValue);
  // Reading the element again shares the object; the list lends the
  // programme the plug-in holds, and nothing is released.
  size_t releases = sim::CountCalls("MwObjectRelease");
  NPObject* again = Item(npp_, list.value.objectValue, 0);
  EXPECT_EQ(now, again);
  EXPECT_EQ(1, sim::RefsOf(ProgrammeGetHandle(now)));
  EXPECT_EQ(releases, sim::CountCalls("MwObjectRelease"));
  for (NPObject* o : {again, now, next}) Drop(o);
  host::Release(&list);
}

class ProgrammeTest : public OrvaneTest {
 protected:
  void SetUp() override {
    OrvaneTest::SetUp();
    npp_ = host::NewInstance(host::NewPage());
    now_ = sim::ChannelProgrammes(0)[0];
  }
  NPVariant Read(NPObject* o, const char* name, bool expect_ok = true) {
    NPVariant v = host::Void();
    EXPECT_EQ(expect_ok, host::Get(npp_, o, name, &v)) << name;
    return v;
  }
  NPVariant Descriptors(NPObject* o, std::vector<NPVariant> args, bool expect_ok = true) {
    NPVariant v = host::Void();
    EXPECT_EQ(expect_ok, host::Invoke(npp_, o, "getSIDescriptors", args, &v));
    return v;
  }
  std::string LastExtension() { return sim::CallsTo("MwProgrammeGetSIDescriptors").back().args[2]; }
  NPP npp_ = nullptr;
  MwHandle now_ = 0;
};

TEST_F(ProgrammeTest, SameHandleSharesTheObjectAndTheCallerKeepsItsReference) {
  NPObject* a = ProgrammeCreate(npp_, sim::Ref(now_));  // not held: the record takes it
  EXPECT_EQ(a, ProgrammeCreate(npp_, now_));            // held: borrowed for the call
  EXPECT_EQ(1, sim::RefsOf(now_)) << "the plug-in holds one reference";
  EXPECT_EQ(2u, host::RefCount(a));
  Drop(a);
  Drop(a);
  EXPECT_EQ(0, sim::RefsOf(now_)) << "deallocation releases the programme";
  // No object: the reference the new record would have taken is let go.
  host::FailRecordAllocation(1);
  EXPECT_EQ(nullptr, ProgrammeCreate(npp_, sim::Ref(now_)));
  EXPECT_EQ(0, sim::RefsOf(now_));
}

TEST_F(ProgrammeTest, MissingRecordingIsUndefinedMissingListIsNullAndFails) {
  NPObject* p = ProgrammeCreate(npp_, sim::Ref(now_));
  ASSERT_NE(nullptr, p);
  EXPECT_EQ(NPVariantType_Void, Read(p, "recording").type);
  NPVariant flag = Read(p, "hasRecording");
  EXPECT_EQ(NPVariantType_Bool, flag.type);
  EXPECT_FALSE(flag.value.boolValue);

  size_t held = sim::HeldHandles();
  sim::Force("MwProgrammeGetGenre", 0);
  EXPECT_EQ(NPVariantType_Null, Read(p, "genre", false).type);
  host::FailRecordAllocation(1);  // the collection's record
  EXPECT_EQ(NPVariantType_Null, Read(p, "audioLanguages", false).type);
  EXPECT_EQ(held, sim::HeldHandles()) << "the list went with the failed collection";

  // Once scheduled, the programme reads its recording.
  MwHandle scheduler = MwRecordingSchedulerOpen();
  MwHandle recording = MwRecSchedRecord(scheduler, now_);
  NPVariant r = Read(p, "recording");
  ASSERT_EQ(NPVariantType_Object, r.type);
  EXPECT_EQ(recording, ScheduledRecordingGetHandle(r.value.objectValue));
  host::Release(&r);
  MwObjectRelease(recording);
  MwObjectRelease(scheduler);
  EXPECT_FALSE(host::Set(npp_, p, "name", host::Str("x")));
  Drop(p);
}

TEST_F(ProgrammeTest, DescriptorsByTagWithAndWithoutAnExtension) {
  NPObject* p = ProgrammeCreate(npp_, sim::Ref(now_));
  ASSERT_NE(nullptr, p);
  NPVariant d = Descriptors(p, {host::Int(0x54)});
  ASSERT_EQ(NPVariantType_Object, d.type);
  NPVariant text = host::Void();
  EXPECT_TRUE(host::GetIndex(npp_, d.value.objectValue, 0, &text));
  EXPECT_EQ("content:Drama", host::AsString(text));
  host::Release(&text);
  host::Release(&d);
  EXPECT_EQ("-1", LastExtension());
  // An unreadable extension counts as none given.
  d = Descriptors(p, {host::Double(84.0), host::Str("x")});
  EXPECT_EQ(NPVariantType_Object, d.type);
  EXPECT_EQ("-1", LastExtension());
  host::Release(&d);
  // No descriptors with that extension: Null, and the call still succeeds.
  EXPECT_EQ(NPVariantType_Null, Descriptors(p, {host::Int(0x54), host::Int(2)}).type);
  EXPECT_EQ("2", LastExtension());
  size_t calls = sim::CountCalls("MwProgrammeGetSIDescriptors");
  for (auto args : std::vector<std::vector<NPVariant>>{{}, {host::Str("84")}, {host::Int(1), host::Int(2), host::Int(3)}})
    Descriptors(p, args, false);
  EXPECT_EQ(calls, sim::CountCalls("MwProgrammeGetSIDescriptors"));
  Drop(p);
}

}  // namespace
