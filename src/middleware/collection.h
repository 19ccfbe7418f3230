/* Middleware contract: lists behind every collection. */
#ifndef ORVANE_MIDDLEWARE_COLLECTION_H
#define ORVANE_MIDDLEWARE_COLLECTION_H

#include "middleware/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Number of elements of any list. */
int32_t MwListGetCount(MwHandle list);
/* Element `index`, 0 when none: a new reference (a middleware string for string
 * lists), except that a programme the plug-in holds is lent and the elements of
 * media-asset and search-result lists stay the middleware's. */
MwHandle MwListGetItem(MwHandle list, uint32_t index);
/* Channel of a channel list by ccid; new reference or 0. */
MwHandle MwChannelListGetChannel(MwHandle list, const MwString* ccid);
/* Channel of a channel list by DVB triplet; new reference or 0. */
MwHandle MwChannelListGetChannelByTriplet(MwHandle list, uint32_t onid, uint32_t tsid, uint32_t sid);
/* Appends a rating to a rating list. */
void MwRatingListAddRating(MwHandle list, const MwString* scheme, const MwString* name,
                           uint32_t value, uint32_t labels, const MwString* region);
/* Adds a scheme (values: comma-separated) to a scheme list; new reference or 0. */
MwHandle MwSchemeListAddScheme(MwHandle list, const MwString* name, const MwString* values);
/* Scheme of a scheme list by name; new reference or 0. */
MwHandle MwSchemeListGetScheme(MwHandle list, const MwString* name);
/* Pages a search-result list to [offset, offset+count); non-zero on success. */
int32_t MwSearchResultsGetResults(MwHandle list, uint32_t offset, uint32_t count);
/* Stops the search that fills a search-result list. */
void MwSearchResultsAbort(MwHandle list);
/* Offset of the current page of a search-result list. */
int32_t MwSearchResultsGetOffset(MwHandle list);
/* Total number of results a search found. */
int32_t MwSearchResultsGetTotalSize(MwHandle list);

#ifdef __cplusplus
}
#endif

#endif
