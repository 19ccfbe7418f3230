// Keyset objects: the groups of remote-control keys an application asks for.
#ifndef ORVANE_APPMGR_KEYSET_H
#define ORVANE_APPMGR_KEYSET_H

#include "middleware/types.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

// A new Keyset object (one reference, the caller's) that takes over `keyset`;
// on failure the handle is released and null returned.
ORV_EXPORT NPObject* KeysetCreate(NPP instance, MwHandle keyset);

#endif
