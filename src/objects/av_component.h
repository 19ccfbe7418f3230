// AV component objects (video, audio, subtitle components).
#ifndef ORVANE_OBJECTS_AV_COMPONENT_H
#define ORVANE_OBJECTS_AV_COMPONENT_H

#include "middleware/types.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

// A new object owning `component`, or null (the handle then stays the caller's).
ORV_EXPORT NPObject* AVComponentCreate(NPP instance, MwHandle component);
ORV_EXPORT MwHandle AVComponentGetHandle(NPObject* object);

#endif
