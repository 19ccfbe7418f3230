// The per-kind record lists: newest-first order, lookups by handle through
// the index (however far it could grow), and records off the list.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "frame/record.h"
#include "host/fixture.h"

namespace {

class RecordListTest : public OrvaneTest {
 protected:
  void TearDown() override {
    while (ObjectRecord* r = list_.head()) {
      list_.Remove(r);
      delete r;
    }
    OrvaneTest::TearDown();
  }
  ObjectRecord* Add(MwHandle handle) {
    ObjectRecord* r = new ObjectRecord();  // the index is the only record allocation
    r->handle = handle;
    list_.Add(r);
    return r;
  }
  // What walking the list finds: the reference for the index.
  ObjectRecord* Walk(MwHandle handle) {
    for (ObjectRecord* r = list_.head(); r; r = r->next)
      if (r->handle == handle) return r;
    return nullptr;
  }
  RecordList list_;
};

TEST_F(RecordListTest, NewestFirstAndTheNewestOfADuplicateHandle) {
  ObjectRecord* a = Add(7);
  ObjectRecord* b = Add(8);
  ObjectRecord* c = Add(7);
  EXPECT_EQ(c, list_.head());
  EXPECT_EQ(b, c->next);
  EXPECT_EQ(c, list_.FindByHandle(7));
  list_.Remove(c);
  delete c;
  EXPECT_EQ(a, list_.FindByHandle(7)) << "the older one takes its place";
  EXPECT_EQ(nullptr, list_.FindByHandle(9));

  ObjectRecord stranger{};
  stranger.handle = 8;
  EXPECT_FALSE(list_.Remove(&stranger)) << "not on the list: nothing changes";
  EXPECT_EQ(b, list_.FindByHandle(8));

  list_.SetHandle(b, 7);  // now the newest record of handle 7
  EXPECT_EQ(b, list_.FindByHandle(7));
  EXPECT_EQ(nullptr, list_.FindByHandle(8));
  list_.SetHandle(a, 8);
  EXPECT_EQ(a, list_.FindByHandle(8));
}

TEST_F(RecordListTest, LookupsAgreeWithTheListThroughGrowthRemovalsHandleChangesAndLostIndexes) {
  std::mt19937 random(1);
  std::vector<ObjectRecord*> live;
  for (int round = 0; round < 3000; round++) {
    // Now and then the index cannot grow (or come back) for a while.
    bool starved = round % 400 < 40;
    if (starved) host::FailRecordAllocation(1);
    if (live.empty() || random() % 3) {
      live.push_back(Add(random() % 200));
    } else if (random() % 4 == 0) {
      list_.SetHandle(live[random() % live.size()], random() % 2 ? 0 : random() % 200);
    } else {
      size_t i = random() % live.size();
      ASSERT_TRUE(list_.Remove(live[i]));
      delete live[i];
      live.erase(live.begin() + static_cast<long>(i));
    }
    host::FailRecordAllocation(0);
    if (round % 50 == 0 || round % 400 == 39) {
      for (MwHandle h = 0; h < 200; h++) ASSERT_EQ(Walk(h), list_.FindByHandle(h)) << h;
    }
  }
  EXPECT_EQ(live.size(), list_.size());
}

// Shared records keep no order of their own: the newest of a handle is the
// one added last, whatever came and went since.
TEST_F(RecordListTest, SharedRecordsFindTheNewestOfTheirHandleThroughGrowthAndStarvation) {
  std::mt19937 random(2);
  SharedList list;
  std::vector<SharedRecord*> live;  // oldest first
  auto newest = [&live](MwHandle h) -> SharedRecord* {
    for (auto r = live.rbegin(); r != live.rend(); ++r)
      if ((*r)->handle == h) return *r;
    return nullptr;
  };
  for (int round = 0; round < 3000; round++) {
    if (round % 400 < 40) host::FailRecordAllocation(1);
    if (live.empty() || random() % 3) {
      live.push_back(new SharedRecord{nullptr, nullptr, static_cast<MwHandle>(random() % 100)});
      list.Add(live.back());
    } else {
      size_t i = random() % live.size();
      ASSERT_TRUE(list.Remove(live[i]));
      EXPECT_FALSE(list.Remove(live[i])) << "a second removal finds nothing";
      delete live[i];
      live.erase(live.begin() + static_cast<long>(i));
    }
    host::FailRecordAllocation(0);
    if (round % 50 == 0 || round % 400 == 39) {
      for (MwHandle h = 0; h < 100; h++) ASSERT_EQ(newest(h), list.FindByHandle(h)) << h;
    }
  }
  EXPECT_EQ(live.size(), list.size());
  for (SharedRecord* r : live) {
    list.Remove(r);
    delete r;
  }
}

}  // namespace
