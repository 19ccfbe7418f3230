// The recording scheduler ("application/oipfRecordingScheduler"): schedules
// recordings of programmes and of time slots, lists and removes them.
#ifndef ORVANE_RECORDING_RECORDING_SCHEDULER_H
#define ORVANE_RECORDING_RECORDING_SCHEDULER_H

#include "frame/record.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

// `handle` is the middleware scheduler (0 once the script object went).
struct RecordingSchedulerRecord : ObjectRecord {};

ORV_EXPORT RecordingSchedulerRecord* OipfRecordingSchedulerCreate(NPP instance);
ORV_EXPORT void OipfRecordingSchedulerDestroy(RecordingSchedulerRecord* record);

#endif
