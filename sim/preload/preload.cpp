// The simulator as a preloaded middleware: a fresh receiver when the
// library loads, from the description that ORVANE_RECEIVER names (the
// built-in receiver otherwise, or when it cannot be read).
#include <cstdio>
#include <cstdlib>
#include <string>

#include "sim/description.h"
#include "sim/sim.h"

namespace {

__attribute__((constructor)) void LoadReceiver() {
  sim::Reset();
  const char* path = std::getenv("ORVANE_RECEIVER");
  if (!path || !*path) return;
  std::string why;
  if (!sim::LoadDescription(path, &why))
    std::fprintf(stderr, "orvane simulator: %s: %s (the built-in receiver runs)\n", path, why.c_str());
}

}  // namespace
