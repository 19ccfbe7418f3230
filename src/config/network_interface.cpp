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

const EventProperty kEvents[] = {{"onNetworkStatusChange", kNetworkStatusChange}};
const EventTable kEventTable = ORV_EVENT_TABLE(kEvents, TypeRule::kFail, EmptyRead::kNull);

// Only the listener property can be written; the interface's state is the receiver's.
using Row = StatusRow;
const Row kMembers[] = {
    Row::Get("ipAddress", TextOf<ObjectRecord, MwNetworkInterfaceGetIpAddress>),
    Row::Get("macAddress", TextOf<ObjectRecord, MwNetworkInterfaceGetMacAddress>),
    Row::Get("connected", BoolOf<ObjectRecord, MwNetworkInterfaceIsConnected>),
    Row::Get("enabled", BoolOf<ObjectRecord, MwNetworkInterfaceIsEnabled>),
    Row::EventSlots(),  // onNetworkStatusChange
    Row::ListenerMethods(),
};

struct NetworkInterface : StatusKind<NetworkInterface> {
  ORV_KIND_WITH_EVENTS(kMembers, kEventTable, g_interfaces)
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
