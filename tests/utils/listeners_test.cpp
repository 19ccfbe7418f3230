// Listener lists and the delivery of events on the browser's thread.
#include <gtest/gtest.h>

#include <thread>

#include "host/fixture.h"
#include "plugin/browser.h"
#include "utils/convert.h"
#include "utils/listeners.h"

namespace {

class ListenersTest : public OrvaneTest {
 protected:
  void SetUp() override {
    OrvaneTest::SetUp();
    npp_ = host::NewInstance(host::NewPage());
    record_ = ObjectRecord{nullptr, npp_, nullptr, 42, 0, nullptr};
    head_ = &record_;
  }
  void TearDown() override {
    NP_UtilsFreeAllEventListeners(&record_);
    OrvaneTest::TearDown();
  }
  // An event with one String and one Int32 argument.
  void Post(uint32_t event, MwHandle handle = 42) {
    NPVariant* args = NP_UtilsNewArguments(2);
    NP_UtilsStringToResult(4, "text", &args[0]);
    SetInt(&args[1], 5);
    NP_UtilsAsyncCallback(&head_, handle, event, args, 2);
  }
  NPObject* Listen(const char* name, uint32_t event, bool handle_event = false) {
    NPObject* f = host::NewFunction(name, handle_event);
    NPVariant v = host::Obj(f);
    EXPECT_EQ(f, NP_UtilsAddEventListener(&record_, &v, event));
    host::Funcs()->releaseobject(f);  // the list keeps it alive
    return f;
  }
  NPP npp_ = nullptr;
  ObjectRecord record_;
  ObjectRecord* head_ = nullptr;
};

TEST_F(ListenersTest, OldestFirstByEventIdWithHandleEventObjects) {
  Listen("a", 1);
  Listen("other", 2);
  Listen("b", 1, /*handle_event=*/true);
  Listen("a-again", 1);
  Post(1);
  EXPECT_TRUE(host::CallOrder().empty());
  host::Pump();
  const auto& order = host::CallOrder();
  ASSERT_EQ(3u, order.size());
  EXPECT_EQ("a", order[0].first);
  EXPECT_EQ("b", order[1].first);
  EXPECT_EQ("a-again", order[2].first);
  EXPECT_EQ("text", order[1].second.text[0]);
  EXPECT_EQ(5, order[1].second.args[1].value.intValue);
}

TEST_F(ListenersTest, AddRefusesNonObjectsAndRemoveTakesTheNewestRegistration) {
  NPVariant n = host::Int(1);
  EXPECT_EQ(nullptr, NP_UtilsAddEventListener(&record_, &n, 1));
  EXPECT_EQ(nullptr, record_.listeners);
  NPObject* f = Listen("f", 3);
  NPVariant v = host::Obj(f);
  NP_UtilsAddEventListener(&record_, &v, 4);  // the same function twice runs twice
  EXPECT_EQ(4, NP_UtilsRemoveEventListener(&record_, f));
  EXPECT_EQ(3, NP_UtilsRemoveEventListener(&record_, f));
  EXPECT_EQ(-1, NP_UtilsRemoveEventListener(&record_, f));
}

TEST_F(ListenersTest, OnlyTheHeadOfTheListReceivesEvents) {
  Listen("f", 1);
  ObjectRecord newer{&record_, npp_, nullptr, 43, 0, nullptr};
  head_ = &newer;
  Post(1);  // found by handle, dropped at delivery: not the head
  host::Pump();
  EXPECT_TRUE(host::CallOrder().empty());
  Post(1, 99);  // no such handle: arguments freed at once
  EXPECT_EQ(0u, host::Pending());
  head_ = &record_;
}

TEST_F(ListenersTest, EventsFromAnotherThreadRunOnlyWhenTheBrowserThreadPumps) {
  Listen("f", 7);
  std::thread middleware([this] { Post(7); });
  middleware.join();
  EXPECT_TRUE(host::CallOrder().empty());
  EXPECT_EQ(1u, host::Pending());
  host::Pump();
  EXPECT_EQ(1u, host::CallOrder().size());
}

TEST_F(ListenersTest, ListenersMayChangeTheListWhileTheyRun) {
  NPObject* f = Listen("f", 1);
  Listen("g", 1);
  // Removing f (and so releasing the list's reference) before delivery runs.
  Post(1);
  EXPECT_EQ(1, NP_UtilsRemoveEventListener(&record_, f));
  host::Pump();
  ASSERT_EQ(1u, host::CallOrder().size());
  EXPECT_EQ("g", host::CallOrder()[0].first);
}

TEST_F(ListenersTest, AllocationFailuresDropTheEventButFreeItsArguments) {
  Listen("f", 1);
  host::FailAllocation(1);  // the listener record
  NPVariant v = host::Obj(host::NewFunction("g"));
  EXPECT_EQ(nullptr, NP_UtilsAddEventListener(&record_, &v, 1));
  host::Funcs()->releaseobject(v.value.objectValue);
  for (int nth = 1; nth <= 2; nth++) {  // the event record, the listener copy
    NPVariant* args = NP_UtilsNewArguments(1);
    SetObject(&args[0], host::NewFunction("payload"));
    host::FailAllocation(nth);
    NP_UtilsAsyncCallback(&head_, 42, 1, args, 1);
    host::Pump();
    host::FailAllocation(0);
  }
  EXPECT_TRUE(host::CallOrder().empty());
}

}  // namespace
