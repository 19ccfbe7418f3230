// Reference and forcing rules of the simulated middleware.
#include "sim/config_sim.h"
#include "sim_fixture.h"

namespace simtest {
namespace {

using OwnershipTest = SimTest;

TEST_F(OwnershipTest, ReturnedHandlesAreNewReferencesAndReceiverObjectsOutliveThem) {
  MwHandle control = MwParentalControlOpen();
  MwHandle schemes = MwParentalGetRatingSchemes(control);
  ASSERT_EQ(MwListGetCount(schemes), 1);
  MwHandle scheme = MwListGetItem(schemes, 0);
  MwHandle again = MwListGetItem(schemes, 0);
  EXPECT_EQ(scheme, again);
  EXPECT_EQ(sim::RefsOf(scheme), 2);
  MwObjectRelease(again);
  MwObjectRelease(scheme);
  MwObjectRelease(schemes);
  MwObjectRelease(control);
  EXPECT_EQ(sim::HeldHandles(), 0u);
  // The scheme belongs to the receiver: it still answers, while the manager is gone.
  EXPECT_EQ(Take(MwRatingSchemeGetName(scheme)), "dvb-si");
  EXPECT_EQ(sim::TypeOf(control), "");
  EXPECT_EQ(MwParentalGetRatingSchemes(control), 0u);
}

// Counted; under strict ownership the process stops at the release.
TEST_F(OwnershipTest, ReleasingTwiceOrAnUnknownHandleIsCountedOrStopsStrictly) {
  MwHandle config = MwConfigurationOpen(nullptr);
  MwHandle local = MwConfigGetLocalSystem(config);
  EXPECT_EQ(local, sim::LocalSystemHandle());
  MwObjectRelease(local);
  MwObjectRelease(config);
  sim::SetStrictOwnership(true);
  EXPECT_DEATH(MwObjectRelease(local), "MwObjectRelease\\([0-9]+\\): the plug-in holds no reference");
  EXPECT_DEATH(MwObjectRelease(config), "MwObjectRelease\\([0-9]+\\): no such handle");
  sim::SetStrictOwnership(false);
  MwObjectRelease(local);   // persistent, but no reference left
  MwObjectRelease(config);  // gone
  EXPECT_EQ(sim::ReleaseErrors(), 2u);
  sim::Reset();
}

// Handles the plug-in holds at most once are lent while it holds them.
TEST_F(OwnershipTest, PreferencesAndProgrammesAreLentWhileHeld) {
  MwHandle config = MwConfigurationOpen(nullptr);
  MwHandle preferences = MwConfigGetPreferences(config);
  EXPECT_EQ(preferences, MwConfigGetPreferences(config));
  EXPECT_EQ(sim::RefsOf(preferences), 1);
  MwObjectRelease(preferences);
  EXPECT_EQ(MwConfigGetPreferences(config), preferences);
  EXPECT_EQ(sim::RefsOf(preferences), 1) << "a new reference once none is held";
  MwObjectRelease(preferences);
  MwObjectRelease(config);
  EXPECT_EQ(sim::HeldHandles(), 0u);
}

TEST_F(OwnershipTest, ForcedResultsReplaceTheSimulatedOnesUntilUnforced) {
  MwHandle player = MwAVCreateVideoMp4();
  MwString clip = Ms("clip.mp4");
  MwAVSetData(player, &clip);
  sim::Force("MwAVPlay", 0);
  EXPECT_EQ(MwAVPlay(player, 1), 0);
  EXPECT_EQ(MwAVGetPlayState(player), 0);  // the forced call did nothing
  sim::Unforce("MwAVPlay");
  EXPECT_EQ(MwAVPlay(player, 1), 1);
  EXPECT_EQ(MwAVGetPlayState(player), 3) << "connecting";
  sim::WaitIdle();

  MwHandle config = MwConfigurationOpen(nullptr);
  MwHandle local = MwConfigGetLocalSystem(config);
  sim::ForceString("MwLocalSystemGetDeviceId", "forced-id");
  EXPECT_EQ(Take(MwLocalSystemGetDeviceId(local)), "forced-id");
  sim::ForceString("MwLocalSystemGetDeviceId", nullptr);
  EXPECT_EQ(MwLocalSystemGetDeviceId(local), 0u);
  EXPECT_EQ(sim::CountCalls("MwLocalSystemGetDeviceId"), 2u);
  MwObjectRelease(local);
  MwObjectRelease(config);
  MwObjectRelease(player);
}

}  // namespace
}  // namespace simtest
