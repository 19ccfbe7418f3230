#include "recording/recording_scheduler.h"

#include "objects/channel_config.h"
#include "objects/programme.h"
#include "objects/collection.h"
#include "frame/frame.h"
#include "frame/instance_kind.h"
#include "middleware/recording.h"
#include "objects/scheduled_recording.h"
#include "utils/convert.h"

namespace {

RecordList g_schedulers;

// A recording handle as its scheduled recording object; Null for none.
void RecordingResult(NPP instance, MwHandle recording, NPVariant* result) {
  SetObjectOrNull(result, recording ? ScheduledRecordingCreate(instance, recording) : nullptr);
}

void ListResult(NPP instance, MwHandle list, NPVariant* result) {
  SetObjectOrNull(result, list ? CollectionCreate(instance, list, kCollectionRecordings) : nullptr);
}

// recordAt(startTime, duration, repeatDays, channelID): exactly four
// arguments, or a failed call with Null; with bad values Null and success.
bool RecordAt(RecordingSchedulerRecord* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  SetNull(result);
  if (count != 4) return false;
  uint32_t start, duration, repeat;
  if (!NP_UtilsGetU32BIT(&args[0], &start) || !NP_UtilsGetU32BIT(&args[1], &duration) ||
      !NP_UtilsGetU32BIT(&args[2], &repeat) || !IsString(args[3]))
    return true;
  MwString channel = ArgString(args[3]);
  RecordingResult(r->instance, MwRecSchedRecordAt(r->handle, start, duration, repeat, &channel), result);
  return true;
}

using R = RecordingSchedulerRecord;

bool Recordings(R* r, NPVariant* result) {
  ListResult(r->instance, MwRecSchedGetRecordings(r->handle), result);
  return true;
}

bool Record(R* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  if (count < 1) return false;
  MwHandle programme = IsObject(args[0]) ? ProgrammeGetHandle(args[0].value.objectValue) : 0;
  RecordingResult(r->instance, programme ? MwRecSchedRecord(r->handle, programme) : 0, result);
  return true;
}

bool GetScheduledRecordings(R* r, const NPVariant*, uint32_t, NPVariant* result) {
  ListResult(r->instance, MwRecSchedGetScheduledRecordings(r->handle), result);
  return true;
}

bool GetChannelConfig(R* r, const NPVariant*, uint32_t, NPVariant* result) {
  MwHandle config = MwRecSchedGetChannelConfig(r->handle);
  SetObjectOrNull(result, config ? ChannelConfigCreate(r->instance, config) : nullptr);
  return true;
}

// Anything but a scheduled recording is ignored.
bool Remove(R* r, const NPVariant* args, uint32_t count, NPVariant*) {
  MwHandle recording = count >= 1 && IsObject(args[0]) ? ScheduledRecordingGetHandle(args[0].value.objectValue) : 0;
  if (recording) MwRecSchedRemove(r->handle, recording);
  return true;
}

bool CreateProgrammeObject(R* r, const NPVariant*, uint32_t, NPVariant* result) {
  MwHandle programme = MwRecSchedCreateProgramme(r->handle);
  SetObjectOrNull(result, programme ? ProgrammeCreate(r->instance, programme) : nullptr);
  return true;
}

using Row = Member<R>;
const Row kMembers[] = {
    Row::Get("recordings", Recordings),
    Row::Call("record", Record),
    Row::Call("recordAt", RecordAt),
    Row::Call("getScheduledRecordings", GetScheduledRecordings),
    Row::Call("getChannelConfig", GetChannelConfig),
    Row::Call("remove", Remove),
    Row::Call("createProgrammeObject", CreateProgrammeObject),
};

// The middleware's scheduler goes with the object; reads and calls need it.
struct RecordingScheduler : HandleWithObjectKind<RecordingScheduler, RecordingSchedulerRecord> {
  ORV_KIND(kMembers, g_schedulers)
  static Gate Check(const R* r, Access access) {
    return access == Access::kSet ? r ? Gate::kGo : Gate::kFail : NeedHandle(r);
  }
};

}  // namespace

ORV_OPENED_INSTANCE_KIND(kRecordingSchedulerKind, RecordingScheduler, g_schedulers,
                         "application/oipfrecordingscheduler", kKindRecordingScheduler,
                         OipfRecordingSchedulerCreate, OipfRecordingSchedulerDestroy, MwRecordingSchedulerOpen)
