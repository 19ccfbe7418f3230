// The search manager: makes searches and reports their news to the page.
#include "objects/channel_config.h"
#include "frame/events.h"
#include "frame/frame.h"
#include "frame/instance_kind.h"
#include "middleware/search.h"
#include "search/search.h"
#include "utils/convert.h"

namespace {

RecordList g_managers;

constexpr uint32_t kMetadataSearch = 0;
const EventProperty kEvents[] = {{"onMetadataSearch", kMetadataSearch}};
const EventTable kEventTable = ORV_EVENT_TABLE(kEvents, TypeRule::kIgnore, EmptyRead::kNoValue);

bool CreateSearch(SearchManagerRecord* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  uint32_t target;
  if (count != 1 || !NP_UtilsGetU32BIT(&args[0], &target)) return true;  // no result
  MwHandle search = MwSearchManagerCreateSearch(r->handle, target);
  SetObjectOrNull(result, MetadataSearchCreate(r->instance, search));
  return true;
}

bool GetChannelConfig(SearchManagerRecord* r, const NPVariant*, uint32_t, NPVariant* result) {
  MwHandle config = MwSearchManagerGetChannelConfig(r->handle);
  SetObjectOrNull(result, ChannelConfigCreate(r->instance, config));
  return true;
}

// An empty onMetadataSearch fails its read.
using Row = Member<SearchManagerRecord>;
const Row kMembers[] = {
    Row::EventSlots(),  // onMetadataSearch
    Row::Call("createSearch", CreateSearch),
    Row::Call("getChannelConfig", GetChannelConfig),
    Row::ListenerMethods(),
};

struct SearchManager : InstanceKindBase<SearchManager, SearchManagerRecord> {
  ORV_KIND_WITH_EVENTS(kMembers, kEventTable, g_managers)
  // Calls need the middleware's manager.
  static Gate Check(const SearchManagerRecord* r, Access access) {
    return access == Access::kCall ? NeedHandle(r) : r ? Gate::kGo : Gate::kFail;
  }
};

// Browser's thread: the search's object and the state. The event owns the
// search handle when the plug-in held none for it (or handed its own over
// to the event); an event for a manager the plug-in never had owns nothing.
void DeliverSearch(ObjectRecord* target, PendingEvent* ev) {
  MwHandle search = ev->borrowed;
  bool owned = ev->taken || (ev->target_known && search && !MetadataSearchHeld(search));
  ev->taken = 0;
  if (!target) {  // dropped: as the object made for it would be let go
    if (owned) MetadataSearchLetGo(search);
    return;
  }
  NPObject* object = MetadataSearchCreate(target->instance, search);
  if (!object) return;
  NPVariant args[2];
  SetObject(&args[0], object);
  SetInt(&args[1], ev->numbers[0]);
  DeliverToListeners(target, kMetadataSearch, args, 2);
}

}  // namespace

ORV_OPENED_INSTANCE_KIND(kSearchManagerKind, SearchManager, g_managers, "application/oipfsearchmanager",
                         kKindSearchManager, SearchManagerCreate, SearchManagerDestroy, MwSearchManagerOpen)

void SearchManager_onMetadataSearch(MwHandle manager, MwHandle search, int32_t state) {
  PendingEvent ev = EventFor(g_managers, DeliverSearch, manager, kMetadataSearch);
  ev.borrowed = search;
  ev.numbers[0] = state;
  PostEvent(ev);
}

void MetadataSearchLetGo(MwHandle search) {
  if (!EventsHandOver(DeliverSearch, search)) MwObjectRelease(search);
}
