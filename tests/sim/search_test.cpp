// The simulated search: queries filter and page the programmes.
#include "sim/receiver.h"
#include "sim/search_sim.h"
#include "sim_fixture.h"

namespace simtest {
namespace {

using SearchTest = SimTest;

TEST_F(SearchTest, QueriesFilterAndPageTheProgrammes) {
  sim::SetAutoEvents(false);
  MwHandle manager = MwSearchManagerOpen();
  MwHandle search = MwSearchManagerCreateSearch(manager, 1);
  MwString name = Ms("name"), orvane = Ms("orvane"), news = Ms("News");
  MwHandle all = MwSearchCreateQuery(search, &name, 6, &orvane);
  MwHandle is_news = MwSearchCreateQuery(search, &name, 6, &news);
  MwHandle not_news = MwQueryNot(is_news);
  MwHandle query = MwQueryAnd(all, not_news);
  EXPECT_EQ(sim::QueryDescription(query), "(name contains orvane and not name contains News)");
  MwSearchSetQuery(search, query);

  MwHandle results = MwSearchGetResult(search);
  ASSERT_EQ(MwSearchResultsGetResults(results, 2, 3), 1);
  EXPECT_EQ(MwSearchResultsGetTotalSize(results), 6);  // 8 programmes, 2 of the news channel
  EXPECT_EQ(MwSearchResultsGetOffset(results), 2);
  ASSERT_EQ(MwListGetCount(results), 3);
  MwHandle third = MwListGetItem(results, 0);
  EXPECT_EQ(Take(MwProgrammeGetName(third)), "Orvane Two Now");

  MwHandle channel = sim::CurrentChannel();
  MwSearchAddChannelConstraint(search, channel);
  MwSearchResultsGetResults(results, 0, 10);
  EXPECT_EQ(MwSearchResultsGetTotalSize(results), 2);
  MwSearchAddChannelConstraint(search, 0);
  MwSearchResultsGetResults(results, 0, 10);
  EXPECT_EQ(MwSearchResultsGetTotalSize(results), 6);
  EXPECT_EQ(0, sim::RefsOf(third)) << "result elements are lent";
  for (MwHandle h : {results, query, not_news, is_news, all, search, manager}) MwObjectRelease(h);
}

}  // namespace
}  // namespace simtest
