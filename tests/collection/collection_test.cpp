// Collections over simulated lists: element access by index and by item,
// Null versus undefined, the kind methods, handle ownership.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "broadcast/av_component.h"
#include "broadcast/channel.h"
#include "collection/collection.h"
#include "host/fixture.h"
#include "sim/core.h"
#include "sim/receiver.h"
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
  NPVariant Item(NPObject* c, NPVariant index, bool expect = true) {
    NPVariant r = host::Void();
    EXPECT_EQ(expect, host::Invoke(npp_, c, "item", {index}, &r));
    return r;
  }
  int32_t Length(NPObject* c) {
    NPVariant r = host::Void();
    EXPECT_TRUE(host::Get(npp_, c, "length", &r));
    EXPECT_EQ(NPVariantType_Int32, r.type);
    return r.value.intValue;
  }
  std::vector<MwHandle> Components() {
    std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
    return sim::Find<sim::ChannelObject>(sim::Rx().channels[0])->components;
  }
  bool HasProperty(NPObject* o, NPIdentifier id) { return o->_class->hasProperty(o, id); }
  bool HasMethod(NPObject* o, const char* name) { return o->_class->hasMethod(o, host::Id(name)); }
  NPP npp_ = nullptr;
};

TEST_F(CollectionTest, StringElementsByIntegerNumericStringAndItem) {
  NPObject* c = Make(sim::NewStringList({"Drama", "Comedy", "News", "Music"}), kCollectionStrings);
  EXPECT_EQ(4, Length(c));

  NPVariant by_int = host::Void(), by_text = host::Void();
  EXPECT_TRUE(host::GetIndex(npp_, c, 3, &by_int));
  EXPECT_TRUE(host::Get(npp_, c, "3", &by_text));
  NPVariant by_item = Item(c, host::Int(3));
  NPVariant by_double = Item(c, host::Double(3.7));
  for (NPVariant* v : {&by_int, &by_text, &by_item, &by_double}) {
    EXPECT_EQ("Music", host::AsString(*v));
    host::Release(v);
  }

  EXPECT_TRUE(HasProperty(c, host::Id("12")));
  EXPECT_FALSE(HasProperty(c, host::Id("x1")));
  NPVariant r = host::Void();
  EXPECT_FALSE(host::Set(npp_, c, "0", host::Str("x")));

  // Past the end: whatever the list answers, here nothing: undefined.
  EXPECT_TRUE(host::GetIndex(npp_, c, 4, &r));
  EXPECT_EQ(NPVariantType_Void, r.type);
  // item wants exactly one number.
  Item(c, host::Str("1"), false);
  EXPECT_FALSE(host::Invoke(npp_, c, "item", {host::Int(0), host::Int(1)}, &r));
  EXPECT_FALSE(host::Invoke(npp_, c, "getChannel", {host::Str("a")}, &r));
  Drop(c);
  EXPECT_EQ(0u, sim::HeldHandles());
}

TEST_F(CollectionTest, ComponentElementsAreNewObjectsOnEveryRead) {
  std::vector<MwHandle> parts = Components();
  NPObject* c = Make(sim::NewList(parts), kCollectionComponents);
  EXPECT_EQ(static_cast<int32_t>(parts.size()), Length(c));
  NPVariant a = Item(c, host::Int(1));
  NPVariant b = host::Void();
  EXPECT_TRUE(host::GetIndex(npp_, c, 1, &b));
  ASSERT_EQ(NPVariantType_Object, a.type);
  ASSERT_EQ(NPVariantType_Object, b.type);
  EXPECT_NE(a.value.objectValue, b.value.objectValue);
  EXPECT_EQ(parts[1], AVComponentGetHandle(b.value.objectValue));
  EXPECT_EQ(2, sim::RefsOf(parts[1]));
  // The collection may go first: its elements own their own handles.
  Drop(c);
  EXPECT_EQ(2, sim::RefsOf(parts[1]));
  host::Release(&a);
  host::Release(&b);
  EXPECT_EQ(0, sim::RefsOf(parts[1]));
}

