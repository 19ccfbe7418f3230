// Metadata search objects: one live script object per search handle.
#include "objects/channel.h"
#include "objects/collection.h"
#include "frame/frame.h"
#include "middleware/search.h"
#include "search/search.h"
#include "utils/convert.h"

namespace {

RecordList g_searches;

// createQuery(field, comparison, value): two strings around a number (a
// comparison that is no number counts as 0).
bool CreateQuery(ObjectRecord* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  if (count != 3 || !IsString(args[0]) || !IsString(args[2])) return false;
  uint32_t comparison = 0;
  if (!NP_UtilsGetU32BIT(&args[1], &comparison)) comparison = 0;
  MwString field = ArgString(args[0]), value = ArgString(args[2]);
  if (!field.data || !value.data) return false;
  MwHandle query = MwSearchCreateQuery(r->handle, &field, comparison, &value);
  if (!query) return false;
  SetObjectOrNull(result, QueryCreate(r->instance, query));
  return true;
}

bool FindFromStream(ObjectRecord* r, const NPVariant* args, uint32_t count, NPVariant*) {
  if (count != 2) return false;
  MwHandle channel = IsObject(args[0]) ? ChannelGetHandle(args[0].value.objectValue) : 0;
  uint32_t start = 0;
  if (!channel || (args[1].type != NPVariantType_Null && !NP_UtilsGetU32BIT(&args[1], &start))) return false;
  MwSearchFindProgrammesFromStream(r->handle, channel, start);
  return true;
}

bool Result(ObjectRecord* r, NPVariant* result) {
  SetObjectOrNull(result, CollectionCreate(r->instance, MwSearchGetResult(r->handle), kCollectionSearchResults));
  return true;
}

// Success is true with no value.
bool SetQuery(ObjectRecord* r, const NPVariant* args, uint32_t count, NPVariant*) {
  MwHandle query = count == 1 && IsObject(args[0]) ? QueryGetHandle(args[0].value.objectValue) : 0;
  if (!query) return false;
  MwSearchSetQuery(r->handle, query);
  return true;
}

// Null clears the constraints.
bool AddChannelConstraint(ObjectRecord* r, const NPVariant* args, uint32_t count, NPVariant*) {
  if (count != 1) return false;
  MwHandle channel = 0;
  if (args[0].type != NPVariantType_Null) {
    channel = IsObject(args[0]) ? ChannelGetHandle(args[0].value.objectValue) : 0;
    if (!channel) return false;
  }
  MwSearchAddChannelConstraint(r->handle, channel);
  return true;
}

using Row = Member<ObjectRecord>;
const Row kMembers[] = {
    Row::Get("searchTarget", IntOf<ObjectRecord, MwSearchGetTarget>),
    Row::Get("result", Result),
    Row::Call("setQuery", SetQuery),
    Row::Call("addChannelConstraint", AddChannelConstraint),
    Row::Call("createQuery", CreateQuery),
    Row::Call("findProgrammesFromStream", FindFromStream),
};

struct MetadataSearch : HandedOutKind<MetadataSearch> {
  ORV_KIND(kMembers, g_searches)
  static void ReleaseHandle(MwHandle search) { MetadataSearchLetGo(search); }
  static Gate Check(const ObjectRecord* r, Access) { return NeedHandle(r); }
};

}  // namespace

NPObject* MetadataSearchCreate(NPP instance, MwHandle search) {
  if (!browser_funcs) return nullptr;
  if (NPObject* shared = SharedObject<MetadataSearch>(search)) return shared;
  NPObject* object = NewHandedOut<MetadataSearch>(instance, search, kLeaveOnFailure);
  if (!object && search) MetadataSearchLetGo(search);
  return object;
}

bool MetadataSearchHeld(MwHandle search) { return search && g_searches.FindByHandle(search); }
