// Test controls of the simulated channels and channel configuration.
#ifndef ORVANE_SIM_CHANNEL_SIM_H
#define ORVANE_SIM_CHANNEL_SIM_H

#include "middleware/types.h"

namespace sim {

// A new channel configuration over the receiver's channels and genres, with
// one reference for the caller (as MwBroadcastGetChannelConfig hands out).
MwHandle NewChannelConfig();

}  // namespace sim

#endif
