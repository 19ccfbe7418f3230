// The A/V control object: creation by type and attributes, its properties,
// methods, listener properties, events and placement.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "avcontrol/avcontrol.h"
#include "host/fixture.h"
#include "host/internal.h"
#include "sim/avcontrol_sim.h"
#include "sim/sim.h"
#include "style/style.h"

namespace {

class AVControlTest : public OrvaneTest {
 protected:
  void SetUp() override {
    OrvaneTest::SetUp();
    sim::SetAutoEvents(false);
    Open("video/mp4", {{"data", "http://media.example/clip.mp4"}});
  }
  void TearDown() override {
    host::detail::ResetFunctions();
    OrvaneTest::TearDown();
  }
  void Open(const char* mime, Attributes attributes = {}) {
    host::PageSpec spec;
    spec.elements[0].offsets = {{"offsetLeft", host::Int(40)}, {"offsetTop", host::Int(30)},
                                {"offsetWidth", host::Int(320)}, {"offsetHeight", host::Int(180)}};
    attributes.push_back({"style", "position:absolute; left:40px; top:30px; width:320px; height:180px;"});
    npp_ = NewPlugin(mime, attributes, spec);
    ASSERT_EQ(NPERR_NO_ERROR, last_error_);
    page_ = host::PageOf(npp_);
    player_ = Scriptable(npp_);
    handle_ = sim::AVPlayers().back();
  }
  bool Call(const char* method, std::vector<NPVariant> args = {}) {
    host::Release(&result_);
    return host::Invoke(npp_, player_, method, args, &result_);
  }
  bool Read(const char* name) {
    host::Release(&result_);
    return host::Get(npp_, player_, name, &result_);
  }
  sim::AVPlayerState State() {
    sim::AVPlayerState s;
    sim::AVPlayer(handle_, &s);
    return s;
  }
  std::vector<std::string> Called(const char* op) {
    std::vector<std::string> args;
    for (const auto& c : sim::CallsTo(op)) args.push_back(c.args.size() > 1 ? c.args[1] : "");
    return args;
  }

