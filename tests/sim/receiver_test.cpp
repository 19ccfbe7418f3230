// What the simulated receiver does by itself, as a receiver would: DRM
// answers per system and message type and scheduled system messages; a
// protected service's rights error, a timeshifted service's speed and
// position, the guide's present programme changing, component selection;
// its answers (the dvb-si scheme, active components) and AIT URLs.
#include "sim/appmgr_sim.h"
#include "sim/broadcast_sim.h"
#include "sim/receiver_sim.h"
#include "sim/description.h"
#include "sim/receiver.h"
#include "sim_fixture.h"

namespace simtest {
namespace {

using ReceiverTest = SimTest;


TEST_F(ReceiverTest, DrmSystemsAnswerPerSystemAndTypeAndSendTheirOwnMessages) {
  ASSERT_TRUE(sim::LoadDescriptionText(R"({"capabilities": {"drm": [{"systemId": "urn:drm:a",
      "answers": {"type/licence": {"result": "granted", "code": 0}, "type/busy": {"result": "later", "code": 2}},
      "systemMessages": [{"message": "renewed", "delayMs": 30}]}]}})", nullptr));
  MwHandle agent = MwDrmAgentCreate(nullptr);
  const char* const sends[][2] = {{"type/licence", "urn:drm:a"}, {"type/busy", "urn:drm:a"},
                                  {"type/other", "urn:drm:a"}, {"type/licence", "urn:drm:b"}};
  for (const auto& send : sends) {
    MwString type = Ms(send[0]), message = Ms("<m/>"), system = Ms(send[1]);
    Take(MwDrmAgentSendMessage(agent, &type, &message, &system));
  }
  sim::WaitIdle();
  std::vector<std::string> answers;
  for (const Event& e : Named("DrmAgent_onDRMMessageResult"))
    answers.push_back(e.texts[0] + " " + e.texts[1] + " " + std::to_string(e.args[1]));
  std::sort(answers.begin(), answers.end());
  EXPECT_EQ((std::vector<std::string>{"msg-1 granted 0", "msg-2 later 2", "msg-3  3", "msg-4  5"}), answers)
      << "a known type's answer, an unknown type (3), an unknown system (5)";
  auto system = Named("DrmAgent_onDRMSystemMessage");
  ASSERT_EQ(1u, system.size());
  EXPECT_EQ((std::vector<std::string>{"renewed", "urn:drm:a"}), system[0].texts);
  EXPECT_FALSE(system[0].on_test_thread);
  MwObjectRelease(agent);
}

TEST_F(ReceiverTest, PresentingAServiceReportsRightsTimeshiftAndTheGuide) {
  ASSERT_TRUE(sim::LoadDescriptionText(R"({"channels": [
      {"name": "Locked", "protected": {"systemId": "urn:drm:a", "contentId": "film-1"}, "timeshift": true,
       "programmes": [{"name": "Short", "startOffset": -10, "duration": 20}, {"name": "After", "startOffset": 10,
                       "duration": 600}],
       "components": [{"type": "audio", "language": "eng"}, {"type": "audio", "language": "deu"}]}]})",
                                       nullptr));
  MwHandle b = MwBroadcastCreate(nullptr);
  MwBroadcastBindToCurrentChannel(b);
  sim::WaitIdle(200);
  auto rights = Named("Broadcast_onDRMRightsError");
  ASSERT_EQ(1u, rights.size());
  EXPECT_EQ(0, rights[0].args[1]) << "no licence";
  EXPECT_EQ((std::vector<std::string>{"film-1", "urn:drm:a", "<null>"}), rights[0].texts);
  auto speed = Named("Broadcast_onPlaySpeedChanged");
  ASSERT_EQ(1u, speed.size());
  EXPECT_EQ(1, speed[0].args[1]);
  ASSERT_EQ(1u, Named("Broadcast_onPlayPositionChanged").size());
  EXPECT_TRUE(Named("Broadcast_onProgrammesChanged").empty()) << "the clock stands still";

  // On a running clock the present programme ends 10 s on: 100 ms at 100 s a second.
  sim::SetClockRate(100);
  MwBroadcastBindToCurrentChannel(b);
  sim::WaitIdle(1500);
  EXPECT_EQ(1u, Named("Broadcast_onProgrammesChanged").size());
  MwHandle list = MwBroadcastGetProgrammes(b);
  ASSERT_EQ(1, MwListGetCount(list)) << "the ended programme has left the guide's present and following";
  MwHandle programme = MwListGetItem(list, 0);
  EXPECT_EQ("After", Take(MwProgrammeGetName(programme)));
  MwObjectRelease(programme);
  MwObjectRelease(list);
  EXPECT_GE(Named("Broadcast_onPlayPositionChanged").size(), 2u) << "a position each second";

  MwHandle audio = MwBroadcastGetComponents(b, 1);
  ASSERT_EQ(2, MwListGetCount(audio));
  MwHandle german = MwListGetItem(audio, 1);
  MwBroadcastSelectComponent(b, german);
  MwBroadcastUnselectComponent(b, german);
  MwObjectRelease(german);
  MwObjectRelease(audio);
  sim::WaitIdle(100);
  auto selected = Named("Broadcast_onSelectedComponentChanged");
  ASSERT_EQ(2u, selected.size()) << "select and unselect";
  EXPECT_EQ(1, selected[1].args[1]) << "the audio component";

  MwObjectRelease(b);
  ClearEvents();
  sim::WaitIdle(1500);
  EXPECT_TRUE(Named("Broadcast_onPlayPositionChanged").empty()) << "a released object hears no more";
}


