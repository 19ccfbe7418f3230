// Metadata search: the search manager ("application/oipfSearchManager"),
// metadata search objects and queries.
#ifndef ORVANE_SEARCH_SEARCH_H
#define ORVANE_SEARCH_SEARCH_H

#include "frame/record.h"
#include "middleware/types.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

// One per embedded search manager; `handle` is the middleware's manager.
struct SearchManagerRecord : ObjectRecord {};

ORV_EXPORT SearchManagerRecord* SearchManagerCreate(NPP instance);
ORV_EXPORT void SearchManagerDestroy(SearchManagerRecord* record);
// Middleware event, from any thread: `search` (a new reference) changed to `state`.
ORV_EXPORT void SearchManager_onMetadataSearch(MwHandle manager, MwHandle search, int32_t state);

// The script object of `search`: the live one for that handle, retained
// once more (the handle then stays the caller's), or a new one that takes
// the handle over; null when none can be made (the handle stays the caller's).
ORV_EXPORT NPObject* MetadataSearchCreate(NPP instance, MwHandle search);
// The same for callers that hand over a reference in every case.
NPObject* MetadataSearchCreateTakingHandle(NPP instance, MwHandle search);

// A new query object on every call, taking `query` over (released when no
// object can be made).
ORV_EXPORT NPObject* QueryCreate(NPP instance, MwHandle query);
// The query handle of a query object; 0 for anything else.
ORV_EXPORT MwHandle QueryGetHandle(NPObject* object);

#endif
