#include "objects/channel_config.h"

#include "objects/collection.h"
#include "frame/frame.h"
#include "middleware/broadcast.h"

namespace {

RecordList g_configs;

enum Property { kChannelList, kGenres };
const char* const kPropertyNames[] = {"channelList", "genres"};

struct ChannelConfig : HandedOutKind<ChannelConfig, ChannelConfigRecord> {
  static constexpr bool kStubResult = false;
  ORV_PROPERTY_TABLE(kPropertyNames)
  static RecordList& List() { return g_configs; }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    ChannelConfigRecord* r = Find(object);
    if (!r) return false;
    MwHandle list;
    uint32_t kind;
    switch (Properties().Find(id)) {
      case kChannelList:
        if (!r->handle) return false;
        list = MwChannelConfigGetChannelList(r->handle);
        kind = kCollectionChannels;
        break;
      case kGenres:
        if (!r->handle) return false;
        list = MwChannelConfigGetGenres(r->handle);
        kind = kCollectionStrings;
        break;
      default:
        return false;
    }
    // Every read is a new collection over a new list, which it owns.
    NPObject* collection = list ? CollectionCreate(r->instance, list, kind) : nullptr;
    if (!collection) {
      SetNull(result);
      return false;
    }
    SetObject(result, collection);
    return true;
  }
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
