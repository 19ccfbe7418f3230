// The local system object: the receiver's identity, its PVR and its network
// interfaces, with PVR status events; and the network interface objects.
#ifndef ORVANE_CONFIG_LOCAL_SYSTEM_H
#define ORVANE_CONFIG_LOCAL_SYSTEM_H

#include "middleware/types.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

// The object of `localSystem` (taken over): the one already made for that
// handle, retained once more (the handle is then released), or a new one;
// null when none can be made.
ORV_EXPORT NPObject* LocalSystemCreate(NPP instance, MwHandle localSystem);
// The handle of a local system object; 0 for anything else.
ORV_EXPORT MwHandle LocalSystemGetHandle(NPObject* object);
// Middleware event, from any thread.
ORV_EXPORT void LocalSystem_onPvrStatusChange(MwHandle localSystem, int32_t status);

// A new object for `networkInterface` on every call (the record takes the
// handle over); null when none can be made, the handle then staying the
// caller's.
ORV_EXPORT NPObject* NetworkInterfaceCreate(NPP instance, MwHandle networkInterface);
ORV_EXPORT MwHandle NetworkInterfaceGetHandle(NPObject* object);
// Middleware event, from any thread.
ORV_EXPORT void NetworkInterface_onNetworkStatusChange(MwHandle networkInterface, int32_t status);

#endif
