// Channel configuration objects: the channel list and the genres.
#ifndef ORVANE_BROADCAST_CHANNEL_CONFIG_H
#define ORVANE_BROADCAST_CHANNEL_CONFIG_H

#include "middleware/types.h"
#include "plugin/export.h"
#include "plugin/npapi.h"

struct ChannelConfigRecord {
  NPObject* object;
  MwHandle handle;  // owned
  NPP instance;
  ChannelConfigRecord* next;
};

// A new object owning `config`, or null. Takes over `config` in every case:
// on failure it is released here.
ORV_EXPORT NPObject* ChannelConfigCreate(NPP instance, MwHandle config);
ORV_EXPORT NPObject* ChannelConfigFindNPAPIObj(MwHandle config);
ORV_EXPORT ChannelConfigRecord* FindChanconfigHandle(NPObject* object);
ORV_EXPORT void FreeChanconfigHandle(ChannelConfigRecord* record);

#endif
