// Events of the simulated A/V players and search manager, as they reach the
// registered table.
#include "sim/avcontrol_sim.h"
#include "sim/receiver.h"
#include "sim/search_sim.h"
#include "sim_fixture.h"

namespace simtest {
namespace {

using EventsTest = SimTest;

std::vector<Event> Named(const std::string& name) {
  std::vector<Event> out;
  for (const Event& e : Events())
    if (e.name == name) out.push_back(e);
  return out;
}

TEST_F(EventsTest, PlayAndStopReportTheStateFromTheSimulatorThread) {
  MwHandle player = MwAVCreateVideoMpeg();
  ASSERT_EQ(MwAVPlay(player, 1), 1);
  sim::WaitIdle();
  ASSERT_EQ(MwAVStop(player), 1);
  sim::WaitIdle();
  auto events = Named("AVControl_onPlayStateChange");
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[0].args[0], player);
  EXPECT_FALSE(events[0].on_test_thread);
  EXPECT_EQ(MwAVGetPlayState(player), 0);

  // A player released before its event is due gets none.
  MwAVPlay(player, 1);
  MwObjectRelease(player);
  sim::WaitIdle();
  EXPECT_EQ(Named("AVControl_onPlayStateChange").size(), 2u);
}

TEST_F(EventsTest, PagingResultsReportsTheSearchWithANewReference) {
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

  MwSearchResultsAbort(results);
  MwObjectRelease(search);  // the results keep searching; the report needs the search
  sim::WaitIdle();
  EXPECT_EQ(Named("SearchManager_onMetadataSearch").size(), 1u);
  MwObjectRelease(results);
  MwObjectRelease(manager);
}

}  // namespace
}  // namespace simtest
