// Properties of the broadcast object: reads, writes and their refusals.
#include <gtest/gtest.h>

#include "broadcast/broadcast_fixture.h"
#include "style/style.h"

namespace {

using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

TEST_F(BroadcastTest, ReadsComeFromTheMiddleware) {
  sim::Force("MwBroadcastGetPlayState", 3);
  EXPECT_EQ(3, Get("playState").value.intValue) << "the middleware's state, not the stored copy";

  NPVariant answer = host::Int(42);
  EXPECT_TRUE(video_->_class->getProperty(video_, host::Id("onfocus"), &answer)) << "never answers";
  EXPECT_EQ(NPVariantType_Void, answer.type) << "nothing left undefined";
  EXPECT_EQ(NPVariantType_Null, Get("data").type);
  EXPECT_TRUE(host::Set(npp_, video_, "data", host::Str("tuning-hint")));
  NPVariant data = Get("data");
  EXPECT_EQ("tuning-hint", host::AsString(data));
  host::Release(&data);
  EXPECT_TRUE(host::Set(npp_, video_, "data", host::Int(5))) << "a non-string is the empty text";
  EXPECT_EQ(NPVariantType_Null, Get("data").type);

  Call("bindToCurrentChannel");
  Settle();
  bool ok = true;
  host::FailRecordAllocation(1);
  EXPECT_EQ(NPVariantType_Null, Get("programmes", &ok).type);
  EXPECT_FALSE(ok);
}

TEST_F(BroadcastTest, WritesAreRefusedOrIgnoredAsTheirPropertyDemands) {
  EXPECT_TRUE(host::Set(npp_, video_, "width", host::Int(640)));
  EXPECT_TRUE(host::Set(npp_, video_, "height", host::Double(360.7)));
  EXPECT_EQ(640u, g_width);
  EXPECT_EQ(360u, g_heigth);
  EXPECT_EQ("", host::StyleValue(page_, "width")) << "the element's style is not written";

  Call("setFullScreen", {host::Bool(true)});
  CaptureStdout();
  EXPECT_FALSE(host::Set(npp_, video_, "width", host::Int(100)));
  EXPECT_FALSE(host::Set(npp_, video_, "height", host::Int(100)));
  EXPECT_FALSE(host::Set(npp_, video_, "currentChannel", host::Null()));
  EXPECT_FALSE(host::Set(npp_, video_, "COMPONENT_TYPE_AUDIO", host::Int(7)));
  EXPECT_EQ("ERROR [Broadcast_SetProperty:686] \nERROR [Broadcast_SetProperty:700] \n"
            "ERROR [Broadcast_SetProperty:750] \nERROR [Broadcast_SetProperty:750] \n",
            GetCapturedStdout());
  EXPECT_EQ(640u, g_width);

  EXPECT_TRUE(host::Set(npp_, video_, "playState", host::Int(2))) << "ignored";
  NPVariant v = host::Void();
  CaptureStdout();
  EXPECT_FALSE(video_->_class->getProperty(video_, host::Id("volume"), &v));
  EXPECT_EQ("ERROR [Broadcast_GetProperty:920] Can not find property volume\n", GetCapturedStdout());
}

TEST_F(BroadcastTest, ObjectWithoutMiddlewareInstanceReadsNothing) {
  sim::Force("MwBroadcastCreate", 0);
  NPP other = NewPlugin("video/broadcast");
  NPObject* o = Scriptable(other);
  ASSERT_NE(nullptr, o);
  NPVariant v = host::Void();
  CaptureStdout();
  EXPECT_FALSE(host::Get(other, o, "width", &v));
  std::string log = GetCapturedStdout();
  EXPECT_EQ(0u, log.find("ERROR [Broadcast_GetProperty:791] broadcast ")) << log;
  DestroyPlugin(other);
  EXPECT_EQ(0u, sim::CountCalls("MwVideoSetPaintRect")) << "nothing to stop painting";
}

TEST_F(BroadcastTest, CreationFailuresReportShortMemory) {
  host::FailRecordAllocation(1);
  NewPlugin("video/broadcast");
  EXPECT_EQ(NPERR_OUT_OF_MEMORY_ERROR, last_error_);
  host::FailAllocation(1);  // the script object
  NewPlugin("video/broadcast");
  EXPECT_EQ(NPERR_OUT_OF_MEMORY_ERROR, last_error_);
  EXPECT_EQ(1u, sim::BroadcastInstances().size()) << "no middleware instance for either";
}

TEST_F(BroadcastTest, EventPropertiesHoldOneListenerEach) {
  bool ok = true;
  EXPECT_EQ(NPVariantType_Null, Get("onChannelChangeError", &ok).type);
  EXPECT_FALSE(ok);

  NPObject* first = host::NewFunction("first");
  NPObject* second = host::NewFunction("second");
  ASSERT_TRUE(host::Set(npp_, video_, "onPlaySpeedChanged", host::Obj(first)));
  ASSERT_TRUE(host::Set(npp_, video_, "onPlaySpeedChanged", host::Obj(second)));
  sim::Callbacks()->Broadcast_onPlaySpeedChanged(handle_, 2.0f);
  host::Pump();
  EXPECT_TRUE(host::Calls(first).empty()) << "replaced";
  ASSERT_EQ(1u, host::Calls(second).size());
  EXPECT_EQ(2.0, host::Calls(second)[0].args[0].value.doubleValue);

  EXPECT_TRUE(host::Set(npp_, video_, "onPlaySpeedChanged", host::Null()));
  EXPECT_EQ(NPVariantType_Null, Get("onPlaySpeedChanged", &ok).type);
  sim::Callbacks()->Broadcast_onPlaySpeedChanged(handle_, 1.0f);
  host::Pump();
  EXPECT_EQ(1u, host::Calls(second).size());
}

}  // namespace
