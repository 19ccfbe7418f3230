#include "parental/parental_control.h"

#include "objects/collection.h"
#include "frame/frame.h"
#include "frame/instance_kind.h"
#include "middleware/parental.h"

namespace {

RecordList g_managers;

const char* const kPropertyNames[] = {"parentalRatingSchemes"};

// The middleware's parental control goes with the object.
struct ParentalControl : HandleWithObjectKind<ParentalControl, ParentalControlRecord> {
  static constexpr bool kStubResult = false;
  ORV_PROPERTY_TABLE(kPropertyNames)
  static RecordList& List() { return g_managers; }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    ParentalControlRecord* r = Find(object);
    if (!r || !r->handle || Properties().Find(id) != 0) return false;
    NPObject* schemes = CollectionCreate(r->instance, MwParentalGetRatingSchemes(r->handle),
                                         kCollectionRatingSchemes);
    SetObjectOrNull(result, schemes);
    return schemes != nullptr;
  }
};

}  // namespace

ORV_OPENED_INSTANCE_KIND(kParentalControlKind, ParentalControl, g_managers,
                         "application/oipfparentalcontrolmanager", kKindParentalControlManager,
                         OipfParentalControlManagerCreate, OipfParentalControlManagerDestroy,
                         MwParentalControlOpen)
