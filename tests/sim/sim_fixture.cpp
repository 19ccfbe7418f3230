#include "sim_fixture.h"

#include <mutex>
#include <thread>

namespace simtest {
namespace {

std::mutex g_mu;
std::vector<Event> g_events;
std::thread::id g_test_thread;

void Record(const char* name, std::vector<int64_t> args, std::vector<std::string> texts = {}) {
  std::lock_guard<std::mutex> lock(g_mu);
  g_events.push_back({name, std::move(args), std::this_thread::get_id() == g_test_thread, std::move(texts)});
}

// Each entry takes what the event hands over, as the plug-in does.
const MwEventCallbacks kTable = [] {
  MwEventCallbacks t{};
  t.SearchManager_onMetadataSearch = [](MwHandle manager, MwHandle search, int32_t state) {
    // The tests hold their searches: the handle is lent.
    Record("SearchManager_onMetadataSearch", {manager, search, state});
  };
  t.AVControl_onPlayStateChange = [](MwHandle player) { Record("AVControl_onPlayStateChange", {player}); };
  t.AVControl_onPlayPositionChanged = [](MwHandle player, int32_t position) {
    Record("AVControl_onPlayPositionChanged", {player, position});
  };
  t.AVControl_onDRMRightsError = [](MwHandle player, int32_t error, MwHandle content, MwHandle system,
                                    MwHandle issuer) {
    Record("AVControl_onDRMRightsError", {player, error});
    for (MwHandle h : {content, system, issuer})
      if (h) MwObjectRelease(h);
  };
  t.DrmAgent_onDRMMessageResult = [](MwHandle agent, MwHandle id, MwHandle result, int32_t code) {
    Record("DrmAgent_onDRMMessageResult", {agent, code}, {Take(id), Take(result)});
  };
  t.DrmAgent_onDRMSystemMessage = [](MwHandle agent, MwHandle message, MwHandle system) {
    Record("DrmAgent_onDRMSystemMessage", {agent}, {Take(message), Take(system)});
  };
  t.Broadcast_onPlayStateChange = [](MwHandle b, int32_t state, int32_t error) {
    Record("Broadcast_onPlayStateChange", {b, state, error});
  };
  t.Broadcast_onChannelChangeSucceeded = [](MwHandle b, MwHandle channel) {
    Record("Broadcast_onChannelChangeSucceeded", {b});
    MwObjectRelease(channel);
  };
  t.Broadcast_onChannelChangeError = [](MwHandle b, MwHandle channel, int32_t error) {
    Record("Broadcast_onChannelChangeError", {b, error});
    if (channel) MwObjectRelease(channel);
  };
  t.Broadcast_onSelectedComponentChanged = [](MwHandle b, int32_t type) {
    Record("Broadcast_onSelectedComponentChanged", {b, type});
  };
  t.Broadcast_onProgrammesChanged = [](MwHandle b) { Record("Broadcast_onProgrammesChanged", {b}); };
  t.Broadcast_onPlaySpeedChanged = [](MwHandle b, float speed) {
    Record("Broadcast_onPlaySpeedChanged", {b, static_cast<int64_t>(speed)});
  };
  t.Broadcast_onPlayPositionChanged = [](MwHandle b, int32_t position) {
    Record("Broadcast_onPlayPositionChanged", {b, position});
  };
  t.Broadcast_onDRMRightsError = [](MwHandle b, int32_t error, MwHandle content, MwHandle system,
                                    MwHandle issuer) {
    Record("Broadcast_onDRMRightsError", {b, error}, {Take(content), Take(system), Take(issuer)});
  };
  t.Broadcast_onStreamEvent = [](MwHandle b, uint32_t kind, const MwStreamEvent* e) {
    Record("Broadcast_onStreamEvent", {b, kind, e->status}, {std::string(e->name, e->nameLength)});
  };
  return t;
}();

}  // namespace

std::vector<Event> Events() {
  std::lock_guard<std::mutex> lock(g_mu);
  return g_events;
}

std::vector<Event> Named(const std::string& name) {
  std::vector<Event> out;
  for (const Event& e : Events())
    if (e.name == name) out.push_back(e);
  return out;
}

void ClearEvents() {
  std::lock_guard<std::mutex> lock(g_mu);
  g_events.clear();
}

std::string Take(MwHandle string) {
  if (!string) return "<null>";
  std::string text(MwStringGetSize(string), '\0');
  MwStringCopyTo(string, &text[0]);
  MwObjectRelease(string);
  if (!text.empty()) text.pop_back();  // the terminator
  return text;
}

void SimTest::SetUp() {
  g_test_thread = std::this_thread::get_id();
  sim::Reset();
  sim::SetStrictOwnership(true);
  MwRegisterEventCallbacks(&kTable);
  ClearEvents();
}

void SimTest::TearDown() {
  sim::WaitIdle();
  EXPECT_EQ(sim::HeldHandles(), 0u) << sim::HeldHandlesReport();
  EXPECT_EQ(sim::ReleaseErrors(), 0u);
}

}  // namespace simtest
