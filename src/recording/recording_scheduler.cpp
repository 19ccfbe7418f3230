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

enum Method { kRecord, kRecordAt, kGetScheduledRecordings, kGetChannelConfig, kRemove, kCreateProgrammeObject };
const char* const kPropertyNames[] = {"recordings"};
const char* const kMethodNames[] = {"record", "recordAt", "getScheduledRecordings", "getChannelConfig",
                                    "remove", "createProgrammeObject"};

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

// The middleware's scheduler goes with the object.
struct RecordingScheduler : HandleWithObjectKind<RecordingScheduler, RecordingSchedulerRecord> {
  ORV_PROPERTY_TABLE(kPropertyNames)
  ORV_METHOD_TABLE(kMethodNames)
  static RecordList& List() { return g_schedulers; }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    RecordingSchedulerRecord* r = Find(object);
    if (!r || !r->handle || Properties().Find(id) != 0) return false;
    ListResult(r->instance, MwRecSchedGetRecordings(r->handle), result);
    return true;
  }

  static bool Invoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                     NPVariant* result) {
    RecordingSchedulerRecord* r = Find(object);
    if (!r || !r->handle) return false;
    MwHandle h = r->handle;
    switch (Methods().Find(id)) {
      case kRecord: {
        if (count < 1) return false;
        MwHandle programme = IsObject(args[0]) ? ProgrammeGetHandle(args[0].value.objectValue) : 0;
        RecordingResult(r->instance, programme ? MwRecSchedRecord(h, programme) : 0, result);
        return true;
      }
      case kRecordAt: return RecordAt(r, args, count, result);
      case kGetScheduledRecordings: ListResult(r->instance, MwRecSchedGetScheduledRecordings(h), result); return true;
      case kGetChannelConfig: {
        MwHandle config = MwRecSchedGetChannelConfig(h);
        SetObjectOrNull(result, config ? ChannelConfigCreate(r->instance, config) : nullptr);
        return true;
      }
      case kRemove: {
        // Anything but a scheduled recording is ignored.
        MwHandle recording = count >= 1 && IsObject(args[0]) ? ScheduledRecordingGetHandle(args[0].value.objectValue) : 0;
        if (recording) MwRecSchedRemove(h, recording);
        return true;
      }
      case kCreateProgrammeObject: {
        MwHandle programme = MwRecSchedCreateProgramme(h);
        SetObjectOrNull(result, programme ? ProgrammeCreate(r->instance, programme) : nullptr);
        return true;
      }
      default:
        return false;
    }
  }
};

}  // namespace

ORV_OPENED_INSTANCE_KIND(kRecordingSchedulerKind, RecordingScheduler, g_schedulers,
                         "application/oipfrecordingscheduler", kKindRecordingScheduler,
                         OipfRecordingSchedulerCreate, OipfRecordingSchedulerDestroy, MwRecordingSchedulerOpen)
