// What every fuzz target does around an input: a fresh fake browser and
// receiver with the plug-in initialised in it first, and at the end the same
// accounting a unit test ends with. Anything left over (a block, object,
// record or middleware reference, a bad free, an over-release, a call off
// the browser's thread) is a finding: it is reported on stderr and the run
// aborts.
//
// ORVANE_FUZZ_FAULT injects one fault of a kind into every input, so that a
// run can show its oracle catching it: "record-double-free",
// "over-release", "held-handle", "leaked-block", "off-thread".
#ifndef ORVANE_FUZZ_START_H
#define ORVANE_FUZZ_START_H

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

#include "host/host.h"
#include "middleware/middleware.h"
#include "sim/sim.h"
#include "utils/record_alloc.h"

extern "C" NPError NP_Initialize(NPNetscapeFuncs* browser, NPPluginFuncs* plugin);

inline NPPluginFuncs StartPlugin() {
  host::Reset();
  sim::Reset();
  NPPluginFuncs plugin{};
  plugin.size = sizeof(NPPluginFuncs);
  NP_Initialize(host::Funcs(), &plugin);
  return plugin;
}

inline void InjectFault(const char* fault) {
  if (!strcmp(fault, "record-double-free")) {
    void* record = RecordAlloc(8);
    RecordFree(record);
    RecordFree(record);
  } else if (!strcmp(fault, "over-release")) {
    MwHandle text = sim::NewString("fault");
    MwObjectRelease(text);
    MwObjectRelease(text);
  } else if (!strcmp(fault, "held-handle")) {
    sim::NewString("fault");
  } else if (!strcmp(fault, "leaked-block")) {
    host::Funcs()->memalloc(8);
  } else if (!strcmp(fault, "off-thread")) {
    std::thread([] { host::Funcs()->getstringidentifier("fault"); }).join();
  }
}

// The end of an input: the page's objects are gone; nothing may be left.
inline void CheckAccounting() {
  static const char* fault = getenv("ORVANE_FUZZ_FAULT");
  if (fault) InjectFault(fault);
  std::string left = host::AccountingReport();
  if (left.empty()) return;
  fprintf(stderr, "finding: the input left\n%s", left.c_str());
  abort();
}

#endif
