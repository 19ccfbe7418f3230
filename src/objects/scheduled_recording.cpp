#include "objects/scheduled_recording.h"

#include <cstring>

#include "objects/channel.h"
#include "objects/collection.h"
#include "objects/collection_item.h"
#include "frame/frame.h"
#include "middleware/recording.h"
#include "utils/convert.h"
#include "utils/record_alloc.h"

namespace {

RecordList g_recordings;

// The two recording times are read only for a recording that has an id: a
// recording without one fails these reads (it is not scheduled yet, so its
// times mean nothing; pages test the read).
template <int32_t (*Read)(MwHandle)>
bool TimeOfIdentified(ObjectRecord* r, NPVariant* result) {
  MwHandle id = MwRecGetId(r->handle);
  if (!id) return false;
  SetInt(result, Read(r->handle));
  MwObjectRelease(id);
  return true;
}

// Hands the value's characters to `set` as a NUL-terminated copy; anything
// but a String gives the empty text. False when no copy can be made.
template <void (*Write)(MwHandle, const MwString*, uint32_t)>
bool SetText(ObjectRecord* r, const NPVariant* value) {
  MwString text;
  char* copy = ArgTextCopy(*value, &text);
  if (!copy) return false;
  Write(r->handle, &text, 0);
  RecordFree(copy);
  return true;
}

template <void (*Write)(MwHandle, uint32_t)>
bool SetSeconds(ObjectRecord* r, const NPVariant* value) {
  uint32_t seconds;
  if (!NP_UtilsGetU32BIT(value, &seconds)) return false;
  Write(r->handle, seconds);
  return true;
}

bool ParentalRatings(ObjectRecord* r, NPVariant* result) {
  MwHandle list = MwRecGetParentalRatings(r->handle);
  SetObjectOrNull(result, list ? CollectionCreate(r->instance, list, kCollectionRatings) : nullptr);
  return true;
}

bool Channel(ObjectRecord* r, NPVariant* result) {
  MwHandle channel = MwRecGetChannel(r->handle);
  SetObjectOrNull(result, channel ? ChannelCreate(r->instance, channel) : nullptr);
  return true;
}

// Not scheduled yet: no id, and the read fails.
bool Id(ObjectRecord* r, NPVariant* result) {
  MwHandle text = MwRecGetId(r->handle);
  if (!text) return false;
  NP_UtilsHbbtvStringToResult(text, result);
  return true;
}

using R = ObjectRecord;
using Row = Member<R>;
const Row kMembers[] = {
    // The five state constants, in value order.
    Row::Get("RECORDING_SCHEDULED", Constant<R, 0>),
    Row::Get("RECORDING_STARTED", Constant<R, 1>),
    Row::Get("RECORDING_COMPLETED", Constant<R, 2>),
    Row::Get("RECORDING_PARTIALLY_COMPLETED", Constant<R, 3>),
    Row::Get("RECORDING_ERROR", Constant<R, 4>),
    Row::Get("startPadding", IntOf<R, MwRecGetStartPadding>, SetSeconds<MwRecSetStartPadding>),
    Row::Get("endPadding", IntOf<R, MwRecGetEndPadding>, SetSeconds<MwRecSetEndPadding>),
    Row::Get("name", TextOf<R, MwRecGetName>, SetText<MwRecSetName>),
    Row::Get("description", TextOf<R, MwRecGetDescription>, SetText<MwRecSetDescription>),
    Row::Get("startTime", IntOf<R, MwRecGetStartTime>),
    Row::Get("duration", IntOf<R, MwRecGetDuration>),
    Row::Get("state", IntOf<R, MwRecGetState>),
    Row::Get("parentalRatings", ParentalRatings),
    Row::Get("channel", Channel),
    Row::Get("id", Id),
    Row::Get("recordingStartTime", TimeOfIdentified<MwRecGetRecordingStartTime>),
    Row::Get("recordingDuration", TimeOfIdentified<MwRecGetRecordingDuration>),
};

struct ScheduledRecording : HandedOutKind<ScheduledRecording> {
  ORV_KIND(kMembers, g_recordings)
  // Without a record or a handle every read succeeds with no value, so a
  // page reading a recording that went sees undefined, not an error.
  static Gate Check(const ObjectRecord* r, Access access) {
    if (access == Access::kGet && !(r && r->handle)) return Gate::kSucceed;
    return NeedHandle(r);
  }
};

}  // namespace

NPObject* ScheduledRecordingCreate(NPP instance, MwHandle recording) {
  return NewHandedOut<ScheduledRecording>(instance, recording, kReleaseOnFailure);
}

MwHandle ScheduledRecordingGetHandle(NPObject* object) {
  return HandleOf<ScheduledRecording>(object);
}

extern const CollectionItemKind kRecordingItems = {ScheduledRecordingCreate, true, nullptr, 0};
