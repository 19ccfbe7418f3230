// Receiver descriptions: JSON sections replacing parts of the built-in receiver.
#include "sim/description.h"
#include "sim/receiver.h"
#include "sim_fixture.h"

#include <fstream>

namespace simtest {
namespace {

using DescriptionTest = SimTest;

#if __has_include(<nlohmann/json.hpp>)

std::shared_ptr<sim::ChannelObject> ChannelAt(size_t i) {
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  return i < sim::Rx().channels.size() ? sim::Find<sim::ChannelObject>(sim::Rx().channels[i]) : nullptr;
}

size_t ChannelCount() {
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  return sim::Rx().channels.size();
}

TEST_F(DescriptionTest, ChannelsAndIdentityReplaceOnlyTheirSections) {
  std::string error;
  ASSERT_TRUE(sim::LoadDescriptionText(R"({
    "channels": [
      {"name": "Alpha", "onid": 1, "tsid": 2, "sid": 3,
       "programmes": [{"name": "Early", "startOffset": -60, "duration": 600, "parentalRating": 12},
                      {"name": "Late", "start": 1795000540}],
       "components": [{"type": "audio", "tag": 7, "language": "fra"}],
       "streamEvents": [{"name": "tick", "data": "d", "repeatMs": 40}]},
      {"name": "Beta", "type": "radio", "majorChannel": 9, "locked": true}
    ],
    "currentChannel": 1,
    "identity": {"deviceId": "BOX-7"},
    "keys": {"groups": ["RED", "NAVIGATION", "NUMERIC"]}
  })", &error)) << error;
  ASSERT_EQ(ChannelCount(), 2u);
  auto alpha = ChannelAt(0), beta = ChannelAt(1);
  // Unset fields take their defaults from the channel's place and name.
  EXPECT_EQ(alpha->short_name, "Alpha");
  EXPECT_EQ(alpha->major_channel, 1);
  EXPECT_EQ(alpha->ccid, "ccid:dvbt.1");
  EXPECT_EQ(beta->channel_type, 1);
  EXPECT_EQ(sim::CurrentChannel(), sim::Rx().channels[1]);

  ASSERT_EQ(alpha->programmes.size(), 2u);
  EXPECT_EQ(sim::Find<sim::ProgrammeObject>(alpha->programmes[0])->start_time, 1795000000 - 60);
  EXPECT_EQ(sim::Find<sim::ProgrammeObject>(alpha->programmes[1])->duration, 1800);
  EXPECT_EQ(alpha->components.size(), 1u);
  ASSERT_EQ(alpha->stream_events.size(), 1u);

  EXPECT_EQ(sim::Rx().device_id, "BOX-7");
  EXPECT_EQ(sim::Rx().vendor_name, "Orvane") << "not given: kept";
  EXPECT_EQ(sim::Rx().key_groups, 0x1 | 0x10 | 0x100);
  // The receiver's objects carry no references of the plug-in.
  EXPECT_EQ(sim::HeldHandles(), 0u);
}

TEST_F(DescriptionTest, MediaByUrlAndTheDefaultClip) {
  std::string error;
  ASSERT_TRUE(sim::LoadDescriptionText(R"({"media": {
    "default": {"duration": 5000, "components": [{"type": "audio", "language": "nld"}]},
    "http://v/a.mp4": {"title": "A", "duration": 1200, "unplayable": true}}})", &error)) << error;
  sim::MediaSpec a = sim::MediaAt("http://v/a.mp4");
  EXPECT_EQ("A", a.title);
  EXPECT_EQ(1200, a.duration_ms);
  EXPECT_TRUE(a.unplayable);
  ASSERT_EQ(1u, a.components.size()) << "the default clip's components";
  sim::MediaSpec other = sim::MediaAt("http://v/dir/other.mp4");
  EXPECT_EQ("other.mp4", other.title) << "the URL's last part";
  EXPECT_EQ(5000, other.duration_ms);
  EXPECT_EQ("nld", other.components.at(0).language);
  EXPECT_FALSE(sim::LoadDescriptionText(R"({"media": {"x": {"duration": 0}}})", &error));
  EXPECT_NE(std::string::npos, error.find("duration"));
}

TEST_F(DescriptionTest, AFaultyDescriptionLeavesTheBuiltInReceiverAndSaysWhy) {
  const char* faulty[] = {
      "{\"channels\": [",                                            // not JSON
      "[1, 2]",                                                      // not an object
      R"({"channels": [{"sid": 1}]})",                               // channel without a name
      R"({"channels": [{"name": "A", "type": "cable"}]})",           // unknown channel type
      R"({"channels": [{"name": "A", "components": [{"type": "teletext"}]}]})",
      R"({"channels": [{"name": "A", "onid": "one"}]})",             // wrong value type
      R"({"keys": {"groups": ["RED", "PURPLE"]}})",
      R"({"currentChannel": 4})",
      R"({"channels": [{"name": "A", "streamEvents": [{"data": "x"}]}]})",
      // Numbers beyond what the receiver counts with, and a guide that runs
      // past its clock (found by the description fuzz target).
      R"({"channels": [{"name": "A", "onid": 4294967296}]})",
      R"({"channels": [{"name": "A", "schedule": {"count": 2, "ratings": [1e30]}}]})",
      R"({"channels": [{"name": "A", "components": [{"type": "video", "aspectRatio": 1e300}]}]})",
      R"({"currentChannel": -1})",
      R"({"channels": [{"name": "A", "schedule": {"count": 200, "duration": 18003600}}]})",
  };
  for (const char* text : faulty) {
    std::string error;
    EXPECT_FALSE(sim::LoadDescriptionText(text, &error)) << text;
    EXPECT_FALSE(error.empty()) << text;
    EXPECT_EQ(std::string::npos, error.find('\n')) << "one line: " << error;
    EXPECT_EQ(ChannelCount(), 4u) << text;
    EXPECT_EQ(sim::Rx().key_groups, 0x1ff) << text;
  }
}

TEST_F(DescriptionTest, FromAFile) {
  std::string error;
  EXPECT_FALSE(sim::LoadDescription("/nonexistent/receiver.json", &error));
  EXPECT_EQ(error, "cannot read the file");
  std::string path = ::testing::TempDir() + "orvane_receiver.json";
  std::ofstream(path) << R"({"channels": [{"name": "Only"}]})";
  ASSERT_TRUE(sim::LoadDescription(path, &error)) << error;
  ASSERT_EQ(ChannelCount(), 1u);
  EXPECT_EQ(ChannelAt(0)->name, "Only");
  std::remove(path.c_str());
}

#else

TEST_F(DescriptionTest, NeedsTheJsonLibrary) {
  std::string error;
  EXPECT_FALSE(sim::LoadDescriptionText("{}", &error));
  GTEST_SKIP() << "built without nlohmann-json3-dev";
}

#endif

}  // namespace
}  // namespace simtest
