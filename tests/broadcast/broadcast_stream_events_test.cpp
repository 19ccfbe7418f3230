// Stream-event listeners: by "dvb:" URL and by a description the browser fetches.
#include <gtest/gtest.h>

#include <cstring>

#include "broadcast/broadcast_fixture.h"

namespace {

class BroadcastStreamEventTest : public BroadcastTest {
 protected:
  bool Add(const char* url, const char* name, NPObject* listener) {
    return Call("addStreamEventListener", {host::Str(url), host::Str(name), host::Obj(listener)});
  }
  bool Remove(const char* url, const char* name, NPObject* listener) {
    return Call("removeStreamEventListener", {host::Str(url), host::Str(name), host::Obj(listener)});
  }
  // The browser delivers the last requested document and ends the request with `reason`.
  void Deliver(const std::string& body, NPReason reason) {
    const host::UrlRequest& request = host::UrlRequests().back();
    NPStream stream = {};
    stream.url = request.url.c_str();
    stream.notifyData = request.notify_data;
    uint16_t type = NP_NORMAL;
    ASSERT_EQ(NPERR_NO_ERROR, plugin_funcs_.newstream(npp_, const_cast<char*>("text/xml"), &stream, 0, &type));
    if (!body.empty()) {
      std::string bytes = body;
      EXPECT_EQ(static_cast<int32_t>(bytes.size()),
                plugin_funcs_.write(npp_, &stream, 0, static_cast<int32_t>(bytes.size()), &bytes[0]));
    }
    plugin_funcs_.destroystream(npp_, &stream, reason);
    plugin_funcs_.urlnotify(npp_, stream.url, reason, request.notify_data);
  }
  std::vector<std::string> Kinds(const char* op) {
    std::vector<std::string> kinds;
    for (auto& c : sim::CallsTo(op)) kinds.push_back(c.args.back());
    return kinds;
  }
};

const char kDescription[] =
    "<dsmcc:StreamEvent stream_event_name=\"x\"><event name=\"chapter\" id=\"3\"/></dsmcc:StreamEvent>";

TEST_F(BroadcastStreamEventTest, ArgumentsMustBeTwoStringsAndAnObject) {
  NPObject* f = host::NewFunction("f");
  EXPECT_FALSE(Call("addStreamEventListener", {host::Str("dvb://1"), host::Int(1), host::Obj(f)}));
  EXPECT_FALSE(Call("addStreamEventListener", {host::Str("dvb://1"), host::Str("now"), host::Null()}));
  EXPECT_TRUE(Remove("dvb://1", "now", f)) << "nothing registered: nothing withdrawn";
  EXPECT_EQ(0u, sim::CountCalls("MwBroadcastRemoveStreamEventListener"));
  EXPECT_TRUE(Add("dvb://1", "now", f));
  EXPECT_EQ((std::vector<std::string>{"25"}), Kinds("MwBroadcastAddStreamEventListener"))
      << "the refused calls used up no kind";
}

TEST_F(BroadcastStreamEventTest, EachRegistrationHasItsOwnKindAndAFailedDvbOneIsWithdrawn) {
  sim::SetAutoEvents(false);
  NPObject* refused = host::NewFunction("refused");
  NPObject* a = host::NewFunction("a");
  NPObject* b = host::NewFunction("b");
  sim::Force("MwBroadcastAddStreamEventListener", 0);
  EXPECT_FALSE(Add("dvb://1.2.3", "now", refused));
  sim::Unforce("MwBroadcastAddStreamEventListener");
  EXPECT_TRUE(Add("dvb://1.2.3", "now", a));
  EXPECT_TRUE(Add("dvb://1.2.3", "now", b));
  EXPECT_EQ((std::vector<std::string>{"25", "26", "27"}), Kinds("MwBroadcastAddStreamEventListener"));

  // Each registration's events reach only its own listener.
  MwStreamEvent event = {3, "now", 2, "d1", 0, "", 1};
  sim::Callbacks()->Broadcast_onStreamEvent(handle_, 27, &event);
  host::Pump();
  EXPECT_TRUE(host::Calls(a).empty());
  ASSERT_EQ(1u, host::Calls(b).size());
  EXPECT_TRUE(host::Calls(refused).empty());

  sim::FireStreamEvent("now", "d2", "t", 9);
  host::Pump();
  ASSERT_EQ(1u, host::Calls(a).size());
  EXPECT_EQ("error", Text(host::Calls(a)[0].args[0].value.objectValue, "status"));
  EXPECT_TRUE(host::Calls(refused).empty()) << "the refused registration was withdrawn";

  EXPECT_TRUE(Remove("dvb://ignored", "now", a));
  EXPECT_EQ((std::vector<std::string>{"26"}), Kinds("MwBroadcastRemoveStreamEventListener"));
  sim::FireStreamEvent("now", "d3", "t");
  host::Pump();
  EXPECT_EQ(1u, host::Calls(a).size());
  EXPECT_EQ(3u, host::Calls(b).size());
}

TEST_F(BroadcastStreamEventTest, DescriptionIsFetchedFromThePageAndRegistered) {
  // Only the event fired below: on a slow machine the receiver's own would
  // arrive before the pump too.
  sim::SetAutoEvents(false);
  NPObject* chapter = host::NewFunction("chapter");
  EXPECT_TRUE(Add("events.xml", "chapter", chapter));
  ASSERT_EQ(1u, host::UrlRequests().size());
  EXPECT_EQ("events.xml", host::UrlRequests()[0].url) << "as the page gave it";

  Deliver(kDescription, NPRES_DONE);
  auto xml = sim::CallsTo("MwBroadcastAddStreamEventXml");
  ASSERT_EQ(1u, xml.size());
  EXPECT_EQ(kDescription, xml[0].args[1]);
  sim::FireStreamEvent("chapter", "3", "Chapter three");
  host::Pump();
  ASSERT_EQ(1u, host::Calls(chapter).size());
  EXPECT_EQ("Chapter three", Text(host::Calls(chapter)[0].args[0].value.objectValue, "text"));
}

TEST_F(BroadcastStreamEventTest, RejectedDescriptionAndFailedDownloadWithdrawTheListener) {
  NPObject* f = host::NewFunction("f");
  EXPECT_TRUE(Add("http://carousel.example/other.xml", "missing", f));
  Deliver(kDescription, NPRES_DONE);  // the description has no such event
  EXPECT_TRUE(Remove("x", "missing", f));
  EXPECT_EQ(0u, sim::CountCalls("MwBroadcastRemoveStreamEventListener")) << "already withdrawn";

  EXPECT_TRUE(Add("http://carousel.example/events.xml", "chapter", f));
  Deliver("", NPRES_NETWORK_ERR);
  EXPECT_EQ((std::vector<std::string>{"26"}), Kinds("MwBroadcastRemoveStreamEventListener"));
  EXPECT_EQ("chapter", sim::CallsTo("MwBroadcastRemoveStreamEventListener")[0].args[1]);
  sim::FireStreamEvent("chapter", "", "");
  host::Pump();
  EXPECT_TRUE(host::Calls(f).empty());
}

TEST_F(BroadcastStreamEventTest, AFailedDownloadWithdrawsExactlyItsOwnRegistration) {
  NPObject* f = host::NewFunction("f");
  EXPECT_TRUE(Add("events.xml", "chapter", f));
  ASSERT_TRUE(host::Set(npp_, video_, "onPlayStateChange", host::Obj(f)));
  Deliver("", NPRES_NETWORK_ERR);
  EXPECT_EQ((std::vector<std::string>{"25"}), Kinds("MwBroadcastRemoveStreamEventListener"));
  NPVariant v = host::Void();
  ASSERT_TRUE(host::Get(npp_, video_, "onPlayStateChange", &v)) << "the property's registration stays";
  host::Release(&v);
  sim::Callbacks()->Broadcast_onPlayStateChange(handle_, 2, -1);
  host::Pump();
  EXPECT_EQ(1u, host::Calls(f).size());
}

TEST_F(BroadcastStreamEventTest, RequestThatCannotBeSentLeavesTheListenerRegistered) {
  NPObject* f = host::NewFunction("f");
  host::FailNextGetUrlNotify();
  EXPECT_FALSE(Add("events.xml", "chapter", f));
  EXPECT_TRUE(host::UrlRequests().empty());
  // Still on the list: removing it withdraws kind 25 from the middleware.
  EXPECT_TRUE(Remove("events.xml", "chapter", f));
  EXPECT_EQ((std::vector<std::string>{"25"}), Kinds("MwBroadcastRemoveStreamEventListener"));
}

// A browser may drop the downloads of an element that goes without ever
// answering them (a request not started yet): the element frees them.
TEST_F(BroadcastStreamEventTest, DownloadsLeftUnansweredGoWithTheElement) {
  NPObject* f = host::NewFunction("f");
  EXPECT_TRUE(Add("events.xml", "chapter", f));
  EXPECT_TRUE(Add("more.xml", "Play", f));
  EXPECT_TRUE(Add("last.xml", "x", f));
  Deliver("", NPRES_USER_BREAK);  // the last one ends; the others never do
  ASSERT_EQ(3u, host::UrlRequests().size());
  DestroyPlugin(npp_);
  npp_ = nullptr;
}

TEST_F(BroadcastStreamEventTest, DataOfStreamsThePlugInDidNotAskForIsIgnored) {
  NPStream stream = {};
  stream.url = "http://apps.example/app/video.ts";
  uint16_t type = NP_NORMAL;
  ASSERT_EQ(NPERR_NO_ERROR, plugin_funcs_.newstream(npp_, const_cast<char*>("video/mp2t"), &stream, 0, &type));
  char bytes[] = "xyz";
  EXPECT_EQ(3, plugin_funcs_.write(npp_, &stream, 0, 3, bytes));
  EXPECT_EQ(NPERR_GENERIC_ERROR, plugin_funcs_.destroystream(npp_, &stream, NPRES_USER_BREAK));
  plugin_funcs_.urlnotify(npp_, stream.url, NPRES_DONE, nullptr);
  EXPECT_EQ(0u, sim::CountCalls("MwBroadcastAddStreamEventXml"));
}

}  // namespace
