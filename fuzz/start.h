// What every fuzz target does first: a fresh fake browser with the plug-in
// initialised in it (the simulator is reset by the targets that use it).
#ifndef ORVANE_FUZZ_START_H
#define ORVANE_FUZZ_START_H

#include "host/host.h"

extern "C" NPError NP_Initialize(NPNetscapeFuncs* browser, NPPluginFuncs* plugin);

inline NPPluginFuncs StartPlugin() {
  host::Reset();
  NPPluginFuncs plugin{};
  plugin.size = sizeof(NPPluginFuncs);
  NP_Initialize(host::Funcs(), &plugin);
  return plugin;
}

#endif
