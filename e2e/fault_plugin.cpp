// A plug-in with faults on purpose, for the browser tests that show a run
// failing: it wraps libnporvane.so (path in ORVANE_FAULT_WRAPS), hands on
// everything, and adds one type, application/x-orvane-fault, whose instances
// it refuses after doing what their "fault" attribute names:
//   held          take a middleware reference and never give it back
//   over-release  give a middleware reference back twice
//   refuse        nothing: only the refusal (the element stays windowed)
// orvane-run --plugin loads it in place of the plug-in.
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "middleware/middleware.h"
#include "npapi/npapi.h"

namespace {

const char kFaultType[] = "application/x-orvane-fault";
NPP_NewProcPtr g_real_new = nullptr;

void* Real() {
  static void* lib = [] {
    const char* path = getenv("ORVANE_FAULT_WRAPS");
    void* h = path ? dlopen(path, RTLD_LAZY | RTLD_LOCAL) : nullptr;
    if (!h) fprintf(stderr, "fault plug-in: cannot open %s\n", path ? path : "(ORVANE_FAULT_WRAPS unset)");
    return h;
  }();
  return lib;
}

template <class F>
F Entry(const char* name) {
  void* lib = Real();
  return lib ? reinterpret_cast<F>(dlsym(lib, name)) : nullptr;
}

NPError FaultyNew(NPMIMEType type, NPP instance, uint16_t mode, int16_t argc, char* argn[], char* argv[],
                  NPSavedData* saved) {
  if (!type || strcmp(type, kFaultType) != 0)
    return g_real_new(type, instance, mode, argc, argn, argv, saved);
  std::string fault;
  for (int16_t i = 0; i < argc; i++)
    if (argn[i] && argv[i] && !strcmp(argn[i], "fault")) fault = argv[i];
  if (fault == "held") {
    MwAVCreateVideoMp4();
  } else if (fault == "over-release") {
    MwHandle player = MwAVCreateVideoMp4();
    MwObjectRelease(player);
    MwObjectRelease(player);
  }
  return NPERR_GENERIC_ERROR;
}

}  // namespace

extern "C" {

__attribute__((visibility("default"))) NPError NP_Initialize(NPNetscapeFuncs* browser, NPPluginFuncs* plugin) {
  auto f = Entry<NPError (*)(NPNetscapeFuncs*, NPPluginFuncs*)>("NP_Initialize");
  if (!f) return NPERR_MODULE_LOAD_FAILED_ERROR;
  NPError error = f(browser, plugin);
  if (error == NPERR_NO_ERROR) {
    g_real_new = plugin->newp;
    plugin->newp = FaultyNew;
  }
  return error;
}

__attribute__((visibility("default"))) NPError NP_Shutdown() {
  auto f = Entry<NPError (*)()>("NP_Shutdown");
  return f ? f() : static_cast<NPError>(NPERR_NO_ERROR);
}

__attribute__((visibility("default"))) const char* NP_GetMIMEDescription() {
  static std::string description;
  auto f = Entry<const char* (*)()>("NP_GetMIMEDescription");
  description = std::string(kFaultType) + "::Faults;" + (f ? f() : "");
  return description.c_str();
}

__attribute__((visibility("default"))) NPError NP_GetValue(void* future, NPPVariable variable, void* value) {
  auto f = Entry<NPError (*)(void*, NPPVariable, void*)>("NP_GetValue");
  return f ? f(future, variable, value) : static_cast<NPError>(NPERR_GENERIC_ERROR);
}

__attribute__((visibility("default"))) const char* NP_GetPluginVersion() {
  auto f = Entry<const char* (*)()>("NP_GetPluginVersion");
  return f ? f() : "";
}

}  // extern "C"
