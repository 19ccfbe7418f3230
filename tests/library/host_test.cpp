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

TEST_F(HostTest, IdentifiersAreInternedAcrossResets) {
  NPIdentifier id = npn->getstringidentifier("play");
  NPIdentifier seven = npn->getintidentifier(7);
  host::Reset();
  EXPECT_EQ(id, npn->getstringidentifier("play"));
  EXPECT_EQ(seven, host::IntId(7));
  EXPECT_NE(seven, host::IntId(8));
  EXPECT_NE(id, host::Id("stop"));

  EXPECT_TRUE(npn->identifierisstring(id));
  EXPECT_FALSE(npn->identifierisstring(seven));
  EXPECT_EQ(7, npn->intfromidentifier(seven));
  EXPECT_EQ(nullptr, npn->utf8fromidentifier(seven));
  NPUTF8* name = npn->utf8fromidentifier(id);
  ASSERT_NE(nullptr, name);
  EXPECT_STREQ("play", name);
  EXPECT_EQ(1u, host::LiveBlocks()) << "the name is the caller's to free";
  npn->memfree(name);

  const NPUTF8* names[] = {"play", "stop"};
  NPIdentifier ids[2];
  npn->getstringidentifiers(names, 2, ids);
  EXPECT_EQ(id, ids[0]);
  EXPECT_EQ(host::Id("stop"), ids[1]);
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

TEST_F(HostTest, PageAnswersWindowElementChainAndStyle) {
  host::PageSpec spec;
  spec.elements.resize(2);
  spec.elements[0].offsets["offsetLeft"] = host::Int(10);
  spec.elements[0].parent = 1;
  spec.elements[1].offsets["offsetLeft"] = host::Int(5);
  host::Page* page = host::NewPage(spec);
  NPP npp = host::NewInstance(page);
  EXPECT_EQ(page, host::PageOf(npp));

  NPObject* window = nullptr;
  ASSERT_EQ(NPERR_NO_ERROR, npn->getvalue(npp, NPNVWindowNPObject, &window));
  EXPECT_EQ(host::Window(page), window);
  EXPECT_EQ(1u, host::UnbalancedPageObjects()) << "the caller holds the window";

  NPVariant location;
  ASSERT_TRUE(host::Get(npp, window, "location", &location));
  NPVariant href;
  ASSERT_TRUE(host::Get(npp, location.value.objectValue, "href", &href));
  EXPECT_EQ(spec.href, host::AsString(href));
  EXPECT_EQ(1u, host::LiveBlocks()) << "returned strings are the caller's";
  host::Release(&href);
  host::Release(&location);

  ASSERT_TRUE(host::Set(npp, window, "debug", host::Str("on")));
  EXPECT_EQ("on", host::AsString(host::WindowProperty(page, "debug")));
  npn->releaseobject(window);

  NPObject* element = nullptr;
  ASSERT_EQ(NPERR_NO_ERROR, npn->getvalue(npp, NPNVPluginElementNPObject, &element));
  NPVariant left, parent, style, missing;
  ASSERT_TRUE(host::Get(npp, element, "offsetLeft", &left));
  EXPECT_EQ(10, left.value.intValue);
  EXPECT_FALSE(host::Get(npp, element, "offsetTop", &missing));
  ASSERT_TRUE(host::Get(npp, element, "offsetParent", &parent));
  EXPECT_EQ(host::Element(page, 1), parent.value.objectValue);
  NPVariant top_parent;
  ASSERT_TRUE(host::Get(npp, parent.value.objectValue, "offsetParent", &top_parent));
  EXPECT_EQ(NPVariantType_Null, top_parent.type);
  host::Release(&parent);

  ASSERT_TRUE(host::Get(npp, element, "style", &style));
  NPVariant unset;
  ASSERT_TRUE(host::Get(npp, style.value.objectValue, "visibility", &unset));
  EXPECT_EQ("", host::AsString(unset));
  host::Release(&unset);
  ASSERT_TRUE(host::Set(npp, style.value.objectValue, "zIndex", host::Int(3)));
  EXPECT_EQ("3", host::StyleValue(page, "zIndex"));
  host::Release(&style);
  npn->releaseobject(element);

  EXPECT_EQ(0u, host::UnbalancedPageObjects());
  EXPECT_EQ(0u, host::LiveBlocks());
  npn->releaseobject(element);
  EXPECT_EQ(1u, host::UnbalancedPageObjects()) << "over-release of the element";

  spec.element_available = false;
  NPP other = host::NewInstance(host::NewPage(spec));
  EXPECT_EQ(NPERR_GENERIC_ERROR, npn->getvalue(other, NPNVPluginElementNPObject, &element));
  NPP_t orphan = {nullptr, nullptr};
  EXPECT_NE(NPERR_NO_ERROR, npn->getvalue(&orphan, NPNVWindowNPObject, &window));
}

TEST_F(HostTest, ArrayPushLengthAndIndex) {
  host::Page* page = host::NewPage();
  NPP npp = host::NewInstance(page);
  NPVariant array;
  ASSERT_TRUE(host::Invoke(npp, host::Window(page), "Array", {}, &array));
  NPObject* a = array.value.objectValue;
  EXPECT_EQ(1u, host::LiveTransientHostObjects());
  NPVariant n;
  ASSERT_TRUE(host::Invoke(npp, a, "push", {host::Int(4)}, &n));
  ASSERT_TRUE(host::Invoke(npp, a, "push", {host::Int(9)}, &n));
  EXPECT_EQ(2, n.value.intValue);
  NPVariant length, second;
  ASSERT_TRUE(host::Get(npp, a, "length", &length));
  EXPECT_EQ(2, length.value.intValue);
  ASSERT_TRUE(host::GetIndex(npp, a, 1, &second));
  EXPECT_EQ(9, second.value.intValue);
  EXPECT_EQ((std::vector<int32_t>{4, 9}), host::ArrayValues(a));
  host::Release(&array);
  EXPECT_EQ(0u, host::LiveTransientHostObjects());
}

TEST_F(HostTest, DomParserFromEvaluate) {
  host::Page* page = host::NewPage();
  NPP npp = host::NewInstance(page);
  const char* script = "new DOMParser();";
  NPString s = {script, static_cast<uint32_t>(strlen(script))};
  NPVariant parser;
  ASSERT_TRUE(npn->evaluate(npp, host::Window(page), &s, &parser));
  ASSERT_EQ(NPVariantType_Object, parser.type);
  EXPECT_EQ(1u, parser.value.objectValue->referenceCount);
  NPVariant doc;
  ASSERT_TRUE(host::Invoke(npp, parser.value.objectValue, "parseFromString",
                           {host::Str("<a/>"), host::Str("text/xml")}, &doc));
  EXPECT_EQ("<a/>", host::ParsedText(doc.value.objectValue));
  EXPECT_EQ(2u, host::LiveTransientHostObjects());
  host::Release(&doc);
  host::Release(&parser);
  EXPECT_EQ(0u, host::LiveTransientHostObjects());

  const char* other = "alert(1)";
  NPString o = {other, static_cast<uint32_t>(strlen(other))};
  EXPECT_FALSE(npn->evaluate(npp, host::Window(page), &o, &parser));
}

TEST_F(HostTest, FunctionsRecordTheirCallPath) {
  NPObject* plain = host::NewFunction("plain");
  NPObject* listener = host::NewFunction("listener", true);
  NPObject* target = npn->createobject(nullptr, &g_plugin_class);
  NPVariant args[] = {host::Str("ev"), host::Obj(target)};
  NPVariant r;
  EXPECT_TRUE(npn->invokeDefault(nullptr, plain, args, 2, &r));
  EXPECT_FALSE(npn->invokeDefault(nullptr, listener, args, 2, &r));
  EXPECT_TRUE(npn->hasmethod(nullptr, listener, host::Id("handleEvent")));
  EXPECT_TRUE(npn->invoke(nullptr, listener, host::Id("handleEvent"), args, 1, &r));
  npn->releaseobject(target);
  EXPECT_EQ(0u, host::LivePluginObjects()) << "the record's reference is the host's";
  EXPECT_EQ(0u, host::LiveTransientHostObjects()) << "the test's own reference";

  ASSERT_EQ(1u, host::Calls(plain).size());
  EXPECT_EQ("ev", host::Calls(plain)[0].text[0]);
  EXPECT_EQ(target, host::Calls(plain)[0].args[1].value.objectValue);
  ASSERT_EQ(1u, host::Calls(listener).size());
  ASSERT_EQ(2u, host::CallOrder().size());
  EXPECT_EQ("listener", host::CallOrder()[1].first);

  npn->retainobject(plain);  // as a plug-in keeping a listener would
  EXPECT_EQ(1u, host::LiveTransientHostObjects());
  g_deallocated = 0;
  host::Reset();
  EXPECT_EQ(1, g_deallocated) << "Reset drops the recorded references";
  EXPECT_EQ(0u, host::ReferenceErrors());
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

TEST_F(HostTest, UrlRequestsAndSetValuesAreRecorded) {
  NPP npp = host::NewInstance(host::NewPage());
  int tag = 0;
  EXPECT_EQ(NPERR_NO_ERROR, npn->geturlnotify(npp, "http://a/", nullptr, &tag));
  host::FailNextGetUrlNotify();
  EXPECT_EQ(NPERR_GENERIC_ERROR, npn->geturlnotify(npp, "http://b/", nullptr, &tag));
  EXPECT_EQ(NPERR_NO_ERROR, npn->geturl(npp, "http://c/", "_self"));
  ASSERT_EQ(2u, host::UrlRequests().size());
  EXPECT_TRUE(host::UrlRequests()[0].notify);
  EXPECT_EQ(&tag, host::UrlRequests()[0].notify_data);
  EXPECT_EQ("_self", host::UrlRequests()[1].target);
  EXPECT_EQ(NPERR_NO_ERROR, npn->setvalue(npp, NPPVpluginWindowBool, nullptr));
  EXPECT_EQ(1u, host::SetValues().size());
}

}  // namespace