TEST_F(CollectionTest, FailedElementIsNullMissingElementIsUndefined) {
  std::vector<MwHandle> parts = Components();
  NPObject* c = Make(sim::NewList({parts[0], 0}), kCollectionComponents);
  NPVariant r = Item(c, host::Int(1));
  EXPECT_EQ(NPVariantType_Void, r.type) << "no element: undefined";

  host::FailRecordAllocation(1);
  r = Item(c, host::Int(0));
  EXPECT_EQ(NPVariantType_Null, r.type) << "no object could be made: Null";
  EXPECT_EQ(0, sim::RefsOf(parts[0])) << "the element handle is given back";

  Drop(c);
}

TEST_F(CollectionTest, CountedOnlyKindsGiveUndefinedElements) {
  std::vector<MwHandle> parts = Components();
  for (uint32_t kind : {uint32_t{kCollectionMediaAssets}, uint32_t{kCollectionSearchResults}, 42u}) {
    NPObject* c = Make(sim::NewList({parts[0], parts[1]}), kind);
    EXPECT_EQ(2, Length(c));
    NPVariant r = Item(c, host::Int(0));
    EXPECT_EQ(NPVariantType_Void, r.type) << "kind " << kind;
    EXPECT_EQ(0, sim::RefsOf(parts[0]));
    Drop(c);
  }
}

TEST_F(CollectionTest, SearchResultsPageAndReportTheirPosition) {
  MwHandle list = sim::NewList({});
  NPObject* c = Make(list, kCollectionSearchResults);
  sim::Force("MwSearchResultsGetOffset", 20);
  sim::Force("MwSearchResultsGetTotalSize", 57);
  sim::Force("MwSearchResultsGetResults", 1);
  NPVariant r = host::Void();
  ASSERT_TRUE(host::Get(npp_, c, "totalSize", &r));
  EXPECT_EQ(57, r.value.intValue);
  ASSERT_TRUE(host::Invoke(npp_, c, "getResults", {host::Int(20), host::Double(10)}, &r));
  EXPECT_TRUE(r.value.boolValue);
  EXPECT_EQ("10", sim::CallsTo("MwSearchResultsGetResults")[0].args[2]);
  EXPECT_FALSE(host::Invoke(npp_, c, "getResults", {host::Int(1), host::Str("2")}, &r));
  EXPECT_EQ(1u, sim::CountCalls("MwSearchResultsGetResults"));
  // Other kinds do not have them.
  NPObject* strings = Make(sim::NewStringList({}), kCollectionStrings);
  EXPECT_FALSE(host::Get(npp_, strings, "offset", &r));
  EXPECT_FALSE(host::Invoke(npp_, strings, "abort", {}, &r));
  Drop(strings);
  Drop(c);
}

TEST_F(CollectionTest, RatingListTakesCopiesOfTheArguments) {
  MwHandle list = sim::NewList({});
  NPObject* c = Make(list, kCollectionRatings);
  NPVariant r = host::Void();
  EXPECT_TRUE(host::Invoke(npp_, c, "addParentalRating",
                           {host::Str("dvb-si"), host::Str("15"), host::Int(15), host::Double(3),
                            host::Str("gb")},
                           &r));
  auto calls = sim::CallsTo("MwRatingListAddRating");
  ASSERT_EQ(1u, calls.size());
  EXPECT_EQ((std::vector<std::string>{std::to_string(list), "dvb-si", "15", "15", "3", "gb"}),
            calls[0].args);
  EXPECT_EQ(1, Length(c));

  // Wrong count, an unreadable number, no memory for a copy: nothing added.
  EXPECT_FALSE(host::Invoke(npp_, c, "addParentalRating",
                            {host::Str("dvb-si"), host::Str("15"), host::Str("15"), host::Int(0),
                             host::Str("gb")},
                            &r));
  host::FailRecordAllocation(2);
  EXPECT_FALSE(host::Invoke(npp_, c, "addParentalRating",
                            {host::Str("dvb-si"), host::Str("15"), host::Int(15), host::Int(0),
                             host::Str("gb")},
                            &r));
  EXPECT_EQ(1u, sim::CountCalls("MwRatingListAddRating"));
  // A non-String name is passed as empty text.
  EXPECT_TRUE(host::Invoke(npp_, c, "addParentalRating",
                           {host::Str("dvb-si"), host::Int(9), host::Int(9), host::Int(0), host::Null()},
                           &r));
  calls = sim::CallsTo("MwRatingListAddRating");
  ASSERT_EQ(2u, calls.size());
  EXPECT_EQ("", calls[1].args[2]);
  EXPECT_EQ("", calls[1].args[5]);
  Drop(c);
}

