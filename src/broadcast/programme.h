// Programme objects: one script object per middleware programme handle.
#ifndef ORVANE_BROADCAST_PROGRAMME_H
#define ORVANE_BROADCAST_PROGRAMME_H

#include "middleware/types.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

// The script object of `programme`.
// - New object: the record takes over `programme`.
// - An object for the same handle value exists already: that object is
//   retained once more and returned, and `programme` stays the CALLER's. This
//   differs from ChannelCreate on purpose. A caller that handed over a new
//   reference must give it back itself (or use ProgrammeCreateTakingHandle).
// - Failure: null, and `programme` stays the caller's.
ORV_EXPORT NPObject* ProgrammeCreate(NPP instance, MwHandle programme);
// The programme handle of a programme object; 0 for anything else.
ORV_EXPORT MwHandle ProgrammeGetHandle(NPObject* object);

// ProgrammeCreate for callers that hand over a new reference (collections,
// the recording scheduler, searches): takes over `programme` in every case,
// releasing it when an existing object is shared or no object can be made.
NPObject* ProgrammeCreateTakingHandle(NPP instance, MwHandle programme);

#endif
