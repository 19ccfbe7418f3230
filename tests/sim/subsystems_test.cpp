// Behaviour of the simulated parental control, programmes, configuration,
// players, searches and recordings.
#include "sim/avcontrol_sim.h"
#include "sim/receiver.h"
#include "sim/recording_sim.h"
#include "sim/search_sim.h"
#include "sim_fixture.h"

namespace simtest {
namespace {

using SubsystemsTest = SimTest;

// Programme `index` (0 now, 1 next) of the receiver's channel `channel`.
MwHandle Programme(size_t channel, size_t index) {
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  return sim::Find<sim::ChannelObject>(sim::Rx().channels[channel])->programmes[index];
}

TEST_F(SubsystemsTest, RatingSchemeValuesIconsAndThreshold) {
  MwHandle control = MwParentalControlOpen();
  MwHandle schemes = MwParentalGetRatingSchemes(control);
  MwHandle scheme = MwListGetItem(schemes, 0);
  EXPECT_EQ(MwRatingSchemeGetLength(scheme), 15);
  MwString twelve = {2, "12x"};  // not terminated
  EXPECT_EQ(MwRatingSchemeIndexOf(scheme, &twelve), 8);
  MwString unknown = Ms("PG");
  EXPECT_EQ(MwRatingSchemeIndexOf(scheme, &unknown), -1);
  EXPECT_EQ(Take(MwRatingSchemeItem(scheme, 0)), "4");
  EXPECT_EQ(Take(MwRatingSchemeIconUrl(scheme, 0)), "http://icons.example/age-4.png");
  EXPECT_EQ(MwRatingSchemeItem(scheme, 15), 0u);
  MwHandle threshold = MwRatingSchemeGetThreshold(scheme);
  EXPECT_EQ(MwRatingGetValue(threshold), 16);
  EXPECT_EQ(Take(MwRatingGetScheme(threshold)), "dvb-si");
  for (MwHandle h : {threshold, scheme, schemes, control}) MwObjectRelease(h);
}

TEST_F(SubsystemsTest, ProgrammeListsDescriptorsAndRecording) {
  MwHandle now = Programme(0, 0);
  MwHandle genre = MwProgrammeGetGenre(now);
  ASSERT_EQ(MwListGetCount(genre), 1);
  EXPECT_EQ(Take(MwListGetItem(genre, 0)), "Drama");
  EXPECT_EQ(MwProgrammeGetGuidance(now), 0u);  // none
  MwHandle ratings = MwProgrammeGetParentalRatings(now);
  EXPECT_EQ(MwListGetCount(ratings), 1);
  MwHandle content = MwProgrammeGetSIDescriptors(now, 0x54, -1);
  EXPECT_EQ(Take(MwListGetItem(content, 0)), "content:Drama");
  EXPECT_EQ(MwProgrammeGetSIDescriptors(now, 0x54, 2), 0u);
  EXPECT_EQ(MwProgrammeGetRecording(now), 0u);
  for (MwHandle h : {content, ratings, genre}) MwObjectRelease(h);
}

TEST_F(SubsystemsTest, CapabilitiesAndPreferences) {
  MwHandle caps = MwCapabilitiesOpen(nullptr);
  MwString dvb_t = {5, "DVB_T_"};
  MwString dvb = Ms("DVB");
  EXPECT_EQ(MwCapabilitiesHasCapability(caps, &dvb_t), 1);
  EXPECT_EQ(MwCapabilitiesHasCapability(caps, &dvb), 0);
  EXPECT_NE(Take(MwCapabilitiesGetXml(caps)).find("<profilelist>"), std::string::npos);
  MwHandle config = MwConfigurationOpen(nullptr);
  MwHandle prefs = MwConfigGetPreferences(config);
  EXPECT_EQ(Take(MwConfigGetCountryId(prefs)), "GBR");
  EXPECT_EQ(MwConfigGetPostcode(prefs), 0u);
  EXPECT_EQ(MwConfigGetVoiceControlEnabled(prefs), 2);
  EXPECT_EQ(MwConfigGetCountryId(caps), 0u);  // not a preferences handle
  for (MwHandle h : {prefs, config, caps}) MwObjectRelease(h);
}

TEST_F(SubsystemsTest, PlayerPlaylistVolumeAndClipRectangle) {
  sim::SetAutoEvents(false);
  MwHandle player = MwAVCreateAudioMpeg();
  MwString first = Ms("http://media.example/a.mp3"), second = Ms("http://media.example/b.mp3");
  MwAVSetData(player, &first);
  EXPECT_EQ(MwAVQueue(player, &second), 1);
  EXPECT_EQ(MwAVGetNrTracks(player), 2);
  EXPECT_EQ(MwAVPrevious(player), 0);
  EXPECT_EQ(MwAVNext(player), 1);
  EXPECT_EQ(Take(MwAVGetData(player)), "http://media.example/b.mp3");
  EXPECT_EQ(MwAVNext(player), 0);
  EXPECT_EQ(MwAVSetVolume(player, 101), 0);
  EXPECT_EQ(MwAVSetVolume(player, 40), 1);
  MwAVSetCurrentTrackIndex(player, 0);
  EXPECT_EQ(MwAVQueue(player, nullptr), 1);  // drops what follows the current item
  sim::AVPlayerState state;
  ASSERT_TRUE(sim::AVPlayer(player, &state));
  EXPECT_EQ(state.playlist.size(), 1u);
  EXPECT_EQ(state.volume, 40);
  MwHandle video = MwAVGetComponents(player, 0);
  EXPECT_EQ(MwListGetCount(video), 0);  // an audio player
  MwObjectRelease(video);

  MwRect rect = {1, 2, 300, 400};
  MwVideoSetClipRect(&rect);
  MwRect last{};
  ASSERT_TRUE(sim::LastClipRect(&last));
  EXPECT_EQ(last.right, 300);
  MwVideoSetClipRect(nullptr);
  EXPECT_FALSE(sim::LastClipRect(&last));
  MwObjectRelease(player);
}

TEST_F(SubsystemsTest, QueriesFilterAndPageTheProgrammes) {
  sim::SetAutoEvents(false);
  MwHandle manager = MwSearchManagerOpen();
  MwHandle search = MwSearchManagerCreateSearch(manager, 1);
  MwString name = Ms("name"), orvane = Ms("orvane"), news = Ms("News");
  MwHandle all = MwSearchCreateQuery(search, &name, 6, &orvane);
  MwHandle is_news = MwSearchCreateQuery(search, &name, 6, &news);
  MwHandle not_news = MwQueryNot(is_news);
  MwHandle query = MwQueryAnd(all, not_news);
  EXPECT_EQ(sim::QueryDescription(query), "(name contains orvane and not name contains News)");
  MwSearchSetQuery(search, query);

  MwHandle results = MwSearchGetResult(search);
  ASSERT_EQ(MwSearchResultsGetResults(results, 2, 3), 1);
  EXPECT_EQ(MwSearchResultsGetTotalSize(results), 6);  // 8 programmes, 2 of the news channel
  EXPECT_EQ(MwSearchResultsGetOffset(results), 2);
  ASSERT_EQ(MwListGetCount(results), 3);
  MwHandle third = MwListGetItem(results, 0);
  EXPECT_EQ(Take(MwProgrammeGetName(third)), "Orvane Two Now");

  MwHandle channel = sim::CurrentChannel();
  MwSearchAddChannelConstraint(search, channel);
  MwSearchResultsGetResults(results, 0, 10);
  EXPECT_EQ(MwSearchResultsGetTotalSize(results), 2);
  MwSearchAddChannelConstraint(search, 0);
  MwSearchResultsGetResults(results, 0, 10);
  EXPECT_EQ(MwSearchResultsGetTotalSize(results), 6);
  for (MwHandle h : {third, results, query, not_news, is_news, all, search, manager}) MwObjectRelease(h);
}

TEST_F(SubsystemsTest, RecordingsFollowTheReceiverClock) {
  MwHandle scheduler = MwRecordingSchedulerOpen();
  MwHandle now = MwRecSchedRecord(scheduler, Programme(0, 0));
  MwHandle next = MwRecSchedRecord(scheduler, Programme(0, 1));
  EXPECT_EQ(MwRecGetState(now), 1);
  EXPECT_EQ(MwRecGetState(next), 0);
  EXPECT_EQ(Take(MwRecGetId(now)), "rec-1");
  EXPECT_EQ(Take(MwRecGetName(next)), "Orvane One Next");
  EXPECT_EQ(MwRecGetRecordingDuration(now), 600);
  MwHandle channel = MwRecGetChannel(now);
  EXPECT_EQ(channel, sim::CurrentChannel());
  MwHandle again = MwProgrammeGetRecording(Programme(0, 0));
  EXPECT_EQ(again, now);

  MwHandle recorded = MwRecSchedGetRecordings(scheduler);
  MwHandle scheduled = MwRecSchedGetScheduledRecordings(scheduler);
  EXPECT_EQ(MwListGetCount(recorded), 1);
  EXPECT_EQ(MwListGetCount(scheduled), 1);

  MwString unknown = Ms("ccid:none"), ccid = Ms("ccid:dvbt.2");
  EXPECT_EQ(MwRecSchedRecordAt(scheduler, 0, 60, 0, &unknown), 0u);
  MwHandle slot = MwRecSchedRecordAt(scheduler, 1795100000, 60, 0x7f, &ccid);
  EXPECT_EQ(Take(MwRecGetName(slot)), "Orvane Two");
  MwString renamed = Ms("Renamed");
  MwRecSetName(slot, &renamed, 0);
  EXPECT_EQ(Take(MwRecGetName(slot)), "Renamed");
  sim::ClearRecordingId(slot);
  EXPECT_EQ(MwRecGetId(slot), 0u);

  MwRecSchedRemove(scheduler, now);
  EXPECT_EQ(MwProgrammeHasRecording(Programme(0, 0)), 0);
  EXPECT_EQ(sim::Recordings().size(), 2u);
  for (MwHandle h : {slot, scheduled, recorded, again, channel, next, now, scheduler}) MwObjectRelease(h);
}

}  // namespace
}  // namespace simtest
