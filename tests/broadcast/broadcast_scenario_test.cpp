// A page's whole use of the broadcast object against the simulated receiver.
#include "broadcast/broadcast_fixture.h"

namespace {

TEST_F(BroadcastTest, BindTuneComponentsStreamEventFullScreenAndDestroy) {
  SetWindow(320, 180, NPRect{0, 0, 180, 320});
  NPObject* states = host::NewFunction("states");
  NPObject* changed = host::NewFunction("changed");
  ASSERT_TRUE(host::Set(npp_, video_, "onPlayStateChange", host::Obj(states)));
  ASSERT_TRUE(Call("addEventListener", {host::Str("ChannelChangeSucceeded"), host::Obj(changed)}));

  bool ok = true;
  NPVariant none = Get("currentChannel", &ok);
  EXPECT_FALSE(ok) << "nothing presented before binding";
  EXPECT_EQ(NPVariantType_Null, none.type);

  EXPECT_FALSE(Call("bindToCurrentChannel")) << "binding reports failure";
  Settle();
  const auto& played = host::Calls(states);
  ASSERT_EQ(2u, played.size());
  EXPECT_EQ(1, played[0].args[0].value.intValue);
  EXPECT_EQ(NPVariantType_Void, played[0].args[1].type);
  EXPECT_EQ(2, played[1].args[0].value.intValue);
  ASSERT_EQ(1u, host::Calls(changed).size());
  EXPECT_EQ("Orvane One", Text(host::Calls(changed)[0].args[0].value.objectValue, "name"));

  NPVariant current = Get("currentChannel", &ok);
  ASSERT_TRUE(ok);
  EXPECT_EQ("Orvane One", Text(current.value.objectValue, "name"));
  host::Release(&current);

  // Tune to "Orvane Two" by its triplet.
  NPVariant two = host::Void();
  ASSERT_TRUE(Call("createChannelObject",
                   {host::Int(12), host::Int(8468), host::Int(4100), host::Int(4228), host::Int(0),
                    host::Str("")},
                   &two));
  ASSERT_EQ(NPVariantType_Object, two.type);
  EXPECT_TRUE(Call("setChannel", {two}));
  Settle();
  ASSERT_EQ(2u, host::Calls(changed).size());
  EXPECT_EQ(two.value.objectValue, host::Calls(changed)[1].args[0].value.objectValue)
      << "the event carries the channel's one script object";
  host::Release(&two);
  current = Get("currentChannel", &ok);
  EXPECT_EQ("Orvane Two", Text(current.value.objectValue, "name"));
  host::Release(&current);

  NPVariant audio = host::Void();
  ASSERT_TRUE(Call("getComponents", {host::Int(1)}, &audio));
  ASSERT_EQ(NPVariantType_Object, audio.type);
  NPVariant length = host::Void();
  ASSERT_TRUE(host::Get(npp_, audio.value.objectValue, "length", &length));
  EXPECT_EQ(2, length.value.intValue);
  NPVariant first = host::Void();
  ASSERT_TRUE(host::Invoke(npp_, audio.value.objectValue, "item", {host::Int(0)}, &first));
  EXPECT_EQ("eng", Text(first.value.objectValue, "language"));
  host::Release(&first);
  host::Release(&audio);

  // The service's own event; one of another service and one it does not
  // carry each get one event whose status is error.
  NPObject* trigger = host::NewFunction("trigger");
  NPObject* missing = host::NewFunction("missing");
  EXPECT_TRUE(Call("addStreamEventListener",
                   {host::Str("dvb://2114.1004.1084;1"), host::Str("now"), host::Obj(trigger)}));
  EXPECT_TRUE(Call("addStreamEventListener",
                   {host::Str("dvb://233a.1004.1084"), host::Str("now"), host::Obj(missing)}));
  EXPECT_TRUE(Call("addStreamEventListener",
                   {host::Str("dvb://2114.1004.1084"), host::Str("later"), host::Obj(missing)}));
  Settle();
  ASSERT_EQ(2u, host::Calls(missing).size());
  for (const host::Call& call : host::Calls(missing))
    EXPECT_EQ("error", Text(call.args[0].value.objectValue, "status"));
  ASSERT_EQ(1u, host::Calls(trigger).size());
  NPObject* event = host::Calls(trigger)[0].args[0].value.objectValue;
  EXPECT_EQ("now", Text(event, "name"));
  EXPECT_EQ("chapter-2", Text(event, "data"));
  EXPECT_EQ("Orvane Two", Text(event, "text"));
  EXPECT_EQ("trigger", Text(event, "status"));

  EXPECT_EQ("", host::StyleValue(page_, "left"));
  EXPECT_TRUE(Call("setFullScreen", {host::Bool(true)}));
  EXPECT_EQ("0px 0px 1280px 720px", StyleRect());
  NPVariant full = Get("fullScreen");
  EXPECT_TRUE(full.value.boolValue);
  EXPECT_TRUE(Call("setFullScreen", {host::Bool(false)}));
  EXPECT_EQ("110px 70px 320px 180px", StyleRect()) << "back to the element's place on the page";

  EXPECT_TRUE(Call("removeStreamEventListener",
                   {host::Str("dvb://233a.1004.1084;1"), host::Str("now"), host::Obj(trigger)}));
  DestroyPlugin(npp_);
  EXPECT_EQ(0u, sim::BroadcastInstances().size());
  MwRect rect;
  EXPECT_FALSE(sim::LastPaintRect(&rect)) << "painting stops with the object";
}

}  // namespace
