// Scheduled recording objects: one script object per wrap of a middleware
// recording handle.
#ifndef ORVANE_OBJECTS_SCHEDULED_RECORDING_H
#define ORVANE_OBJECTS_SCHEDULED_RECORDING_H

#include "middleware/types.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

// A new object owning `recording` (every call makes a new object), or null.
// Takes over `recording` in every case: on failure it is released here.
ORV_EXPORT NPObject* ScheduledRecordingCreate(NPP instance, MwHandle recording);
// The recording handle of a scheduled recording object; 0 for anything else.
ORV_EXPORT MwHandle ScheduledRecordingGetHandle(NPObject* object);

#endif
