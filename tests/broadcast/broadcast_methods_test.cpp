// Methods of the broadcast object, with their deliberate quirks.
#include <future>

#include <gtest/gtest.h>

#include "broadcast/broadcast_fixture.h"
#include "sim/receiver_sim.h"

namespace {


TEST_F(BroadcastTest, BindingResultIsInvertedAndTuningMovesTheReceiver) {
  EXPECT_TRUE(Call("bindToCurrentChannel", {host::Int(1)})) << "an argument: nothing done";
  EXPECT_EQ(0u, sim::CountCalls("MwBroadcastBindToCurrentChannel"));
  EXPECT_FALSE(Call("bindToCurrentChannel"));
  EXPECT_EQ(1u, sim::CountCalls("MwBroadcastBindToCurrentChannel"));
  Settle();

  NPObject* changed = host::NewFunction("changed");
  Call("addEventListener", {host::Str("ChannelChangeSucceeded"), host::Obj(changed)});
  EXPECT_TRUE(Call("prevChannel"));
  EXPECT_TRUE(Call("nextChannel", {host::Str("ignored")}));
  EXPECT_TRUE(Call("nextChannel"));
  Settle();
  std::vector<std::string> names;
  for (const host::Call& c : host::Calls(changed)) names.push_back(Text(c.args[0].value.objectValue, "name"));
  EXPECT_EQ((std::vector<std::string>{"Orvane Radio", "Orvane One", "Orvane Two"}), names);

}

TEST_F(BroadcastTest, CreateChannelObjectTakesTheDsdFormOnly) {
  NPVariant r = host::Void();
  EXPECT_TRUE(Call("createChannelObject", {host::Int(12), host::Str("dsd:8468.4100"), host::Double(4164)}, &r));
  ASSERT_EQ(NPVariantType_Object, r.type);
  EXPECT_EQ("Orvane One", Text(r.value.objectValue, "name"));
  host::Release(&r);
  EXPECT_TRUE(Call("createChannelObject", {host::Int(12), host::Str("dsd:1.2"), host::Int(1)}, &r));
  EXPECT_EQ(NPVariantType_Null, r.type) << "a channel the receiver does not know";
  r = host::Void();
  EXPECT_TRUE(Call("createChannelObject", {host::Int(12)}, &r));
  EXPECT_EQ(NPVariantType_Void, r.type);
  EXPECT_EQ(0u, sim::CountCalls("MwBroadcastCreateChannelObject"));
}

TEST_F(BroadcastTest, SetChannelArgumentsAndNoChannel) {
  EXPECT_TRUE(Call("setChannel"));
  EXPECT_EQ(0u, sim::CountCalls("MwBroadcastSetChannel"));

  NPObject* failed = host::NewFunction("failed");
  NPObject* state = host::NewFunction("state");
  Call("addEventListener", {host::Str("ChannelChangeError"), host::Obj(failed)});
  Call("addEventListener", {host::Str("PlayStateChange"), host::Obj(state)});
  {
    // The simulator's thread is kept busy, so the tuning cannot end before the read.
    std::promise<void> go;
    std::shared_future<void> gate = go.get_future().share();
    sim::OnSimThread([gate] { gate.wait(); });
    NPVariant ignored = host::Void();
    host::Invoke(npp_, video_, "nextChannel", {}, &ignored);
    EXPECT_EQ(1, Get("playState").value.intValue) << "connecting from the call on";
    go.set_value();
  }
  Settle();
  // Anything but a channel stands for no channel: the receiver stops
  // presenting and the object goes unrealized, with no error.
  NPObject* stranger = host::NewFunction("not-a-channel");
  EXPECT_TRUE(Call("setChannel", {host::Obj(stranger), host::Bool(true), host::Str("http://cad.example/x")}));
  auto calls = sim::CallsTo("MwBroadcastSetChannel");
  ASSERT_EQ(1u, calls.size());
  EXPECT_EQ((std::vector<std::string>{std::to_string(handle_), "0", "1", "http://cad.example/x"}), calls[0].args);
  EXPECT_EQ(0, Get("playState").value.intValue);
  Settle();
  EXPECT_TRUE(host::Calls(failed).empty());
  ASSERT_FALSE(host::Calls(state).empty());
  EXPECT_EQ(0, host::Calls(state).back().args[0].value.intValue);
  EXPECT_EQ(0u, sim::CurrentChannel());
  // With nothing presented, binding finds nothing.
  Call("bindToCurrentChannel");
  EXPECT_EQ(0, Get("playState").value.intValue);
}

TEST_F(BroadcastTest, FullScreenNeedsExactlyOneArgument) {
  EXPECT_TRUE(Call("setFullScreen"));
  EXPECT_TRUE(Call("setFullScreen", {host::Bool(true), host::Bool(true)}));
  EXPECT_EQ(0u, sim::CountCalls("MwBroadcastSetFullScreen"));
  EXPECT_TRUE(Call("setFullScreen", {host::Int(1)})) << "any value counts as a flag";
  EXPECT_EQ(1280, Get("width").value.intValue);
}

TEST_F(BroadcastTest, EventTypesMatchByPrefix) {
  sim::SetAutoEvents(false);
  NPObject* play = host::NewFunction("play");
  NPObject* first = host::NewFunction("first");
  NPObject* none = host::NewFunction("none");
  Call("addEventListener", {host::Str("Play"), host::Obj(play)});  // PlayStateChange, the first "Play..."
  Call("addEventListener", {host::Str(""), host::Obj(first)});     // the first event of all
  Call("addEventListener", {host::Str("PlayStateChanged"), host::Obj(none)});
  Call("addEventListener", {host::Str("onPlayStateChange"), host::Obj(none)});
  EXPECT_TRUE(Call("addEventListener", {host::Str("PlayStateChange")}));

  const MwEventCallbacks* cb = sim::Callbacks();
  cb->Broadcast_onPlayStateChange(handle_, 2, 0);
  cb->Broadcast_onSelectedComponentChanged(handle_, 1);
  host::Pump();
  ASSERT_EQ(1u, host::Calls(play).size());
  EXPECT_EQ(0, host::Calls(play)[0].args[1].value.intValue);
  ASSERT_EQ(1u, host::Calls(first).size());
  EXPECT_EQ(1, host::Calls(first)[0].args[0].value.intValue);
  EXPECT_TRUE(host::Calls(none).empty());
  // Removal by the first argument is shared with the DRM agent and checked there.
}

TEST_F(BroadcastTest, ComponentsAreSelectedByTypeOrObjectAndUnselected) {
  NPVariant r = host::Void();
  EXPECT_TRUE(Call("getComponents", {host::Str("1")}, &r));
  EXPECT_EQ(NPVariantType_Void, r.type);
  Call("bindToCurrentChannel");
  Settle();

  EXPECT_TRUE(Call("getCurrentActiveComponents", {host::Int(2)}, &r));
  ASSERT_EQ(NPVariantType_Object, r.type) << "no subtitles until chosen: an empty collection";
  NPVariant length = host::Void();
  EXPECT_TRUE(host::Get(npp_, r.value.objectValue, "length", &length));
  EXPECT_EQ(0, length.value.intValue);
  host::Release(&r);
  EXPECT_TRUE(Call("selectComponent", {host::Int(2)}));
  EXPECT_FALSE(Call("selectComponent", {host::Str("subtitles")}));

  NPVariant audio = host::Void(), german = host::Void();
  ASSERT_TRUE(Call("getComponents", {host::Int(1)}, &audio));
  ASSERT_TRUE(host::Invoke(npp_, audio.value.objectValue, "item", {host::Int(1)}, &german));
  EXPECT_TRUE(Call("selectComponent", {german}));
  EXPECT_TRUE(Call("unselectComponent", {german}));
  EXPECT_TRUE(Call("unselectComponent", {host::Double(2)}));
  sim::BroadcastState state;
  ASSERT_TRUE(sim::Broadcast(handle_, &state));
  EXPECT_EQ(0u, state.selected_components);
  EXPECT_TRUE(state.selected_types.empty());
  for (NPVariant* v : {&audio, &german}) host::Release(v);
}

TEST_F(BroadcastTest, RecordNowTruncatesItsDurationAndReportsTheRecording) {
  NPObject* recording = host::NewFunction("recording");
  host::Set(npp_, video_, "onRecordingEvent", host::Obj(recording));
  NPVariant id = host::Void();
  EXPECT_FALSE(Call("recordNow", {}, &id));
  EXPECT_TRUE(Call("recordNow", {host::Double(90.9)}, &id));
  EXPECT_EQ("rec-1", host::AsString(id));
  host::Release(&id);
  EXPECT_TRUE(Call("recordNow", {host::Double(1e12)}, &id));
  host::Release(&id);
  std::vector<std::string> durations;
  for (auto& c : sim::CallsTo("MwBroadcastRecordNow")) durations.push_back(c.args[1]);
  EXPECT_EQ((std::vector<std::string>{"90", "2147483647"}), durations);
  sim::Force("MwBroadcastRecordNow", 0);
  EXPECT_TRUE(Call("recordNow", {host::Int(5)}, &id));
  EXPECT_EQ(NPVariantType_Null, id.type);

  Settle();
  ASSERT_EQ(2u, host::Calls(recording).size());
  EXPECT_EQ("rec-1", host::Calls(recording)[0].text[2]);
}

}  // namespace
