// The shipped library loaded as a browser loads it: dlopen'ed by a process
// that carries the middleware (here the simulator), whose Mw... symbols the
// library's imports resolve to.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>

#include "host/host.h"
#include "sim/sim.h"

namespace {

struct Library {
  void* handle = dlopen(ORVANE_PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
  ~Library() {
    if (handle) dlclose(handle);
  }
  template <class F>
  F Symbol(const char* name) {
    return reinterpret_cast<F>(dlsym(handle, name));
  }
};

TEST(LoadTest, BrowserLoadsTheLibraryAndScriptsADrmAgent) {
  host::Reset();
  sim::Reset();
  Library lib;
  ASSERT_NE(nullptr, lib.handle) << dlerror();
  auto initialize = lib.Symbol<NPError (*)(NPNetscapeFuncs*, NPPluginFuncs*)>("NP_Initialize");
  auto mime = lib.Symbol<const char* (*)()>("NP_GetMIMEDescription");
  ASSERT_NE(nullptr, initialize);
  ASSERT_NE(nullptr, mime);
  EXPECT_EQ(nullptr, lib.Symbol<void*>("DeliverToListeners"));  // internal names stay hidden
  EXPECT_NE(nullptr, lib.Symbol<void*>("g_plugin_callbacks"));
  EXPECT_NE(std::string::npos, std::string(mime()).find("video/broadcast:bsc:VideoBroadcast"));

  NPPluginFuncs funcs = {};
  funcs.size = sizeof funcs;
  ASSERT_EQ(NPERR_NO_ERROR, initialize(host::Funcs(), &funcs));
  EXPECT_EQ(lib.Symbol<void*>("g_plugin_callbacks"), sim::Callbacks());

  NPP npp = host::NewInstance(host::NewPage());
  char type[] = "application/oipfdrmagent";
  ASSERT_EQ(NPERR_NO_ERROR, funcs.newp(type, npp, NP_EMBED, 0, nullptr, nullptr, nullptr));
  NPObject* agent = nullptr;
  ASSERT_EQ(NPERR_NO_ERROR, funcs.getvalue(npp, NPPVpluginScriptableNPObject, &agent));
  NPObject* f = host::NewFunction("f");
  NPVariant r = host::Void();
  host::Set(npp, agent, "onDRMMessageResult", host::Obj(f));
  host::Invoke(npp, agent, "sendDRMMessage", {host::Str("t"), host::Str("m"), host::Str("s")}, &r);
  host::Release(&r);
  sim::WaitIdle();
  host::Pump();
  ASSERT_EQ(1u, host::Calls(f).size());
  // "s" is no DRM system of the receiver: an empty answer, code 5 (unknown DRM system).
  EXPECT_EQ("", host::Calls(f)[0].text[1]);
  EXPECT_EQ(5, host::Calls(f)[0].args[2].value.intValue);

  NPSavedData* saved = nullptr;
  EXPECT_EQ(NPERR_NO_ERROR, funcs.destroy(npp, &saved));
  host::Funcs()->releaseobject(agent);
  host::Funcs()->releaseobject(f);
  EXPECT_EQ(0u, host::LiveBlocks());
  EXPECT_EQ(0u, host::LivePluginObjects());
  EXPECT_EQ(0u, sim::HeldHandles());
  host::Reset();
  sim::Reset();
}

}  // namespace
