// Listener lists, onXxx slots, and the delivery of middleware events on the
// browser's thread.
#include <gtest/gtest.h>

#include <thread>

#include "frame/events.h"
#include "frame/frame.h"
#include "frame/listeners.h"
#include "host/fixture.h"
#include "npapi/browser.h"
#include "sim/sim.h"
#include "utils/convert.h"

namespace {

RecordList g_list;
ObjectRecord* g_destroy_from_listener = nullptr;

// An event with one String (owned handle 0) and one Int32 argument.
void DeliverTextAndNumber(ObjectRecord* target, PendingEvent* ev) {
  if (!target) return;
  NPVariant args[2];
  TakeStringArgument(ev, 0, &args[0]);
  SetInt(&args[1], ev->numbers[0]);
  DeliverToListeners(target, ev->event, args, 2);
}

class EventsTest : public OrvaneTest {
 protected:
  void SetUp() override {
    OrvaneTest::SetUp();
    npp_ = host::NewInstance(host::NewPage());
    record_ = Make(42);
    EventsInstanceCreated(npp_);
  }
  void TearDown() override {
    EventsInstanceDestroyed(npp_, nullptr);
    while (ObjectRecord* r = g_list.head()) Destroy(r);
    OrvaneTest::TearDown();
  }
  ObjectRecord* Make(MwHandle handle) {
    ObjectRecord* r = RecordNew<ObjectRecord>();
    r->instance = npp_;
    r->handle = handle;
    g_list.Add(r);
    return r;
  }
  static void Destroy(ObjectRecord* r) {
    g_list.Remove(r);
    NP_UtilsFreeAllEventListeners(r);
    FrameFreeRecord(r);
  }
  void Post(uint32_t event, MwHandle handle = 42) {
    PendingEvent ev = EventFor(g_list, DeliverTextAndNumber, handle, event);
    ev.owned[0] = sim::NewString("text");
    ev.numbers[0] = 5;
    PostEvent(ev);
  }
  NPObject* Listen(const char* name, uint32_t event, bool handle_event = false) {
    NPObject* f = host::NewFunction(name, handle_event);
    NPVariant v = host::Obj(f);
    EXPECT_EQ(f, NP_UtilsAddEventListener(record_, &v, event));
    host::Funcs()->releaseobject(f);  // the list keeps it alive
    return f;
  }
  std::vector<std::string> Order() {
    std::vector<std::string> names;
    for (const auto& call : host::CallOrder()) names.push_back(call.first);
    return names;
  }
  NPP npp_ = nullptr;
  ObjectRecord* record_ = nullptr;
};

TEST_F(EventsTest, OldestFirstByEventIdWithHandleEventObjects) {
  Listen("a", 1);
  Listen("other", 2);
  Listen("b", 1, /*handle_event=*/true);
  Listen("a-again", 1);
  Post(1);
  EXPECT_TRUE(host::CallOrder().empty());
  host::Pump();
  EXPECT_EQ((std::vector<std::string>{"a", "b", "a-again"}), Order());
  EXPECT_EQ("text", host::CallOrder()[1].second.text[0]);
  EXPECT_EQ(5, host::CallOrder()[1].second.args[1].value.intValue);
}

TEST_F(EventsTest, AddRefusesNonObjectsAndRemoveTakesTheNewestRegistration) {
  NPVariant n = host::Int(1);
  EXPECT_EQ(nullptr, NP_UtilsAddEventListener(record_, &n, 1));
  EXPECT_EQ(nullptr, record_->listeners);
  NPObject* f = Listen("f", 3);
  NPVariant v = host::Obj(f);
  NP_UtilsAddEventListener(record_, &v, 4);  // the same function twice runs twice
  EXPECT_EQ(4, NP_UtilsRemoveEventListener(record_, f));
  EXPECT_EQ(3, NP_UtilsRemoveEventListener(record_, f));
  EXPECT_EQ(-1, NP_UtilsRemoveEventListener(record_, f));
}

TEST_F(EventsTest, OnlyTheHeadOfTheListReceivesEventsAndDroppedOnesReleaseTheirData) {
  Listen("f", 1);
  Make(43);
  Post(1);       // the record is not the head
  Post(1, 99);   // no such handle
  host::Pump();  // the strings of both are released (the fixture checks)
  EXPECT_TRUE(host::CallOrder().empty());
}

TEST_F(EventsTest, EventsFromOtherThreadsTouchOnlyMemoryAndTheAsyncCall) {
  Listen("f", 7);
  std::thread a([this] { Post(7); Post(7); });
  std::thread b([this] { Post(7); });
  a.join();
  b.join();
  EXPECT_TRUE(host::CallOrder().empty());
  EXPECT_LE(host::Pending(), 3u);
  host::Pump();
  EXPECT_EQ(3u, host::CallOrder().size());
  EXPECT_TRUE(host::OffThreadCalls().empty());
}

TEST_F(EventsTest, ListenersMayRemoveOthersAndDestroyTheRecordWhileTheyRun) {
  NPObject* f = Listen("f", 1);
  Listen("g", 1);
  Post(1);
  EXPECT_EQ(1, NP_UtilsRemoveEventListener(record_, f));  // before delivery
  host::Pump();
  EXPECT_EQ((std::vector<std::string>{"g"}), Order());

  // A listener that destroys the record: the ones after it are not called,
  // and the record is freed once the delivery ends.
  static NPClass destroyer_class = NPClass();
  destroyer_class.structVersion = NP_CLASS_STRUCT_VERSION;
  destroyer_class.invokeDefault = [](NPObject*, const NPVariant*, uint32_t, NPVariant*) {
    Destroy(g_destroy_from_listener);
    return true;
  };
  NPObject* destroyer = host::Funcs()->createobject(npp_, &destroyer_class);
  NPVariant v = host::Obj(destroyer);
  NP_UtilsAddEventListener(record_, &v, 2);
  host::Funcs()->releaseobject(destroyer);
  Listen("after", 2);
  g_destroy_from_listener = record_;
  Post(2);
  host::Pump();
  EXPECT_EQ((std::vector<std::string>{"g"}), Order());
  EXPECT_EQ(nullptr, g_list.head());
}

// A slot reads back what was set through it, whatever removed its
// registration; a write removes the newest registration of the slot's
// object, which may be one made for another event.
TEST_F(EventsTest, SlotsKeepWhatWasSetThroughThem) {
  const EventProperty entries[] = {{"onAlpha", 1}, {"onBeta", 2}};
  const EventTable table = ORV_EVENT_TABLE(entries, TypeRule::kIgnore, EmptyRead::kNoValue);
  NPObject* f = host::NewFunction("f");
  NPObject* g = host::NewFunction("g");
  NPVariant fv = host::Obj(f), gv = host::Obj(g), none = host::Void();
  NPVariant out = host::Void();
  auto reads = [&](int slot) {
    NPObject* o = ReadListenerSlot(record_, slot, &out) ? out.value.objectValue : nullptr;
    host::Release(&out);
    return o;
  };
  WriteListenerSlot(record_, table, 0, &fv);
  EXPECT_EQ(1, NP_UtilsRemoveEventListener(record_, f));
  EXPECT_EQ(-1, NP_UtilsRemoveEventListener(record_, f)) << "the slot is no registration";
  EXPECT_EQ(2u, host::RefCount(f)) << "the page's and the slot's own";
  EXPECT_EQ(f, reads(0));
  Post(1);
  host::Pump();
  EXPECT_TRUE(Order().empty()) << "the slot is called for nothing";

  // Alpha = f again, Beta = f, Alpha = g: the write takes f's newest
  // registration, Beta's; Beta still reads f.
  WriteListenerSlot(record_, table, 0, &fv);
  WriteListenerSlot(record_, table, 1, &fv);
  WriteListenerSlot(record_, table, 0, &gv);
  EXPECT_EQ(g, reads(0));
  EXPECT_EQ(f, reads(1));
  Post(1);
  Post(2);
  host::Pump();
  EXPECT_EQ((std::vector<std::string>{"f", "g"}), Order());
  // A non-object empties the slot after removing f's newest registration.
  WriteListenerSlot(record_, table, 1, &none);
  EXPECT_EQ(nullptr, reads(1));
  EXPECT_EQ(1, NP_UtilsRemoveEventListener(record_, g));
  EXPECT_EQ(-1, NP_UtilsRemoveEventListener(record_, f));
  EXPECT_EQ(g, reads(0));
  host::Release(&fv);
  host::Release(&gv);
}

TEST_F(EventsTest, AddByTypeMatchesAnyPrefix) {
  const EventProperty entries[] = {{"onAlpha", 1}, {"onBeta", 2}};
  const EventTable table = ORV_EVENT_TABLE(entries, TypeRule::kIgnore, EmptyRead::kNoValue);
  NPObject* f = host::NewFunction("f");
  NPVariant fv = host::Obj(f);
  // A prefix, even the empty one, selects the first event it begins.
  AddListenerByType(record_, table, MwString{0, ""}, &fv);
  AddListenerByType(record_, table, MwString{2, "Be"}, &fv);
  AddListenerByType(record_, table, MwString{5, "Gamma"}, &fv);
  EXPECT_EQ(2, NP_UtilsRemoveEventListener(record_, f));
  EXPECT_EQ(1, NP_UtilsRemoveEventListener(record_, f));
  EXPECT_EQ(-1, NP_UtilsRemoveEventListener(record_, f));
  host::Release(&fv);
}

// addEventListener's type rules: a type that is no String is ignored,
// counts as the empty one (the first event), or fails the call.
TEST_F(EventsTest, ListenerMethodsFollowTheTablesTypeRule) {
  const EventProperty entries[] = {{"onAlpha", 1}, {"onBeta", 2}};
  NPObject* f = host::NewFunction("f");
  NPVariant fv = host::Obj(f);
  struct Case {
    TypeRule rule;
    bool ok;
    int32_t added;  // the event of the registration a numeric type makes, -1 for none
  };
  for (const Case& c : {Case{TypeRule::kIgnore, true, -1}, Case{TypeRule::kEmpty, true, 1},
                        Case{TypeRule::kFail, false, -1}}) {
    const EventTable table = ORV_EVENT_TABLE(entries, c.rule, EmptyRead::kNoValue);
    NPVariant numeric[] = {host::Int(3), fv};
    EXPECT_EQ(c.ok, ListenerMethod(record_, table, true, numeric, 2));
    EXPECT_EQ(c.added, NP_UtilsRemoveEventListener(record_, f));
    NPVariant typed[] = {host::Str("Be"), fv};
    EXPECT_TRUE(ListenerMethod(record_, table, true, typed, 2));
    EXPECT_TRUE(ListenerMethod(record_, table, true, typed, 1));  // no listener
    EXPECT_TRUE(ListenerMethod(record_, table, false, &fv, 1));
    EXPECT_EQ(-1, NP_UtilsRemoveEventListener(record_, f)) << "one registration, removed";
  }
  host::Release(&fv);
}

TEST_F(EventsTest, DroppedAsyncCallsOfADestroyedInstanceLoseNoEvent) {
  Listen("f", 1);
  NPP other = host::NewInstance(host::NewPage());
  EventsInstanceCreated(other);  // npp_ still serves
  Post(1);
  host::InstanceDestroyed(npp_);  // the browser drops its queued call
  EventsInstanceDestroyed(npp_, other);
  host::Pump();
  EXPECT_EQ(1u, host::CallOrder().size());
  // With no instance left the waiting events are dropped at once.
  Post(1);
  EventsInstanceDestroyed(other, nullptr);
  EXPECT_EQ(1u, host::CallOrder().size());
  EventsInstanceCreated(npp_);
}

TEST_F(EventsTest, AllocationFailuresDropTheEventButReleaseItsData) {
  Listen("f", 1);
  host::FailAllocation(1);  // the listener record
  NPVariant v = host::Obj(host::NewFunction("g"));
  EXPECT_EQ(nullptr, NP_UtilsAddEventListener(record_, &v, 1));
  host::Release(&v);
  host::FailAllocation(1);  // the pending event
  Post(1);
  host::Pump();
  host::FailAllocation(2);  // the argument's characters: a Null argument instead
  Post(1);
  host::Pump();
  ASSERT_EQ(1u, host::CallOrder().size());
  EXPECT_EQ(NPVariantType_Null, host::CallOrder()[0].second.args[0].type);
}

}  // namespace
