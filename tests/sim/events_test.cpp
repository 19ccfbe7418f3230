// Events of the simulated A/V players and search manager, as they reach the
// registered table.
#include <chrono>
#include <thread>

#include "sim/avcontrol_sim.h"
#include "sim/description.h"
#include "sim/receiver.h"
#include "sim/search_sim.h"
#include "sim_fixture.h"

namespace simtest {
namespace {

using EventsTest = SimTest;


TEST_F(EventsTest, PlayersPlayOnTheSimulatorClock) {
  ASSERT_TRUE(sim::LoadDescriptionText(R"({"media": {"short.mp4": {"duration": 3000}}})", nullptr));
  MwHandle player = MwAVCreateVideoMp4();
  MwString clip = Ms("short.mp4");
  MwAVSetData(player, &clip);
  EXPECT_EQ(MwAVGetPlayTime(player), 3000);
  ASSERT_EQ(MwAVPlay(player, 1), 1);
  sim::WaitIdle(500);
  auto events = Named("AVControl_onPlayStateChange");
  ASSERT_EQ(events.size(), 3u) << "connecting, buffering, playing";
  EXPECT_FALSE(events[0].on_test_thread);
  EXPECT_EQ(MwAVGetPlayState(player), 1);
  int32_t before = MwAVGetPlayPosition(player);
  std::this_thread::sleep_for(std::chrono::milliseconds(40));
  EXPECT_GT(MwAVGetPlayPosition(player), before) << "the position moves";

  // The clip is long enough that a slow machine (sanitizers, emulation) is
  // still in it here; its end is brought near by a seek.
  ASSERT_EQ(MwAVSeek(player, 100), 1);
  EXPECT_EQ(MwAVSeek(player, 3001), 0) << "beyond the end";
  ASSERT_EQ(MwAVPlay(player, 0), 1);
  EXPECT_EQ(MwAVGetPlayState(player), 2) << "speed 0 pauses";
  int32_t paused = MwAVGetPlayPosition(player);
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_EQ(MwAVGetPlayPosition(player), paused);
  ASSERT_EQ(MwAVSeek(player, 2800), 1);
  ASSERT_EQ(MwAVPlay(player, 2), 1);
  sim::WaitIdle(2000);  // the end comes at twice the speed
  EXPECT_EQ(MwAVGetPlayState(player), 5) << "finished";
  EXPECT_EQ(MwAVGetPlayPosition(player), 3000);
  EXPECT_EQ(Named("AVControl_onPlayPositionChanged").size(), 2u) << "the seeks";

  ASSERT_EQ(MwAVStop(player), 1);
  EXPECT_EQ(MwAVGetPlayPosition(player), 0);
  sim::WaitIdle();
  EXPECT_EQ(Named("AVControl_onPlayStateChange").size(), 7u) << "paused, playing, finished, stopped";

  // A player released before its event is due gets none.
  MwAVPlay(player, 1);
  MwObjectRelease(player);
  sim::WaitIdle();
  EXPECT_EQ(Named("AVControl_onPlayStateChange").size(), 7u);
}

TEST_F(EventsTest, LoopsQueuesAndMediaThatFail) {
  ASSERT_TRUE(sim::LoadDescriptionText(
      R"({"media": {"a.mp4": {"duration": 60}, "b.mp4": {"duration": 60, "title": "B"},
                    "bad.mp4": {"unplayable": true, "error": 5}, "drm.mp4": {"protected": true}}})",
      nullptr));
  MwHandle player = MwAVCreateAudioMp4();
  MwString a = Ms("a.mp4"), b = Ms("b.mp4"), bad = Ms("bad.mp4"), drm = Ms("drm.mp4");
  MwAVSetData(player, &a);
  MwAVSetLoop(player, 1);  // once more
  ASSERT_EQ(MwAVQueue(player, &b), 1);
  MwAVPlay(player, 1);
  sim::WaitIdle(2000);
  sim::AVPlayerState state;
  ASSERT_TRUE(sim::AVPlayer(player, &state));
  EXPECT_EQ(state.track, 1) << "looped once, then the queue moved on";
  EXPECT_EQ(state.title, "B");
  EXPECT_EQ(state.play_state, 5);
  EXPECT_EQ(Named("AVControl_onPlayPositionChanged").size(), 1u) << "the loop's restart";
  EXPECT_EQ(MwAVPrevious(player), 1);
  EXPECT_EQ(MwAVPrevious(player), 0);

  MwAVSetData(player, &bad);
  MwAVPlay(player, 1);
  sim::WaitIdle();
  EXPECT_EQ(MwAVGetPlayState(player), 6);
  EXPECT_EQ(MwAVGetError(player), 5);
  MwAVSetData(player, &drm);
  MwAVPlay(player, 1);
  sim::WaitIdle();
  EXPECT_EQ(MwAVGetPlayState(player), 6);
  auto rights = Named("AVControl_onDRMRightsError");
  ASSERT_EQ(rights.size(), 1u);
  MwHandle list = MwAVGetComponents(player, 0);
  EXPECT_EQ(MwListGetCount(list), 0) << "an audio player has no video";
  MwObjectRelease(list);
  MwObjectRelease(player);
}

TEST_F(EventsTest, PagingResultsReportsTheSearchLentWhileHeld) {
  MwHandle manager = MwSearchManagerOpen();
  MwHandle search = MwSearchManagerCreateSearch(manager, 1);
  MwHandle results = MwSearchGetResult(search);
  ASSERT_EQ(MwSearchResultsGetResults(results, 0, 10), 1);
  sim::WaitIdle();
  auto events = Named("SearchManager_onMetadataSearch");
  ASSERT_EQ(events.size(), 1u);
  EXPECT_EQ(events[0].args[0], manager);
  EXPECT_EQ(events[0].args[1], search);
  EXPECT_EQ(events[0].args[2], 0);
  EXPECT_FALSE(events[0].on_test_thread);
  EXPECT_EQ(1, sim::RefsOf(search)) << "held by the caller: lent";

  MwSearchResultsAbort(results);
  MwObjectRelease(search);  // the results keep searching; the report needs the search
  sim::WaitIdle();
  EXPECT_EQ(Named("SearchManager_onMetadataSearch").size(), 1u);
  MwObjectRelease(results);
  MwObjectRelease(manager);
}

}  // namespace
}  // namespace simtest
