// For a typical page of each kind, every allocation fails in turn (the
// browser's NPN_MemAlloc and the plug-in's records alike) until a run meets
// none: each run must end without a crash, a leak or an over-release (the
// fixture's accounting checks every one).
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "frame/record.h"
#include "host/fixture.h"
#include "host/internal.h"
#include "sim/sim.h"

namespace {

// How many allocation points each scenario fails (NPN_MemAlloc and records
// together). A scenario that fails none means fault injection broke; one
// that fails another number changed its path. The README gives their sum.
struct Scenario {
  const char* name;
  int points;
};
constexpr Scenario kScenarios[] = {
    {"application manager", 17}, {"video/broadcast", 35}, {"video/mp4", 13},
    {"configuration", 15},       {"parental control and recording", 14}, {"search and DRM", 23},
};

int ExpectedPoints(const std::string& name) {
  for (const Scenario& s : kScenarios)
    if (name == s.name) return s.points;
  return -1;
}

class SweepTest : public OrvaneTest {
 protected:
  void SetUp() override {
    OrvaneTest::SetUp();
    sim::SetAutoEvents(false);  // events come by hand, at once
  }
  void TearDown() override {
    for (NPVariant& v : held_) host::Release(&v);
    held_.clear();
    host::detail::ResetFunctions();
    OrvaneTest::TearDown();
  }

  // What a scenario does with objects: every value is kept and let go at the end.
  NPObject* Call(NPObject* o, const char* method, std::vector<NPVariant> args = {}) {
    NPVariant v = host::Void();
    if (o) host::Invoke(npp_, o, method, args, &v);
    held_.push_back(v);
    return v.type == NPVariantType_Object ? v.value.objectValue : nullptr;
  }
  NPObject* Get(NPObject* o, const char* name) {
    NPVariant v = host::Void();
    if (o) host::Get(npp_, o, name, &v);
    held_.push_back(v);
    return v.type == NPVariantType_Object ? v.value.objectValue : nullptr;
  }
  NPObject* Open(const char* mime, Attributes attributes = {}) {
    npp_ = NewPlugin(mime, attributes);
    return Scriptable(npp_);
  }
  MwHandle Handle() {
    const ObjectRecord* r = npp_ ? static_cast<const ObjectRecord*>(npp_->pdata) : nullptr;
    return r ? r->handle : 0;
  }
  NPObject* Listener() {
    NPObject* f = host::NewFunction("listener");
    held_.push_back(host::Obj(f));
    return f;
  }

  // Runs `scenario` with the nth allocation failing, n = 1, 2, ... until a
  // run meets no failure; then the same for the plug-in's records.
  void Sweep(const char* name, const std::function<void()>& scenario) {
    for (int records = 0; records < 2; records++) {
      for (int n = 1; n < 5000; n++) {
        SCOPED_TRACE(std::string(name) + (records ? ": record allocation " : ": NPN_MemAlloc ") +
                     std::to_string(n));
        if (records) host::FailRecordAllocation(n);
        else host::FailAllocation(n);
        testing::internal::CaptureStdout();  // the plug-in's error lines
        scenario();
        testing::internal::GetCapturedStdout();
        bool met = !(records ? host::RecordFailureArmed() : host::AllocationFailureArmed());
        host::FailAllocation(0);
        host::FailRecordAllocation(0);
        TearDown();  // every check of a test's end, then a fresh browser and receiver
        SetUp();
        if (!met || HasFailure()) break;
        points_++;
      }
    }
    std::printf("%s: %d allocation points failed\n", name, points_);
    EXPECT_GT(points_, 0) << name << ": no allocation was failed";
    EXPECT_EQ(ExpectedPoints(name), points_) << name << ": allocation points failed";
  }

