#include "parental/parental_control.h"

#include "objects/collection.h"
#include "frame/frame.h"
#include "frame/instance_kind.h"
#include "middleware/parental.h"

namespace {

RecordList g_managers;

bool Schemes(ParentalControlRecord* r, NPVariant* result) {
  NPObject* schemes = CollectionCreate(r->instance, MwParentalGetRatingSchemes(r->handle), kCollectionRatingSchemes);
  SetObjectOrNull(result, schemes);
  return schemes != nullptr;
}

const Member<ParentalControlRecord> kMembers[] = {
    Member<ParentalControlRecord>::Get("parentalRatingSchemes", Schemes),
};

// The middleware's parental control goes with the object.
struct ParentalControl : HandleWithObjectKind<ParentalControl, ParentalControlRecord> {
  static constexpr bool kStubResult = false;
  ORV_KIND(kMembers, g_managers)
  static Gate Check(const ParentalControlRecord* r, Access) { return NeedHandle(r); }
};

}  // namespace

ORV_OPENED_INSTANCE_KIND(kParentalControlKind, ParentalControl, g_managers,
                         "application/oipfparentalcontrolmanager", kKindParentalControlManager,
                         OipfParentalControlManagerCreate, OipfParentalControlManagerDestroy,
                         MwParentalControlOpen)
