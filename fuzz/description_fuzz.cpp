// Receiver descriptions, the JSON an integrator or a test writes: any text
// gives a receiver, or the built-in receiver and a one-line error naming
// what is wrong; never a crash, a hang or an exception across the C
// boundary. ORVANE_FUZZ_FAULT=error-lines breaks the error on purpose, so
// that the oracle run sees the check fail.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "sim/description.h"
#include "sim/sim.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const bool broken = [] {
    const char* fault = std::getenv("ORVANE_FUZZ_FAULT");
    return fault && std::strcmp(fault, "error-lines") == 0;
  }();
  sim::Reset();
  std::string error;
  if (!sim::LoadDescriptionText(std::string(reinterpret_cast<const char*>(data), size), &error)) {
    if (broken) error += "\nsecond line";
    if (error.empty() || error.find('\n') != std::string::npos) {
      std::fprintf(stderr, "finding: a description's error is not one line: \"%s\"\n", error.c_str());
      std::abort();
    }
  }
  sim::Reset();
  return 0;
}