// What the built-in receiver answers as a TV does: a dvb-si scheme with no
// values, and an empty list of active components of a type none of which is
// selected.
TEST_F(ReceiverTest, TheBuiltInReceiverAnswersAsATvDoes) {
  MwHandle parental = MwParentalControlOpen();
  MwHandle schemes = MwParentalGetRatingSchemes(parental);
  MwHandle dvb = MwListGetItem(schemes, 0);
  EXPECT_EQ("dvb-si", Take(MwRatingSchemeGetName(dvb)));
  EXPECT_EQ(0, MwRatingSchemeGetLength(dvb));
  for (MwHandle h : {dvb, schemes, parental}) MwObjectRelease(h);

  MwHandle b = MwBroadcastCreate(nullptr);
  MwBroadcastBindToCurrentChannel(b);
  MwHandle subtitles = MwBroadcastGetCurrentActiveComponents(b, 2);
  ASSERT_NE(0u, subtitles);
  EXPECT_EQ(0, MwListGetCount(subtitles));
  MwObjectRelease(subtitles);
  MwObjectRelease(b);
}


// dvb://current.ait/ORG.APP with a query and a fragment, applied to an AIT
// URL that has a query of its own.
TEST_F(ReceiverTest, AnAitApplicationUrlMergesTheQueryItIsGiven) {
  ASSERT_TRUE(sim::LoadDescriptionText(R"({"channels": [{"name": "Apps", "ait": [
      {"orgId": 10, "appId": 1, "url": "http://apps.example/page.php?a=1#top"}]}]})", nullptr));
  const char* const cases[][2] = {
      {"dvb://current.ait/a.1?b=2#x", "http://apps.example/page.php?a=1&b=2#x"},
      {"dvb://current.ait/a.1?b=2", "http://apps.example/page.php?a=1&b=2#top"},
      {"dvb://current.ait/a.1#x", "http://apps.example/page.php?a=1#x"},
      {"dvb://current.ait/a.1", "http://apps.example/page.php?a=1#top"},
  };
  for (const auto& c : cases) {
    MwString url = Ms(c[0]);
    MwHandle app = MwApplicationCreateApplication(0, &url, 0);
    EXPECT_EQ(c[1], sim::Application(app).url) << c[0];
    MwObjectRelease(app);
  }
}

// A carousel URL names a file or a directory of the service's folder, the
// root included; nothing outside it.
TEST_F(ReceiverTest, CarouselUrlsNameFilesAndDirectories) {
  ASSERT_TRUE(sim::LoadDescriptionText(R"({"channels": [{"name": "Apps", "onid": 1, "tsid": 2, "sid": 3,
      "carousel": "/srv/carousel"}]})", nullptr));
  EXPECT_EQ("/srv/carousel/", sim::CarouselFile("dvb://1.2.3/"));
  EXPECT_EQ("/srv/carousel/data/", sim::CarouselFile("dvb://1.2.3/data/"));
  EXPECT_EQ("/srv/carousel/data/info.txt", sim::CarouselFile("dvb://current/data/info.txt?x#y"));
  EXPECT_EQ("", sim::CarouselFile("dvb://1.2.3/data/../../etc/passwd"));
  EXPECT_EQ("", sim::CarouselFile("dvb://1.2.4/data/info.txt")) << "another service";
}

