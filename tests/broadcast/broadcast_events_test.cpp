// The middleware's broadcast events as the page's listeners receive them.
#include <gtest/gtest.h>

#include "broadcast/broadcast_fixture.h"
#include "sim/receiver_sim.h"
#include "objects/parental_rating.h"

namespace {

class BroadcastEventTest : public BroadcastTest {
 protected:
  void SetUp() override {
    BroadcastTest::SetUp();
    sim::SetAutoEvents(false);
    cb_ = sim::Callbacks();
    channel_ = sim::CurrentChannel();
  }
  NPObject* Listen(const char* type) {
    NPObject* f = host::NewFunction(type);
    EXPECT_TRUE(Call("addEventListener", {host::Str(type), host::Obj(f)}));
    return f;
  }
  // The one call `f` received, as its argument texts ("<type>" for non-strings).
  std::vector<std::string> Args(NPObject* f) {
    EXPECT_EQ(1u, host::Calls(f).size());
    std::vector<std::string> out;
    if (host::Calls(f).empty()) return out;
    for (const NPVariant& v : host::Calls(f)[0].args) {
      switch (v.type) {
        case NPVariantType_Void: out.push_back("undefined"); break;
        case NPVariantType_Null: out.push_back("null"); break;
        case NPVariantType_Bool: out.push_back(v.value.boolValue ? "true" : "false"); break;
        case NPVariantType_Int32: out.push_back(std::to_string(v.value.intValue)); break;
        case NPVariantType_String: out.push_back("'" + host::AsString(v) + "'"); break;
        default: out.push_back("object"); break;
      }
    }
    return out;
  }
  using V = std::vector<std::string>;
  const MwEventCallbacks* cb_ = nullptr;
  MwHandle channel_ = 0;
};

TEST_F(BroadcastEventTest, EveryEntryDeliversItsArguments) {
  NPObject* rating = ParentalRatingCreate(npp_, sim::Ref(sim::CurrentRating()));
  ASSERT_NE(nullptr, rating);
  NPObject* component = Listen("SelectedComponentChanged");
  NPObject* full = Listen("FullScreenChange");
  NPObject* play = Listen("PlayStateChange");
  NPObject* error = Listen("ChannelChangeError");
  NPObject* succeeded = Listen("ChannelChangeSucceeded");
  NPObject* change = Listen("ParentalRatingChange");
  NPObject* rating_error = Listen("ParentalRatingError");
  NPObject* recording = Listen("RecordingEvent");
  NPObject* position = Listen("PlayPositionChanged");
  NPObject* drm = Listen("DRMRightsError");

  cb_->Broadcast_onSelectedComponentChanged(handle_, 2);
  cb_->Broadcast_onFullScreenChange(handle_);
  cb_->Broadcast_onPlayStateChange(handle_, 2, 0);
  cb_->Broadcast_onChannelChangeError(handle_, sim::Ref(channel_), -1);
  cb_->Broadcast_onChannelChangeSucceeded(handle_, sim::Ref(channel_));
  sim::RaiseParentalRatingChange(handle_, "crid://one/1", nullptr, true);
  sim::RaiseParentalRatingError(handle_, nullptr, "urn:dvb:casystemid:1");
  cb_->Broadcast_onRecordingEvent(handle_, 2, 1, 0);
  cb_->Broadcast_onPlayPositionChanged(handle_, 1234);
  cb_->Broadcast_onDRMRightsError(handle_, 3, 0, sim::NewString("urn:drm"), 0);
  EXPECT_TRUE(host::CallOrder().empty()) << "delivered on the browser's thread only";
  host::Pump();

  EXPECT_EQ(V{"2"}, Args(component));
  EXPECT_EQ(V{}, Args(full));
  EXPECT_EQ((V{"2", "0"}), Args(play));
  EXPECT_EQ((V{"object", "undefined"}), Args(error));
  EXPECT_EQ(V{"object"}, Args(succeeded));
  EXPECT_EQ(host::Calls(error)[0].args[0].value.objectValue, host::Calls(succeeded)[0].args[0].value.objectValue);
  EXPECT_EQ((V{"'crid://one/1'", "object", "null", "true"}), Args(change));
  EXPECT_EQ(rating, host::Calls(change)[0].args[1].value.objectValue);
  EXPECT_EQ((V{"null", "object", "'urn:dvb:casystemid:1'"}), Args(rating_error));
  EXPECT_EQ((V{"2", "1", "null"}), Args(recording));
  EXPECT_EQ(V{"1234"}, Args(position));
  EXPECT_EQ((V{"3", "undefined", "'urn:drm'", "undefined"}), Args(drm));
  host::Funcs()->releaseobject(rating);
}

TEST_F(BroadcastEventTest, EventsForUnknownHandlesAreDroppedAndTheirHandlesReleased) {
  NPObject* any = Listen("");
  const MwHandle stranger = 0x7fffffff;
  cb_->Broadcast_onChannelChangeSucceeded(stranger, sim::Ref(channel_));
  cb_->Broadcast_onChannelChangeError(stranger, sim::Ref(channel_), 1);
  cb_->Broadcast_onRecordingEvent(stranger, 1, 0, sim::NewString("rec-9"));
  cb_->Broadcast_onDRMRightsError(stranger, 1, sim::NewString("c"), sim::NewString("d"), sim::NewString("u"));
  MwStreamEvent event = {1, "x", 0, "", 0, "", 1};
  cb_->Broadcast_onStreamEvent(stranger, 25, &event);
  // A rating without a script object: dropped, its strings released.
  sim::RaiseParentalRatingChange(handle_, "crid://x", "urn:y", false);
  host::Pump();
  EXPECT_TRUE(host::Calls(any).empty());
  EXPECT_EQ(0, sim::RefsOf(channel_));
  EXPECT_EQ(1u, sim::HeldHandles()) << "only the broadcast instance:\n" << sim::HeldHandlesReport();
}

TEST_F(BroadcastEventTest, ShortMemoryDropsEventsWithoutLeaking) {
  NPObject* succeeded = Listen("ChannelChangeSucceeded");
  NPObject* drm = Listen("DRMRightsError");
  host::FailAllocation(1);  // the argument block
  cb_->Broadcast_onChannelChangeSucceeded(handle_, sim::Ref(channel_));
  host::FailRecordAllocation(1);  // the channel object's record
  cb_->Broadcast_onChannelChangeError(handle_, sim::Ref(channel_), 2);
  host::FailAllocation(1);
  cb_->Broadcast_onDRMRightsError(handle_, 1, sim::NewString("c"), sim::NewString("d"), 0);
  host::Pump();
  EXPECT_TRUE(host::CallOrder().empty());
  EXPECT_EQ(1u, sim::HeldHandles()) << "only the broadcast instance:\n" << sim::HeldHandlesReport();

  // An event still queued when the object goes is dropped with its channel.
  cb_->Broadcast_onChannelChangeSucceeded(handle_, sim::Ref(channel_));
  cb_->Broadcast_onDRMRightsError(handle_, 1, sim::NewString("c"), 0, 0);
  DestroyPlugin(npp_);
  host::Pump();
  EXPECT_TRUE(host::Calls(succeeded).empty());
  EXPECT_TRUE(host::Calls(drm).empty());
}

}  // namespace
