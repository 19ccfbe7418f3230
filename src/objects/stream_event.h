// Stream event objects: self-contained copies of a DSM-CC stream event.
#ifndef ORVANE_OBJECTS_STREAM_EVENT_H
#define ORVANE_OBJECTS_STREAM_EVENT_H

#include "middleware/types.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

void SEventInit();
// A new object copying `event`, or null.
ORV_EXPORT NPObject* SEventCreate(NPP instance, const MwStreamEvent* event);

#endif
