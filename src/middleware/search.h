/* Middleware contract: metadata search manager, searches and queries. */
#ifndef ORVANE_MIDDLEWARE_SEARCH_H
#define ORVANE_MIDDLEWARE_SEARCH_H

#include "middleware/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The search manager; owned by the caller, 0 on failure. Its events carry this handle. */
MwHandle MwSearchManagerOpen(void);
/* A new search over `target`; new reference (released when its object goes) or 0,
 * which gives an object whose reads fail. */
MwHandle MwSearchManagerCreateSearch(MwHandle manager, uint32_t target);
/* The channel configuration; new reference or 0 (an object whose reads fail). */
MwHandle MwSearchManagerGetChannelConfig(MwHandle manager);

int32_t MwSearchGetTarget(MwHandle search);
/* The current result list; new reference or 0. Its elements are only counted
 * and stay the middleware's (MwListGetItem lends them). */
MwHandle MwSearchGetResult(MwHandle search);
void MwSearchSetQuery(MwHandle search, MwHandle query);
/* Restricts the search to a channel; 0 clears the constraints. */
void MwSearchAddChannelConstraint(MwHandle search, MwHandle channel);
/* A query `field comparison value`; new reference or 0. */
MwHandle MwSearchCreateQuery(MwHandle search, const MwString* field, uint32_t comparison,
                             const MwString* value);
/* Searches the programmes carried in a channel's stream from `startTime` (0: now). */
void MwSearchFindProgrammesFromStream(MwHandle search, MwHandle channel, uint32_t startTime);

/* Combined queries; new references or 0. */
MwHandle MwQueryAnd(MwHandle query, MwHandle other);
MwHandle MwQueryOr(MwHandle query, MwHandle other);
MwHandle MwQueryNot(MwHandle query);

#ifdef __cplusplus
}
#endif

#endif
