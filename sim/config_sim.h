// Test controls of the simulated configuration: the receiver's local system
// and the status events of the PVR and the network interfaces.
#ifndef ORVANE_SIM_CONFIG_SIM_H
#define ORVANE_SIM_CONFIG_SIM_H

#include <cstdint>

#include "middleware/types.h"

namespace sim {

// The receiver's local system (no reference is handed out).
MwHandle LocalSystemHandle();
// Sets the PVR status and raises LocalSystem_onPvrStatusChange(local system,
// status), on the calling thread or a moment later on the simulator's thread.
void RaisePvrStatusChange(int32_t status, bool on_sim_thread = false);
// Raises NetworkInterface_onNetworkStatusChange(networkInterface, status);
// status 0 marks the interface disconnected, 1 connected, others change nothing.
void RaiseNetworkStatusChange(MwHandle networkInterface, int32_t status, bool on_sim_thread = false);

}  // namespace sim

#endif
