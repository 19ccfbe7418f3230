// Parental rating objects: one read-only rating value each, wrapping (and
// owning) one middleware rating handle.
#include "objects/parental_rating.h"

#include <cstring>

#include "objects/collection_item.h"
#include "frame/frame.h"
#include "middleware/collection.h"
#include "middleware/parental.h"
#include "utils/convert.h"
#include "utils/record_alloc.h"

namespace {

SharedList g_ratings;

using R = SharedRecord;
using Row = Member<R>;
const Row kMembers[] = {
    Row::Get("name", TextOf<R, MwRatingGetName>),
    Row::Get("scheme", TextOf<R, MwRatingGetScheme>),
    Row::Get("value", IntOf<R, MwRatingGetValue>),
    Row::Get("labels", IntOf<R, MwRatingGetLabels>),
    Row::Get("region", TextOf<R, MwRatingGetRegion>),
};

struct ParentalRating : HandedOutKind<ParentalRating, SharedRecord> {
  ORV_KIND(kMembers, g_ratings)
};

}  // namespace

NPObject* ParentalRatingCreate(NPP instance, MwHandle rating) {
  if (!browser_funcs) return nullptr;
  return NewHandedOut<ParentalRating>(instance, rating, kLeaveOnFailure);
}

NPObject* ParentalRatingFindNPAPIObj(MwHandle rating) {
  SharedRecord* r = g_ratings.FindByHandle(rating);
  return r ? r->object : nullptr;
}

// ---- rating lists ------------------------------------------------------------------

namespace {

// A plug-in-side copy of a String argument's characters; false when no memory.
bool CopyString(const NPVariant& v, MwString* out, char** buffer) {
  *buffer = ArgTextCopy(v, out);
  return *buffer != nullptr;
}

// addParentalRating(scheme, name, value, labels, region).
bool AddParentalRating(CollectionRecord* r, const NPVariant* args, uint32_t count, NPVariant*) {
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

const CollectionMember kListMembers[] = {CollectionMember::Call("addParentalRating", AddParentalRating)};

}  // namespace

extern const CollectionItemKind kRatingItems = {ParentalRatingCreate, false, ORV_MEMBERS(kListMembers)};
