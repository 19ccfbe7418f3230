// Instance creation by MIME type and the per-instance entry points.
#include <gtest/gtest.h>

#include <cstring>

#include "frame/instance_kind.h"
#include "host/fixture.h"
#include "sim/sim.h"

namespace {

class InstanceTest : public OrvaneTest {
 protected:
  std::string Output() { return testing::internal::GetCapturedStdout(); }
};

TEST_F(InstanceTest, EveryInstanceMadeIsWindowlessAndARefusedOneStaysAsItWas) {
  NPP npp = NewPlugin("application/oipfdrmagent");
  ASSERT_EQ(1u, host::SetValues().size());
  EXPECT_EQ(npp, host::SetValues()[0].instance);
  EXPECT_EQ(NPPVpluginWindowBool, host::SetValues()[0].variable);
  EXPECT_EQ(nullptr, host::SetValues()[0].value);
  testing::internal::CaptureStdout();
  NewPlugin("application/x-unknown");
  host::FailRecordAllocation(1);
  NewPlugin("application/oipfdrmagent");
  Output();
  EXPECT_EQ(1u, host::SetValues().size());
}

// removeEventListener(f) takes f's newest registration, which may be the one
// an onXxx property made: the property still reads f, which it keeps alive
// itself (the host counts a retain of a dead object as a reference error),
// and a later write replaces it.
TEST_F(InstanceTest, ListenerPropertiesReadBackAfterTheirRegistrationWent) {
  struct Case {
    const char* mime;
    const char* property;
  };
  for (const Case& c : {Case{"application/oipfapplicationmanager", "onLowMemory"},
                        Case{"video/broadcast", "onPlayStateChange"},
                        Case{"application/oipfdrmagent", "onDRMSystemMessage"},
                        Case{"application/oipfsearchmanager", "onMetadataSearch"}}) {
    NPP npp = NewPlugin(c.mime);
    NPObject* object = Scriptable(npp);
    NPObject* f = host::NewFunction("f");
    ASSERT_TRUE(host::Set(npp, object, c.property, host::Obj(f)));
    NPVariant r = host::Void();
    ASSERT_TRUE(host::Invoke(npp, object, "removeEventListener", {host::Obj(f)}, &r));
    host::Release(&r);
    host::Funcs()->releaseobject(f);  // the page lets go of it
    ASSERT_TRUE(host::Get(npp, object, c.property, &r)) << c.mime;
    EXPECT_EQ(f, r.value.objectValue);
    host::Release(&r);
    NPObject* g = host::NewFunction("g");
    ASSERT_TRUE(host::Set(npp, object, c.property, host::Obj(g)));
    host::Funcs()->releaseobject(g);
    ASSERT_TRUE(host::Get(npp, object, c.property, &r));
    EXPECT_EQ(g, r.value.objectValue);
    host::Release(&r);
    DestroyPlugin(npp);
  }
}

TEST_F(InstanceTest, StubsLeaveTheBrowserNothingUndefined) {
  NPP npp = NewPlugin("application/oipfapplicationmanager");
  NPObject* manager = Scriptable(npp);
  NPObject* agent = Scriptable(NewPlugin("application/oipfdrmagent"));
  NPObject* video = Scriptable(NewPlugin("video/broadcast"));
  NPObject* scheduler = Scriptable(NewPlugin("application/oipfrecordingscheduler"));
  NPVariant config = host::Void(), list = host::Void();
  ASSERT_TRUE(host::Invoke(npp, video, "getChannelConfig", {}, &config));
  ASSERT_TRUE(host::Get(npp, config.value.objectValue, "channelList", &list));
  for (NPObject* o : {manager, agent, video, scheduler, list.value.objectValue}) {
    NPIdentifier garbage_ids[1];
    NPIdentifier* names = garbage_ids;
    uint32_t count = 217;
    EXPECT_TRUE(o->_class->enumerate(o, &names, &count));
    EXPECT_EQ(nullptr, names);
    EXPECT_EQ(0u, count);
    NPVariant result = host::Int(7);
    EXPECT_TRUE(o->_class->invokeDefault(o, nullptr, 0, &result));
    EXPECT_EQ(NPVariantType_Void, result.type);
    result = host::Int(7);
    EXPECT_TRUE(o->_class->construct(o, nullptr, 0, &result));
    EXPECT_EQ(NPVariantType_Void, result.type);
  }
  host::Release(&list);
  host::Release(&config);
}

TEST_F(InstanceTest, UnknownTypesAreRefusedWithALogLine) {
  testing::internal::CaptureStdout();
  NPP npp = NewPlugin("application/x-unknown");
  EXPECT_EQ(NPERR_INVALID_PLUGIN_ERROR, last_error_);
  EXPECT_EQ(nullptr, npp->pdata);
  // Compared in lower case only.
  NewPlugin("application/oipfDrmAgent");
  EXPECT_EQ(NPERR_INVALID_PLUGIN_ERROR, last_error_);
  EXPECT_EQ("ERROR [NPP_New:412] NPERR_INVALID_PLUGIN_ERROR (application/x-unknown)\n"
            "ERROR [NPP_New:412] NPERR_INVALID_PLUGIN_ERROR (application/oipfDrmAgent)\n",
            Output());
}

TEST_F(InstanceTest, ScriptableObjectAndOtherValues) {
  NPP npp = NewPlugin("application/oipfdrmagent");
  NPObject* object = nullptr;
  ASSERT_EQ(NPERR_NO_ERROR, plugin_funcs_.getvalue(npp, NPPVpluginScriptableNPObject, &object));
  EXPECT_EQ(object, Scriptable(npp));
  EXPECT_EQ(1u, host::RefCount(object));  // handed over without a retain
  NPBool wants = 0;
  EXPECT_EQ(NPERR_INVALID_PARAM, plugin_funcs_.getvalue(npp, NPPVpluginWantsAllNetworkStreams, &wants));
  EXPECT_EQ(NPERR_INVALID_PARAM, plugin_funcs_.getvalue(npp, NPPVpluginNameString, &object));
}

TEST_F(InstanceTest, DestroyOfAnUnknownKindFreesNothing) {
  NPP npp = NewPlugin("application/oipfdrmagent");
  ObjectRecord* record = static_cast<ObjectRecord*>(npp->pdata);
  record->kind = 13;
  NPSavedData* saved = nullptr;
  EXPECT_EQ(NPERR_INVALID_INSTANCE_ERROR, plugin_funcs_.destroy(npp, &saved));
  record->kind = kKindDrmAgent;
}

TEST_F(InstanceTest, AitDocumentsReachTheParserWhichMayOpenTheApplication) {
  NPP npp = NewPlugin("application/vnd.dvb.ait+xml", {{"data", "ait.xml"}});
  ASSERT_EQ(NPERR_NO_ERROR, last_error_);
  NPObject* object = nullptr;
  EXPECT_EQ(NPERR_INVALID_PARAM, plugin_funcs_.getvalue(npp, NPPVpluginScriptableNPObject, &object));

  NPStream stream = {};
  stream.url = "http://apps.example/ait.xml";
  uint16_t type = NP_NORMAL;
  ASSERT_EQ(NPERR_NO_ERROR, plugin_funcs_.newstream(npp, nullptr, &stream, 0, &type));
  EXPECT_EQ(npp->pdata, stream.pdata);
  EXPECT_EQ(NP_NORMAL, type);
  EXPECT_EQ(65536, plugin_funcs_.writeready(npp, &stream));
  stream.end = 300;
  EXPECT_EQ(300, plugin_funcs_.writeready(npp, &stream));

  std::string part1 = "<ServiceDiscovery><applicationList><application><applicationDescriptor/>"
                      "<applicationTransport><URLBase>http://apps.example/red/</URLBase>";
  std::string part2 = "</applicationTransport><applicationLocation>index.html</applicationLocation>"
                      "</application></applicationList></ServiceDiscovery>";
  EXPECT_EQ(static_cast<int32_t>(part1.size()),
            plugin_funcs_.write(npp, &stream, 0, static_cast<int32_t>(part1.size()), &part1[0]));
  EXPECT_TRUE(host::UrlRequests().empty());
  plugin_funcs_.write(npp, &stream, 0, static_cast<int32_t>(part2.size()), &part2[0]);
  ASSERT_EQ(1u, host::UrlRequests().size());
  EXPECT_EQ("http://apps.example/red/index.html", host::UrlRequests()[0].url);
  EXPECT_EQ("_top", host::UrlRequests()[0].target);
  EXPECT_EQ(NPERR_NO_ERROR, plugin_funcs_.destroystream(npp, &stream, NPRES_DONE));
  EXPECT_EQ(NPERR_GENERIC_ERROR, plugin_funcs_.destroystream(npp, &stream, NPRES_NETWORK_ERR));
  auto writes = sim::CallsTo("MwAitParserWrite");
  ASSERT_EQ(2u, writes.size());
  EXPECT_EQ("http://apps.example/ait.xml", writes[0].args[2]);
}

TEST_F(InstanceTest, StreamsAreRefusedByKindsThatDoNotTakeThem) {
  NPP npp = NewPlugin("application/oipfdrmagent");
  NPStream stream = {};
  uint16_t type = NP_NORMAL;
  EXPECT_EQ(NPERR_INVALID_PARAM, plugin_funcs_.newstream(npp, nullptr, &stream, 0, &type));
  char bytes[4] = {};
  EXPECT_EQ(4, plugin_funcs_.write(npp, &stream, 0, 4, bytes));  // all bytes are always taken
  EXPECT_EQ(NPERR_GENERIC_ERROR, plugin_funcs_.destroystream(npp, &stream, NPRES_DONE));
  plugin_funcs_.urlnotify(npp, "u", NPRES_DONE, nullptr);
  NPWindow window = {};
  EXPECT_EQ(NPERR_NO_ERROR, plugin_funcs_.setwindow(npp, &window));
}

TEST_F(InstanceTest, RecordAllocationFailureIsOutOfMemory) {
  testing::internal::CaptureStdout();
  host::FailRecordAllocation(1);
  NPP npp = NewPlugin("application/vnd.dvb.ait+xml");
  EXPECT_EQ(NPERR_OUT_OF_MEMORY_ERROR, last_error_);
  EXPECT_EQ(nullptr, npp->pdata);
  EXPECT_EQ("ERROR [NPP_New:417] NPERR_OUT_OF_MEMORY_ERROR\n", Output());
}

}  // namespace
