// Players whose media an engine plays for real: the engine's reports drive
// their states, duration, tracks, end and errors, while the receiver's
// model (queue, loop, stop, seek) stays the simulator's.
#include <map>

#include "sim/avcontrol_sim.h"
#include "sim/description.h"
#include "sim/media_sim.h"
#include "sim_fixture.h"

namespace simtest {
namespace {

// Plays "real:" URLs; notes what it is asked.
struct ScriptedEngine : sim::MediaEngine {
  std::vector<std::string> calls;
  std::map<MwHandle, int32_t> position;
  bool Plays(const std::string& url) override { return url.compare(0, 5, "real:") == 0; }
  void Open(MwHandle, const std::string& url, bool video) override {
    calls.push_back("open " + url + (video ? " video" : " audio"));
  }
  void Play(MwHandle, int32_t speed) override { calls.push_back("play " + std::to_string(speed)); }
  void Seek(MwHandle, int32_t ms) override { calls.push_back("seek " + std::to_string(ms)); }
  void Stop(MwHandle) override { calls.push_back("stop"); }
  void Close(MwHandle) override { calls.push_back("close"); }
  int32_t Position(MwHandle player) override { return position.count(player) ? position[player] : -1; }
  void SetVolume(MwHandle, int32_t volume) override { calls.push_back("volume " + std::to_string(volume)); }
};

class MediaEngineTest : public SimTest {
 protected:
  void SetUp() override {
    SimTest::SetUp();
    sim::SetMediaEngine(&engine_);
  }
  void TearDown() override {
    sim::SetMediaEngine(nullptr);
    SimTest::TearDown();
  }
  int32_t State(MwHandle player) {
    sim::WaitIdle(200);
    return MwAVGetPlayState(player);
  }
  ScriptedEngine engine_;
};

TEST_F(MediaEngineTest, TheEnginesReportsDriveThePlayer) {
  ASSERT_TRUE(sim::LoadDescriptionText(R"({"media": {"real:kept.mp4": {"simulated": true}}})", nullptr));
  MwHandle player = MwAVCreateVideoMp4();
  MwString clip = Ms("real:clip.mp4");
  MwAVSetData(player, &clip);
  ASSERT_EQ((std::vector<std::string>{"open real:clip.mp4 video"}), engine_.calls);
  EXPECT_EQ(0, MwAVGetPlayTime(player)) << "unknown until the engine says";

  ASSERT_EQ(1, MwAVPlay(player, 1));
  EXPECT_EQ(3, State(player)) << "connecting until the engine reports";
  sim::MediaDuration(player, 3000);
  sim::MediaTracks(player, 1, {"eng", "deu"}, {"eng"});
  sim::MediaBuffering(player);
  EXPECT_EQ(4, State(player));
  sim::MediaReady(player);
  EXPECT_EQ(1, State(player));
  EXPECT_EQ(3000, MwAVGetPlayTime(player));
  MwHandle audio = MwAVGetComponents(player, 1);
  EXPECT_EQ(2, MwListGetCount(audio)) << "the file's audio tracks";
  MwObjectRelease(audio);
  engine_.position[player] = 1234;
  EXPECT_EQ(1234, MwAVGetPlayPosition(player)) << "the engine's position";

  ASSERT_EQ(1, MwAVSeek(player, 2000));
  EXPECT_EQ(0, MwAVSeek(player, 3001)) << "beyond the end";
  ASSERT_EQ(1, MwAVPlay(player, 0));
  EXPECT_EQ(2, State(player)) << "paused";
  ASSERT_EQ(1, MwAVPlay(player, 1));
  sim::MediaEnded(player);
  EXPECT_EQ(5, State(player)) << "finished";
  EXPECT_EQ((std::vector<std::string>{"open real:clip.mp4 video", "play 1", "seek 2000", "play 0", "play 1"}),
            engine_.calls);

  // A looping player starts over; a queued item is opened next.
  engine_.calls.clear();
  MwAVSetLoop(player, 1);
  MwString next = Ms("real:next.mp4");
  MwAVQueue(player, &next);
  MwAVPlay(player, 1);
  sim::MediaReady(player);
  sim::MediaEnded(player);
  sim::MediaEnded(player);
  EXPECT_EQ(3, State(player)) << "the next item connects";
  EXPECT_EQ((std::vector<std::string>{"play 1", "seek 0", "close", "open real:next.mp4 video", "play 1"}),
            engine_.calls);
  sim::MediaFailed(player, 5);
  EXPECT_EQ(6, State(player));
  EXPECT_EQ(5, MwAVGetError(player));

  // The description keeps a URL simulated; other URLs never reach the engine.
  engine_.calls.clear();
  MwString kept = Ms("real:kept.mp4"), other = Ms("http://media.example/a.mp4");
  MwAVSetData(player, &kept);
  MwAVSetData(player, &other);
  MwAVPlay(player, 1);
  EXPECT_EQ((std::vector<std::string>{"close"}), engine_.calls);
  MwObjectRelease(player);
  sim::WaitIdle(200);
}

}  // namespace
}  // namespace simtest
