// A page with an application manager instance, and the page's own
// application object as page scripts reach it.
#ifndef ORVANE_TESTS_APPMGR_APPMGR_FIXTURE_H
#define ORVANE_TESTS_APPMGR_APPMGR_FIXTURE_H

#include <string>
#include <vector>

#include "host/fixture.h"
#include "sim/appmgr_sim.h"
#include "sim/sim.h"

class AppMgrTest : public OrvaneTest {
 protected:
  // An application manager on a page at `href`.
  void OpenManager(const std::string& href = "http://apps.example/app/index.html") {
    host::PageSpec spec;
    spec.href = href;
    npp_ = NewPlugin("application/oipfapplicationmanager", {}, spec);
    ASSERT_EQ(NPERR_NO_ERROR, last_error_);
    manager_ = Scriptable(npp_);
    ASSERT_NE(nullptr, manager_);
    handle_ = sim::LastAppManager();
    ASSERT_NE(0u, handle_);
  }
  NPObject* Document() { return host::Document(host::PageOf(npp_)); }

  // Calls `method` on `o` with `args`; the result is kept in `result_`
  // (released before the next call and at the end).
  bool Call(NPObject* o, const char* method, std::vector<NPVariant> args = {}) {
    Clear();
    return host::Invoke(npp_, o, method, std::move(args), &result_);
  }
  bool Read(NPObject* o, const char* name) {
    Clear();
    return host::Get(npp_, o, name, &result_);
  }
  void Clear() {
    host::Release(&result_);
    result_ = host::Void();
  }
  // The object in the last result, retained for the caller (null if none).
  NPObject* Take() {
    if (result_.type != NPVariantType_Object) return nullptr;
    NPObject* o = result_.value.objectValue;
    result_ = host::Void();
    return o;
  }
  // window.document's owner application, retained for the caller.
  NPObject* OwnerApp() {
    EXPECT_TRUE(Call(manager_, "getOwnerApplication", {host::Obj(Document())}));
    return Take();
  }
  static void Drop(NPObject* o) {
    if (o) host::Funcs()->releaseobject(o);
  }

  void TearDown() override {
    Clear();
    OrvaneTest::TearDown();
  }

  NPP npp_ = nullptr;
  NPObject* manager_ = nullptr;
  MwHandle handle_ = 0;
  NPVariant result_ = host::Void();
};

#endif
