// Scheduled recording objects over the simulated scheduler: reads, the
// writable paddings and texts, the id-guarded recording times, objects
// without a recording, kind-6 collections.
#include <gtest/gtest.h>

#include <string>

#include "objects/channel.h"
#include "objects/collection.h"
#include "host/fixture.h"
#include "middleware/recording.h"
#include "objects/scheduled_recording.h"
#include "sim/recording_sim.h"
#include "sim/receiver_sim.h"
#include "sim/sim.h"

namespace {

class ScheduledRecordingTest : public OrvaneTest {
 protected:
  void SetUp() override {
    OrvaneTest::SetUp();
    npp_ = host::NewInstance(host::NewPage());
    channel_ = sim::Channels()[0];
    MwHandle now = sim::ChannelProgrammes(0)[0];
    scheduler_ = MwRecordingSchedulerOpen();
    handle_ = MwRecSchedRecord(scheduler_, now);
    recording_ = ScheduledRecordingCreate(npp_, handle_);
    ASSERT_NE(nullptr, recording_);
  }
  void TearDown() override {
    if (recording_) Drop(recording_);
    MwObjectRelease(scheduler_);
    OrvaneTest::TearDown();
  }
  static void Drop(NPObject* o) { host::Funcs()->releaseobject(o); }
  NPVariant Read(const char* name, bool expect_ok = true, NPObject* o = nullptr) {
    NPVariant v = host::Void();
    EXPECT_EQ(expect_ok, host::Get(npp_, o ? o : recording_, name, &v)) << name;
    return v;
  }
  int32_t Int(const char* name) {
    NPVariant v = Read(name);
    EXPECT_EQ(NPVariantType_Int32, v.type) << name;
    return v.value.intValue;
  }
  std::string Text(const char* name) {
    NPVariant v = Read(name);
    std::string s = host::AsString(v);
    host::Release(&v);
    return s;
  }
  bool Set(const char* name, const NPVariant& value) { return host::Set(npp_, recording_, name, value); }

  NPP npp_ = nullptr;
  MwHandle channel_ = 0, scheduler_ = 0, handle_ = 0;
  NPObject* recording_ = nullptr;
};

TEST_F(ScheduledRecordingTest, ReadsComeFromTheMiddlewareRecording) {
  EXPECT_EQ(1, Int("state")) << "the present programme is being recorded";
  EXPECT_EQ("rec-1", Text("id"));
  EXPECT_EQ(600, Int("recordingDuration"));
  NPVariant channel = Read("channel");
  ASSERT_EQ(NPVariantType_Object, channel.type);
  EXPECT_EQ(channel_, ChannelGetHandle(channel.value.objectValue));
  host::Release(&channel);
  sim::Force("MwRecGetChannel", 0);
  EXPECT_EQ(NPVariantType_Null, Read("channel").type);
  EXPECT_EQ(0u, ScheduledRecordingGetHandle(host::Window(host::PageOf(npp_))));
}

TEST_F(ScheduledRecordingTest, PaddingsAndTextsCanBeWritten) {
  EXPECT_TRUE(Set("startPadding", host::Int(30)));
  EXPECT_TRUE(Set("endPadding", host::Double(120.9)));
  EXPECT_EQ(30, Int("startPadding"));
  EXPECT_EQ(120, Int("endPadding"));
  EXPECT_FALSE(Set("startPadding", host::Str("abc")));
  EXPECT_EQ(30, Int("startPadding"));

  // Only the given characters go to the middleware, from a copy of the plug-in's own.
  const char text[] = "Late filmXYZ";
  NPVariant name = host::Str(text);
  name.value.stringValue.UTF8Length = 9;
  size_t records = host::LiveRecords();
  EXPECT_TRUE(Set("name", name));
  EXPECT_EQ("Late film", Text("name"));
  EXPECT_EQ("Late film", sim::CallsTo("MwRecSetName").back().args[1]);
  EXPECT_EQ(records, host::LiveRecords()) << "the copy is freed";
  host::FailRecordAllocation(1);
  EXPECT_FALSE(Set("description", host::Str("never")));
  EXPECT_TRUE(Set("description", host::Int(7))) << "a non-string writes the empty text";
  EXPECT_EQ(NPVariantType_Null, Read("description").type);

  for (const char* fixed : {"state", "startTime", "id", "RECORDING_ERROR", "channel"})
    EXPECT_FALSE(Set(fixed, host::Int(1))) << fixed;
}

TEST_F(ScheduledRecordingTest, RecordingTimesNeedAnId) {
  sim::ClearRecordingId(handle_);
  for (const char* name : {"id", "recordingStartTime", "recordingDuration"}) Read(name, false);
  EXPECT_EQ(0u, sim::CountCalls("MwRecGetRecordingStartTime"));
  EXPECT_EQ(1800, Int("duration")) << "other reads are not guarded";
}

TEST_F(ScheduledRecordingTest, WithoutARecordEveryReadSucceedsEmptyAndWritesFail) {
  NPObject* empty = ScheduledRecordingCreate(npp_, 0);
  ASSERT_NE(nullptr, empty);
  for (const char* name : {"RECORDING_STARTED", "state", "id", "recordingStartTime"})
    EXPECT_EQ(NPVariantType_Void, Read(name, true, empty).type) << name;
  EXPECT_FALSE(host::Set(npp_, empty, "name", host::Str("x")));
  Drop(empty);
  EXPECT_EQ(0u, sim::CountCalls("MwRecGetState"));

  host::FailRecordAllocation(1);
  EXPECT_EQ(nullptr, ScheduledRecordingCreate(npp_, sim::Ref(handle_)));
  EXPECT_EQ(1, sim::RefsOf(handle_)) << "a failed creation gives its reference back";
}

TEST_F(ScheduledRecordingTest, RecordingCollectionsMakeANewObjectPerRead) {
  NPObject* list = CollectionCreate(npp_, MwRecSchedGetRecordings(scheduler_), kCollectionRecordings);
  NPVariant a = host::Void();
  EXPECT_TRUE(host::Invoke(npp_, list, "item", {host::Int(0)}, &a));
  ASSERT_EQ(NPVariantType_Object, a.type);
  EXPECT_NE(recording_, a.value.objectValue);
  EXPECT_EQ(handle_, ScheduledRecordingGetHandle(a.value.objectValue));
  host::Release(&a);

  host::FailRecordAllocation(1);
  EXPECT_TRUE(host::GetIndex(npp_, list, 0, &a));
  EXPECT_EQ(NPVariantType_Null, a.type);
  EXPECT_EQ(1, sim::RefsOf(handle_));
  Drop(list);
}

}  // namespace
