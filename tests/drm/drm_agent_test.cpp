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
    ASSERT_EQ(1u, sim::CountCalls("MwDrmAgentCreate"));
  }
  // The middleware handle the simulator gave the agent.
  MwHandle AgentHandle() {
    for (auto& c : sim::CallsTo("MwDrmAgentSendMessage")) return std::stoul(c.args[0]);
    return 0;
  }
  bool Send(NPVariant* result) {
    return host::Invoke(npp_, agent_, "sendDRMMessage",
                        {host::Str("application/vnd.ms-playready.initiator+xml"), host::Str("<msg/>"),
                         host::Str("urn:dvb:casystemid:19219")},
                        result);
  }
  NPP npp_ = nullptr;
  NPObject* agent_ = nullptr;
};

TEST_F(DrmAgentTest, MessageResultReachesListenersInRegistrationOrderAfterPump) {
  NPObject* first = host::NewFunction("first");
  NPObject* second = host::NewFunction("second", /*handle_event=*/true);
  NPObject* third = host::NewFunction("third");
  NPVariant r = host::Void();
  EXPECT_TRUE(host::Invoke(npp_, agent_, "addEventListener", {host::Str("DRMMessageResult"), host::Obj(first)}, &r));
  EXPECT_TRUE(host::Set(npp_, agent_, "onDRMMessageResult", host::Obj(second)));
  EXPECT_TRUE(host::Invoke(npp_, agent_, "addEventListener", {host::Str("DRMMessageResult"), host::Obj(third)}, &r));

  NPVariant id = host::Void();
  EXPECT_FALSE(Send(&id));  // the call reports failure while filling in the message id
  EXPECT_EQ("msg-1", host::AsString(id));
  host::Release(&id);
  auto sent = sim::CallsTo("MwDrmAgentSendMessage");
  ASSERT_EQ(1u, sent.size());
  EXPECT_EQ("application/vnd.ms-playready.initiator+xml", sent[0].args[1]);
  EXPECT_EQ("<msg/>", sent[0].args[2]);
  EXPECT_EQ("urn:dvb:casystemid:19219", sent[0].args[3]);

  // The simulator answers from its own thread; nothing runs before the pump.
  sim::WaitIdle();
  EXPECT_TRUE(host::CallOrder().empty());
  ASSERT_EQ(1u, host::Pump());
  const auto& order = host::CallOrder();
  ASSERT_EQ(3u, order.size());
  EXPECT_EQ("first", order[0].first);
  EXPECT_EQ("second", order[1].first);  // through handleEvent
  EXPECT_EQ("third", order[2].first);
  const host::Call& call = order[0].second;
  ASSERT_EQ(3u, call.args.size());
  EXPECT_EQ("msg-1", call.text[0]);
  EXPECT_EQ("OK", call.text[1]);
  EXPECT_EQ(NPVariantType_Int32, call.args[2].type);
  EXPECT_EQ(0, call.args[2].value.intValue);

  DestroyPlugin(npp_);
  for (NPObject* f : {first, second, third}) host::Funcs()->releaseobject(f);
}

TEST_F(DrmAgentTest, SystemMessagesGoToMessageResultListenersOnly) {
  sim::SetAutoEvents(false);
  NPObject* results = host::NewFunction("results");
  NPObject* system = host::NewFunction("system");
  NPVariant r = host::Void();
  host::Invoke(npp_, agent_, "addEventListener", {host::Str("DRMSystemMessage"), host::Obj(system)}, &r);
  host::Invoke(npp_, agent_, "addEventListener", {host::Str("DRM"), host::Obj(results)}, &r);  // prefix: results
  NPVariant id = host::Void();
  Send(&id);
  host::Release(&id);
  MwHandle agent = AgentHandle();
  sim::Callbacks()->DrmAgent_onDRMSystemMessage(agent, sim::NewString("hello"), sim::NewString("urn:x"));
  host::Pump();
  ASSERT_EQ(1u, host::Calls(results).size());
  EXPECT_EQ((std::vector<std::string>{"hello", "urn:x"}), host::Calls(results)[0].text);
  EXPECT_TRUE(host::Calls(system).empty());
  host::Funcs()->releaseobject(results);
  host::Funcs()->releaseobject(system);
}

TEST_F(DrmAgentTest, ListenerPropertiesReadBackAsStored) {
  NPObject* f = host::NewFunction("f");
  NPVariant v = host::Void();
  EXPECT_FALSE(host::Get(npp_, agent_, "onDRMSystemMessage", &v));
  EXPECT_TRUE(host::Set(npp_, agent_, "onDRMSystemMessage", host::Obj(f)));
  EXPECT_TRUE(host::Get(npp_, agent_, "onDRMSystemMessage", &v));
  EXPECT_EQ(f, v.value.objectValue);
  host::Release(&v);
  // A number clears it.
  EXPECT_TRUE(host::Set(npp_, agent_, "onDRMSystemMessage", host::Int(3)));
  EXPECT_FALSE(host::Get(npp_, agent_, "onDRMSystemMessage", &v));

  // onDRMMessageResult is filled in but always reported as a failed read.
  EXPECT_TRUE(host::Set(npp_, agent_, "onDRMMessageResult", host::Obj(f)));
  v = host::Void();
  EXPECT_FALSE(host::Get(npp_, agent_, "onDRMMessageResult", &v));
  EXPECT_EQ(NPVariantType_Object, v.type);
  host::Release(&v);
  host::Funcs()->releaseobject(f);
}

