// Self-tests of the fake browser the plug-in's tests run against.
#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <thread>

#include "host/host.h"
#include "utils/record_alloc.h"

namespace {

struct HostTest : ::testing::Test {
  void SetUp() override { host::Reset(); }
  void TearDown() override { host::Reset(); }
  NPNetscapeFuncs* npn = host::Funcs();
};

// A minimal plug-in-side class that counts deallocations.
int g_deallocated = 0;
void CountingDeallocate(NPObject* o) {
  ++g_deallocated;
  free(o);
}
NPClass g_plugin_class = {NP_CLASS_STRUCT_VERSION, nullptr, CountingDeallocate, nullptr, nullptr,
                          nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};

TEST_F(HostTest, MemoryIsAccountedAndFailsOnDemand) {
  void* a = npn->memalloc(8);
  void* b = npn->memalloc(0);
  ASSERT_TRUE(a && b);
  EXPECT_EQ(2u, host::LiveBlocks());

  host::FailAllocation(2);
  void* c = npn->memalloc(4);
  EXPECT_EQ(nullptr, npn->memalloc(4)) << "second allocation from now fails";
  void* d = npn->memalloc(4);
  EXPECT_NE(nullptr, d) << "failure is one-shot";
  EXPECT_EQ(5, host::AllocationsSinceReset());

  int local = 0;
  npn->memfree(&local);
  npn->memfree(nullptr);
  npn->memfree(a);
  npn->memfree(a);
  EXPECT_EQ(2u, host::BadFrees()) << "foreign pointer and double free";
  npn->memfree(b);
  npn->memfree(c);
  npn->memfree(d);
  EXPECT_EQ(0u, host::LiveBlocks());

  // Leftovers of one test are not the next test's leaks, and may still be freed.
  void* leaked = npn->memalloc(16);
  host::Reset();
  EXPECT_EQ(0u, host::LiveBlocks());
  npn->memfree(leaked);
  EXPECT_EQ(0u, host::BadFrees());
}

TEST_F(HostTest, RecordAllocationCountsAndFails) {
  void* a = RecordAlloc(10);
  host::FailRecordAllocation(1);
  EXPECT_EQ(nullptr, RecordAlloc(10));
  void* b = RecordAlloc(10);
  EXPECT_EQ(2u, host::LiveRecords());
  RecordFree(a);
  RecordFree(b);
  RecordFree(nullptr);
  EXPECT_EQ(0u, host::LiveRecords());
}

TEST_F(HostTest, ObjectsAreCountedAndOverReleaseIsCaught) {
  g_deallocated = 0;
  NPObject* o = npn->createobject(nullptr, &g_plugin_class);
  ASSERT_NE(nullptr, o);
  EXPECT_EQ(1u, o->referenceCount);
  EXPECT_EQ(1u, host::LivePluginObjects());
  npn->retainobject(o);
  npn->releaseobject(o);
  EXPECT_EQ(0, g_deallocated);
  npn->releaseobject(o);
  EXPECT_EQ(1, g_deallocated);
  EXPECT_EQ(0u, host::LivePluginObjects());
  EXPECT_EQ(0u, host::ReferenceErrors());

  npn->releaseobject(o);  // dead: detected, not touched
  NPVariant r;
  EXPECT_FALSE(npn->getproperty(nullptr, o, host::Id("x"), &r));
  EXPECT_EQ(2u, host::ReferenceErrors());

  // A class without the slot: the call fails.
  NPObject* p = npn->createobject(nullptr, &g_plugin_class);
  EXPECT_FALSE(npn->invoke(nullptr, p, host::Id("x"), nullptr, 0, &r));
  EXPECT_FALSE(npn->hasmethod(nullptr, p, host::Id("x")));
  NPVariant v = host::Obj(p);
  host::Release(&v);
  EXPECT_EQ(NPVariantType_Void, v.type);
  EXPECT_EQ(2, g_deallocated);
}

TEST_F(HostTest, PageObjectsHeldByTheCallerAreBalanced) {
  host::Page* page = host::NewPage();
  NPP npp = host::NewInstance(page);
  NPObject* window = nullptr;
  ASSERT_EQ(NPERR_NO_ERROR, npn->getvalue(npp, NPNVWindowNPObject, &window));
  EXPECT_EQ(1u, host::UnbalancedPageObjects()) << "the caller holds the window";
  NPVariant location;
  ASSERT_TRUE(host::Get(npp, window, "location", &location));
  NPVariant href;
  ASSERT_TRUE(host::Get(npp, location.value.objectValue, "href", &href));
  EXPECT_EQ(1u, host::LiveBlocks()) << "returned strings are the caller's";
  host::Release(&href);
  host::Release(&location);
  npn->releaseobject(window);
  EXPECT_EQ(0u, host::UnbalancedPageObjects());
  EXPECT_EQ(0u, host::LiveBlocks());
  npn->releaseobject(window);
  EXPECT_EQ(1u, host::UnbalancedPageObjects()) << "over-release of the window";
}

TEST_F(HostTest, AsyncCallsRunOnlyWhenPumped) {
  std::atomic<int> ran{0};
  auto bump = [](void* data) { ++*static_cast<std::atomic<int>*>(data); };
  std::thread worker([&] { npn->pluginthreadasynccall(nullptr, bump, &ran); });
  worker.join();
  EXPECT_EQ(0, ran.load());
  EXPECT_EQ(1u, host::Pending());
  EXPECT_EQ(1u, host::Pump());
  EXPECT_EQ(1, ran.load());

  // A call queued while pumping runs in the same pump.
  static NPNetscapeFuncs* funcs = npn;
  auto requeue = [](void* data) {
    ++*static_cast<std::atomic<int>*>(data);
    funcs->pluginthreadasynccall(nullptr, [](void* d) { ++*static_cast<std::atomic<int>*>(d); },
                                 data);
  };
  npn->pluginthreadasynccall(nullptr, requeue, &ran);
  EXPECT_EQ(2u, host::Pump());
  EXPECT_EQ(3, ran.load());

  std::thread late([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    npn->pluginthreadasynccall(nullptr, bump, &ran);
  });
  EXPECT_TRUE(host::PumpUntil([&] { return ran.load() == 4; }));
  late.join();
  EXPECT_FALSE(host::PumpUntil([] { return false; }, 10));
}

}  // namespace
