// Who releases which middleware handle, and what a page reads, where the
// contract leaves a handle with the middleware, lends it, or gives the
// plug-in an object for a 0 handle. The simulator runs in strict ownership:
// a release the contract does not make stops the suite.
#include <gtest/gtest.h>

#include <string>

#include "frame/record.h"
#include "host/fixture.h"
#include "middleware/broadcast.h"
#include "middleware/config.h"
#include "sim/broadcast_sim.h"
#include "sim/sim.h"

namespace {

class ContractTest : public ScriptTest {
 protected:
  static MwHandle HandleOf(NPP npp) { return static_cast<ObjectRecord*>(npp->pdata)->handle; }
  static size_t Releases(MwHandle h) {
    size_t n = 0;
    for (const auto& c : sim::CallsTo("MwObjectRelease")) n += c.args[0] == std::to_string(h);
    return n;
  }
  static MwHandle Returned(const char* op) {  // the handle a forced call gave, from the call log
    return static_cast<MwHandle>(std::stoul(sim::CallsTo(op).back().args[0]));
  }
};

// The current preferences are held once: a second read neither releases
// them nor takes a second reference; the current object's going does.
TEST_F(ContractTest, PreferencesAreReplacedWithoutARelease) {
  npp_ = NewPlugin("application/oipfconfiguration");
  NPObject* oipf = Scriptable(npp_);
  NPVariant first = host::Void(), second = host::Void();
  ASSERT_TRUE(host::Get(npp_, oipf, "configuration", &first));
  ASSERT_TRUE(host::Get(npp_, oipf, "configuration", &second));
  Text(second.value.objectValue, "countryId");
  MwHandle preferences = Returned("MwConfigGetCountryId");
  EXPECT_EQ(2u, sim::CountCalls("MwConfigGetPreferences"));
  EXPECT_EQ(1, sim::RefsOf(preferences));
  EXPECT_EQ(0u, Releases(preferences));
  host::Release(&first);
  EXPECT_EQ(0u, Releases(preferences)) << "not the current object";
  host::Release(&second);
  EXPECT_EQ(1u, Releases(preferences));
}

// A programme the plug-in holds comes back lent: the same object, and the
// handle stays the middleware's.
TEST_F(ContractTest, AProgrammeAlreadyHeldIsLent) {
  npp_ = NewPlugin("application/oipfrecordingscheduler");
  NPObject* scheduler = Scriptable(npp_);
  NPObject* made = Call(scheduler, "createProgrammeObject", {}).value.objectValue;
  ASSERT_NE(nullptr, made);
  Get(made, "name");
  MwHandle programme = Returned("MwProgrammeGetName");
  sim::Force("MwRecSchedCreateProgramme", programme);
  EXPECT_EQ(made, Call(scheduler, "createProgrammeObject", {}).value.objectValue);
  EXPECT_EQ(1, sim::RefsOf(programme));
  EXPECT_EQ(0u, Releases(programme));
}

// 0 handles: a channel event and getChannelConfig give objects whose
// reads fail.
TEST_F(ContractTest, ZeroChannelAndConfigurationHandlesGiveObjects) {
  npp_ = NewPlugin("video/broadcast");
  NPObject* video = Scriptable(npp_);
  NPObject* f = host::NewFunction("f");
  ASSERT_TRUE(host::Set(npp_, video, "onChannelChangeError", host::Obj(f)));
  sim::Callbacks()->Broadcast_onChannelChangeError(HandleOf(npp_), 0, 5);
  host::Pump();
  ASSERT_EQ(1u, host::Calls(f).size());
  EXPECT_EQ(NPVariantType_Object, host::Calls(f)[0].args[0].type);
  EXPECT_EQ(5, host::Calls(f)[0].args[1].value.intValue);
  sim::Force("MwBroadcastGetChannelConfig", 0);
  NPObject* config = Call(video, "getChannelConfig", {}).value.objectValue;
  ASSERT_NE(nullptr, config);
  bool ok = true;
  Get(config, "channelList", &ok);
  EXPECT_FALSE(ok);
  host::Funcs()->releaseobject(f);
}

// The system's own diagnostics: setFullScreen without a style object tries
// the four writes, and a property read without a middleware handle names
// no broadcast.
TEST_F(ContractTest, DiagnosticsOfBroadcastWithoutStyleOrHandle) {
  host::PageSpec spec;
  spec.style_available = false;
  sim::Force("MwBroadcastCreate", 0);
  npp_ = NewPlugin("video/broadcast", {}, spec);
  NPObject* video = Scriptable(npp_);
  testing::internal::CaptureStdout();
  Call(video, "setFullScreen", {host::Bool(true)});
  bool ok = true;
  Get(video, "playState", &ok);
  std::string log = testing::internal::GetCapturedStdout();
  EXPECT_FALSE(ok);
  EXPECT_EQ("ERROR [StyleSetRect:1207] Setproperty failed for left\n"
            "ERROR [StyleSetRect:1207] Setproperty failed for top\n"
            "ERROR [StyleSetRect:1207] Setproperty failed for width\n"
            "ERROR [StyleSetRect:1207] Setproperty failed for height\n"
            "ERROR [Broadcast_GetProperty:791] broadcast (nil)\n",
            log);
}

}  // namespace
