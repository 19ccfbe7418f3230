// The configuration object ("application/oipfConfiguration") and the
// Configuration object of user preferences that its `configuration`
// property hands out.
#ifndef ORVANE_CONFIG_CONFIGURATION_H
#define ORVANE_CONFIG_CONFIGURATION_H

#include "frame/record.h"
#include "middleware/types.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

// One per embedded configuration element; `handle` is the middleware
// configuration (0 once the script object went).
struct OipfConfigurationRecord : ObjectRecord {};

ORV_EXPORT OipfConfigurationRecord* OipfConfigurationCreate(NPP instance);
ORV_EXPORT void OipfConfigurationDestroy(OipfConfigurationRecord* record);

// The process's current Configuration object: each read of `configuration`
// makes a new one, which replaces it (null once it was deallocated).
ORV_EXPORT NPObject* conf_np_obj;
// A new Configuration object over the preferences of `configuration`; it
// becomes the current one, and every Configuration object answers from its
// preferences.
ORV_EXPORT NPObject* ConfigurationCreate(NPP instance, MwHandle configuration);
ORV_EXPORT NPClass* ConfigurationGetClass(void);

#endif
