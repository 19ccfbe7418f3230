// The local system object.
#include "config/local_system.h"

#include "objects/collection.h"
#include "config/status_object.h"
#include "middleware/config.h"
#include "utils/convert.h"

namespace {

RecordList g_local_systems;

constexpr uint32_t kPvrStatusChange = 10;

enum Property {
  kDeviceId,
  kVendorName,
  kFamilyName,
  kModelName,
  kSoftwareVersion,
  kHardwareVersion,
  kPvrEnabled,
  kNetworkInterfaces,
  kOipfProfile,
  kPvrStatus,
  kOnPvrStatusChange,
};
const char* const kPropertyNames[] = {
    "deviceID", "vendorName", "familyName", "modelName", "softwareVersion", "hardwareVersion",
    "pvrEnabled", "networkInterfaces", "oipfProfile", "pvrStatus", "onPvrStatusChange",
};
const EventProperty kEvents[] = {{"onPvrStatusChange", kPvrStatusChange}};
const EventTable kEventTable = ORV_EVENT_TABLE(kEvents, TypeRule::kFail, EmptyRead::kNull);

bool Text(MwHandle text, NPVariant* result) {
  NP_UtilsHbbtvStringToResult(text, result);
  return true;
}

bool Interfaces(ObjectRecord* r, NPVariant* result) {
  MwHandle list = MwLocalSystemGetNetworkInterfaces(r->handle);
  if (!list) {
    SetNull(result);
    return true;
  }
  NPObject* collection = CollectionCreate(r->instance, list, kCollectionNetworkInterfaces);
  SetObjectOrNull(result, collection);
  return collection != nullptr;
}

struct LocalSystem : StatusKind<LocalSystem> {
  ORV_PROPERTY_TABLE(kPropertyNames)
  static constexpr int kListenerProperty = kOnPvrStatusChange;
  static const EventTable& Events() { return kEventTable; }
  static RecordList& List() { return g_local_systems; }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    ObjectRecord* r = Find(object);
    if (!r) return true;  // no record: an empty read that succeeds
    MwHandle h = r->handle;
    switch (Properties().Find(id)) {
      case kDeviceId: return Text(MwLocalSystemGetDeviceId(h), result);
      case kVendorName: return Text(MwLocalSystemGetVendorName(h), result);
      case kFamilyName: return Text(MwLocalSystemGetFamilyName(h), result);
      case kModelName: return Text(MwLocalSystemGetModelName(h), result);
      case kSoftwareVersion: return Text(MwLocalSystemGetSoftwareVersion(h), result);
      case kHardwareVersion: return Text(MwLocalSystemGetHardwareVersion(h), result);
      case kPvrEnabled: SetBool(result, MwLocalSystemGetPvrEnabled(h) != 0); return true;
      case kNetworkInterfaces: return Interfaces(r, result);
      case kOipfProfile: return Text(MwLocalSystemGetOipfProfile(h), result);
      case kPvrStatus:
        // Without a PVR there is no status: the read fails.
        if (!MwLocalSystemGetPvrEnabled(h)) return false;
        SetBool(result, MwLocalSystemGetPvrStatus(h) != 0);
        return true;
      case kOnPvrStatusChange: return ReadListenerProperty(r, kEventTable, 0, result);
      default: return false;
    }
  }
};

}  // namespace

NPObject* LocalSystemCreate(NPP instance, MwHandle localSystem) {
  if (!browser_funcs) return nullptr;
  EventsWatchHandedOutList(&g_local_systems);
  // One object per local system handle.
  if (NPObject* shared = SharedObject<LocalSystem>(localSystem)) {
    MwObjectRelease(localSystem);
    return shared;
  }
  return NewHandedOut<LocalSystem>(instance, localSystem, kReleaseOnFailure);
}

MwHandle LocalSystemGetHandle(NPObject* object) { return HandleOf<LocalSystem>(object); }

void LocalSystem_onPvrStatusChange(MwHandle localSystem, int32_t status) {
  PostOneInt(g_local_systems, localSystem, kPvrStatusChange, status);
}
