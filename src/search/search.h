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
// Middleware event, from any thread: `search` changed to `state`. The
// search handle is borrowed when the plug-in holds it (a search object for
// it is alive) and a new reference when it does not.
ORV_EXPORT void SearchManager_onMetadataSearch(MwHandle manager, MwHandle search, int32_t state);

// The script object of `search`: the live one for that handle, retained
// once more (the handle then stays the caller's), or a new one that takes
// the handle over; null when none can be made (the handle is then let go).
ORV_EXPORT NPObject* MetadataSearchCreate(NPP instance, MwHandle search);
// True while a search object holds `search`.
bool MetadataSearchHeld(MwHandle search);
// The plug-in's reference to `search` goes: to a search event waiting to
// be delivered, or back to the middleware.
void MetadataSearchLetGo(MwHandle search);

// A new query object on every call, taking `query` over (released when no
// object can be made).
ORV_EXPORT NPObject* QueryCreate(NPP instance, MwHandle query);
// The query handle of a query object; 0 for anything else.
ORV_EXPORT MwHandle QueryGetHandle(NPObject* object);

#endif
