// A plug-in with faults on purpose, for the browser tests that show a run
// failing: it wraps libnporvane.so (path in ORVANE_FAULT_WRAPS), hands on
// everything, and adds one type, application/x-orvane-fault, whose instances
// it refuses after doing what their "fault" attribute names:
//   held          take a middleware reference and never give it back
//   over-release  give a middleware reference back twice
//   refuse        nothing: only the refusal (the element stays windowed)
// orvane-run --plugin loads it in place of the plug-in.
#include <cstring>
#include <string>

#include "middleware/middleware.h"
#include "runner/loader/forward.h"

namespace {

const char kFaultType[] = "application/x-orvane-fault";
NPP_NewProcPtr g_real_new = nullptr;

void* Real() {
  static void* lib = forward::Open("ORVANE_FAULT_WRAPS", "fault plug-in");
  return lib;
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
  NPError error = forward::Initialize(Real(), browser, plugin);
  if (error == NPERR_NO_ERROR) {
    g_real_new = plugin->newp;
    plugin->newp = FaultyNew;
  }
  return error;
}

__attribute__((visibility("default"))) NPError NP_Shutdown() { return forward::Shutdown(Real()); }

__attribute__((visibility("default"))) const char* NP_GetMIMEDescription() {
  static std::string description;
  description = std::string(kFaultType) + "::Faults;" + forward::MimeDescription(Real());
  return description.c_str();
}

__attribute__((visibility("default"))) NPError NP_GetValue(void* future, NPPVariable variable, void* value) {
  return forward::GetValue(Real(), future, variable, value);
}

__attribute__((visibility("default"))) const char* NP_GetPluginVersion() { return forward::Version(Real()); }

}  // extern "C"
