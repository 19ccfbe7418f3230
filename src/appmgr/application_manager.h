// The application manager ("application/oipfApplicationManager"): hands the
// page the Application object that owns it, and reports low memory and
// application load failures to page listeners.
#ifndef ORVANE_APPMGR_APPLICATION_MANAGER_H
#define ORVANE_APPMGR_APPLICATION_MANAGER_H

#include "frame/record.h"
#include "middleware/types.h"
#include "npapi/export.h"

struct AppMgrRecord : ObjectRecord {};

ORV_EXPORT AppMgrRecord* ApplicationManagerCreate(NPP instance);
ORV_EXPORT void ApplicationManagerDestroy(AppMgrRecord* record);
// Middleware events for the manager with handle `manager`, from any thread.
ORV_EXPORT void AppMgr_onLowMemory(MwHandle manager);
ORV_EXPORT void AppMgr_onApplicationLoadError(MwHandle manager);

#endif
