// The end-of-test accounting fails on each fault of its kind, injected on
// purpose: a record freed twice, a middleware handle released once too
// often or left held, a block or object leaked, an NPN call off the thread.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <functional>
#include <thread>

#include "host/fixture.h"
#include "middleware/middleware.h"
#include "sim/sim.h"
#include "utils/record_alloc.h"

namespace {

class AccountingTest : public OrvaneTest {
 protected:
  // The check must fail, naming `what`; then browser and receiver start clean.
  void ExpectCaught(const char* what) {
    EXPECT_NONFATAL_FAILURE(CheckClean(), what);
    host::Reset();
    sim::Reset();
  }
};

TEST_F(AccountingTest, CleanEndPasses) { CheckClean(); }

TEST_F(AccountingTest, EachInjectedFaultFailsTheCheck) {
  void* record = RecordAlloc(16);
  RecordFree(record);
  RecordFree(record);
  ExpectCaught("plug-in records freed twice");

  MwHandle text = sim::NewString("twice");
  MwObjectRelease(text);
  sim::SetStrictOwnership(false);  // counted here; strict ownership would stop the suite
  MwObjectRelease(text);
  sim::SetStrictOwnership(true);
  ExpectCaught("middleware handles released wrongly");
  EXPECT_DEATH(MwObjectRelease(text), "MwObjectRelease\\([0-9]+\\): no such handle");

  sim::NewString("kept");
  ExpectCaught("middleware handles not released");

  host::Funcs()->memalloc(8);
  ExpectCaught("NPN_MemAlloc blocks leaked");

  RecordAlloc(8);
  ExpectCaught("plug-in records leaked");

  std::thread([] { host::Funcs()->getstringidentifier("offThread"); }).join();
  ExpectCaught("NPN calls off the browser's thread");
}

}  // namespace
