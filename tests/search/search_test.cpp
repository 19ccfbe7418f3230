// The search manager, metadata searches and queries, over the simulated guide.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/fixture.h"
#include "middleware/search.h"
#include "search/search.h"
#include "sim/description.h"
#include "sim/search_sim.h"
#include "sim/sim.h"

namespace {

class SearchTest : public ScriptTest {
 protected:
  void SetUp() override {
    ScriptTest::SetUp();
    ASSERT_TRUE(sim::LoadDescriptionText(R"({"channels": [
        {"name": "One", "schedule": {"count": 30, "titles": ["Morning News", "Film", "Quiz"],
                                      "genres": ["News", "Movie", "Show"], "ratings": [0, 12, 16]}},
        {"name": "Two", "schedule": {"count": 10, "titles": ["Evening News"], "genres": ["News"]}}]})",
                                         nullptr));
    npp_ = NewPlugin("application/oipfsearchmanager");
    manager_ = Scriptable(npp_);
  }
  NPObject* Query(NPObject* search, const char* field, int comparison, const char* value) {
    return Call(search, "createQuery", {host::Str(field), host::Int(comparison), host::Str(value)}).value.objectValue;
  }
  // Pages in `count` results from `offset` and lets the event arrive.
  NPObject* Page(NPObject* search, int offset, int count) {
    NPObject* result = Get(search, "result").value.objectValue;
    EXPECT_TRUE(Call(result, "getResults", {host::Int(offset), host::Int(count)}).value.boolValue);
    sim::WaitIdle();
    host::Pump();
    return result;
  }
  NPObject* manager_ = nullptr;
};

TEST_F(SearchTest, AQueryPagedThroughWithItsEvents) {
  NPObject* events = host::NewFunction("events");
  ASSERT_TRUE(Call(manager_, "addEventListener", {host::Str("Meta"), host::Obj(events)}).type == NPVariantType_Void);
  bool ok = true;
  Get(manager_, "onMetadataSearch", &ok);
  EXPECT_FALSE(ok) << "an empty onMetadataSearch fails its read";

  NPObject* search = Call(manager_, "createSearch", {host::Int(1)}).value.objectValue;
  ASSERT_NE(nullptr, search);
  EXPECT_EQ(1, Get(search, "searchTarget").value.intValue);
  NPObject* news = Query(search, "Programme.name", 6, "news");
  ASSERT_TRUE(Call(search, "setQuery", {host::Obj(news)}, &ok).type == NPVariantType_Void && ok);
  Page(search, 0, 4);
  ASSERT_EQ(1u, host::Calls(events).size());
  const host::Call& event = host::Calls(events)[0];
  EXPECT_EQ(search, event.args[0].value.objectValue) << "the live object of the search";
  EXPECT_EQ(0, event.args[1].value.intValue) << "results ready";
  // A later read of result shows the page, not a new empty one.
  NPObject* again = Get(search, "result").value.objectValue;
  EXPECT_EQ(4, Get(again, "length").value.intValue);
  EXPECT_EQ(20, Get(again, "totalSize").value.intValue) << "10 on One, 10 on Two";
  Page(search, 16, 10);
  EXPECT_EQ(4, Get(again, "length").value.intValue);
  EXPECT_EQ(16, Get(again, "offset").value.intValue);
  host::Funcs()->releaseobject(events);
}

