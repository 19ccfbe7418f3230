// The inert `window.debug` object placed on application manager pages.
#ifndef ORVANE_PLUGIN_DEBUG_H
#define ORVANE_PLUGIN_DEBUG_H

#include "plugin/npapi.h"

// A new debug object (one reference, the caller's), or null.
NPObject* DebugCreate(NPP instance);

#endif
