// Application objects: starting applications at URLs made absolute against
// the page, showing, hiding and destroying, and the private data they give.
#include "appmgr/application.h"

#include <gtest/gtest.h>

#include "appmgr_fixture.h"

namespace {

using ApplicationTest = AppMgrTest;

TEST_F(ApplicationTest, CreateApplicationArgumentsAndFailures) {
  OpenManager();
  NPObject* app = OwnerApp();
  ASSERT_NE(nullptr, app);
  EXPECT_FALSE(Call(app, "createApplication", {host::Str("next.html")}));  // a script exception
  EXPECT_EQ(0u, sim::CountCalls("MwApplicationCreateApplication"));

  // URLs are resolved against the page (the rules are the URL helper's); a
  // non-String URI is the empty relative URL: the page's directory.
  EXPECT_TRUE(Call(app, "createApplication", {host::Int(7), host::Str("yes")}));
  auto last = sim::CallsTo("MwApplicationCreateApplication").back();
  EXPECT_EQ("http://apps.example/app/", last.args[1]);
  EXPECT_EQ("0", last.args[2]);
  NPObject* started = Take();
  ASSERT_NE(nullptr, started);

  // No memory for the new object: null, and the new handle goes back.
  host::FailRecordAllocation(1);
  EXPECT_TRUE(Call(app, "createApplication", {host::Str("x.html"), host::Bool(false)}));
  EXPECT_EQ(NPVariantType_Null, result_.type);
  Drop(started);
  Drop(app);
}

TEST_F(ApplicationTest, DestroyedApplicationsAreInert) {
  OpenManager();
  NPObject* app = OwnerApp();
  NPObject* twin = OwnerApp();  // a second object over the same application
  MwHandle owner = sim::OwnerApplication("http://apps.example/app/index.html");
  EXPECT_TRUE(Call(app, "hide"));
  EXPECT_FALSE(sim::Application(owner).visible);

  EXPECT_TRUE(Call(app, "destroyApplication"));
  EXPECT_TRUE(sim::Application(owner).destroyed);
  sim::ClearCalls();
  EXPECT_TRUE(Call(app, "show"));
  EXPECT_TRUE(Call(app, "destroyApplication"));
  EXPECT_EQ(0u, sim::Calls().size());
  Drop(app);  // nothing to release: the destroy took the handle
  EXPECT_EQ(0u, sim::CountCalls("MwObjectRelease"));
  EXPECT_EQ(1, sim::RefsOf(owner));
  Drop(twin);
  EXPECT_EQ(0, sim::RefsOf(owner));
}

TEST_F(ApplicationTest, PrivateDataIsReadOnlyAndNewOnEachRead) {
  OpenManager();
  NPObject* app = OwnerApp();
  EXPECT_TRUE(Read(app, "privateData"));
  NPObject* first = Take();
  EXPECT_TRUE(Read(app, "privateData"));
  NPObject* second = Take();
  ASSERT_TRUE(first && second);
  EXPECT_NE(first, second);
  EXPECT_FALSE(host::Set(npp_, app, "privateData", host::Null()));

  sim::Force("MwApplicationGetPrivateData", 0);
  EXPECT_TRUE(Read(app, "privateData"));
  EXPECT_EQ(NPVariantType_Null, result_.type);
  Drop(first);
  Drop(second);
  Drop(app);
}

TEST_F(ApplicationTest, LoadErrorApplicationStillAsksTheMiddlewareWithHandleZero) {
  OpenManager();
  NPObject* app = ApplicationCreateApp(npp_, 0);
  ASSERT_NE(nullptr, app);
  EXPECT_TRUE(Read(app, "privateData"));
  EXPECT_EQ(NPVariantType_Null, result_.type);
  EXPECT_EQ("0", sim::CallsTo("MwApplicationGetPrivateData")[0].args[0]);
  EXPECT_TRUE(Call(app, "createApplication", {host::Str("dvb://1.2.3/app"), host::Bool(false)}));
  EXPECT_EQ("0", sim::CallsTo("MwApplicationCreateApplication")[0].args[0]);
  NPObject* started = Take();
  EXPECT_NE(nullptr, started);
  Drop(started);
  Drop(app);
}

}  // namespace
