// The configuration, local system, network interface and capabilities
// objects.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "config/configuration.h"
#include "host/fixture.h"
#include "sim/config_sim.h"
#include "sim/description.h"
#include "sim/sim.h"

namespace {

class ConfigTest : public ScriptTest {
 protected:
  void SetUp() override {
    ScriptTest::SetUp();
    sim::SetAutoEvents(false);
  }
  NPObject* OpenConfiguration() {
    npp_ = NewPlugin("application/oipfconfiguration");
    return Scriptable(npp_);
  }
};

TEST_F(ConfigTest, PreferencesComeFromTheCurrentConfigurationObject) {
  ASSERT_TRUE(sim::LoadDescriptionText(
      R"({"preferences": {"audioLanguage": "deu", "voiceControl": 2, "speechDescription": 1}})", nullptr));
  NPObject* config = OpenConfiguration();
  NPObject* first = Get(config, "configuration").value.objectValue;
  NPObject* second = Get(config, "configuration").value.objectValue;
  ASSERT_TRUE(first && second);
  EXPECT_NE(first, second) << "every read makes a new object";
  EXPECT_EQ(second, conf_np_obj);
  EXPECT_EQ("deu", Text(first, "preferredAudioLanguage"));
  EXPECT_EQ("GBR", Text(second, "countryId"));
  EXPECT_EQ(NPVariantType_Void, Get(first, "voiceControlEnabled").type) << "not supported: undefined";
  EXPECT_TRUE(Get(first, "speechDescriptionEnabled").value.boolValue);
  bool ok = true;
  Get(first, "postcode", &ok);
  EXPECT_FALSE(ok) << "a receiver without a postcode fails the read";
  EXPECT_FALSE(host::Set(npp_, first, "preferredAudioLanguage", host::Str("fra")));
}

TEST_F(ConfigTest, LocalSystemIdentityPvrAndItsStatusEvents) {
  NPObject* config = OpenConfiguration();
  NPObject* local = Get(config, "localSystem").value.objectValue;
  ASSERT_NE(nullptr, local);
  EXPECT_EQ(local, Get(config, "localSystem").value.objectValue) << "one object per local system";
  EXPECT_EQ("ORV-SIM-0001", Text(local, "deviceID"));
  EXPECT_EQ("OITF_HD_UIPROF+DVB_T+TRICKMODE+PVR+DRM", Text(local, "oipfProfile"));
  EXPECT_TRUE(Get(local, "pvrEnabled").value.boolValue);

  NPObject* f = host::NewFunction("f");
  bool ok = false;
  Call(local, "addEventListener", {host::Str("Pvr"), host::Obj(f)}, &ok);
  EXPECT_TRUE(ok);
  Call(local, "addEventListener", {host::Int(3), host::Obj(f)}, &ok);
  EXPECT_FALSE(ok) << "a type that is no String fails";
  sim::RaisePvrStatusChange(3);
  host::Pump();
  ASSERT_EQ(1u, host::Calls(f).size());
  EXPECT_EQ(3, host::Calls(f)[0].args[0].value.intValue);
  Get(local, "onPvrStatusChange", &ok);
  EXPECT_FALSE(ok) << "not set through the property";

  // Without a PVR there is no status.
  ASSERT_TRUE(sim::LoadDescriptionText(R"({"pvr": {"enabled": false}})", nullptr));
  Get(local, "pvrStatus", &ok);
  EXPECT_FALSE(ok);
  EXPECT_FALSE(Get(local, "pvrEnabled").value.boolValue);

  // Once the instance went, its local system object receives no events.
  DestroyPlugin(npp_);
  sim::RaisePvrStatusChange(4);
  host::Pump();
  EXPECT_EQ(1u, host::Calls(f).size());
  host::Funcs()->releaseobject(f);
}

// Found by the script-surface fuzzer: an object that is its own listener
// holds itself; when its instance goes, its listeners go with it.
TEST_F(ConfigTest, ALocalSystemListeningToItselfGoesWithThePage) {
  NPObject* config = OpenConfiguration();
  NPVariant local = host::Void();
  ASSERT_TRUE(host::Get(npp_, config, "localSystem", &local));
  ASSERT_TRUE(host::Set(npp_, local.value.objectValue, "onPvrStatusChange", local));
  NPVariant r = host::Void();
  host::Invoke(npp_, local.value.objectValue, "addEventListener", {host::Str(""), local}, &r);
  host::Release(&local);  // only its own listener list holds it now
  DestroyPlugin(npp_);    // the fixture's leak checks follow
}

// The same when the page makes the cycle after the instance went: an object
// that receives no more events takes no listeners.
TEST_F(ConfigTest, ALocalSystemWhoseInstanceWentTakesNoListeners) {
  NPObject* config = OpenConfiguration();
  NPVariant local = host::Void();
  ASSERT_TRUE(host::Get(npp_, config, "localSystem", &local));
  DestroyPlugin(npp_);
  EXPECT_TRUE(host::Set(npp_, local.value.objectValue, "onPvrStatusChange", local));
  NPVariant r = host::Void();
  EXPECT_FALSE(host::Get(npp_, local.value.objectValue, "onPvrStatusChange", &r));
  host::Release(&local);
}

TEST_F(ConfigTest, NetworkInterfacesAreNewObjectsWithStatusEvents) {
  NPObject* config = OpenConfiguration();
  NPObject* local = Get(config, "localSystem").value.objectValue;
  NPObject* list = Get(local, "networkInterfaces").value.objectValue;
  ASSERT_NE(nullptr, list);
  EXPECT_EQ(1, Get(list, "length").value.intValue);
  NPObject* eth = Call(list, "item", {host::Int(0)}).value.objectValue;
  NPObject* again = Call(list, "item", {host::Int(0)}).value.objectValue;
  ASSERT_TRUE(eth && again);
  EXPECT_NE(eth, again) << "each read makes a new object";
  EXPECT_EQ("192.0.2.10", Text(eth, "ipAddress"));
  EXPECT_TRUE(Get(eth, "connected").value.boolValue);
  EXPECT_FALSE(host::Set(npp_, eth, "enabled", host::Bool(false)));

  // The newest object of the interface gets its events.
  NPObject* f = host::NewFunction("f");
  ASSERT_TRUE(host::Set(npp_, again, "onNetworkStatusChange", host::Obj(f)));
  sim::RaiseNetworkStatusChange(0, 1);  // no such interface
  MwHandle handle = 0;
  for (const auto& c : sim::CallsTo("MwNetworkInterfaceGetIpAddress")) handle = std::stoul(c.args[0]);
  sim::RaiseNetworkStatusChange(handle, 0);
  host::Pump();
  ASSERT_EQ(1u, host::Calls(f).size());
  EXPECT_EQ(0, host::Calls(f)[0].args[0].value.intValue);
  EXPECT_FALSE(Get(again, "connected").value.boolValue);
  host::Funcs()->releaseobject(f);
}

TEST_F(ConfigTest, CapabilitiesAsThePagesOwnDocument) {
  ASSERT_TRUE(sim::LoadDescriptionText(R"({"capabilities": {"uiProfile": "OITF_SD_UIPROF",
      "extensions": ["+DL", "PVR"], "extraHDVideoDecodes": 2}})", nullptr));
  npp_ = NewPlugin("application/oipfcapabilities");
  NPObject* caps = Scriptable(npp_);
  NPObject* document = Get(caps, "xmlCapabilities").value.objectValue;
  ASSERT_NE(nullptr, document);
  std::string xml = host::ParsedText(document);
  EXPECT_NE(std::string::npos, xml.find("<ui_profile name=\"OITF_SD_UIPROF+DL+PVR\"/>")) << xml;
  EXPECT_NE(document, Get(caps, "xmlCapabilities").value.objectValue) << "each read parses afresh";
  EXPECT_EQ(2, Get(caps, "extraHDVideoDecodes").value.intValue);
  EXPECT_FALSE(host::Set(npp_, caps, "extraHDVideoDecodes", host::Int(3)));

  EXPECT_TRUE(Call(caps, "hasCapability", {host::Str("+PVR")}).value.boolValue);
  EXPECT_TRUE(Call(caps, "hasCapability", {host::Str("OITF_SD_UIPROF")}).value.boolValue);
  EXPECT_FALSE(Call(caps, "hasCapability", {host::Str("+DRM")}).value.boolValue);
  bool ok = false;
  EXPECT_EQ(NPVariantType_Void, Call(caps, "hasCapability", {}, &ok).type);
  EXPECT_TRUE(ok) << "no argument: undefined";
  EXPECT_EQ(NPVariantType_Void, Call(caps, "hasCapability", {host::Str("a"), host::Str("b")}).type);
}

}  // namespace
