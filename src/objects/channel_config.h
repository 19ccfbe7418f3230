// Channel configuration objects: the channel list and the genres.
#ifndef ORVANE_OBJECTS_CHANNEL_CONFIG_H
#define ORVANE_OBJECTS_CHANNEL_CONFIG_H

#include "frame/record.h"
#include "middleware/types.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

struct ChannelConfigRecord : ObjectRecord {};  // handle owned

// A new object owning `config`, or null. Takes over `config` in every case:
// on failure it is released here.
ORV_EXPORT NPObject* ChannelConfigCreate(NPP instance, MwHandle config);
ORV_EXPORT NPObject* ChannelConfigFindNPAPIObj(MwHandle config);
ORV_EXPORT ChannelConfigRecord* FindChanconfigHandle(NPObject* object);
ORV_EXPORT void FreeChanconfigHandle(ChannelConfigRecord* record);

#endif
