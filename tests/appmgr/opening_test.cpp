// The opening of a typical HbbTV application, as its page script does it:
//
//   var appMgr = document.getElementById("appmgr");   // <object type="application/oipfApplicationManager">
//   var app = appMgr.getOwnerApplication(document);
//   var ks = app.privateData.keyset;
//   ks.setValue(ks.RED | ks.GREEN | ks.YELLOW | ks.BLUE | ks.NAVIGATION);
//   app.show();
//   var channel = app.privateData.currentChannel;
//   appMgr.onLowMemory = function () { ... };
#include <gtest/gtest.h>

#include "appmgr_fixture.h"

namespace {

using OpeningTest = AppMgrTest;

TEST_F(OpeningTest, TypicalApplicationStart) {
  const std::string href = "http://hbbtv.example/red/index.html";
  OpenManager(href);

  NPObject* app = OwnerApp();
  ASSERT_NE(nullptr, app);
  MwHandle owner = sim::OwnerApplication(href);
  ASSERT_NE(0u, owner);

  ASSERT_TRUE(Read(app, "privateData"));
  NPObject* data = Take();
  ASSERT_NE(nullptr, data);
  ASSERT_TRUE(Read(data, "keyset"));
  NPObject* keyset = Take();
  ASSERT_NE(nullptr, keyset);
  int32_t mask = 0;
  for (const char* group : {"RED", "GREEN", "YELLOW", "BLUE", "NAVIGATION"}) {
    ASSERT_TRUE(Read(keyset, group));
    mask |= result_.value.intValue;
  }
  EXPECT_EQ(0x1f, mask);
  ASSERT_TRUE(Call(keyset, "setValue", {host::Double(mask)}));  // script numbers arrive as doubles
  ASSERT_EQ(NPVariantType_Int32, result_.type);
  EXPECT_EQ(0x1f, result_.value.intValue);  // the simulated remote has every group
  EXPECT_EQ(0x1f, sim::Application(owner).keys);

  ASSERT_TRUE(Call(app, "show"));
  EXPECT_TRUE(sim::Application(owner).visible);

  ASSERT_TRUE(Read(app, "privateData"));
  NPObject* data2 = Take();
  ASSERT_NE(nullptr, data2);
  ASSERT_TRUE(Read(data2, "currentChannel"));
  NPObject* channel = Take();
  ASSERT_NE(nullptr, channel);
  ASSERT_TRUE(Read(channel, "name"));
  EXPECT_EQ("Orvane One", host::AsString(result_));

  NPObject* on_low = host::NewFunction("onLowMemory");
  ASSERT_TRUE(host::Set(npp_, manager_, "onLowMemory", host::Obj(on_low)));
  sim::RaiseLowMemory(handle_, /*on_sim_thread=*/true);
  sim::WaitIdle();
  EXPECT_EQ(1u, host::Pump());
  EXPECT_EQ(1u, host::Calls(on_low).size());

  for (NPObject* o : {channel, data2, keyset, data, app, on_low}) Drop(o);
  DestroyPlugin(npp_);
  // The leak checks of the fixture run after this.
}

}  // namespace
