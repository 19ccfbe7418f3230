// A kind declared as rows: the frame finds each name's row, asks the
// kind's precondition first, hands unknown names to the kind, and answers
// the onXxx properties and add/removeEventListener from the event table.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frame/frame.h"
#include "host/fixture.h"
#include "npapi/browser.h"

namespace {

RecordList g_things;
std::vector<std::string> g_seen;  // the rows and hooks that ran

bool Width(ObjectRecord*, NPVariant* result) {
  g_seen.push_back("width");
  SetInt(result, 7);
  return true;
}
bool SetWidth(ObjectRecord*, const NPVariant* value) {
  g_seen.push_back("set width");
  return value->type == NPVariantType_Int32;
}
bool First(ObjectRecord*, const NPVariant*, uint32_t count, NPVariant* result) {
  SetInt(result, static_cast<int32_t>(count));
  return true;
}
bool Second(ObjectRecord*, const NPVariant*, uint32_t, NPVariant* result) {
  SetInt(result, -1);
  return true;
}

const EventProperty kEvents[] = {{"onAlpha", 3}, {"onBeta", 4}};
const EventTable kTable = ORV_EVENT_TABLE(kEvents, TypeRule::kIgnore, EmptyRead::kNull);

using Row = Member<ObjectRecord>;
const Row kRows[] = {
    Row::Get("width", Width, SetWidth),
    Row::EventSlots(),
    Row::Call("go", First),
    Row::Call("go", Second),  // the first row keeps the name
    Row::ListenerMethods(),
};

// Handle 0 stands for an object whose middleware object went: reads succeed
// empty, writes and calls fail.
struct Thing : HandedOutKind<Thing> {
  ORV_KIND_WITH_EVENTS(kRows, kTable, g_things)
  static void ReleaseHandle(MwHandle) {}
  static Gate Check(const ObjectRecord* r, Access access) {
    if (r && r->handle) return Gate::kGo;
    return access == Access::kGet ? Gate::kSucceed : Gate::kFail;
  }
  static bool Unknown(ObjectRecord*, NPIdentifier, Access access, const NPVariant*, uint32_t, NPVariant*) {
    g_seen.push_back(access == Access::kGet ? "unknown get" : access == Access::kSet ? "unknown set" : "unknown call");
    return access == Access::kCall;
  }
};

class MembersTest : public OrvaneTest {
 protected:
  void SetUp() override {
    OrvaneTest::SetUp();
    g_seen.clear();
    npp_ = host::NewInstance(host::NewPage());
  }
  NPObject* Make(MwHandle handle) { return NewHandedOut<Thing>(npp_, handle, kLeaveOnFailure); }
  NPP npp_ = nullptr;
};

TEST_F(MembersTest, RowsAnswerByNameAndTheFrameAnswersListeners) {
  NPObject* o = Make(5);
  NPClass* c = o->_class;
  EXPECT_TRUE(c->hasProperty(o, host::Id("width")));
  EXPECT_TRUE(c->hasProperty(o, host::Id("onBeta")));
  EXPECT_FALSE(c->hasProperty(o, host::Id("go"))) << "a method is no property";
  EXPECT_TRUE(c->hasMethod(o, host::Id("addEventListener")));
  EXPECT_FALSE(c->hasMethod(o, host::Id("width")));

  NPVariant r = host::Void();
  ASSERT_TRUE(host::Get(npp_, o, "width", &r));
  EXPECT_EQ(7, r.value.intValue);
  EXPECT_FALSE(host::Set(npp_, o, "width", host::Str("x")));
  ASSERT_TRUE(host::Invoke(npp_, o, "go", {host::Int(1), host::Int(2)}, &r));
  EXPECT_EQ(2, r.value.intValue) << "the first row of a name answers";
  EXPECT_FALSE(host::Get(npp_, o, "volume", &r));
  EXPECT_FALSE(host::Set(npp_, o, "go", host::Int(1))) << "a method has no setter";
  EXPECT_TRUE(host::Invoke(npp_, o, "stop", {}, &r)) << "the kind answers unknown calls";
  EXPECT_EQ((std::vector<std::string>{"width", "set width", "unknown get", "unknown set", "unknown call"}), g_seen);

  // The event table's slots and listener methods.
  NPObject* f = host::NewFunction("f");
  EXPECT_FALSE(host::Get(npp_, o, "onAlpha", &r));
  EXPECT_EQ(NPVariantType_Null, r.type) << "an empty slot reads as the table says";
  EXPECT_TRUE(host::Set(npp_, o, "onAlpha", host::Obj(f)));
  ASSERT_TRUE(host::Get(npp_, o, "onAlpha", &r));
  EXPECT_EQ(f, r.value.objectValue);
  host::Release(&r);
  EXPECT_TRUE(host::Invoke(npp_, o, "addEventListener", {host::Str("Be"), host::Obj(f)}, &r));
  ObjectRecord* record = ScriptClass<Thing>::RecordOf(o);
  EXPECT_EQ(4, NP_UtilsRemoveEventListener(record, f)) << "added for onBeta's event";
  EXPECT_EQ(3, NP_UtilsRemoveEventListener(record, f)) << "the slot's registration";
  host::Funcs()->releaseobject(f);
  host::Funcs()->releaseobject(o);
}

TEST_F(MembersTest, ThePreconditionAnswersBeforeAnyRow) {
  NPObject* o = Make(0);
  NPVariant r = host::Void();
  EXPECT_TRUE(host::Get(npp_, o, "width", &r));
  EXPECT_EQ(NPVariantType_Void, r.type);
  EXPECT_TRUE(host::Get(npp_, o, "volume", &r)) << "before the name is looked at";
  EXPECT_FALSE(host::Set(npp_, o, "width", host::Int(3)));
  EXPECT_FALSE(host::Invoke(npp_, o, "go", {}, &r));
  EXPECT_FALSE(host::Invoke(npp_, o, "addEventListener", {host::Str("Alpha"), host::Int(1)}, &r));
  EXPECT_TRUE(g_seen.empty());
  host::Funcs()->releaseobject(o);
}

TEST_F(MembersTest, EveryNameOfALongTableFindsItsRow) {
  std::vector<std::string> names;
  for (int i = 0; i < 45; i++) names.push_back("member" + std::to_string(i * 7919));
  std::vector<Row> rows;
  for (const std::string& n : names) rows.push_back(Row::Get(n.c_str(), Width));
  rows.push_back(Row::Call("member0", First));  // a method may share a property's name
  MemberTable<ObjectRecord> table(rows.data(), rows.size());
  table.Intern();
  for (size_t i = 0; i < names.size(); i++)
    EXPECT_EQ(&rows[i], table.Property(host::Id(names[i].c_str())).row) << names[i];
  EXPECT_EQ(&rows.back(), table.Method(host::Id("member0")).row);
  EXPECT_EQ(nullptr, table.Method(host::Id("member7919")).row);
  EXPECT_EQ(nullptr, table.Property(host::Id("member1")).row);
  EXPECT_EQ(nullptr, table.Property(nullptr).row);
}

}  // namespace
