// Parental rating objects: one read-only rating value each, wrapping (and
// owning) one middleware rating handle.
#include "parental/parental_rating.h"

#include "middleware/parental.h"
#include "plugin/frame.h"
#include "plugin/record.h"
#include "utils/convert.h"
#include "utils/record_alloc.h"

namespace {

struct RatingRecord {
  NPObject* object;
  MwHandle handle;  // owned
  RatingRecord* next;
};

RatingRecord* g_ratings = nullptr;

enum Property { kName, kScheme, kValue, kLabels, kRegion };
const char* const kPropertyNames[] = {"name", "scheme", "value", "labels", "region"};

struct ParentalRating : KindDefaults<ParentalRating> {
  ORV_PROPERTY_TABLE(kPropertyNames)

  static void Deallocate(NPObject* object) {
    RatingRecord* r = FindByObject(g_ratings, object);
    if (!r) return;
    if (r->handle) MwObjectRelease(r->handle);
    Unlink(&g_ratings, r);
    RecordFree(r);
  }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    RatingRecord* r = FindByObject(g_ratings, object);
    if (!r) return false;
    switch (Properties().Find(id)) {
      case kName: NP_UtilsHbbtvStringToResult(MwRatingGetName(r->handle), result); return true;
      case kScheme: NP_UtilsHbbtvStringToResult(MwRatingGetScheme(r->handle), result); return true;
      case kValue: SetInt(result, MwRatingGetValue(r->handle)); return true;
      case kLabels: SetInt(result, MwRatingGetLabels(r->handle)); return true;
      case kRegion: NP_UtilsHbbtvStringToResult(MwRatingGetRegion(r->handle), result); return true;
      default: return false;
    }
  }
};

}  // namespace

NPObject* ParentalRatingCreate(NPP instance, MwHandle rating) {
  // The identifiers are fetched on every creation; the browser gives the same ones back.
  if (browser_funcs) ParentalRating::Properties().Intern(true);
  RatingRecord* r = NewScriptRecord<RatingRecord>(instance, ScriptClass<ParentalRating>::Class());
  if (!r) return nullptr;
  r->handle = rating;
  PushFront(&g_ratings, r);
  return r->object;
}

NPObject* ParentalRatingFindNPAPIObj(MwHandle rating) {
  RatingRecord* r = FindByHandle(g_ratings, rating);
  return r ? r->object : nullptr;
}
