// A fixture for tests that call the simulated middleware directly: a fresh
// receiver, an event table that records what reaches it (and gives back the
// references that events hand over), and a check that nothing is left held.
#ifndef ORVANE_TESTS_SIM_SIM_FIXTURE_H
#define ORVANE_TESTS_SIM_SIM_FIXTURE_H

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "middleware/middleware.h"
#include "sim/sim.h"

namespace simtest {

struct Event {
  std::string name;
  std::vector<int64_t> args;  // handles and numbers
  bool on_test_thread = false;
  std::vector<std::string> texts;  // the middleware strings it handed over
};

std::vector<Event> Events();
std::vector<Event> Named(const std::string& name);  // the events of one entry point
void ClearEvents();

// The text of a middleware string, which is released; "<null>" for 0.
std::string Take(MwHandle string);

inline MwString Ms(const char* text) { return MwString{static_cast<uint32_t>(strlen(text)), text}; }

class SimTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;
};

}  // namespace simtest

#endif
