// Collections over simulated lists: element access by index and by item,
// Null versus undefined, the kind methods, handle ownership.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "objects/av_component.h"
#include "objects/channel.h"
#include "objects/collection.h"
#include "host/fixture.h"
#include "sim/receiver_sim.h"
#include "sim/sim.h"

namespace {

class CollectionTest : public OrvaneTest {
 protected:
  void SetUp() override {
    OrvaneTest::SetUp();
    npp_ = host::NewInstance(host::NewPage());
  }
  NPObject* Make(MwHandle list, uint32_t kind) {
    NPObject* c = CollectionCreate(npp_, list, kind);
    EXPECT_NE(nullptr, c);
    return c;
  }
  static void Drop(NPObject* o) { host::Funcs()->releaseobject(o); }
  bool Call(NPObject* c, const char* method, std::vector<NPVariant> args) {
    return host::Invoke(npp_, c, method, std::move(args), &r_);
  }
  NPVariant Item(NPObject* c, int32_t index) {
    EXPECT_TRUE(Call(c, "item", {host::Int(index)}));
    return r_;
  }
  int32_t Length(NPObject* c) {
    NPVariant r = host::Void();
    EXPECT_TRUE(host::Get(npp_, c, "length", &r));
    EXPECT_EQ(NPVariantType_Int32, r.type);
    return r.value.intValue;
  }
  std::vector<MwHandle> Components() { return sim::ChannelComponents(0); }
  NPP npp_ = nullptr;
  NPVariant r_ = host::Void();
};

TEST_F(CollectionTest, StringElementsByIntegerNumericStringAndItem) {
  NPObject* c = Make(sim::NewTextList({"Drama", "Comedy", "News", "Music"}), kCollectionStrings);
  EXPECT_EQ(4, Length(c));
  NPVariant by_int = host::Void(), by_text = host::Void();
  EXPECT_TRUE(host::GetIndex(npp_, c, 3, &by_int));
  EXPECT_TRUE(host::Get(npp_, c, "3", &by_text));
  NPVariant by_item = Item(c, 3);
  ASSERT_TRUE(Call(c, "item", {host::Double(3.7)}));
  for (NPVariant* v : {&by_int, &by_text, &by_item, &r_}) {
    EXPECT_EQ("Music", host::AsString(*v));
    host::Release(v);
  }
  EXPECT_FALSE(c->_class->hasProperty(c, host::Id("x1")));
  EXPECT_FALSE(host::Set(npp_, c, "0", host::Str("x")));
  // Past the end: whatever the list answers, here nothing: undefined.
  EXPECT_TRUE(host::GetIndex(npp_, c, 4, &r_));
  EXPECT_EQ(NPVariantType_Void, r_.type);
  // item wants exactly one number.
  EXPECT_FALSE(Call(c, "item", {host::Str("1")}));
  EXPECT_FALSE(Call(c, "item", {host::Int(0), host::Int(1)}));
  EXPECT_FALSE(Call(c, "getChannel", {host::Str("a")}));
  Drop(c);
  EXPECT_EQ(0u, sim::HeldHandles());
}

TEST_F(CollectionTest, ComponentElementsAreNewObjectsOnEveryRead) {
  std::vector<MwHandle> parts = Components();
  NPObject* c = Make(sim::NewHandleList(parts), kCollectionComponents);
  NPVariant a = Item(c, 1), b = host::Void();
  EXPECT_TRUE(host::GetIndex(npp_, c, 1, &b));
  ASSERT_EQ(NPVariantType_Object, a.type);
  ASSERT_EQ(NPVariantType_Object, b.type);
  EXPECT_NE(a.value.objectValue, b.value.objectValue);
  EXPECT_EQ(parts[1], AVComponentGetHandle(b.value.objectValue));
  // The collection may go first: its elements own their own handles.
  Drop(c);
  EXPECT_EQ(2, sim::RefsOf(parts[1]));
  host::Release(&a);
  host::Release(&b);
  EXPECT_EQ(0, sim::RefsOf(parts[1]));
}

TEST_F(CollectionTest, FailedCreationOrElementGivesHandlesBack) {
  host::FailRecordAllocation(1);
  EXPECT_EQ(nullptr, CollectionCreate(npp_, sim::NewTextList({"a"}), kCollectionStrings));
  host::FailAllocation(1);
  EXPECT_EQ(nullptr, CollectionCreate(npp_, sim::NewTextList({"a"}), kCollectionStrings));
  EXPECT_EQ(0u, sim::HeldHandles());
  std::vector<MwHandle> parts = Components();
  NPObject* c = Make(sim::NewHandleList({parts[0], 0}), kCollectionComponents);
  EXPECT_EQ(NPVariantType_Void, Item(c, 1).type) << "no element: undefined";
  host::FailRecordAllocation(1);
  EXPECT_EQ(NPVariantType_Null, Item(c, 0).type) << "no object could be made: Null";
  EXPECT_EQ(0, sim::RefsOf(parts[0])) << "the element handle is given back";
  Drop(c);
}

// Their elements are lent: the plug-in releases none of them (strict
// ownership would stop the suite).
TEST_F(CollectionTest, CountedOnlyKindsGiveUndefinedElementsAndReleaseNone) {
  std::vector<MwHandle> parts = Components();
  for (uint32_t kind : {uint32_t{kCollectionMediaAssets}, uint32_t{kCollectionSearchResults}, 42u}) {
    NPObject* c = Make(sim::NewLentList({parts[0], parts[1]}), kind);
    EXPECT_EQ(2, Length(c));
    EXPECT_EQ(NPVariantType_Void, Item(c, 0).type) << "kind " << kind;
    EXPECT_EQ(0, sim::RefsOf(parts[0]));
    Drop(c);
  }
}

TEST_F(CollectionTest, SearchResultsPageAndReportTheirPosition) {
  NPObject* c = Make(sim::NewHandleList({}), kCollectionSearchResults);
  sim::Force("MwSearchResultsGetTotalSize", 57);
  sim::Force("MwSearchResultsGetResults", 1);
  ASSERT_TRUE(host::Get(npp_, c, "totalSize", &r_));
  EXPECT_EQ(57, r_.value.intValue);
  ASSERT_TRUE(Call(c, "getResults", {host::Int(20), host::Double(10)}));
  EXPECT_TRUE(r_.value.boolValue);
  EXPECT_EQ("10", sim::CallsTo("MwSearchResultsGetResults")[0].args[2]);
  EXPECT_FALSE(Call(c, "getResults", {host::Int(1), host::Str("2")}));
  EXPECT_EQ(1u, sim::CountCalls("MwSearchResultsGetResults"));
  Drop(c);
}

TEST_F(CollectionTest, RatingListTakesCopiesOfTheArguments) {
  MwHandle list = sim::NewHandleList({});
  NPObject* c = Make(list, kCollectionRatings);
  auto add = [&](NPVariant name, NPVariant value) {
    return Call(c, "addParentalRating", {host::Str("dvb-si"), name, value, host::Double(3), host::Str("gb")});
  };
  EXPECT_TRUE(add(host::Str("15"), host::Int(15)));
  auto calls = sim::CallsTo("MwRatingListAddRating");
  ASSERT_EQ(1u, calls.size());
  EXPECT_EQ((std::vector<std::string>{std::to_string(list), "dvb-si", "15", "15", "3", "gb"}), calls[0].args);
  EXPECT_EQ(1, Length(c));
  // An unreadable number, no memory for a copy: nothing added.
  EXPECT_FALSE(add(host::Str("15"), host::Str("15")));
  host::FailRecordAllocation(2);
  EXPECT_FALSE(add(host::Str("15"), host::Int(15)));
  EXPECT_EQ(1u, sim::CountCalls("MwRatingListAddRating"));
  // A non-String name is passed as empty text.
  EXPECT_TRUE(Call(c, "addParentalRating", {host::Str("dvb-si"), host::Int(9), host::Int(9), host::Int(0), host::Null()}));
  calls = sim::CallsTo("MwRatingListAddRating");
  ASSERT_EQ(2u, calls.size());
  EXPECT_EQ("", calls[1].args[2]);
  EXPECT_EQ("", calls[1].args[5]);
  Drop(c);
}

TEST_F(CollectionTest, SchemeMethodsWithoutASchemeObjectKind) {
  NPObject* c = Make(sim::NewHandleList(sim::RatingSchemes()), kCollectionRatingSchemes);
  // An unknown scheme is undefined; an added one is an object (or Null while
  // no object can be made for it) and its handle is given back.
  EXPECT_TRUE(Call(c, "getParentalRatingScheme", {host::Str("nope")}));
  EXPECT_EQ(NPVariantType_Void, r_.type);
  EXPECT_TRUE(Call(c, "addParentalRatingScheme", {host::Str("age"), host::Str("7,12,16")}));
  EXPECT_NE(NPVariantType_Void, r_.type);
  host::Release(&r_);
  EXPECT_EQ(2, Length(c));
  r_ = host::Int(1);
  EXPECT_FALSE(Call(c, "addParentalRatingScheme", {host::Str("x")}));
  EXPECT_EQ(NPVariantType_Void, r_.type);
  Drop(c);
}

TEST_F(CollectionTest, ChannelListLookupsAndSharedChannelObjects) {
  std::vector<MwHandle> channels = sim::Channels();
  NPObject* c = Make(sim::NewHandleList(channels), kCollectionChannels);
  // A null tsid is passed as 0 (the simulator then matches any).
  ASSERT_TRUE(Call(c, "getChannelByTriplet", {host::Int(8468), host::Null(), host::Int(4228)}));
  NPVariant found = r_;
  ASSERT_EQ(NPVariantType_Object, found.type);
  EXPECT_EQ(channels[1], ChannelGetHandle(found.value.objectValue));
  EXPECT_EQ("0", sim::CallsTo("MwChannelListGetChannelByTriplet").back().args[2]);
  // The same channel through item while that object lives: the same object.
  NPVariant again = Item(c, 1);
  EXPECT_EQ(found.value.objectValue, again.value.objectValue);
  EXPECT_EQ(1, sim::RefsOf(channels[1]));
  host::Release(&again);
  host::Release(&found);
  EXPECT_EQ(0, sim::RefsOf(channels[1]));

  EXPECT_FALSE(Call(c, "getChannelByTriplet", {host::Null(), host::Int(4100), host::Int(4164)}));
  EXPECT_EQ(1u, sim::CountCalls("MwChannelListGetChannelByTriplet"));
  EXPECT_TRUE(Call(c, "getChannel", {host::Int(5)}));
  EXPECT_EQ(NPVariantType_Null, r_.type) << "a non-String ccid is looked up as empty text";
  EXPECT_EQ("", sim::CallsTo("MwChannelListGetChannel").back().args[1]);
  Drop(c);
}

}  // namespace
