// The application manager instance: creation with window.debug, the owner
// application, listeners and events, and its lifecycle.
#include "appmgr/application_manager.h"

#include <gtest/gtest.h>

#include "appmgr_fixture.h"
#include "utils/record_alloc.h"

namespace {

using ManagerTest = AppMgrTest;

TEST_F(ManagerTest, InstancePlacesAnInertDebugObjectThatOutlivesTheManager) {
  OpenManager();
  EXPECT_EQ(1u, sim::CountCalls("MwAppManagerCreate"));
  host::Page* page = host::PageOf(npp_);
  NPVariant debug = host::WindowProperty(page, "debug");
  ASSERT_EQ(NPVariantType_Object, debug.type);
  NPObject* d = debug.value.objectValue;
  NPVariant r = host::Void();
  EXPECT_FALSE(host::Funcs()->invokeDefault(npp_, d, nullptr, 0, &r));
  EXPECT_FALSE(host::Get(npp_, d, "log", &r));

  DestroyPlugin(npp_);
  EXPECT_EQ(1u, sim::CountCalls("MwObjectRelease"));
  EXPECT_TRUE(sim::AppManagers().empty());
  EXPECT_EQ(NPVariantType_Object, host::WindowProperty(page, "debug").type);
}

TEST_F(ManagerTest, ObjectsMadeBeforeAndAfterTheInstanceGoes) {
  OpenManager();
  NPObject* manager = host::Funcs()->retainobject(manager_);  // a script still holds it
  NPObject* app = OwnerApp();
  ASSERT_NE(nullptr, app);
  MwHandle owner = sim::OwnerApplication("http://apps.example/app/index.html");
  EXPECT_EQ(1, sim::RefsOf(owner));

  DestroyPlugin(npp_);
  // The manager's object fails its calls; reads and writes are ignored.
  EXPECT_FALSE(Call(manager, "getOwnerApplication", {host::Obj(Document())}));
  EXPECT_TRUE(Read(manager, "onLowMemory"));
  EXPECT_EQ(NPVariantType_Void, result_.type);
  EXPECT_TRUE(host::Set(npp_, manager, "onLowMemory", host::Obj(manager)));
  // Events for the gone manager do nothing.
  sim::RaiseApplicationLoadError(handle_);
  sim::RaiseLowMemory(handle_);
  EXPECT_EQ(0u, host::Pending());

  // The application keeps its own handle and still makes applications.
  EXPECT_TRUE(Call(app, "show"));
  EXPECT_TRUE(sim::Application(owner).visible);
  Drop(app);
  EXPECT_EQ(0, sim::RefsOf(owner));
  Drop(manager);
}

TEST_F(ManagerTest, OwnerApplicationByTheDocumentUrl) {
  OpenManager("http://apps.example/shop/start.html?x=1");
  // Not exactly one argument: undefined.
  EXPECT_TRUE(Call(manager_, "getOwnerApplication", {host::Obj(Document()), host::Int(1)}));
  EXPECT_EQ(NPVariantType_Void, result_.type);
  EXPECT_EQ(0u, sim::CountCalls("MwAppMgrGetOwnerApplication"));

  NPObject* a = OwnerApp();
  NPObject* b = OwnerApp();
  ASSERT_TRUE(a && b);
  EXPECT_NE(a, b);  // one object per call, over one application
  EXPECT_EQ("http://apps.example/shop/start.html?x=1",
            sim::CallsTo("MwAppMgrGetOwnerApplication")[0].args[1]);  // not resolved
  EXPECT_EQ(2, sim::RefsOf(sim::OwnerApplication("http://apps.example/shop/start.html?x=1")));
  Drop(a);
  Drop(b);
  // A non-object argument is looked up as no document.
  EXPECT_TRUE(Call(manager_, "getOwnerApplication", {host::Str("http://apps.example/")}));
  EXPECT_EQ(NPVariantType_Null, result_.type);
  EXPECT_EQ("", sim::CallsTo("MwAppMgrGetOwnerApplication").back().args[1]);

  // No memory for the Application record: Null, and the handle goes back.
  host::FailRecordAllocation(1);
  EXPECT_TRUE(Call(manager_, "getOwnerApplication", {host::Obj(Document())}));
  EXPECT_EQ(NPVariantType_Null, result_.type);
}

TEST_F(ManagerTest, ListenersRunInRegistrationOrder) {
  OpenManager();
  NPObject* low = host::NewFunction("low");
  NPObject* prop = host::NewFunction("prop", /*handle_event=*/true);
  NPObject* empty = host::NewFunction("empty");
  NPObject* error = host::NewFunction("error");
  NPObject* on_error = host::NewFunction("on_error");

  EXPECT_FALSE(Read(manager_, "onLowMemory"));  // never set: a failed read with Null
  EXPECT_EQ(NPVariantType_Null, result_.type);

  EXPECT_TRUE(Call(manager_, "addEventListener", {host::Str("Low"), host::Obj(low)}));
  EXPECT_TRUE(host::Set(npp_, manager_, "onLowMemory", host::Obj(prop)));
  // A type that is no String counts as the empty one: the first event.
  EXPECT_TRUE(Call(manager_, "addEventListener", {host::Int(7), host::Obj(empty)}));
  EXPECT_TRUE(Call(manager_, "addEventListener", {host::Str("ApplicationLoadError"), host::Obj(error)}));
  EXPECT_TRUE(host::Set(npp_, manager_, "onApplicationLoadError", host::Obj(on_error)));
  EXPECT_TRUE(Call(manager_, "addEventListener", {host::Str("LowMemoryX"), host::Obj(error)}));
  EXPECT_TRUE(Read(manager_, "onApplicationLoadError"));
  EXPECT_EQ(on_error, result_.value.objectValue);

  sim::RaiseLowMemory(handle_);
  sim::RaiseApplicationLoadError(handle_);
  EXPECT_TRUE(host::CallOrder().empty());  // only on the browser's thread
  host::Pump();
  std::vector<std::string> order;
  for (const auto& c : host::CallOrder()) order.push_back(c.first);
  EXPECT_EQ((std::vector<std::string>{"low", "prop", "empty", "error", "on_error"}), order);
  EXPECT_TRUE(host::Calls(low)[0].args.empty());

  // The load error hands over an inert Application object.
  const host::Call& call = host::Calls(error)[0];
  ASSERT_EQ(1u, call.args.size());
  ASSERT_EQ(NPVariantType_Object, call.args[0].type);
  NPObject* failed = call.args[0].value.objectValue;
  EXPECT_EQ(host::Calls(on_error)[0].args[0].value.objectValue, failed);
  sim::ClearCalls();
  EXPECT_TRUE(Call(failed, "show"));
  EXPECT_EQ(0u, sim::Calls().size());

  // Clearing a property removes only its own registration. (Removal by the
  // listener as first argument is shared with the DRM agent and checked there.)
  EXPECT_TRUE(host::Set(npp_, manager_, "onLowMemory", host::Null()));
  EXPECT_FALSE(Read(manager_, "onLowMemory"));
  sim::RaiseLowMemory(handle_);
  host::Pump();
  EXPECT_EQ(2u, host::Calls(low).size());
  EXPECT_EQ(1u, host::Calls(prop).size());

  for (NPObject* f : {low, prop, empty, error, on_error}) Drop(f);
}

TEST_F(ManagerTest, ShortMemoryDropsEventsAndInstances) {
  OpenManager();
  NPObject* error = host::NewFunction("error");
  EXPECT_TRUE(host::Set(npp_, manager_, "onApplicationLoadError", host::Obj(error)));
  host::FailAllocation(1);  // the argument array
  sim::RaiseApplicationLoadError(handle_);
  EXPECT_EQ(0u, host::Pump());
  host::FailRecordAllocation(1);  // the Application record: the listener gets Null
  sim::RaiseApplicationLoadError(handle_);
  EXPECT_EQ(1u, host::Pump());
  ASSERT_EQ(1u, host::Calls(error).size());
  EXPECT_EQ(NPVariantType_Null, host::Calls(error)[0].args[0].type);
  Drop(error);

  // No memory for a second manager's record: NPP_New fails, window.debug is set.
  host::FailRecordAllocation(1);
  NPP failed = NewPlugin("application/oipfapplicationmanager");
  EXPECT_EQ(NPERR_OUT_OF_MEMORY_ERROR, last_error_);
  EXPECT_EQ(NPVariantType_Object, host::WindowProperty(host::PageOf(failed), "debug").type);
  EXPECT_EQ(1u, sim::CountCalls("MwAppManagerCreate"));
}

TEST_F(ManagerTest, OnlyTheNewestManagerReceivesEvents) {
  OpenManager();
  NPP first = npp_;
  MwHandle first_handle = handle_;
  NPObject* f = host::NewFunction("f");
  EXPECT_TRUE(host::Set(npp_, manager_, "onLowMemory", host::Obj(f)));
  OpenManager();
  EXPECT_NE(first_handle, handle_);
  // The older manager is no longer the head of the list: its events are dropped.
  sim::RaiseLowMemory(first_handle);
  EXPECT_EQ(1u, host::Pump());
  EXPECT_TRUE(host::Calls(f).empty());
  DestroyPlugin(npp_);
  sim::RaiseLowMemory(first_handle);
  host::Pump();
  EXPECT_EQ(1u, host::Calls(f).size());
  DestroyPlugin(first);
  Drop(f);
}

}  // namespace
