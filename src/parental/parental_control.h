// The parental control manager ("application/oipfParentalControlManager")
// and the parental rating scheme objects of its parentalRatingSchemes.
#ifndef ORVANE_PARENTAL_PARENTAL_CONTROL_H
#define ORVANE_PARENTAL_PARENTAL_CONTROL_H

#include "frame/record.h"
#include "middleware/types.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

// `handle` is the middleware parental control (0 once the script object went).
struct ParentalControlRecord : ObjectRecord {};

ORV_EXPORT ParentalControlRecord* OipfParentalControlManagerCreate(NPP instance);
ORV_EXPORT void OipfParentalControlManagerDestroy(ParentalControlRecord* record);
// A new scheme object owning `scheme`, or null (the handle then stays the caller's).
ORV_EXPORT NPObject* ParentalRatingSchemeCreate(NPP instance, MwHandle scheme);

#endif
