// The simulated PVR on a running receiver clock: recordings start,
// complete, repeat, conflict for tuners and stop partly.
#include <chrono>
#include <thread>

#include "middleware/recording.h"
#include "sim/broadcast_sim.h"
#include "sim/description.h"
#include "sim/receiver.h"
#include "sim/recording_sim.h"
#include "sim_fixture.h"

namespace simtest {
namespace {

using PvrTest = SimTest;

TEST_F(PvrTest, RecordingsFollowTheReceiversClock) {
  ASSERT_TRUE(sim::LoadDescriptionText(R"({"pvr": {"tuners": 1}})", nullptr));
  MwHandle scheduler = MwRecordingSchedulerOpen();
  MwString ccid = Ms("ccid:dvbt.1");
  int32_t now = sim::ReceiverNow();
  EXPECT_EQ(now, sim::ReceiverNow()) << "the clock stands still by default";
  MwHandle daily = MwRecSchedRecordAt(scheduler, static_cast<uint32_t>(now + 60), 60, 0x7f, &ccid);
  MwHandle clash = MwRecSchedRecordAt(scheduler, static_cast<uint32_t>(now + 90), 60, 0, &ccid);
  EXPECT_EQ(MwRecGetState(daily), 0) << "scheduled";
  EXPECT_EQ(MwRecGetState(clash), 4) << "no tuner left: error";

  sim::SetClockRate(3600);  // an hour a second: the minute starts in about 17 ms
  std::this_thread::sleep_for(std::chrono::milliseconds(60));
  sim::WaitIdle();
  EXPECT_EQ(MwRecGetState(daily), 2) << "completed";
  std::vector<MwHandle> all = sim::Recordings();
  ASSERT_EQ(all.size(), 3u) << "the daily recording scheduled its next day";
  EXPECT_EQ(MwRecGetStartTime(all[2]), now + 60 + 24 * 3600);

  MwHandle running = MwRecSchedRecordAt(scheduler, static_cast<uint32_t>(sim::ReceiverNow() - 10), 3600, 0, &ccid);
  EXPECT_EQ(MwRecGetState(running), 1) << "started";
  MwRecSchedRemove(scheduler, running);
  EXPECT_EQ(MwRecGetState(running), 3) << "stopped while it ran: partly completed, and kept";
  MwRecSchedRemove(scheduler, clash);
  sim::SetClockRate(0);
  for (MwHandle h : {daily, clash, running, scheduler}) MwObjectRelease(h);
}

}  // namespace
}  // namespace simtest
