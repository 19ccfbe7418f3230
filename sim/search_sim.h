// Test controls of the simulated metadata search.
//
// A search matches the receiver's guide (every programme of every channel)
// against its query: OIPF metadata fields, as "Programme.name" or "name"
// (name or title, description, longDescription, genre, channelID,
// programmeID, startTime, duration, parentalRating), with the comparisons
// 0 equal, 1 not equal, 2 greater, 3 greater or equal, 4 less, 5 less or
// equal, 6 contains, combined with and, or, not; a search with no query
// matches everything. Channel constraints keep only programmes of those
// channels. Results are paged in by MwSearchResultsGetResults into the
// search's current page, which every result list of the search shows; with
// auto events the manager then reports state 0 (results ready) a few
// milliseconds later, state 3 after MwSearchResultsAbort, and state 4 (error)
// for a query on an unknown field, with an unknown comparison, or comparing
// a number field with something that is no number.
#ifndef ORVANE_SIM_SEARCH_SIM_H
#define ORVANE_SIM_SEARCH_SIM_H

#include <cstdint>
#include <string>

#include "middleware/types.h"

namespace sim {

// "name contains News", "(A and B)", "(A or B)", "not A"; "" for a handle that is no query.
std::string QueryDescription(MwHandle query);
// The description of a search's query ("" when it has none or is no search).
std::string SearchQueryDescription(MwHandle search);

// Raises SearchManager_onMetadataSearch(manager, new reference to search,
// state) on the calling thread or a moment later on the simulator's thread
// (dropped then if the manager or search went away).
void RaiseMetadataSearch(MwHandle manager, MwHandle search, int32_t state, bool on_sim_thread = false);

}  // namespace sim

#endif
