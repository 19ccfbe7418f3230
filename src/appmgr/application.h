// Application objects: one script object per call, over a middleware
// application handle (0 for an application the middleware did not name).
#ifndef ORVANE_APPMGR_APPLICATION_H
#define ORVANE_APPMGR_APPLICATION_H

#include "middleware/types.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

// A new Application object (one reference, the caller's) that takes over
// `application`; on failure the handle is released and null returned.
ORV_EXPORT NPObject* ApplicationCreateApp(NPP instance, MwHandle application);
ORV_EXPORT NPClass* ApplicationGetClass(void);

#endif
