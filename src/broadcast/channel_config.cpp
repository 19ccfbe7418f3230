#include "broadcast/channel_config.h"

#include "collection/collection.h"
#include "middleware/broadcast.h"
#include "plugin/frame.h"
#include "plugin/record.h"
#include "utils/record_alloc.h"

namespace {

ChannelConfigRecord* g_configs = nullptr;

enum Property { kChannelList, kGenres };
const char* const kPropertyNames[] = {"channelList", "genres"};

struct ChannelConfig : KindDefaults<ChannelConfig> {
  static constexpr bool kStubResult = false;

  ORV_PROPERTY_TABLE(kPropertyNames)

  static void Deallocate(NPObject* object) {
    ChannelConfigRecord* r = FindChanconfigHandle(object);
    if (!r) return;
    if (r->handle) MwObjectRelease(r->handle);
    FreeChanconfigHandle(r);
  }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    ChannelConfigRecord* r = FindChanconfigHandle(object);
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
  ChannelConfig::Properties().Intern();
  // The handle is the object's from here on, also when none can be made.
  ChannelConfigRecord* r =
      NewScriptRecord<ChannelConfigRecord>(instance, ScriptClass<ChannelConfig>::Class());
  if (!r) {
    if (config) MwObjectRelease(config);
    return nullptr;
  }
  r->handle = config;
  r->instance = instance;
  PushFront(&g_configs, r);
  return r->object;
}

NPObject* ChannelConfigFindNPAPIObj(MwHandle config) {
  ChannelConfigRecord* r = FindByHandle(g_configs, config);
  return r ? r->object : nullptr;
}

ChannelConfigRecord* FindChanconfigHandle(NPObject* object) { return FindByObject(g_configs, object); }

void FreeChanconfigHandle(ChannelConfigRecord* record) {
  if (record && Unlink(&g_configs, record)) RecordFree(record);
}
