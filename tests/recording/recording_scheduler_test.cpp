// The recording scheduler: record, recordAt, lists, remove.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/fixture.h"
#include "sim/broadcast_sim.h"
#include "sim/recording_sim.h"
#include "sim/sim.h"

namespace {

class RecordingSchedulerTest : public ScriptTest {
 protected:
  void SetUp() override {
    ScriptTest::SetUp();
    sim::SetAutoEvents(false);
    npp_ = NewPlugin("application/oipfrecordingscheduler");
    pvr_ = Scriptable(npp_);
  }
  // A call on the scheduler, or on `o`.
  NPVariant Call(const char* method, std::vector<NPVariant> args, bool* ok = nullptr, NPObject* o = nullptr) {
    return ScriptTest::Call(o ? o : pvr_, method, std::move(args), ok);
  }
  int32_t Length(NPVariant list) {
    NPVariant n = host::Void();
    host::Get(npp_, list.value.objectValue, "length", &n);
    return n.value.intValue;
  }
  NPObject* pvr_ = nullptr;
};

TEST_F(RecordingSchedulerTest, RecordAtAndItsBadArguments) {
  bool ok = true;
  NPVariant v = Call("recordAt", {host::Int(0), host::Int(60), host::Int(0)}, &ok);
  EXPECT_FALSE(ok) << "three arguments fail";
  EXPECT_EQ(NPVariantType_Null, v.type);
  v = Call("recordAt", {host::Int(0), host::Int(60), host::Int(0), host::Int(5)}, &ok);
  EXPECT_TRUE(ok) << "a channel id that is no string: Null, and success";
  EXPECT_EQ(NPVariantType_Null, v.type);
  NPObject* slot = Call("recordAt", {host::Int(1795090000), host::Int(600), host::Int(0), host::Str("ccid:dvbt.2")})
                       .value.objectValue;
  ASSERT_NE(nullptr, slot);
  EXPECT_EQ(1, Length(Call("getScheduledRecordings", {})));
  EXPECT_EQ(0, Length(Call("recordings", {}, nullptr)) + 0);
  Call("remove", {host::Obj(pvr_)}, &ok);
  EXPECT_TRUE(ok) << "remove of something else does nothing";
  EXPECT_EQ(1u, sim::Recordings().size());
  Call("remove", {host::Obj(slot)});
  EXPECT_EQ(0u, sim::Recordings().size());
  Call("record", {}, &ok);
  EXPECT_FALSE(ok) << "record() without a programme fails";
  EXPECT_EQ(NPVariantType_Null, Call("record", {host::Int(3)}).type);
}

TEST_F(RecordingSchedulerTest, ListsConfigurationAndProgrammesAndAfterTheObjectWent) {
  EXPECT_EQ(NPVariantType_Object, Call("getChannelConfig", {}).type);
  EXPECT_EQ(NPVariantType_Object, Call("createProgrammeObject", {}).type);
  NPVariant recordings = host::Void();
  ASSERT_TRUE(host::Get(npp_, pvr_, "recordings", &recordings));
  EXPECT_EQ(0, Length(recordings));
  host::Release(&recordings);

  NPObject* kept = host::Funcs()->retainobject(pvr_);
  DestroyPlugin(npp_);
  bool ok = true;
  Call("getScheduledRecordings", {}, &ok, kept);
  EXPECT_FALSE(ok) << "every method fails once the scheduler went";
  host::Funcs()->releaseobject(kept);
}

}  // namespace
