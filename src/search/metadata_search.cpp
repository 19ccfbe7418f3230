// Metadata search objects: one live script object per search handle.
#include "objects/channel.h"
#include "objects/collection.h"
#include "frame/frame.h"
#include "middleware/search.h"
#include "search/search.h"
#include "utils/convert.h"

namespace {

RecordList g_searches;

enum Property { kSearchTarget, kResult };
enum Method { kSetQuery, kAddChannelConstraint, kCreateQuery, kFindProgrammesFromStream };
const char* const kPropertyNames[] = {"searchTarget", "result"};
const char* const kMethodNames[] = {"setQuery", "addChannelConstraint", "createQuery",
                                    "findProgrammesFromStream"};

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

bool FindFromStream(ObjectRecord* r, const NPVariant* args, uint32_t count) {
  if (count != 2) return false;
  MwHandle channel = IsObject(args[0]) ? ChannelGetHandle(args[0].value.objectValue) : 0;
  uint32_t start = 0;
  if (!channel || (args[1].type != NPVariantType_Null && !NP_UtilsGetU32BIT(&args[1], &start))) return false;
  MwSearchFindProgrammesFromStream(r->handle, channel, start);
  return true;
}

struct MetadataSearch : HandedOutKind<MetadataSearch> {
  ORV_PROPERTY_TABLE(kPropertyNames)
  ORV_METHOD_TABLE(kMethodNames)
  static RecordList& List() { return g_searches; }
  static void ReleaseHandle(MwHandle search) { MetadataSearchLetGo(search); }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    ObjectRecord* r = Find(object);
    if (!r || !r->handle) return false;
    switch (Properties().Find(id)) {
      case kSearchTarget: SetInt(result, MwSearchGetTarget(r->handle)); return true;
      case kResult:
        SetObjectOrNull(result, CollectionCreate(r->instance, MwSearchGetResult(r->handle),
                                                 kCollectionSearchResults));
        return true;
      default: return false;
    }
  }

  // Success is true with no value.
  static bool Invoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                     NPVariant* result) {
    ObjectRecord* r = Find(object);
    if (!r || !r->handle) return false;
    switch (Methods().Find(id)) {
      case kSetQuery: {
        MwHandle query = count == 1 && IsObject(args[0]) ? QueryGetHandle(args[0].value.objectValue) : 0;
        if (!query) return false;
        MwSearchSetQuery(r->handle, query);
        return true;
      }
      case kAddChannelConstraint: {
        if (count != 1) return false;
        if (args[0].type == NPVariantType_Null) {  // clears the constraints
          MwSearchAddChannelConstraint(r->handle, 0);
          return true;
        }
        MwHandle channel = IsObject(args[0]) ? ChannelGetHandle(args[0].value.objectValue) : 0;
        if (!channel) return false;
        MwSearchAddChannelConstraint(r->handle, channel);
        return true;
      }
      case kCreateQuery: return CreateQuery(r, args, count, result);
      case kFindProgrammesFromStream: return FindFromStream(r, args, count);
      default: return false;
    }
  }
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
