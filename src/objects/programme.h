// Programme objects: one script object per middleware programme handle.
#ifndef ORVANE_OBJECTS_PROGRAMME_H
#define ORVANE_OBJECTS_PROGRAMME_H

#include "middleware/types.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

// The script object of `programme`.
// - New object: the record takes over `programme`.
// - An object for the same handle value exists already: that object is
//   retained once more and returned, and `programme` stays the CALLER's. This
//   differs from ChannelCreate on purpose: a middleware passes a programme
//   the plug-in holds already as borrowed.
// - Failure: null; the new record's handle is let go (no leak).
ORV_EXPORT NPObject* ProgrammeCreate(NPP instance, MwHandle programme);
// The programme handle of a programme object; 0 for anything else.
ORV_EXPORT MwHandle ProgrammeGetHandle(NPObject* object);

#endif
