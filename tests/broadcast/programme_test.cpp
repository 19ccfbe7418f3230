// Programme objects: the broadcast object's programme list, one object per
// programme handle and who releases the second reference, Null versus
// undefined, SI descriptors.
#include <gtest/gtest.h>

#include <string>

#include "broadcast/broadcast_fixture.h"
#include "broadcast/programme.h"
#include "collection/collection.h"
#include "middleware/recording.h"
#include "recording/scheduled_recording.h"
#include "sim/receiver.h"

namespace {

void Drop(NPObject* o) { host::Funcs()->releaseobject(o); }

NPObject* Item(NPP npp, NPObject* collection, int32_t index) {
  NPVariant v = host::Void();
  EXPECT_TRUE(host::Invoke(npp, collection, "item", {host::Int(index)}, &v));
  EXPECT_EQ(NPVariantType_Object, v.type);
  return v.type == NPVariantType_Object ? v.value.objectValue : nullptr;
}

int32_t Int(NPP npp, NPObject* o, const char* name) {
  NPVariant v = host::Void();
  EXPECT_TRUE(host::Get(npp, o, name, &v)) << name;
  EXPECT_EQ(NPVariantType_Int32, v.type) << name;
  return v.value.intValue;
}

TEST_F(BroadcastTest, ProgrammesOfTheBoundChannelAreProgrammeObjects) {
  Call("bindToCurrentChannel");
  Settle();
  NPVariant list = Get("programmes");
  ASSERT_EQ(NPVariantType_Object, list.type);
  NPObject* programmes = list.value.objectValue;
  NPObject* now = Item(npp_, programmes, 0);
  NPObject* next = Item(npp_, programmes, 1);
  ASSERT_TRUE(now && next);
  EXPECT_EQ("Orvane One Now", Text(now, "name"));
  EXPECT_EQ("Orvane One Next", Text(next, "name"));
  EXPECT_EQ("ccid:dvbt.1", Text(now, "channelID"));
  EXPECT_EQ(1795000000 - 600, Int(npp_, now, "startTime"));
  EXPECT_EQ(1800, Int(npp_, now, "duration"));
  EXPECT_EQ(1795000000 + 1200, Int(npp_, next, "startTime"));

  NPVariant genre = host::Void();
  ASSERT_TRUE(host::Get(npp_, now, "genre", &genre));
  ASSERT_EQ(NPVariantType_Object, genre.type);
  NPVariant first = host::Void();
  EXPECT_TRUE(host::GetIndex(npp_, genre.value.objectValue, 0, &first));
  EXPECT_EQ("Drama", host::AsString(first));
  host::Release(&first);
  host::Release(&genre);

  // The present programme is rated 12: a rating collection of one.
  NPVariant ratings = host::Void();
  ASSERT_TRUE(host::Get(npp_, now, "parentalRatings", &ratings));
  EXPECT_EQ(1, Int(npp_, ratings.value.objectValue, "length"));
  host::Release(&ratings);

  // Reading the element again shares the object; the list's second
  // reference to the programme is given back at once.
  NPObject* again = Item(npp_, programmes, 0);
  EXPECT_EQ(now, again);
  EXPECT_EQ(2u, host::RefCount(now));
  EXPECT_EQ(1, sim::RefsOf(ProgrammeGetHandle(now)));
  Drop(again);
  Drop(now);
  Drop(next);
  host::Release(&list);
}

class ProgrammeTest : public OrvaneTest {
 protected:
  void SetUp() override {
    OrvaneTest::SetUp();
    npp_ = host::NewInstance(host::NewPage());
    std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
    now_ = sim::Find<sim::ChannelObject>(sim::Rx().channels[0])->programmes[0];
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
  NPObject* a = ProgrammeCreate(npp_, sim::Ref(now_));
  NPObject* b = ProgrammeCreate(npp_, sim::Ref(now_));
  ASSERT_NE(nullptr, a);
  EXPECT_EQ(a, b);
  EXPECT_EQ(2u, host::RefCount(a));
  EXPECT_EQ(2, sim::RefsOf(now_)) << "the second reference stays with the caller";
  MwObjectRelease(now_);

  // The taking variant gives a shared object's extra reference back itself.
  NPObject* c = ProgrammeCreateTakingHandle(npp_, sim::Ref(now_));
  EXPECT_EQ(a, c);
  EXPECT_EQ(1, sim::RefsOf(now_));
  EXPECT_EQ(now_, ProgrammeGetHandle(a));
  EXPECT_EQ(0u, ProgrammeGetHandle(host::Window(host::PageOf(npp_))));
  Drop(a);
  Drop(b);
  Drop(c);
  EXPECT_EQ(0, sim::RefsOf(now_)) << "deallocation releases the programme";
  EXPECT_EQ(0u, host::LiveRecords());

  // No object: ProgrammeCreate leaves the handle with the caller, the taking variant releases it.
  host::FailRecordAllocation(1);
  MwHandle kept = sim::Ref(now_);
  EXPECT_EQ(nullptr, ProgrammeCreate(npp_, kept));
  EXPECT_EQ(1, sim::RefsOf(now_));
  MwObjectRelease(kept);
  host::FailAllocation(1);
  EXPECT_EQ(nullptr, ProgrammeCreateTakingHandle(npp_, sim::Ref(now_)));
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
  ASSERT_NE(0u, recording);
  NPVariant r = Read(p, "recording");
  ASSERT_EQ(NPVariantType_Object, r.type);
  EXPECT_EQ(recording, ScheduledRecordingGetHandle(r.value.objectValue));
  EXPECT_TRUE(Read(p, "hasRecording").value.boolValue);
  host::Release(&r);
  MwObjectRelease(recording);
  MwObjectRelease(scheduler);

  EXPECT_FALSE(host::Set(npp_, p, "name", host::Str("x")));
  Read(p, "noSuchProperty", false);
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
  Descriptors(p, {}, false);
  Descriptors(p, {host::Str("84")}, false);
  Descriptors(p, {host::Int(1), host::Int(2), host::Int(3)}, false);
  EXPECT_EQ(calls, sim::CountCalls("MwProgrammeGetSIDescriptors"));
  Drop(p);
}

}  // namespace