  NPP npp_ = nullptr;
  host::Page* page_ = nullptr;
  NPObject* player_ = nullptr;
  MwHandle handle_ = 0;
  NPVariant result_ = host::Void();
};

TEST_F(AVControlTest, EachTypeMakesItsPlayerAndTheAudioKindsTakeCacheAndLoop) {
  EXPECT_EQ(8, State().kind);
  EXPECT_EQ("http://media.example/clip.mp4", State().playlist.at(0)) << "the data attribute";
  const struct {
    const char* mime;
    int32_t kind;
  } kTypes[] = {{"video/mpeg", 7}, {"video/mpeg4", 8}, {"audio/mpeg", 9}, {"audio/mp4", 10}};
  for (const auto& t : kTypes) {
    Open(t.mime, {{"loop", "infinite"}, {"cache", "true"}, {"width", "640"}});
    EXPECT_EQ(t.kind, State().kind) << t.mime;
    bool audio = t.kind >= 9;
    EXPECT_EQ(audio ? -1 : 0, State().loop) << t.mime;
    EXPECT_EQ(audio ? 1 : 0, State().cache) << t.mime;
    EXPECT_EQ(640u, g_width) << "width goes to the style code";
  }
  // A kind outside 7..10 still makes an object, without a player.
  AVControlRecord* r = AVControlCreate(npp_, 3, nullptr, nullptr, -1, -1);
  ASSERT_NE(nullptr, r);
  EXPECT_EQ(0u, r->handle);
  NPObject* orphan = r->object;  // its one reference is the browser's, here the test's
  NPVariant v = host::Void();
  EXPECT_TRUE(host::Invoke(npp_, orphan, "stop", {}, &v));
  EXPECT_EQ("0", sim::CallsTo("MwAVStop").back().args[0]) << "the call reaches the middleware with no handle";
  AVControlDestroy(r);
  host::Funcs()->releaseobject(orphan);

  host::FailRecordAllocation(1);
  testing::internal::CaptureStdout();
  NewPlugin("audio/mp4");
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(NPERR_OUT_OF_MEMORY_ERROR, last_error_);
}

TEST_F(AVControlTest, PropertiesAreTheMiddlewaresOnEveryRead) {
  ASSERT_TRUE(Read("data"));
  EXPECT_EQ("http://media.example/clip.mp4", host::AsString(result_));
  ASSERT_TRUE(host::Set(npp_, player_, "data", host::Str("other.mp4")));
  EXPECT_EQ("other.mp4", State().playlist.at(0));
  ASSERT_TRUE(Read("playTime"));
  EXPECT_EQ(60000, result_.value.intValue);
  for (const char* name : {"playPosition", "playState", "error", "nrTracks", "speed", "currentTrackIndex"}) {
    EXPECT_TRUE(Read(name)) << name;
    EXPECT_EQ(NPVariantType_Int32, result_.type) << name;
    EXPECT_FALSE(host::Set(npp_, player_, name == std::string("currentTrackIndex") ? "playState" : name,
                           host::Int(1)))
        << "read-only: " << name;
  }
  ASSERT_TRUE(Read("COMPONENT_TYPE_SUBTITLE"));
  EXPECT_EQ(2, result_.value.intValue);
  EXPECT_TRUE(host::Set(npp_, player_, "persist", host::Bool(true)));
  ASSERT_TRUE(Read("persist"));
  EXPECT_TRUE(result_.value.boolValue);

  EXPECT_TRUE(host::Set(npp_, player_, "width", host::Int(400)));
  EXPECT_EQ(400, State().width);
  EXPECT_FALSE(host::Set(npp_, player_, "width", host::Str("400"))) << "not a number";
  sim::Force("MwAVIsFullScreen", 1);
  EXPECT_FALSE(host::Set(npp_, player_, "height", host::Int(300))) << "refused while full screen";
  EXPECT_EQ(0, State().height);
}

TEST_F(AVControlTest, MethodsWithGoodAndBadArguments) {
  EXPECT_TRUE(Call("play"));
  EXPECT_EQ(NPVariantType_Void, result_.type) << "no speed: nothing called, no result";
  EXPECT_EQ(0u, sim::CountCalls("MwAVPlay"));
  EXPECT_TRUE(Call("play", {host::Int(1)}));
  EXPECT_TRUE(result_.value.boolValue);
  EXPECT_EQ(1, State().play_state);
  EXPECT_TRUE(Call("seek", {host::Int(1000), host::Int(2)}));
  EXPECT_EQ(NPVariantType_Void, result_.type);
  EXPECT_TRUE(Call("seek", {host::Double(90000)}));
  EXPECT_FALSE(result_.value.boolValue) << "beyond the end";
  EXPECT_TRUE(Call("setVolume", {host::Int(40)}));
  EXPECT_EQ(40, State().volume);

  // queue: null clears, a string queues, anything else does nothing.
  EXPECT_TRUE(Call("queue", {host::Str("second.mp4")}));
  EXPECT_TRUE(Call("queue", {host::Int(42)}));
  EXPECT_EQ((std::vector<std::string>{"http://media.example/clip.mp4", "second.mp4"}), State().playlist);
  EXPECT_TRUE(Call("next"));
  EXPECT_TRUE(result_.value.boolValue);
  EXPECT_TRUE(Call("next"));
  EXPECT_FALSE(result_.value.boolValue);
  sim::Force("MwAVQueue", 0);
  EXPECT_FALSE(Call("queue", {host::Null()})) << "the middleware's answer";
  sim::Unforce("MwAVQueue");

  EXPECT_TRUE(Call("setSource", {host::Str("source.mp4")}));
  EXPECT_EQ("source.mp4", State().playlist.at(1));
  EXPECT_TRUE(Call("stop"));
  EXPECT_EQ(0, State().play_state);
}

TEST_F(AVControlTest, ComponentsAndTheirSelection) {
  ASSERT_TRUE(Call("getComponents", {host::Int(1)}));
  ASSERT_EQ(NPVariantType_Object, result_.type);
  NPObject* list = host::Funcs()->retainobject(result_.value.objectValue);
  NPVariant length = host::Void(), audio = host::Void();
  ASSERT_TRUE(host::Get(npp_, list, "length", &length));
  EXPECT_EQ(2, length.value.intValue) << "two audio languages";
  ASSERT_TRUE(host::Invoke(npp_, list, "item", {host::Int(1)}, &audio));
  EXPECT_TRUE(Call("selectComponent", {audio}));
  EXPECT_EQ(1u, State().selected_objects) << "the object itself goes to the middleware";
  EXPECT_TRUE(Call("unselectComponent", {audio}));
  EXPECT_EQ(0u, State().selected_objects);
  EXPECT_TRUE(Call("unselectComponent", {host::Int(0)}));
  EXPECT_EQ((std::vector<int32_t>{1}), State().active_types);
  EXPECT_TRUE(Call("selectComponent", {host::Str("x")})) << "neither: nothing, and success";
  host::Release(&audio);
  host::Funcs()->releaseobject(list);

  sim::Force("MwAVGetComponents", 0);
  EXPECT_TRUE(Call("getComponents", {host::Int(0)}));
  EXPECT_EQ(NPVariantType_Null, result_.type);
  sim::Force("MwAVGetActiveComponents", 0);
  EXPECT_TRUE(Call("getCurrentActiveComponents", {host::Int(0)}));
  EXPECT_EQ(NPVariantType_Object, result_.type) << "a collection even over no list";
  EXPECT_TRUE(Call("getComponents"));
  EXPECT_EQ(NPVariantType_Void, result_.type);
}

TEST_F(AVControlTest, ListenerPropertiesAndEvents) {
  EXPECT_FALSE(Read("onPlayStateChange"));
  EXPECT_EQ(NPVariantType_Void, result_.type) << "unset: a failed read with no value";
  EXPECT_FALSE(Read("onPlayPositionChanged"));
  EXPECT_EQ(NPVariantType_Null, result_.type) << "unset: a failed read with Null";

  NPObject* state = host::NewFunction("state");
  NPObject* prefix = host::NewFunction("prefix");
  NPObject* empty = host::NewFunction("empty");
  NPObject* position = host::NewFunction("position", /*handle_event=*/true);
  NPObject* rights = host::NewFunction("rights");
  ASSERT_TRUE(host::Set(npp_, player_, "onPlayStateChange", host::Obj(state)));
  EXPECT_TRUE(Call("addEventListener", {host::Str("Play"), host::Obj(prefix)}));
  EXPECT_TRUE(Call("addEventListener", {host::Str(""), host::Obj(empty)}));
  EXPECT_TRUE(Call("addEventListener", {host::Str("PlayPositionChanged"), host::Obj(position)}));
  ASSERT_TRUE(host::Set(npp_, player_, "onDRMRightsError", host::Obj(rights)));
  ASSERT_TRUE(Read("onPlayStateChange"));
  EXPECT_EQ(state, result_.value.objectValue);

  const MwEventCallbacks* cb = sim::Callbacks();
  cb->AVControl_onPlayStateChange(handle_);
  cb->AVControl_onPlayPositionChanged(handle_, 1500);
  cb->AVControl_onDRMRightsError(handle_, 1, 0, sim::NewString("urn:dvb:casystemid:1"), sim::NewString("http://ri/"));
  cb->AVControl_onFullScreenChange(handle_);
  cb->AVControl_onSelectedComponentChanged(handle_ + 1000, 1);  // no such player
  EXPECT_TRUE(host::CallOrder().empty()) << "only on the browser's thread";
  host::Pump();
  std::vector<std::string> order;
  for (const auto& c : host::CallOrder()) order.push_back(c.first);
  EXPECT_EQ((std::vector<std::string>{"state", "prefix", "empty", "position", "rights"}), order);
  EXPECT_EQ(1500, host::Calls(position)[0].args[0].value.intValue);
  const host::Call& error = host::Calls(rights)[0];
  ASSERT_EQ(4u, error.args.size());
  EXPECT_EQ(NPVariantType_Void, error.args[1].type) << "no content id";
  EXPECT_EQ("urn:dvb:casystemid:1", error.text[2]);
  EXPECT_EQ("http://ri/", error.text[3]);

  // removeEventListener looks at its first argument.
  EXPECT_TRUE(Call("removeEventListener", {host::Str("PlayStateChange"), host::Obj(prefix)}));
  EXPECT_TRUE(Call("removeEventListener", {host::Obj(state)}));
  EXPECT_TRUE(Read("onPlayStateChange")) << "the property keeps what was set through it";
  for (NPObject* f : {state, prefix, empty, position, rights}) host::Funcs()->releaseobject(f);
}

TEST_F(AVControlTest, OnlyTheNewestPlayerOfThePageGetsEvents) {
  NPObject* older = host::NewFunction("older");
  ASSERT_TRUE(host::Set(npp_, player_, "onFullScreenChange", host::Obj(older)));
  MwHandle first = handle_;
  Open("video/mp4");
  NPObject* newer = host::NewFunction("newer");
  ASSERT_TRUE(host::Set(npp_, player_, "onFullScreenChange", host::Obj(newer)));
  sim::Callbacks()->AVControl_onFullScreenChange(first);
  sim::Callbacks()->AVControl_onFullScreenChange(handle_);
  host::Pump();
  EXPECT_TRUE(host::Calls(older).empty());
  EXPECT_EQ(1u, host::Calls(newer).size());
  host::Funcs()->releaseobject(older);
  host::Funcs()->releaseobject(newer);
}

// The layout that reading the element's offsets causes may destroy the
// instance: the placement stops there.
TEST_F(AVControlTest, AnInstanceTheLayoutDestroysDuringItsPlacementIsLeftAlone) {
  host::OnElementRead(page_, "offsetLeft", [this] { DestroyPlugin(npp_); });
  NPWindow window = {};
  window.width = 320;
  window.height = 180;
  plugin_funcs_.setwindow(npp_, &window);
  host::Pump();
  for (const char* placing : {"MwAVSetPosition", "MwAVSetWidth", "MwAVSetHeight"})
    EXPECT_EQ(0u, sim::CountCalls(placing)) << placing << " after the destroy";
  EXPECT_EQ(0u, host::LiveRecords());
}

TEST_F(AVControlTest, PlacementFullScreenAndTheClipRectangle) {
  host::SetStyleValue(page_, "width", host::Str("320px"));
  host::SetStyleValue(page_, "height", host::Str("180px"));
  NPWindow window = {};
  window.width = 320;
  window.height = 180;
  window.clipRect = NPRect{0, 0, 180, 320};
  plugin_funcs_.setwindow(npp_, &window);
  EXPECT_EQ(0, State().width) << "placed from the browser's queue, not inside NPP_SetWindow";
  host::Pump();
  EXPECT_EQ(40, State().x);
  EXPECT_EQ(30, State().y);
  EXPECT_EQ(320, State().width);
  MwRect clip;
  ASSERT_TRUE(sim::LastClipRect(&clip));
  EXPECT_EQ((std::vector<int>{40, 30, 360, 210}), (std::vector<int>{clip.left, clip.top, clip.right, clip.bottom}));

  EXPECT_TRUE(Call("setFullScreen", {host::Bool(true)}));
  EXPECT_EQ("0px 0px 1280px 720px", host::StyleValue(page_, "left") + " " + host::StyleValue(page_, "top") + " " +
                                        host::StyleValue(page_, "width") + " " + host::StyleValue(page_, "height"));
  EXPECT_TRUE(Call("setFullScreen", {host::Bool(false)}));
  EXPECT_EQ("40px 30px 320px 180px", host::StyleValue(page_, "left") + " " + host::StyleValue(page_, "top") + " " +
                                         host::StyleValue(page_, "width") + " " + host::StyleValue(page_, "height"));
  DestroyPlugin(npp_);
  EXPECT_FALSE(sim::LastClipRect(&clip)) << "the plane forgets the player";
}

}  // namespace
