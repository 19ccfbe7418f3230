// Lists of parental rating schemes: adding a scheme and finding one by name.
// The scheme objects themselves are made by the rating-scheme collection
// kind's creator, when there is one.
#include "collection/collection_item.h"
#include "middleware/collection.h"
#include "npapi/browser.h"

namespace {

// A rating scheme object for `scheme` (owned by the caller); Null when none
// can be made, in which case the handle is released.
void SchemeToResult(CollectionRecord* r, MwHandle scheme, NPVariant* result) {
  CollectionElementToResult(r->instance, kCollectionRatingSchemes, scheme, result);
  if (result->type == NPVariantType_Void) SetNull(result);
}

bool AddParentalRatingScheme(CollectionRecord* r, const NPVariant* args, uint32_t count,
                             NPVariant* result) {
  if (count != 2) return false;
  MwString name = CollectionStringArg(args[0]);
  MwString values = CollectionStringArg(args[1]);
  MwHandle scheme = MwSchemeListAddScheme(r->handle, &name, &values);
  if (!scheme) return false;
  SchemeToResult(r, scheme, result);
  return true;
}

bool GetParentalRatingScheme(CollectionRecord* r, const NPVariant* args, uint32_t count,
                             NPVariant* result) {
  if (count != 1) return false;
  MwString name = CollectionStringArg(args[0]);
  MwHandle scheme = MwSchemeListGetScheme(r->handle, &name);
  // No such scheme: undefined, unlike the Null of a failed object.
  if (scheme) SchemeToResult(r, scheme, result);
  return true;
}

const CollectionMember kListMembers[] = {
    {"addParentalRatingScheme", nullptr, AddParentalRatingScheme},
    {"getParentalRatingScheme", nullptr, GetParentalRatingScheme},
};

}  // namespace

extern const CollectionItemKind kRatingSchemeItems = {nullptr, false, ORV_MEMBERS(kListMembers)};
