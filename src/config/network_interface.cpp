// Network interface objects, the items of the local system's
// networkInterfaces collection.
#include "objects/collection_item.h"
#include "config/local_system.h"
#include "config/status_object.h"
#include "middleware/config.h"
#include "utils/convert.h"

namespace {

RecordList g_interfaces;

constexpr uint32_t kNetworkStatusChange = 4;

enum Property { kIpAddress, kMacAddress, kConnected, kEnabled, kOnNetworkStatusChange };
const char* const kPropertyNames[] = {"ipAddress", "macAddress", "connected", "enabled",
                                      "onNetworkStatusChange"};
const EventProperty kEvents[] = {{"onNetworkStatusChange", kNetworkStatusChange}};
const EventTable kEventTable = ORV_EVENT_TABLE(kEvents, TypeRule::kFail, EmptyRead::kNull);

// Only the listener property can be written; the interface's state is the receiver's.
struct NetworkInterface : StatusKind<NetworkInterface> {
  ORV_PROPERTY_TABLE(kPropertyNames)
  static constexpr int kListenerProperty = kOnNetworkStatusChange;
  static const EventTable& Events() { return kEventTable; }
  static RecordList& List() { return g_interfaces; }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    ObjectRecord* r = Find(object);
    if (!r) return true;  // no record: an empty read that succeeds
    MwHandle h = r->handle;
    switch (Properties().Find(id)) {
      case kIpAddress: NP_UtilsHbbtvStringToResult(MwNetworkInterfaceGetIpAddress(h), result); return true;
      case kMacAddress: NP_UtilsHbbtvStringToResult(MwNetworkInterfaceGetMacAddress(h), result); return true;
      case kConnected: SetBool(result, MwNetworkInterfaceIsConnected(h) != 0); return true;
      case kEnabled: SetBool(result, MwNetworkInterfaceIsEnabled(h) != 0); return true;
      case kOnNetworkStatusChange: return ReadListenerProperty(r, kEventTable, 0, result);
      default: return false;
    }
  }
};

}  // namespace

NPObject* NetworkInterfaceCreate(NPP instance, MwHandle networkInterface) {
  if (!browser_funcs) return nullptr;
  EventsWatchHandedOutList(&g_interfaces);
  return NewHandedOut<NetworkInterface>(instance, networkInterface, kLeaveOnFailure);
}

MwHandle NetworkInterfaceGetHandle(NPObject* object) { return HandleOf<NetworkInterface>(object); }

void NetworkInterface_onNetworkStatusChange(MwHandle networkInterface, int32_t status) {
  PostOneInt(g_interfaces, networkInterface, kNetworkStatusChange, status);
}

extern const CollectionItemKind kNetworkInterfaceItems = {NetworkInterfaceCreate, false, nullptr, 0};
