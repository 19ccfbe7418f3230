// An application's private data: its keyset, the channel presented and the
// free memory.
#ifndef ORVANE_APPMGR_PRIVATE_DATA_H
#define ORVANE_APPMGR_PRIVATE_DATA_H

#include "middleware/types.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

// A new private-data object (one reference, the caller's) that takes over
// `privateData`; on failure the handle is released and null returned.
ORV_EXPORT NPObject* ApplicationPrivDataCreate(NPP instance, MwHandle privateData);

#endif
