// The DRM agent end to end: page instance, script calls, middleware events
// delivered on the browser's thread.
#include <gtest/gtest.h>

#include "host/fixture.h"
#include "middleware/types.h"
#include "sim/sim.h"

namespace {

class DrmAgentTest : public OrvaneTest {
 protected:
  void SetUp() override {
    OrvaneTest::SetUp();
    npp_ = NewPlugin("application/oipfdrmagent");
    ASSERT_EQ(NPERR_NO_ERROR, last_error_);
    agent_ = Scriptable(npp_);
    ASSERT_NE(nullptr, agent_);
  }
  // The middleware handle the simulator gave the agent.
  MwHandle AgentHandle() {
    for (auto& c : sim::CallsTo("MwDrmAgentSendMessage")) return std::stoul(c.args[0]);
    return 0;
  }
  bool Send(NPVariant* result) {
    return host::Invoke(npp_, agent_, "sendDRMMessage",
                        {host::Str("application/vnd.marlin.drm.actiontoken+xml"), host::Str("<msg/>"),
                         host::Str("urn:dvb:casystemid:19188")},
                        result);
  }
  // Sends once so the agent's middleware handle is known.
  void SendAndForget() {
    NPVariant id = host::Void();
    Send(&id);
    host::Release(&id);
  }
  bool Listen(const char* type, NPObject* f) {
    NPVariant r = host::Void();
    return host::Invoke(npp_, agent_, "addEventListener", {host::Str(type), host::Obj(f)}, &r);
  }
  void Result(MwHandle agent, int32_t tag) {
    sim::Callbacks()->DrmAgent_onDRMMessageResult(agent, sim::NewString("a"), sim::NewString("b"), tag);
  }
  static void Drop(NPObject* f) { host::Funcs()->releaseobject(f); }
  NPP npp_ = nullptr;
  NPObject* agent_ = nullptr;
};

TEST_F(DrmAgentTest, MessageResultReachesListenersInRegistrationOrderAfterPump) {
  NPObject* first = host::NewFunction("first");
  NPObject* second = host::NewFunction("second", /*handle_event=*/true);
  NPObject* third = host::NewFunction("third");
  EXPECT_TRUE(Listen("DRMMessageResult", first));
  EXPECT_TRUE(host::Set(npp_, agent_, "onDRMMessageResult", host::Obj(second)));
  EXPECT_TRUE(Listen("DRMMessageResult", third));

  NPVariant id = host::Void();
  EXPECT_FALSE(Send(&id));  // the call reports failure: the message id is not handed over
  EXPECT_EQ(NPVariantType_Void, id.type);
  auto sent = sim::CallsTo("MwDrmAgentSendMessage");
  ASSERT_EQ(1u, sent.size());
  EXPECT_EQ("application/vnd.marlin.drm.actiontoken+xml <msg/> urn:dvb:casystemid:19188",
            sent[0].args[1] + " " + sent[0].args[2] + " " + sent[0].args[3]);

  // The simulator answers from its own thread; nothing runs before the pump.
  sim::WaitIdle();
  EXPECT_TRUE(host::CallOrder().empty());
  ASSERT_EQ(1u, host::Pump());
  std::vector<std::string> names;
  for (const auto& o : host::CallOrder()) names.push_back(o.first);
  EXPECT_EQ((std::vector<std::string>{"first", "second", "third"}), names);  // second through handleEvent
  const host::Call& call = host::CallOrder()[0].second;
  ASSERT_EQ(3u, call.args.size());
  EXPECT_EQ("msg-1 OK", call.text[0] + " " + call.text[1]);
  EXPECT_EQ(NPVariantType_Int32, call.args[2].type);
  EXPECT_EQ(0, call.args[2].value.intValue);
  DestroyPlugin(npp_);
  for (NPObject* f : {first, second, third}) Drop(f);
}

TEST_F(DrmAgentTest, SystemMessagesGoToMessageResultListenersOnly) {
  sim::SetAutoEvents(false);
  NPObject* results = host::NewFunction("results");
  NPObject* system = host::NewFunction("system");
  Listen("DRMSystemMessage", system);
  Listen("DRM", results);  // a prefix match: a result listener
  SendAndForget();
  sim::Callbacks()->DrmAgent_onDRMSystemMessage(AgentHandle(), sim::NewString("hello"), sim::NewString("urn:x"));
  host::Pump();
  ASSERT_EQ(1u, host::Calls(results).size());
  EXPECT_EQ((std::vector<std::string>{"hello", "urn:x"}), host::Calls(results)[0].text);
  EXPECT_TRUE(host::Calls(system).empty());
  for (NPObject* f : {results, system}) Drop(f);
}

TEST_F(DrmAgentTest, ListenerPropertiesReadBackAsStored) {
  NPObject* f = host::NewFunction("f");
  NPVariant v = host::Void();
  EXPECT_TRUE(host::Set(npp_, agent_, "onDRMSystemMessage", host::Obj(f)));
  EXPECT_TRUE(host::Get(npp_, agent_, "onDRMSystemMessage", &v));
  EXPECT_EQ(f, v.value.objectValue);
  host::Release(&v);
  // A number clears it.
  EXPECT_TRUE(host::Set(npp_, agent_, "onDRMSystemMessage", host::Int(3)));
  EXPECT_FALSE(host::Get(npp_, agent_, "onDRMSystemMessage", &v));
  // onDRMMessageResult always reads as failed, and a failed read hands over
  // no reference.
  EXPECT_TRUE(host::Set(npp_, agent_, "onDRMMessageResult", host::Obj(f)));
  v = host::Void();
  EXPECT_FALSE(host::Get(npp_, agent_, "onDRMMessageResult", &v));
  EXPECT_EQ(NPVariantType_Void, v.type);
  EXPECT_EQ(3u, host::RefCount(f)) << "the test's, the listener list's and the property's";
  Drop(f);
}

TEST_F(DrmAgentTest, RemoveEventListenerLooksAtTheFirstArgument) {
  sim::SetAutoEvents(false);
  NPObject* f = host::NewFunction("f");
  Listen("DRMMessageResult", f);
  NPVariant r = host::Void();
  EXPECT_TRUE(host::Invoke(npp_, agent_, "removeEventListener", {host::Str("DRMMessageResult"), host::Obj(f)}, &r));
  SendAndForget();
  sim::Callbacks()->DrmAgent_onDRMMessageResult(AgentHandle(), sim::NewString("m"), 0, 7);
  host::Pump();
  ASSERT_EQ(1u, host::Calls(f).size());  // still registered
  EXPECT_EQ(NPVariantType_Null, host::Calls(f)[0].args[1].type);
  // Called with the listener first, it does remove it.
  host::Invoke(npp_, agent_, "removeEventListener", {host::Obj(f)}, &r);
  Result(AgentHandle(), 7);
  host::Pump();
  EXPECT_EQ(1u, host::Calls(f).size());
  Drop(f);
}

// For an agent the plug-in never had, the strings stay the middleware's;
// an event queued for an agent that goes before the browser runs it
// releases them.
TEST_F(DrmAgentTest, EventsForUnknownAgentsLeaveTheStringsDestroyedOnesReleaseThem) {
  sim::SetAutoEvents(false);
  NPObject* f = host::NewFunction("f");
  host::Set(npp_, agent_, "onDRMMessageResult", host::Obj(f));
  MwHandle texts[4] = {sim::NewString("a"), sim::NewString("b"), sim::NewString("c"), sim::NewString("d")};
  sim::Callbacks()->DrmAgent_onDRMMessageResult(0xdead, texts[0], texts[1], 1);
  sim::Callbacks()->DrmAgent_onDRMSystemMessage(0xdead, texts[2], texts[3]);
  host::Pump();
  for (MwHandle t : texts) {
    EXPECT_EQ(1, sim::RefsOf(t));
    MwObjectRelease(t);
  }
  SendAndForget();
  Result(AgentHandle(), 1);
  EXPECT_EQ(1u, host::Pending());
  DestroyPlugin(npp_);
  host::Pump();
  EXPECT_TRUE(host::Calls(f).empty());
  Drop(f);
}

TEST_F(DrmAgentTest, SendWithoutMiddlewareAgentOrAfterDestroyFails) {
  sim::Force("MwDrmAgentCreate", 0);
  NPP npp = NewPlugin("application/oipfdrmagent");
  ASSERT_EQ(NPERR_NO_ERROR, last_error_);
  NPVariant r = host::Void();
  EXPECT_FALSE(host::Invoke(npp, Scriptable(npp), "sendDRMMessage", {host::Str("a"), host::Str("b"), host::Str("c")}, &r));
  EXPECT_EQ(NPVariantType_Void, r.type);
  EXPECT_EQ(0u, sim::CountCalls("MwDrmAgentSendMessage"));
  // Missing arguments are empty texts, not a crash.
  EXPECT_FALSE(host::Invoke(npp_, agent_, "sendDRMMessage", {}, &r));
  host::Release(&r);
  EXPECT_EQ("", sim::CallsTo("MwDrmAgentSendMessage")[0].args[1]);
  // The page may keep the object past its instance: operations then fail.
  host::Funcs()->retainobject(agent_);
  DestroyPlugin(npp_);
  EXPECT_FALSE(Listen("DRM", agent_));
  EXPECT_FALSE(host::Set(npp_, agent_, "onDRMSystemMessage", host::Null()));
  Drop(agent_);
}

TEST_F(DrmAgentTest, AllocationFailuresLoseNothing) {
  sim::SetAutoEvents(false);
  NPObject* f = host::NewFunction("f");
  host::Set(npp_, agent_, "onDRMMessageResult", host::Obj(f));
  SendAndForget();
  // Every allocation on the event's path in turn. Only the first, the event's
  // record where it arrives, loses the event; a failure on the delivery side
  // (the argument array, each string, the listener copy) still calls the
  // listener.
  std::string delivered;
  for (int nth = 1; nth <= 5; nth++) {
    size_t before = host::Calls(f).size();
    host::FailAllocation(nth);
    Result(AgentHandle(), nth);
    host::Pump();
    host::FailAllocation(0);
    delivered += host::Calls(f).size() > before ? '+' : '-';
  }
  EXPECT_EQ("-++++", delivered);
  host::FailRecordAllocation(1);
  NewPlugin("application/oipfdrmagent");
  EXPECT_EQ(NPERR_OUT_OF_MEMORY_ERROR, last_error_);
  host::FailAllocation(1);  // the script object
  NewPlugin("application/oipfdrmagent");
  EXPECT_EQ(NPERR_OUT_OF_MEMORY_ERROR, last_error_);
  Drop(f);
}

}  // namespace
