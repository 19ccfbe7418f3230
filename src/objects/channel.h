// Channel objects: one script object per middleware channel handle.
#ifndef ORVANE_OBJECTS_CHANNEL_H
#define ORVANE_OBJECTS_CHANNEL_H

#include "middleware/types.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

// Takes over `channel` in every case. Returns the handle's script object
// (an existing one, retained once more) or null.
ORV_EXPORT NPObject* ChannelCreate(NPP instance, MwHandle channel);
// The channel handle of a channel object; 0 for anything else.
ORV_EXPORT MwHandle ChannelGetHandle(NPObject* object);

#endif