TEST_F(SearchTest, CombinedQueriesConstraintsAndQuirks) {
  NPObject* search = Call(manager_, "createSearch", {host::Int(1)}).value.objectValue;
  bool ok = true;
  Call(search, "createQuery", {host::Str("title"), host::Int(0), host::Int(5)}, &ok);
  EXPECT_FALSE(ok) << "a value that is no string";
  ASSERT_NE(nullptr, Call(search, "createQuery", {host::Str("title"), host::Str("x"), host::Str("abc")}).value.objectValue);
  EXPECT_EQ("0", sim::CallsTo("MwSearchCreateQuery").back().args[2]) << "a comparison that is no number";
  NPObject* movies = Query(search, "genre", 0, "Movie");
  NPObject* adult = Query(search, "parentalRating", 3, "16");
  NPObject* films = Call(movies, "or", {host::Obj(adult)}).value.objectValue;
  NPObject* not_films = Call(films, "not", {}).value.objectValue;
  ASSERT_TRUE(films && not_films);
  Call(films, "and", {host::Obj(search)}, &ok);
  EXPECT_FALSE(ok) << "and with something that is no query";
  EXPECT_EQ(0u, QueryGetHandle(search));
  Call(search, "setQuery", {host::Obj(not_films)});
  NPObject* channels = Get(Call(manager_, "getChannelConfig", {}).value.objectValue, "channelList").value.objectValue;
  NPVariant two = Call(channels, "item", {host::Int(1)});
  Call(search, "addChannelConstraint", {two}, &ok);
  EXPECT_TRUE(ok);
  Call(search, "addChannelConstraint", {host::Obj(search)}, &ok);
  EXPECT_FALSE(ok) << "no channel";
  NPObject* result = Page(search, 0, 100);
  EXPECT_EQ(10, Get(result, "totalSize").value.intValue) << "Two's news only";
  Call(search, "addChannelConstraint", {host::Null()});
  result = Page(search, 0, 100);
  EXPECT_EQ(20, Get(result, "totalSize").value.intValue) << "constraints cleared: the news of both";

  Call(search, "findProgrammesFromStream", {two, host::Null()}, &ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ("0", sim::CallsTo("MwSearchFindProgrammesFromStream").back().args[2]) << "null start time";
  result = Page(search, 0, 3);
  EXPECT_EQ(10, Get(result, "totalSize").value.intValue);
  EXPECT_EQ(NPVariantType_Void, Call(manager_, "createSearch", {}).type) << "no target: no value";
}

TEST_F(SearchTest, AQueryThatCannotRunAndAbort) {
  NPObject* search = Call(manager_, "createSearch", {host::Int(1)}).value.objectValue;
  NPObject* f = host::NewFunction("f");
  ASSERT_TRUE(host::Set(npp_, manager_, "onMetadataSearch", host::Obj(f)));
  Call(search, "setQuery", {host::Obj(Query(search, "Programme.colour", 0, "red"))});
  NPObject* result = Page(search, 0, 10);
  EXPECT_EQ(0, Get(result, "totalSize").value.intValue);
  Call(search, "setQuery", {host::Obj(Query(search, "startTime", 2, "soon"))});
  Page(search, 0, 10);
  Call(result, "abort", {});
  sim::WaitIdle();
  host::Pump();
  std::vector<int32_t> states;
  for (const auto& c : host::Calls(f)) states.push_back(c.args[1].value.intValue);
  EXPECT_EQ((std::vector<int32_t>{4, 4, 3}), states) << "unknown field, a number field with no number, abort";
  host::Funcs()->releaseobject(f);
}

}  // namespace