  NPP npp_ = nullptr;
  std::vector<NPVariant> held_;
  int points_ = 0;
};

TEST_F(SweepTest, ApplicationManager) {
  Sweep("application manager", [this] {
    NPObject* manager = Open("application/oipfapplicationmanager");
    NPObject* app = Call(manager, "getOwnerApplication", {host::Obj(host::Document(host::PageOf(npp_)))});
    NPObject* keyset = Get(Get(app, "privateData"), "keyset");
    Call(keyset, "setValue", {host::Int(0x1f)});
    if (manager) host::Set(npp_, manager, "onLowMemory", host::Obj(Listener()));
    Call(manager, "addEventListener", {host::Str("ApplicationLoadError"), host::Obj(Listener())});
    sim::Callbacks()->AppMgr_onLowMemory(Handle());
    sim::Callbacks()->AppMgr_onApplicationLoadError(Handle());
    host::Pump();
  });
}

TEST_F(SweepTest, BroadcastChannelsAndProgrammes) {
  Sweep("video/broadcast", [this] {
    NPObject* video = Open("video/broadcast");
    if (video) host::Set(npp_, video, "onChannelChangeSucceeded", host::Obj(Listener()));
    NPObject* channels = Get(Call(video, "getChannelConfig"), "channelList");
    NPObject* channel = Call(channels, "item", {host::Int(1)});
    Get(channel, "name");
    // Three live channels: their index grows past its first chain.
    Call(channels, "item", {host::Int(0)});
    Call(channels, "item", {host::Int(2)});
    Call(video, "setChannel", {channel ? host::Obj(channel) : host::Null()});
    Get(Call(Get(video, "programmes"), "item", {host::Int(0)}), "name");
    Call(video, "addStreamEventListener", {host::Str("dvb://1.2.3"), host::Str("now"), host::Obj(Listener())});
    // A description the browser never delivers: it goes with the element.
    Call(video, "addStreamEventListener", {host::Str("events.xml"), host::Str("now"), host::Obj(Listener())});
    const MwEventCallbacks* cb = sim::Callbacks();
    cb->Broadcast_onChannelChangeSucceeded(Handle(), sim::NewString("not a channel"));
    cb->Broadcast_onRecordingEvent(Handle(), 1, 0, sim::NewString("rec-1"));
    MwStreamEvent event = {3, "now", 1, "d", 1, "t", 1};
    cb->Broadcast_onStreamEvent(Handle(), 25, &event);
    host::Pump();
  });
}

TEST_F(SweepTest, AVControl) {
  Sweep("video/mp4", [this] {
    NPObject* player = Open("video/mp4", {{"data", "clip.mp4"}, {"width", "320"}});
    if (player) host::Set(npp_, player, "onPlayPositionChanged", host::Obj(Listener()));
    Call(player, "play", {host::Int(1)});
    Call(Call(player, "getComponents", {host::Int(1)}), "item", {host::Int(0)});
    Call(player, "queue", {host::Str("next.mp4")});
    const MwEventCallbacks* cb = sim::Callbacks();
    cb->AVControl_onPlayPositionChanged(Handle(), 100);
    cb->AVControl_onDRMRightsError(Handle(), 1, sim::NewString("c"), sim::NewString("s"), 0);
    host::Pump();
  });
}

TEST_F(SweepTest, ConfigurationAndCapabilities) {
  Sweep("configuration", [this] {
    NPObject* config = Open("application/oipfconfiguration");
    Get(Get(config, "configuration"), "preferredAudioLanguage");
    NPObject* local = Get(config, "localSystem");
    Get(Call(Get(local, "networkInterfaces"), "item", {host::Int(0)}), "ipAddress");
    Call(local, "addEventListener", {host::Str("PvrStatusChange"), host::Obj(Listener())});
    NPObject* caps = Open("application/oipfcapabilities");
    Get(caps, "xmlCapabilities");
    Call(caps, "hasCapability", {host::Str("+PVR")});
    host::Pump();
  });
}

TEST_F(SweepTest, ParentalControlAndRecording) {
  Sweep("parental control and recording", [this] {
    NPObject* schemes = Get(Open("application/oipfparentalcontrolmanager"), "parentalRatingSchemes");
    Get(Call(schemes, "item", {host::Int(0)}), "threshold");
    NPObject* pvr = Open("application/oipfrecordingscheduler");
    Get(Call(pvr, "recordAt", {host::Int(1795090000), host::Int(600), host::Int(0), host::Str("ccid:dvbt.1")}),
        "state");
    Call(Get(pvr, "recordings"), "item", {host::Int(0)});
  });
}

TEST_F(SweepTest, SearchAndDrm) {
  Sweep("search and DRM", [this] {
    NPObject* manager = Open("application/oipfsearchmanager");
    if (manager) host::Set(npp_, manager, "onMetadataSearch", host::Obj(Listener()));
    NPObject* search = Call(manager, "createSearch", {host::Int(1)});
    NPObject* query = Call(search, "createQuery", {host::Str("Programme.name"), host::Int(6), host::Str("One")});
    Call(search, "setQuery", {query ? host::Obj(Call(query, "not")) : host::Null()});
    Call(Get(search, "result"), "getResults", {host::Int(0), host::Int(5)});
    sim::Callbacks()->SearchManager_onMetadataSearch(Handle(), 0, 0);
    NPObject* drm = Open("application/oipfdrmagent");
    if (drm) host::Set(npp_, drm, "onDRMMessageResult", host::Obj(Listener()));
    Call(drm, "sendDRMMessage", {host::Str("t"), host::Str("m"), host::Str("s")});
    MwHandle agent = Handle();
    sim::RaiseWhileHeld(agent, [agent] {  // as a middleware: for an agent the plug-in holds
      sim::Callbacks()->DrmAgent_onDRMMessageResult(agent, sim::NewString("1"), sim::NewString("ok"), 0);
    });
    host::Pump();
  });
}

// A sweep whose fault injection reaches nothing fails, rather than passing
// with every scenario stopped at its first run.
TEST_F(SweepTest, ASweepThatFailsNothingFails) {
  testing::TestPartResultArray failures;
  {
    testing::ScopedFakeTestPartResultReporter intercept(
        testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
    Sweep("application manager", [] {});
  }
  bool caught = false;
  for (int i = 0; i < failures.size(); i++)
    caught |= std::string(failures.GetTestPartResult(i).message()).find("no allocation was failed") !=
              std::string::npos;
  EXPECT_TRUE(caught) << failures.size() << " failures, none of them the empty sweep";
}

TEST(SweepFigures, ScenariosAddUpToTheReadmeFigure) {
  int total = 0;
  for (const Scenario& scenario : kScenarios) total += scenario.points;
  std::ifstream readme(ORVANE_SOURCE_DIR "/README.md");
  std::stringstream text;
  text << readme.rdbuf();
  std::smatch m;
  std::string all = text.str();
  ASSERT_TRUE(std::regex_search(all, m, std::regex("(\\d+) allocation points failed")))
      << "the README gives no sweep figure";
  EXPECT_EQ(total, std::stoi(m[1]));
}

}  // namespace
