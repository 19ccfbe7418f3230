// The common fixture of the plug-in's tests: a fresh browser and receiver for
// every test, and a leak check when it ends.
//
// SetUp resets the fake browser and the simulator, then loads the plug-in
// (NP_Initialize). TearDown destroys the instances the test left alive,
// shuts the plug-in down (NP_Shutdown), pumps the browser once and checks that
// nothing leaked: NPN_MemAlloc blocks, bad frees, plug-in objects, reference
// errors, host objects, page object balance, plug-in records, middleware
// handles.
//
// The scriptable object: NPP_GetValue(NPPVpluginScriptableNPObject) hands
// the browser one reference. NewPlugin asks for it at once, as a browser
// binding the element to script does; Scriptable() asks once per instance and keeps
// that reference on the browser's behalf; tests use the pointer without
// retaining or releasing it. DestroyPlugin() calls NPP_Destroy and then
// releases that reference, as the browser drops the element's script object.
#ifndef ORVANE_TESTS_HOST_FIXTURE_H
#define ORVANE_TESTS_HOST_FIXTURE_H

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/host.h"

extern "C" NPError NP_Initialize(NPNetscapeFuncs* browser, NPPluginFuncs* plugin);
extern "C" NPError NP_Shutdown(void);

class OrvaneTest : public ::testing::Test {
 protected:
  using Attributes = std::vector<std::pair<std::string, std::string>>;

  void SetUp() override;
  void TearDown() override;

  // Leak and reference checks; TearDown runs them after the plug-in is gone.
  void CheckClean();

  // A new page and an instance of the plug-in on it (NPP_New with NP_EMBED and
  // the given <object> attributes). The NPError is kept in last_error_; the
  // NPP is returned either way.
  NPP NewPlugin(const char* mime, Attributes attrs = {}, host::PageSpec spec = {});
  // The instance's scriptable object (null if the plug-in gives none).
  NPObject* Scriptable(NPP npp);
  // NPP_Destroy, then the browser's reference to the scriptable object goes.
  void DestroyPlugin(NPP npp);

  NPPluginFuncs plugin_funcs_ = {};
  NPError last_error_ = NPERR_NO_ERROR;
  NPError init_error_ = NPERR_NO_ERROR;

 private:
  struct Instance {
    std::vector<std::string> names, values;
    std::vector<char*> argn, argv;
    NPObject* scriptable = nullptr;
    bool fetched = false;
    bool alive = false;
  };
  std::map<NPP, std::unique_ptr<Instance>> instances_;
  bool initialized_ = false;
};

// A fixture that scripts the objects of one instance (npp_). What reads and
// calls return is kept and released when the test ends, before the leak
// checks; so are the objects the page's functions were called with.
class ScriptTest : public OrvaneTest {
 protected:
  void TearDown() override;

  NPVariant Keep(NPVariant v);
  // A property read; `ok` receives the getProperty result.
  NPVariant Get(NPObject* o, const char* name, bool* ok = nullptr);
  // A method call; `ok` receives the invoke result.
  NPVariant Call(NPObject* o, const char* method, std::vector<NPVariant> args, bool* ok = nullptr);
  // The String content of a property ("" for other values), not kept.
  std::string Text(NPObject* o, const char* name);

  NPP npp_ = nullptr;
  std::vector<NPVariant> held_;
};

#endif
