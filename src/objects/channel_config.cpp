#include "objects/channel_config.h"

#include "objects/collection.h"
#include "frame/frame.h"
#include "middleware/broadcast.h"

namespace {

RecordList g_configs;

// Every read is a new collection over a new list, which it owns.
bool ListResult(ChannelConfigRecord* r, MwHandle list, uint32_t kind, NPVariant* result) {
  NPObject* collection = list ? CollectionCreate(r->instance, list, kind) : nullptr;
  if (!collection) {
    SetNull(result);
    return false;
  }
  SetObject(result, collection);
  return true;
}

bool ChannelList(ChannelConfigRecord* r, NPVariant* result) {
  return ListResult(r, MwChannelConfigGetChannelList(r->handle), kCollectionChannels, result);
}

bool Genres(ChannelConfigRecord* r, NPVariant* result) {
  return ListResult(r, MwChannelConfigGetGenres(r->handle), kCollectionStrings, result);
}

const Member<ChannelConfigRecord> kMembers[] = {
    Member<ChannelConfigRecord>::Get("channelList", ChannelList),
    Member<ChannelConfigRecord>::Get("genres", Genres),
};

// A configuration of handle 0 fails every read.
struct ChannelConfig : HandedOutKind<ChannelConfig, ChannelConfigRecord> {
  static constexpr bool kStubResult = false;
  ORV_KIND(kMembers, g_configs)
  static Gate Check(const ChannelConfigRecord* r, Access) { return NeedHandle(r); }
};

}  // namespace

NPObject* ChannelConfigCreate(NPP instance, MwHandle config) {
  // The handle is the object's from here on, also when none can be made.
  return NewHandedOut<ChannelConfig>(instance, config, kReleaseOnFailure);
}

NPObject* ChannelConfigFindNPAPIObj(MwHandle config) {
  ObjectRecord* r = g_configs.FindByHandle(config);
  return r ? r->object : nullptr;
}

ChannelConfigRecord* FindChanconfigHandle(NPObject* object) { return ChannelConfig::Find(object); }

// Unlinks and frees a record; one that is not on the list stays allocated.
// Its handle stays the caller's.
void FreeChanconfigHandle(ChannelConfigRecord* record) {
  if (record && g_configs.Remove(record)) FrameFreeRecord(record);
}
