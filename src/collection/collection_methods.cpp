// The extra methods and properties of the channel, rating, rating-scheme and
// search-result collections.
#include <cstring>

#include "broadcast/channel.h"
#include "collection/collection_kinds.h"
#include "middleware/collection.h"
#include "utils/convert.h"
#include "utils/record_alloc.h"

namespace {

// A String argument's characters (borrowed); empty for any other type.
MwString StringArg(const NPVariant& v) { return IsString(v) ? ArgString(v) : MwString{0, ""}; }

// A plug-in-side copy of a String argument's characters (exact length, not
// terminated); false when no memory.
bool CopyString(const NPVariant& v, MwString* out, char** buffer) {
  MwString s = StringArg(v);
  *buffer = static_cast<char*>(RecordAlloc(s.length ? s.length : 1));
  if (!*buffer) return false;
  if (s.length) memcpy(*buffer, s.data, s.length);
  *out = MwString{s.length, *buffer};
  return true;
}

void ChannelToResult(CollectionRecord* r, MwHandle channel, NPVariant* result) {
  if (!channel) {
    SetNull(result);
    return;
  }
  SetObjectOrNull(result, ChannelCreate(r->instance, channel));
}

// A rating scheme object for `scheme` (owned by the caller); Null when none
// can be made, in which case the handle is released.
void SchemeToResult(CollectionRecord* r, MwHandle scheme, NPVariant* result) {
  CollectionElementToResult(r->instance, kCollectionRatingSchemes, scheme, result);
  if (result->type == NPVariantType_Void) SetNull(result);
}

}  // namespace

bool CollectionGetChannel(CollectionRecord* r, const NPVariant* args, uint32_t count,
                          NPVariant* result) {
  if (count != 1) return false;
  MwString ccid = StringArg(args[0]);
  ChannelToResult(r, MwChannelListGetChannel(r->handle, &ccid), result);
  return true;
}

bool CollectionGetChannelByTriplet(CollectionRecord* r, const NPVariant* args, uint32_t count,
                                   NPVariant* result) {
  if (count != 3) return false;
  uint32_t onid, tsid = 0, sid;
  if (!NP_UtilsGetU32BIT(&args[0], &onid) || !NP_UtilsGetU32BIT(&args[2], &sid)) return false;
  // A null tsid stands for "any transport stream" and is passed as 0.
  if (args[1].type != NPVariantType_Null && !NP_UtilsGetU32BIT(&args[1], &tsid)) return false;
  ChannelToResult(r, MwChannelListGetChannelByTriplet(r->handle, onid, tsid, sid), result);
  return true;
}

bool CollectionAddParentalRating(CollectionRecord* r, const NPVariant* args, uint32_t count,
                                 NPVariant*) {
  if (count != 5) return false;
  MwString scheme{}, name{}, region{};
  char* buffers[3] = {nullptr, nullptr, nullptr};
  uint32_t value = 0, labels = 0;
  bool ok = CopyString(args[0], &scheme, &buffers[0]) && CopyString(args[1], &name, &buffers[1]) &&
            CopyString(args[4], &region, &buffers[2]) && NP_UtilsGetU32BIT(&args[2], &value) &&
            NP_UtilsGetU32BIT(&args[3], &labels);
  if (ok) MwRatingListAddRating(r->handle, &scheme, &name, value, labels, &region);
  for (char* b : buffers) RecordFree(b);
  return ok;
}

bool CollectionAddParentalRatingScheme(CollectionRecord* r, const NPVariant* args, uint32_t count,
                                       NPVariant* result) {
  if (count != 2) {
    SetVoid(result);
    return false;
  }
  MwString name = StringArg(args[0]);
  MwString values = StringArg(args[1]);
  MwHandle scheme = MwSchemeListAddScheme(r->handle, &name, &values);
  if (!scheme) {
    SetNull(result);
    return false;
  }
  SchemeToResult(r, scheme, result);
  return true;
}

bool CollectionGetParentalRatingScheme(CollectionRecord* r, const NPVariant* args, uint32_t count,
                                       NPVariant* result) {
  if (count != 1) {
    SetVoid(result);
    return false;
  }
  MwString name = StringArg(args[0]);
  MwHandle scheme = MwSchemeListGetScheme(r->handle, &name);
  if (scheme) SchemeToResult(r, scheme, result);
  else SetVoid(result);  // no such scheme: undefined, unlike the Null of a failed object
  return true;
}

bool CollectionGetResults(CollectionRecord* r, const NPVariant* args, uint32_t count,
                          NPVariant* result) {
  uint32_t offset, length;
  if (count != 2 || !NP_UtilsGetU32BIT(&args[0], &offset) || !NP_UtilsGetU32BIT(&args[1], &length))
    return false;
  SetBool(result, MwSearchResultsGetResults(r->handle, offset, length) != 0);
  return true;
}

bool CollectionAbort(CollectionRecord* r, const NPVariant*, uint32_t, NPVariant* result) {
  MwSearchResultsAbort(r->handle);
  SetVoid(result);
  return true;
}

bool CollectionOffset(CollectionRecord* r, NPVariant* result) {
  SetInt(result, MwSearchResultsGetOffset(r->handle));
  return true;
}

bool CollectionTotalSize(CollectionRecord* r, NPVariant* result) {
  SetInt(result, MwSearchResultsGetTotalSize(r->handle));
  return true;
}
