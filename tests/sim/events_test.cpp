// Events of the simulated A/V players, local system, network interfaces and
// search manager, as they reach the registered table.
#include "sim/avcontrol_sim.h"
#include "sim/config_sim.h"
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

TEST_F(EventsTest, FullScreenIsReportedOnlyWhenItChanges) {
  MwHandle player = MwAVCreateVideoMp4();
  MwAVSetFullScreen(player, 0);
  MwAVSetFullScreen(player, 1);
  MwAVSetFullScreen(player, 1);
  sim::WaitIdle();
  EXPECT_EQ(Named("AVControl_onFullScreenChange").size(), 1u);
  EXPECT_EQ(MwAVIsFullScreen(player), 1);

  sim::SetAutoEvents(false);
  MwAVSetFullScreen(player, 0);
  sim::WaitIdle();
  EXPECT_EQ(Named("AVControl_onFullScreenChange").size(), 1u);
  MwObjectRelease(player);
}

TEST_F(EventsTest, ControlsRaiseEveryPlayerEventWithItsData) {
  MwHandle player = MwAVCreateAudioMp4();
  sim::RaiseAVPlayPositionChanged(player, 4200);
  sim::RaiseAVDRMRightsError(player, 1, nullptr, "urn:dvb:casystemid:1", "http://ri.example", true);
  sim::WaitIdle();
  auto position = Named("AVControl_onPlayPositionChanged");
  ASSERT_EQ(position.size(), 1u);
  EXPECT_TRUE(position[0].on_test_thread);
  EXPECT_EQ(position[0].args[1], 4200);
  EXPECT_EQ(MwAVGetPlayPosition(player), 4200);
  auto drm = Named("AVControl_onDRMRightsError");
  ASSERT_EQ(drm.size(), 1u);
  EXPECT_EQ(drm[0].args[2], 0);  // no content id
  EXPECT_NE(drm[0].args[3], 0);
  EXPECT_NE(drm[0].args[4], 0);
  MwObjectRelease(player);
}

TEST_F(EventsTest, StatusChangesOfThePvrAndANetworkInterface) {
  MwHandle config = MwConfigurationOpen(nullptr);
  MwHandle local = MwConfigGetLocalSystem(config);
  sim::RaisePvrStatusChange(3, true);
  MwHandle interfaces = MwLocalSystemGetNetworkInterfaces(local);
  MwHandle eth = MwListGetItem(interfaces, 0);
  sim::RaiseNetworkStatusChange(eth, 0);
  sim::WaitIdle();
  auto pvr = Named("LocalSystem_onPvrStatusChange");
  ASSERT_EQ(pvr.size(), 1u);
  EXPECT_EQ(pvr[0].args[0], local);
  EXPECT_EQ(pvr[0].args[1], 3);
  EXPECT_FALSE(pvr[0].on_test_thread);
  EXPECT_EQ(MwLocalSystemGetPvrStatus(local), 3);
  ASSERT_EQ(Named("NetworkInterface_onNetworkStatusChange").size(), 1u);
  EXPECT_EQ(MwNetworkInterfaceIsConnected(eth), 0);
  for (MwHandle h : {eth, interfaces, local, config}) MwObjectRelease(h);
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
