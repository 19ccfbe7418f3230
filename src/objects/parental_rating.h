// Parental rating objects.
#ifndef ORVANE_OBJECTS_PARENTAL_RATING_H
#define ORVANE_OBJECTS_PARENTAL_RATING_H

#include "middleware/types.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

// A new object owning `rating`, or null (the handle then stays the caller's).
ORV_EXPORT NPObject* ParentalRatingCreate(NPP instance, MwHandle rating);
// The newest object holding `rating`, or null.
ORV_EXPORT NPObject* ParentalRatingFindNPAPIObj(MwHandle rating);

#endif