// A programme's descriptors from the description: bytes as characters 0 to
// 255 (UTF-8), replacing the genre text made up for their tag.
TEST_F(ReceiverTest, ProgrammesCarryTheirDescribedDescriptors) {
  ASSERT_TRUE(sim::LoadDescriptionText(R"({"channels": [{"name": "One", "programmes": [{"name": "P",
      "genre": ["Drama"], "descriptors": [{"tag": 84, "bytes": "54 02 10 ff"}]}]}]})", nullptr));
  MwHandle b = MwBroadcastCreate(nullptr);
  MwBroadcastBindToCurrentChannel(b);
  MwHandle list = MwBroadcastGetProgrammes(b);
  MwHandle programme = MwListGetItem(list, 0);
  MwHandle content = MwProgrammeGetSIDescriptors(programme, 0x54, -1);
  ASSERT_EQ(1, MwListGetCount(content)) << "the described one, not the genre's";
  EXPECT_EQ(std::string("\x54\x02\x10\xc3\xbf"), Take(MwListGetItem(content, 0)));
  EXPECT_EQ(0u, MwProgrammeGetSIDescriptors(programme, 0x4d, -1));
  for (MwHandle h : {content, programme, list, b}) MwObjectRelease(h);
  std::string error;
  EXPECT_FALSE(sim::LoadDescriptionText(R"({"channels": [{"name": "One", "programmes": [{"name": "P",
      "descriptors": [{"tag": 84, "bytes": "5g"}]}]}]})", &error));
  EXPECT_NE(std::string::npos, error.find("hexadecimal")) << error;
}

// A stream-event URL's path names an object of the carousel, whose tap names
// the component that carries its events; a description names the component
// in its dsmcc_object. Anything the service does not carry: one error event.
TEST_F(ReceiverTest, StreamEventsComeOnTheComponentTheirObjectNames) {
  ASSERT_TRUE(sim::LoadDescriptionText(R"({"channels": [{"name": "One", "onid": 1, "tsid": 2, "sid": 3,
      "carouselTag": 11, "streamEventObjects": [{"path": "events", "componentTag": 12}],
      "streamEvents": [{"name": "tick", "componentTag": 12, "delayMs": 1}]}]})", nullptr));
  MwHandle b = MwBroadcastCreate(nullptr);
  MwBroadcastBindToCurrentChannel(b);
  sim::WaitIdle(100);
  ClearEvents();
  const char* const urls[] = {"dvb://1.2.3.b/events", "dvb://1.2.3.c/events", "dvb://1.2.3.b/other"};
  uint32_t kind = 25;
  for (const char* url : urls) MwBroadcastAddStreamEventListener(b, strlen(url), url, 4, "tick", kind++);
  for (int tag : {12, 13}) {
    std::string xml = "<dsmcc_object component_tag=\"" + std::to_string(tag) + "\"><stream_event name=\"tick\"/>";
    MwBroadcastAddStreamEventXml(b, xml.data(), static_cast<uint32_t>(xml.size()), 4, "tick", kind++);
  }
  sim::WaitIdle(100);
  std::vector<std::string> seen;
  for (const Event& e : Named("Broadcast_onStreamEvent"))
    seen.push_back(std::to_string(e.args[1]) + (e.args[2] == 1 ? " trigger" : " error"));
  std::sort(seen.begin(), seen.end());
  EXPECT_EQ((std::vector<std::string>{"25 trigger", "26 error", "27 error", "28 trigger", "29 error"}), seen)
      << "the object's component; another carousel; no such object; the description's component; another";
  MwObjectRelease(b);
}

// The viewer's tune: the receiver presents the channel; a bound object
// follows with its events, an unbound one hears nothing.
TEST_F(ReceiverTest, TheViewerTunesAndBoundObjectsFollow) {
  MwHandle bound = MwBroadcastCreate(nullptr), unbound = MwBroadcastCreate(nullptr);
  MwBroadcastBindToCurrentChannel(bound);
  sim::WaitIdle(100);
  ClearEvents();
  EXPECT_FALSE(sim::ViewerTune(sim::Channels().size()));
  EXPECT_EQ(sim::Channels()[0], sim::CurrentChannel());
  ASSERT_TRUE(sim::ViewerTune(2));
  sim::WaitIdle(100);
  EXPECT_EQ(sim::Channels()[2], sim::CurrentChannel());
  auto succeeded = Named("Broadcast_onChannelChangeSucceeded");
  ASSERT_EQ(1u, succeeded.size());
  EXPECT_EQ(bound, static_cast<MwHandle>(succeeded[0].args[0]));
  for (const Event& e : Named("Broadcast_onPlayStateChange")) EXPECT_EQ(bound, static_cast<MwHandle>(e.args[0]));
  MwObjectRelease(bound);
  MwObjectRelease(unbound);
}

}  // namespace
}  // namespace simtest