namespace {

// Who holds a search handle: the plug-in holds at most one reference per
// handle, so an event lends a search whose object lives and gives one
// whose object does not; strict ownership stops the suite on any release
// the contract does not make.
class SearchOwnershipTest : public SearchTest {
 protected:
  void SetUp() override {
    SearchTest::SetUp();
    f = host::NewFunction("f");
    ASSERT_TRUE(host::Set(npp_, manager_, "onMetadataSearch", host::Obj(f)));
  }
  void TearDown() override {
    host::Funcs()->releaseobject(f);
    SearchTest::TearDown();
  }
  MwHandle Manager() { return static_cast<SearchManagerRecord*>(npp_->pdata)->handle; }
  NPObject* NewSearch(MwHandle* handle) {  // the caller owns the object's reference
    NPVariant v = host::Void();
    EXPECT_TRUE(host::Invoke(npp_, manager_, "createSearch", {host::Int(1)}, &v));
    Get(v.value.objectValue, "searchTarget");
    *handle = static_cast<MwHandle>(std::stoul(sim::CallsTo("MwSearchGetTarget").back().args[0]));
    return v.value.objectValue;
  }
  size_t Releases(MwHandle h) {
    size_t n = 0;
    for (const auto& c : sim::CallsTo("MwObjectRelease")) n += c.args[0] == std::to_string(h);
    return n;
  }
  void Deliver() {
    sim::WaitIdle();
    host::Pump();
  }
  NPObject* f = nullptr;  // the page's onMetadataSearch
};

TEST_F(SearchOwnershipTest, AnEventLendsALiveSearchAndTheObjectIsTheSame) {
  MwHandle h;
  NPObject* search = NewSearch(&h);
  sim::RaiseMetadataSearch(Manager(), h, 7);
  Deliver();
  ASSERT_EQ(1u, host::Calls(f).size());
  EXPECT_EQ(search, host::Calls(f)[0].args[0].value.objectValue);
  EXPECT_EQ(1, sim::RefsOf(h));
  EXPECT_EQ(0u, Releases(h));
  host::Funcs()->releaseobject(search);
}

// The object goes while an event for it waits: the event takes the
// plug-in's reference over and delivers a new object on the same handle.
TEST_F(SearchOwnershipTest, AnEventWaitingForASearchWhoseObjectWentTakesItsReference) {
  MwHandle h;
  NPObject* search = NewSearch(&h);
  sim::RaiseMetadataSearch(Manager(), h, 8);
  host::Funcs()->releaseobject(search);
  EXPECT_EQ(0u, Releases(h));
  Deliver();
  ASSERT_EQ(1u, host::Calls(f).size());
  EXPECT_EQ(8, host::Calls(f)[0].args[1].value.intValue);
  EXPECT_EQ(0u, Releases(h));
  EXPECT_EQ(1, sim::RefsOf(h)) << "held by the delivered object (the browser's call record keeps it)";
}

TEST_F(SearchOwnershipTest, DroppedEventsReleaseOnlyWhatTheyWereGiven) {
  const MwEventCallbacks* cb = sim::Callbacks();
  // A manager the plug-in never had: nothing is released.
  MwHandle given = MwSearchManagerCreateSearch(Manager(), 2);
  cb->SearchManager_onMetadataSearch(0xdead, given, 1);
  Deliver();
  EXPECT_EQ(1, sim::RefsOf(given));
  EXPECT_EQ(0u, Releases(given));
  // A manager that is not the newest of the page: the event is dropped and
  // a search it was given goes back; a lent one stays.
  MwHandle lent;
  NPObject* search = NewSearch(&lent);
  MwHandle first = Manager();
  NewPlugin("application/oipfsearchmanager");
  cb->SearchManager_onMetadataSearch(first, given, 1);
  cb->SearchManager_onMetadataSearch(first, lent, 1);
  Deliver();
  EXPECT_TRUE(host::Calls(f).empty());
  EXPECT_EQ(1u, Releases(given));
  EXPECT_EQ(0u, Releases(lent));
  host::Funcs()->releaseobject(search);
}

TEST_F(SearchOwnershipTest, ZeroHandlesGiveObjectsWhoseReadsFail) {
  sim::Callbacks()->SearchManager_onMetadataSearch(Manager(), 0, 3);
  Deliver();
  ASSERT_EQ(1u, host::Calls(f).size()) << "an event with search 0 is delivered";
  EXPECT_EQ(NPVariantType_Object, host::Calls(f)[0].args[0].type);
  sim::Force("MwSearchManagerCreateSearch", 0);
  sim::Force("MwSearchManagerGetChannelConfig", 0);
  bool ok = true;
  NPObject* search = Call(manager_, "createSearch", {host::Int(1)}).value.objectValue;
  ASSERT_NE(nullptr, search);
  Get(search, "searchTarget", &ok);
  EXPECT_FALSE(ok);
  NPObject* config = Call(manager_, "getChannelConfig", {}).value.objectValue;
  ASSERT_NE(nullptr, config);
  Get(config, "channelList", &ok);
  EXPECT_FALSE(ok);
}

}  // namespace
