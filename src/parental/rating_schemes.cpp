// Parental rating scheme objects, and lists of them: adding a scheme and
// finding one by name.
#include "objects/collection_item.h"
#include "frame/frame.h"
#include "middleware/collection.h"
#include "middleware/parental.h"
#include "parental/parental_control.h"
#include "objects/parental_rating.h"
#include "utils/convert.h"

namespace {

RecordList g_schemes;

// The viewer's threshold as a rating object; a scheme without one fails the read.
bool Threshold(ObjectRecord* r, NPVariant* result) {
  MwHandle rating = MwRatingSchemeGetThreshold(r->handle);
  if (!rating) return false;
  NPObject* object = ParentalRatingCreate(r->instance, rating);
  if (!object) {
    MwObjectRelease(rating);
    return false;
  }
  SetObject(result, object);
  return true;
}

// Each method takes exactly one argument; anything else fails.
bool IndexOf(ObjectRecord* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  if (count != 1) return false;
  MwString name = ArgText(args[0]);
  SetInt(result, MwRatingSchemeIndexOf(r->handle, &name));
  return true;
}

template <MwHandle (*Read)(MwHandle, uint32_t)>
bool TextAt(ObjectRecord* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  uint32_t index;
  if (count != 1 || !NP_UtilsGetU32BIT(&args[0], &index)) return false;
  NP_UtilsHbbtvStringToResult(Read(r->handle, index), result);
  return true;
}

using Row = Member<ObjectRecord>;
const Row kMembers[] = {
    Row::Get("name", TextOf<ObjectRecord, MwRatingSchemeGetName>),
    Row::Get("length", IntOf<ObjectRecord, MwRatingSchemeGetLength>),
    Row::Get("threshold", Threshold),
    Row::Call("indexOf", IndexOf),
    Row::Call("item", TextAt<MwRatingSchemeItem>),
    Row::Call("iconUrl", TextAt<MwRatingSchemeIconUrl>),
};

struct RatingScheme : HandedOutKind<RatingScheme> {
  static constexpr bool kStubResult = false;
  ORV_KIND(kMembers, g_schemes)
};

// ---- scheme lists -------------------------------------------------------------------

// A rating scheme object for `scheme` (owned by the caller); Null when none
// can be made, in which case the handle is released.
void SchemeToResult(CollectionRecord* r, MwHandle scheme, NPVariant* result) {
  CollectionElementToResult(r->instance, kCollectionRatingSchemes, scheme, result);
  if (result->type == NPVariantType_Void) SetNull(result);
}

bool AddParentalRatingScheme(CollectionRecord* r, const NPVariant* args, uint32_t count,
                             NPVariant* result) {
  if (count != 2) return false;
  MwString name = ArgText(args[0]);
  MwString values = ArgText(args[1]);
  MwHandle scheme = MwSchemeListAddScheme(r->handle, &name, &values);
  if (!scheme) return false;
  SchemeToResult(r, scheme, result);
  return true;
}

bool GetParentalRatingScheme(CollectionRecord* r, const NPVariant* args, uint32_t count,
                             NPVariant* result) {
  if (count != 1) return false;
  MwString name = ArgText(args[0]);
  MwHandle scheme = MwSchemeListGetScheme(r->handle, &name);
  // No such scheme: undefined, unlike the Null of a failed object.
  if (scheme) SchemeToResult(r, scheme, result);
  return true;
}

const CollectionMember kListMembers[] = {
    CollectionMember::Call("addParentalRatingScheme", AddParentalRatingScheme),
    CollectionMember::Call("getParentalRatingScheme", GetParentalRatingScheme),
};

}  // namespace

NPObject* ParentalRatingSchemeCreate(NPP instance, MwHandle scheme) {
  return NewHandedOut<RatingScheme>(instance, scheme, kLeaveOnFailure);
}

extern const CollectionItemKind kRatingSchemeItems = {ParentalRatingSchemeCreate, false, ORV_MEMBERS(kListMembers)};
