// Parental rating objects and their lookup by middleware handle.
#include <gtest/gtest.h>

#include "objects/collection.h"
#include "host/fixture.h"
#include "middleware/types.h"
#include "objects/parental_rating.h"
#include "sim/broadcast_sim.h"
#include "sim/receiver_sim.h"
#include "sim/sim.h"

namespace {

class ParentalRatingTest : public OrvaneTest {
 protected:
  void SetUp() override {
    OrvaneTest::SetUp();
    npp_ = host::NewInstance(host::NewPage());
    // The present programme of the first channel is rated 12.
    rating_ = sim::CurrentRating();
    ASSERT_NE(0u, rating_);
  }
  NPVariant Read(NPObject* o, const char* name, bool* ok = nullptr) {
    NPVariant v = host::Void();
    bool got = host::Get(npp_, o, name, &v);
    if (ok) *ok = got;
    return v;
  }
  static void Drop(NPObject* o) { host::Funcs()->releaseobject(o); }
  NPP npp_ = nullptr;
  MwHandle rating_ = 0;
};

TEST_F(ParentalRatingTest, PropertiesAreReadFromTheMiddleware) {
  NPObject* r = ParentalRatingCreate(npp_, sim::Ref(rating_));
  ASSERT_NE(nullptr, r);
  NPVariant name = Read(r, "name"), scheme = Read(r, "scheme"), region = Read(r, "region");
  EXPECT_EQ("12", host::AsString(name));
  EXPECT_EQ("dvb-si", host::AsString(scheme));
  EXPECT_EQ("gb", host::AsString(region));
  for (NPVariant* v : {&name, &scheme, &region}) host::Release(v);
  EXPECT_EQ(12, Read(r, "value").value.intValue);
  EXPECT_EQ(0, Read(r, "labels").value.intValue);

  EXPECT_TRUE(r->_class->hasProperty(r, host::Id("labels")));
  EXPECT_FALSE(r->_class->hasProperty(r, host::Id("length")));
  EXPECT_FALSE(r->_class->hasMethod(r, host::Id("name")));
  EXPECT_FALSE(host::Set(npp_, r, "value", host::Int(18)));
  bool ok = true;
  Read(r, "threshold", &ok);
  EXPECT_FALSE(ok);
  Drop(r);
  EXPECT_EQ(0, sim::RefsOf(rating_)) << "the object gave its reference back";
}

TEST_F(ParentalRatingTest, LookupFindsTheNewestLiveObject) {
  EXPECT_EQ(nullptr, ParentalRatingFindNPAPIObj(rating_)) << "never wrapped";
  NPObject* older = ParentalRatingCreate(npp_, sim::Ref(rating_));
  NPObject* newer = ParentalRatingCreate(npp_, sim::Ref(rating_));
  ASSERT_NE(older, newer);
  EXPECT_EQ(newer, ParentalRatingFindNPAPIObj(rating_));
  Drop(newer);
  EXPECT_EQ(older, ParentalRatingFindNPAPIObj(rating_));
  Drop(older);
  EXPECT_EQ(nullptr, ParentalRatingFindNPAPIObj(rating_));
}

TEST_F(ParentalRatingTest, FailedCreationLeavesTheHandleWithTheCaller) {
  MwHandle held = sim::Ref(rating_);
  host::FailRecordAllocation(1);
  EXPECT_EQ(nullptr, ParentalRatingCreate(npp_, held));
  EXPECT_EQ(1, sim::RefsOf(rating_));
  MwObjectRelease(held);
}

TEST_F(ParentalRatingTest, RatingCollectionsHandOutRatingObjects) {
  NPObject* list = CollectionCreate(npp_, sim::NewHandleList({rating_}), kCollectionRatings);
  ASSERT_NE(nullptr, list);
  NPVariant item = host::Void();
  ASSERT_TRUE(host::Invoke(npp_, list, "item", {host::Int(0)}, &item));
  ASSERT_EQ(NPVariantType_Object, item.type);
  EXPECT_EQ(12, Read(item.value.objectValue, "value").value.intValue);
  EXPECT_EQ(item.value.objectValue, ParentalRatingFindNPAPIObj(rating_));
  host::Release(&item);
  Drop(list);
}

}  // namespace