TEST_F(DrmAgentTest, RemoveEventListenerLooksAtTheFirstArgument) {
  sim::SetAutoEvents(false);
  NPObject* f = host::NewFunction("f");
  NPVariant r = host::Void();
  host::Invoke(npp_, agent_, "addEventListener", {host::Str("DRMMessageResult"), host::Obj(f)}, &r);
  EXPECT_TRUE(host::Invoke(npp_, agent_, "removeEventListener", {host::Str("DRMMessageResult"), host::Obj(f)}, &r));
  NPVariant id = host::Void();
  Send(&id);
  host::Release(&id);
  sim::Callbacks()->DrmAgent_onDRMMessageResult(AgentHandle(), sim::NewString("m"), 0, 7);
  host::Pump();
  ASSERT_EQ(1u, host::Calls(f).size());  // still registered
  EXPECT_EQ(NPVariantType_Null, host::Calls(f)[0].args[1].type);
  // Called with the listener first, it does remove it.
  host::Invoke(npp_, agent_, "removeEventListener", {host::Obj(f)}, &r);
  sim::Callbacks()->DrmAgent_onDRMMessageResult(AgentHandle(), sim::NewString("m"), 0, 7);
  host::Pump();
  EXPECT_EQ(1u, host::Calls(f).size());
  host::Funcs()->releaseobject(f);
}

TEST_F(DrmAgentTest, EventsAreDroppedWithoutLeaksForUnknownAgentsOrDestroyedOnes) {
  sim::SetAutoEvents(false);
  NPObject* f = host::NewFunction("f");
  host::Set(npp_, agent_, "onDRMMessageResult", host::Obj(f));
  sim::Callbacks()->DrmAgent_onDRMMessageResult(0xdead, sim::NewString("a"), sim::NewString("b"), 1);
  sim::Callbacks()->DrmAgent_onDRMSystemMessage(0xdead, sim::NewString("a"), sim::NewString("b"));
  // Queued for the agent, then the instance goes before the browser runs it.
  NPVariant id = host::Void();
  Send(&id);
  host::Release(&id);
  sim::Callbacks()->DrmAgent_onDRMMessageResult(AgentHandle(), sim::NewString("a"), sim::NewString("b"), 1);
  EXPECT_EQ(1u, host::Pending());
  DestroyPlugin(npp_);
  host::Pump();
  EXPECT_TRUE(host::Calls(f).empty());
  host::Funcs()->releaseobject(f);
}

TEST_F(DrmAgentTest, SendWithoutMiddlewareAgentFails) {
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
}

TEST_F(DrmAgentTest, OperationsOnADestroyedInstanceFail) {
  NPObject* agent = agent_;
  host::Funcs()->retainobject(agent);  // the page still holds the object
  DestroyPlugin(npp_);
  NPVariant r = host::Void();
  EXPECT_FALSE(host::Invoke(npp_, agent, "addEventListener", {host::Str("DRM"), host::Obj(agent)}, &r));
  EXPECT_FALSE(host::Set(npp_, agent, "onDRMSystemMessage", host::Null()));
  host::Funcs()->releaseobject(agent);
}

TEST_F(DrmAgentTest, AllocationFailuresLoseNothing) {
  sim::SetAutoEvents(false);
  NPObject* f = host::NewFunction("f");
  host::Set(npp_, agent_, "onDRMMessageResult", host::Obj(f));
  NPVariant id = host::Void();
  Send(&id);
  host::Release(&id);
  // Every allocation on the event's path in turn: the argument array, each
  // string, the event record, the listener copy.
  for (int nth = 1; nth <= 5; nth++) {
    host::FailAllocation(nth);
    sim::Callbacks()->DrmAgent_onDRMMessageResult(AgentHandle(), sim::NewString("a"), sim::NewString("b"), nth);
    host::Pump();
    host::FailAllocation(0);
  }
  EXPECT_LE(host::Calls(f).size(), 5u);
  host::FailRecordAllocation(1);
  NewPlugin("application/oipfdrmagent");
  EXPECT_EQ(NPERR_OUT_OF_MEMORY_ERROR, last_error_);
  host::FailAllocation(1);  // the script object
  NewPlugin("application/oipfdrmagent");
  EXPECT_EQ(NPERR_OUT_OF_MEMORY_ERROR, last_error_);
  host::Funcs()->releaseobject(f);
}

}  // namespace
