/* Middleware contract: recording scheduler and scheduled recordings. */
#ifndef ORVANE_MIDDLEWARE_RECORDING_H
#define ORVANE_MIDDLEWARE_RECORDING_H

#include "middleware/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The recording scheduler; owned by the caller, 0 on failure. */
MwHandle MwRecordingSchedulerOpen(void);
/* Recordings made or in progress, as a list; new reference or 0. */
MwHandle MwRecSchedGetRecordings(MwHandle scheduler);
/* Schedules a programme; new reference to the recording or 0. */
MwHandle MwRecSchedRecord(MwHandle scheduler, MwHandle programme);
/* Schedules a time slot on the channel with id `channelId`; new reference or 0. */
MwHandle MwRecSchedRecordAt(MwHandle scheduler, uint32_t startTime, uint32_t duration,
                            uint32_t repeatDays, const MwString* channelId);
/* Scheduled recordings as a list; new reference or 0. */
MwHandle MwRecSchedGetScheduledRecordings(MwHandle scheduler);
/* The channel configuration; new reference or 0. */
MwHandle MwRecSchedGetChannelConfig(MwHandle scheduler);
void MwRecSchedRemove(MwHandle scheduler, MwHandle recording);
/* An empty programme; new reference (lent when the plug-in holds it) or 0. */
MwHandle MwRecSchedCreateProgramme(MwHandle scheduler);

int32_t MwRecGetStartPadding(MwHandle recording);
int32_t MwRecGetEndPadding(MwHandle recording);
int32_t MwRecGetStartTime(MwHandle recording);
int32_t MwRecGetDuration(MwHandle recording);
/* 0 scheduled, 1 started, 2 completed, 3 partially completed, 4 error. */
int32_t MwRecGetState(MwHandle recording);
int32_t MwRecGetRecordingStartTime(MwHandle recording);
int32_t MwRecGetRecordingDuration(MwHandle recording);
/* Middleware strings, 0 when absent. */
MwHandle MwRecGetName(MwHandle recording);
MwHandle MwRecGetDescription(MwHandle recording);
MwHandle MwRecGetId(MwHandle recording);
/* A list of ratings; new reference or 0. */
MwHandle MwRecGetParentalRatings(MwHandle recording);
/* The recorded channel; new reference or 0. */
MwHandle MwRecGetChannel(MwHandle recording);
void MwRecSetStartPadding(MwHandle recording, uint32_t seconds);
void MwRecSetEndPadding(MwHandle recording, uint32_t seconds);
/* Texts are {length, NUL-terminated characters}; `reserved` is 0. */
void MwRecSetName(MwHandle recording, const MwString* name, uint32_t reserved);
void MwRecSetDescription(MwHandle recording, const MwString* description, uint32_t reserved);

#ifdef __cplusplus
}
#endif

#endif
