// Test controls of the simulated recording scheduler.
//
// The receiver keeps one set of recordings for every scheduler. A new
// recording's state follows the receiver's clock (Rx().now): 0 scheduled
// when it starts later, 1 started when it runs now, 2 completed when it
// ended. MwRecSchedGetRecordings lists the started and finished ones (states
// 1 to 4), MwRecSchedGetScheduledRecordings the scheduled ones. Every
// recording has an id "rec-N".
#ifndef ORVANE_SIM_RECORDING_SIM_H
#define ORVANE_SIM_RECORDING_SIM_H

#include <cstdint>
#include <vector>

#include "middleware/types.h"

namespace sim {

// The receiver's recordings, oldest first (no references handed out).
std::vector<MwHandle> Recordings();
// Moves a recording to `state` (0 to 4).
void SetRecordingState(MwHandle recording, int32_t state);
// Makes MwRecGetId answer 0 for the recording from now on.
void ClearRecordingId(MwHandle recording);

}  // namespace sim

#endif