TEST_F(CollectionTest, SchemeMethodsWithoutASchemeObjectKind) {
  MwHandle list;
  {
    std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
    list = sim::NewList(sim::Rx().schemes);
  }
  NPObject* c = Make(list, kCollectionRatingSchemes);
  NPVariant r = host::Void();
  // An unknown scheme is undefined; a known one is an object, or Null while
  // no object can be made for it; either way its handle is given back.
  EXPECT_TRUE(host::Invoke(npp_, c, "getParentalRatingScheme", {host::Str("nope")}, &r));
  EXPECT_EQ(NPVariantType_Void, r.type);
  EXPECT_TRUE(host::Invoke(npp_, c, "getParentalRatingScheme", {host::Str("dvb-si")}, &r));
  EXPECT_NE(NPVariantType_Void, r.type);
  host::Release(&r);

  EXPECT_TRUE(host::Invoke(npp_, c, "addParentalRatingScheme", {host::Str("age"), host::Str("7,12,16")}, &r));
  EXPECT_NE(NPVariantType_Void, r.type);
  host::Release(&r);
  EXPECT_EQ(2, Length(c));
  r = host::Int(1);
  EXPECT_FALSE(host::Invoke(npp_, c, "addParentalRatingScheme", {host::Str("x")}, &r));
  EXPECT_EQ(NPVariantType_Void, r.type);
  Drop(c);
}

TEST_F(CollectionTest, CreationFailureGivesTheListBack) {
  host::FailRecordAllocation(1);
  EXPECT_EQ(nullptr, CollectionCreate(npp_, sim::NewStringList({"a"}), kCollectionStrings));
  host::FailAllocation(1);
  EXPECT_EQ(nullptr, CollectionCreate(npp_, sim::NewStringList({"a"}), kCollectionStrings));
  EXPECT_EQ(0u, sim::HeldHandles());
}

TEST_F(CollectionTest, ChannelListLookupsAndSharedChannelObjects) {
  MwHandle list;
  std::vector<MwHandle> channels;
  {
    std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
    channels = sim::Rx().channels;
    list = sim::NewList(channels);
  }
  NPObject* c = Make(list, kCollectionChannels);
  NPVariant r = host::Void();

  // A null tsid is passed as 0 (the simulator then matches any).
  ASSERT_TRUE(host::Invoke(npp_, c, "getChannelByTriplet", {host::Int(8468), host::Null(), host::Int(4228)}, &r));
  ASSERT_EQ(NPVariantType_Object, r.type);
  EXPECT_EQ(channels[1], ChannelGetHandle(r.value.objectValue));
  EXPECT_EQ("0", sim::CallsTo("MwChannelListGetChannelByTriplet").back().args[2]);
  // The same channel through item while that object lives: the same object.
  NPVariant again = Item(c, host::Int(1));
  EXPECT_EQ(r.value.objectValue, again.value.objectValue);
  EXPECT_EQ(2u, host::RefCount(r.value.objectValue));
  EXPECT_EQ(1, sim::RefsOf(channels[1]));
  host::Release(&again);
  host::Release(&r);
  EXPECT_EQ(0, sim::RefsOf(channels[1]));

  const size_t triplet_calls = sim::CountCalls("MwChannelListGetChannelByTriplet");
  EXPECT_FALSE(host::Invoke(npp_, c, "getChannelByTriplet", {host::Int(8468), host::Str("4100"), host::Int(4164)}, &r));
  EXPECT_FALSE(host::Invoke(npp_, c, "getChannelByTriplet", {host::Null(), host::Int(4100), host::Int(4164)}, &r));
  EXPECT_EQ(triplet_calls, sim::CountCalls("MwChannelListGetChannelByTriplet"));

  EXPECT_TRUE(host::Invoke(npp_, c, "getChannel", {host::Int(5)}, &r));
  EXPECT_EQ(NPVariantType_Null, r.type) << "a non-String ccid is looked up as empty text";
  EXPECT_EQ("", sim::CallsTo("MwChannelListGetChannel").back().args[1]);
  Drop(c);
}

}  // namespace
