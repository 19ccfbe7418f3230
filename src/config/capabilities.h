// The capabilities object ("application/oipfCapabilities"): what the
// receiver can do, as the page's own XML Document, decode counts and
// hasCapability().
#ifndef ORVANE_CONFIG_CAPABILITIES_H
#define ORVANE_CONFIG_CAPABILITIES_H

#include "frame/record.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

// `handle` is the middleware capabilities (0 once the script object went).
struct CapabilitiesRecord : ObjectRecord {};

ORV_EXPORT CapabilitiesRecord* CapabilityCreate(NPP instance);
ORV_EXPORT void CapabilityDestroy(CapabilitiesRecord* record);

#endif
