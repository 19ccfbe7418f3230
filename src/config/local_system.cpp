// The local system object.
#include "config/local_system.h"

#include "objects/collection.h"
#include "config/status_object.h"
#include "middleware/config.h"
#include "utils/convert.h"

namespace {

RecordList g_local_systems;

constexpr uint32_t kPvrStatusChange = 10;

const EventProperty kEvents[] = {{"onPvrStatusChange", kPvrStatusChange}};
const EventTable kEventTable = ORV_EVENT_TABLE(kEvents, TypeRule::kFail, EmptyRead::kNull);

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

// Without a PVR there is no status: the read fails.
bool PvrStatus(ObjectRecord* r, NPVariant* result) {
  if (!MwLocalSystemGetPvrEnabled(r->handle)) return false;
  SetBool(result, MwLocalSystemGetPvrStatus(r->handle) != 0);
  return true;
}

using Row = StatusRow;
const Row kMembers[] = {
    Row::Get("deviceID", TextOf<ObjectRecord, MwLocalSystemGetDeviceId>),
    Row::Get("vendorName", TextOf<ObjectRecord, MwLocalSystemGetVendorName>),
    Row::Get("familyName", TextOf<ObjectRecord, MwLocalSystemGetFamilyName>),
    Row::Get("modelName", TextOf<ObjectRecord, MwLocalSystemGetModelName>),
    Row::Get("softwareVersion", TextOf<ObjectRecord, MwLocalSystemGetSoftwareVersion>),
    Row::Get("hardwareVersion", TextOf<ObjectRecord, MwLocalSystemGetHardwareVersion>),
    Row::Get("pvrEnabled", BoolOf<ObjectRecord, MwLocalSystemGetPvrEnabled>),
    Row::Get("networkInterfaces", Interfaces),
    Row::Get("oipfProfile", TextOf<ObjectRecord, MwLocalSystemGetOipfProfile>),
    Row::Get("pvrStatus", PvrStatus),
    Row::EventSlots(),  // onPvrStatusChange
    Row::ListenerMethods(),
};

struct LocalSystem : StatusKind<LocalSystem> {
  ORV_KIND_WITH_EVENTS(kMembers, kEventTable, g_local_systems)
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
