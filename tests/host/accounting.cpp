// The accounting every test, the sweep and every fuzz target end with.
#include "host/host.h"
#include "sim/sim.h"

namespace host {

std::vector<Count> Accounting() {
  return {
      {"NPN_MemAlloc blocks leaked", LiveBlocks()},
      {"NPN_MemFree of memory the browser did not allocate", BadFrees()},
      {"plug-in NPObjects leaked", LivePluginObjects()},
      {"over-release or use of a dead NPObject", ReferenceErrors()},
      {"browser objects (arrays, functions, parser documents) still referenced", LiveTransientHostObjects()},
      {"window/document/element/style references not balanced", UnbalancedPageObjects()},
      {"plug-in records leaked", LiveRecords()},
      {"plug-in records freed twice or never allocated", BadRecordFrees()},
      {"middleware handles not released", sim::HeldHandles()},
      {"middleware handles released wrongly", sim::ReleaseErrors()},
      {"NPN calls off the browser's thread", OffThreadCalls().size()},
  };
}

std::string AccountingReport() {
  std::string out;
  for (const Count& c : Accounting())
    if (c.value) out += std::to_string(c.value) + " " + c.what + "\n";
  if (out.empty()) return out;
  out += sim::HeldHandlesReport() + LiveBlocksReport();
  for (const std::string& call : OffThreadCalls()) out += "off the thread: " + call + "\n";
  return out;
}

}  // namespace host
