// Middleware threads fire events of every kind while the page, on the
// browser's thread, adds and removes listeners, reads and writes the onXxx
// properties and destroys and recreates its instances. Run under
// ThreadSanitizer by the test command; the fixture checks that nothing leaked
// and that no NPN call but memory and NPN_PluginThreadAsyncCall left the
// browser's thread.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <chrono>
#include <random>
#include <thread>
#include <vector>

#include "frame/record.h"
#include "host/fixture.h"
#include "middleware/broadcast.h"
#include "middleware/collection.h"
#include "sim/broadcast_sim.h"
#include "sim/sim.h"

namespace {

constexpr unsigned kEventsPerThread = 3000;
constexpr int kThreads = 3;

struct Handles {
  std::atomic<MwHandle> manager{0}, broadcast{0}, agent{0};
};

// One middleware thread: every event entry point in turn, for whatever
// instances the page has now (or had a moment ago).
void FireEvents(const Handles& h, MwHandle channel, std::atomic<int>& running, unsigned seed) {
  const MwEventCallbacks* cb = sim::Callbacks();
  std::mt19937 random(seed);
  const char* const kTexts[] = {"a", "bb", ""};
  for (unsigned n = 1; n <= kEventsPerThread; n++) {
    if (n % 8 == 0) std::this_thread::sleep_for(std::chrono::microseconds(100));
    MwHandle m = h.manager.load(), b = h.broadcast.load(), a = h.agent.load();
    const char* text = kTexts[random() % 3];
    switch (random() % 16) {
      case 0: cb->AppMgr_onLowMemory(m); break;
      case 1: cb->AppMgr_onApplicationLoadError(m); break;
      case 2: cb->Broadcast_onFullScreenChange(b); break;
      case 3: cb->Broadcast_onChannelChangeError(b, sim::Ref(channel), 3); break;
      case 4: cb->Broadcast_onChannelChangeSucceeded(b, sim::Ref(channel)); break;
      case 5: cb->Broadcast_onPlayStateChange(b, 2, -1); break;
      case 6: cb->Broadcast_onProgrammesChanged(b); break;
      case 7:
        cb->Broadcast_onParentalRatingChange(b, sim::NewString(text), sim::CurrentRating(),
                                             sim::NewString("drm"), 1);
        break;
      case 8: cb->Broadcast_onSelectedComponentChanged(b, 1); break;
      case 9: {
        MwStreamEvent event = {4, "name", 4, "data", 1, text, 1};
        cb->Broadcast_onStreamEvent(b, 25, &event);
        break;
      }
      case 10: cb->Broadcast_onRecordingEvent(b, 1, 0, sim::NewString(text)); break;
      case 11: cb->Broadcast_onPlaySpeedChanged(b, 2.0f); break;
      case 12: cb->Broadcast_onPlayPositionChanged(b, 1000); break;
      case 13: cb->Broadcast_onDRMRightsError(b, 1, sim::NewString(text), sim::NewString("d"), 0); break;
      // Strings for an agent the plug-in does not hold would stay ours.
      case 14:
        sim::RaiseWhileHeld(a, [&] { cb->DrmAgent_onDRMMessageResult(a, sim::NewString("id"), sim::NewString(text), 0); });
        break;
      default:
        sim::RaiseWhileHeld(a, [&] { cb->DrmAgent_onDRMSystemMessage(a, sim::NewString(text), sim::NewString("sys")); });
        break;
    }
  }
  running--;
}

class StressTest : public OrvaneTest {
 protected:
  struct Page {
    const char* mime;
    std::atomic<MwHandle>* handle;
    const char* properties[2];
    const char* types[2];
  };
  NPP Open(const Page& page) {
    NPP npp = NewPlugin(page.mime);
    page.handle->store(static_cast<ObjectRecord*>(npp->pdata)->handle);
    return npp;
  }
};

TEST_F(StressTest, EventsFromManyThreadsWhileThePageChangesEverything) {
  sim::SetAutoEvents(false);
  Handles handles;
  const Page pages[] = {
      {"application/oipfapplicationmanager", &handles.manager,
       {"onLowMemory", "onApplicationLoadError"}, {"LowMemory", "ApplicationLoadError"}},
      {"video/broadcast", &handles.broadcast,
       {"onChannelChangeSucceeded", "onPlayStateChange"}, {"ChannelChangeError", "ParentalRatingChange"}},
      {"application/oipfdrmagent", &handles.agent,
       {"onDRMSystemMessage", "onDRMMessageResult"}, {"DRMMessageResult", "DRMSystemMessage"}},
  };
  NPP npps[3];
  for (int i = 0; i < 3; i++) npps[i] = Open(pages[i]);
  MwHandle config = MwBroadcastGetChannelConfig(handles.broadcast.load());
  MwHandle list = MwChannelConfigGetChannelList(config);
  MwHandle channel = MwListGetItem(list, 0);
  MwObjectRelease(list);
  MwObjectRelease(config);
  ASSERT_NE(0u, channel);

  std::atomic<int> running{kThreads};
  std::vector<std::thread> middleware;
  for (int t = 0; t < kThreads; t++)
    middleware.emplace_back(FireEvents, std::cref(handles), channel, std::ref(running), t + 1);

  std::mt19937 random(7);
  std::vector<NPObject*> functions;
  for (int i = 0; i < 6; i++) functions.push_back(host::NewFunction("f" + std::to_string(i), i % 2));
  size_t delivered = 0;
  for (int round = 0; running.load() > 0 || round < 2000; round++) {
    if (round % 100 == 0) sim::ClearCalls();  // the log would only grow
    int i = static_cast<int>(random() % 3);
    NPP npp = npps[i];
    NPObject* object = Scriptable(npp);
    NPObject* f = functions[random() % functions.size()];
    NPVariant v = host::Void();
    switch (random() % 6) {
      case 0:
        host::Invoke(npp, object, "addEventListener",
                     {host::Str(pages[i].types[random() % 2]), host::Obj(f)}, &v);
        break;
      case 1: host::Invoke(npp, object, "removeEventListener", {host::Obj(f)}, &v); break;
      case 2: host::Set(npp, object, pages[i].properties[random() % 2], host::Obj(f)); break;
      case 3: host::Get(npp, object, pages[i].properties[random() % 2], &v); break;
      case 4:
        if (round % 5 == 0) {
          DestroyPlugin(npp);
          npps[i] = Open(pages[i]);
        }
        break;
      default: delivered += host::PumpQueued(); break;
    }
    host::Release(&v);
  }
  for (std::thread& t : middleware) t.join();
  host::Pump();
  for (NPObject* f : functions) host::Funcs()->releaseobject(f);
  MwObjectRelease(channel);
  EXPECT_GT(delivered, 0u);
  EXPECT_GT(host::CallOrder().size(), 0u) << "listeners were called";
  std::printf("%zu deliveries, %zu listener calls\n", delivered, host::CallOrder().size());
}

}  // namespace
