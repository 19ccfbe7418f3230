// The inert `window.debug` object placed on application manager pages.
#ifndef ORVANE_APPMGR_DEBUG_H
#define ORVANE_APPMGR_DEBUG_H

#include "npapi/npapi.h"

// A new debug object (one reference, the caller's), or null.
NPObject* DebugCreate(NPP instance);

#endif
