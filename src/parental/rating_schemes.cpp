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

enum Property { kName, kLength, kThreshold };
enum Method { kIndexOf, kItem, kIconUrl };
const char* const kPropertyNames[] = {"name", "length", "threshold"};
const char* const kMethodNames[] = {"indexOf", "item", "iconUrl"};

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

struct RatingScheme : HandedOutKind<RatingScheme> {
  static constexpr bool kStubResult = false;
  ORV_PROPERTY_TABLE(kPropertyNames)
  ORV_METHOD_TABLE(kMethodNames)
  static RecordList& List() { return g_schemes; }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    ObjectRecord* r = Find(object);
    if (!r) return false;
    switch (Properties().Find(id)) {
      case kName: NP_UtilsHbbtvStringToResult(MwRatingSchemeGetName(r->handle), result); return true;
      case kLength: SetInt(result, MwRatingSchemeGetLength(r->handle)); return true;
      case kThreshold: return Threshold(r, result);
      default: return false;
    }
  }

  // Each method takes exactly one argument; anything else fails.
  static bool Invoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                     NPVariant* result) {
    ObjectRecord* r = Find(object);
    int method = Methods().Find(id);
    if (!r || method < 0 || count != 1) return false;
    if (method == kIndexOf) {
      MwString name = IsString(args[0]) ? ArgString(args[0]) : MwString{0, ""};
      SetInt(result, MwRatingSchemeIndexOf(r->handle, &name));
      return true;
    }
    uint32_t index;
    if (!NP_UtilsGetU32BIT(&args[0], &index)) return false;
    MwHandle text = method == kItem ? MwRatingSchemeItem(r->handle, index) : MwRatingSchemeIconUrl(r->handle, index);
    NP_UtilsHbbtvStringToResult(text, result);
    return true;
  }
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

NPObject* ParentalRatingSchemeCreate(NPP instance, MwHandle scheme) {
  return NewHandedOut<RatingScheme>(instance, scheme, kLeaveOnFailure);
}

extern const CollectionItemKind kRatingSchemeItems = {ParentalRatingSchemeCreate, false, ORV_MEMBERS(kListMembers)};
