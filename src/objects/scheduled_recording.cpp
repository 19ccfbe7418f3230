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

// The five state constants come first, in value order.
constexpr int kStateCount = 5;
enum Property {
  kStartPadding = kStateCount,
  kEndPadding,
  kName,
  kDescription,
  kStartTime,
  kDuration,
  kState,
  kParentalRatings,
  kChannel,
  kId,
  kRecordingStartTime,
  kRecordingDuration,
};

const char* const kPropertyNames[] = {
    "RECORDING_SCHEDULED", "RECORDING_STARTED", "RECORDING_COMPLETED",
    "RECORDING_PARTIALLY_COMPLETED", "RECORDING_ERROR",
    "startPadding", "endPadding", "name", "description", "startTime", "duration", "state",
    "parentalRatings", "channel", "id", "recordingStartTime", "recordingDuration",
};

// The two recording times are read only for a recording that has an id: a
// recording without one fails these reads (it is not scheduled yet, so its
// times mean nothing; pages test the read).
bool TimeOfIdentified(MwHandle h, int32_t (*get)(MwHandle), NPVariant* result) {
  MwHandle id = MwRecGetId(h);
  if (!id) return false;
  SetInt(result, get(h));
  MwObjectRelease(id);
  return true;
}

// Hands the value's characters to `set` as a NUL-terminated copy; anything
// but a String gives the empty text. False when no copy can be made.
bool SetText(MwHandle h, void (*set)(MwHandle, const MwString*, uint32_t), const NPVariant* value) {
  uint32_t length = IsString(*value) ? value->value.stringValue.UTF8Length : 0;
  char* copy = static_cast<char*>(RecordAlloc(length + 1));
  if (!copy) return false;
  if (length) memcpy(copy, value->value.stringValue.UTF8Characters, length);
  copy[length] = '\0';
  MwString text = {length, copy};
  set(h, &text, 0);
  RecordFree(copy);
  return true;
}

struct ScheduledRecording : HandedOutKind<ScheduledRecording> {
  ORV_PROPERTY_TABLE(kPropertyNames)
  static RecordList& List() { return g_recordings; }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    ObjectRecord* r = Find(object);
    // Without a record or a handle every read succeeds with no value, so a
    // page reading a recording that went sees undefined, not an error.
    if (!r || !r->handle) {
      SetVoid(result);
      return true;
    }
    int index = Properties().Find(id);
    if (index < 0) return false;
    MwHandle h = r->handle;
    if (index < kStateCount) {
      SetInt(result, index);
      return true;
    }
    switch (index) {
      case kStartPadding: SetInt(result, MwRecGetStartPadding(h)); return true;
      case kEndPadding: SetInt(result, MwRecGetEndPadding(h)); return true;
      case kName: NP_UtilsHbbtvStringToResult(MwRecGetName(h), result); return true;
      case kDescription: NP_UtilsHbbtvStringToResult(MwRecGetDescription(h), result); return true;
      case kStartTime: SetInt(result, MwRecGetStartTime(h)); return true;
      case kDuration: SetInt(result, MwRecGetDuration(h)); return true;
      case kState: SetInt(result, MwRecGetState(h)); return true;
      case kParentalRatings: {
        MwHandle list = MwRecGetParentalRatings(h);
        SetObjectOrNull(result, list ? CollectionCreate(r->instance, list, kCollectionRatings) : nullptr);
        return true;
      }
      case kChannel: {
        MwHandle channel = MwRecGetChannel(h);
        SetObjectOrNull(result, channel ? ChannelCreate(r->instance, channel) : nullptr);
        return true;
      }
      case kId: {
        MwHandle text = MwRecGetId(h);
        if (!text) return false;
        NP_UtilsHbbtvStringToResult(text, result);
        return true;
      }
      case kRecordingStartTime: return TimeOfIdentified(h, MwRecGetRecordingStartTime, result);
      case kRecordingDuration: return TimeOfIdentified(h, MwRecGetRecordingDuration, result);
      default: return false;
    }
  }

  static bool SetProperty(NPObject* object, NPIdentifier id, const NPVariant* value) {
    ObjectRecord* r = Find(object);
    if (!r || !r->handle) return false;
    uint32_t seconds;
    switch (Properties().Find(id)) {
      case kStartPadding:
        if (!NP_UtilsGetU32BIT(value, &seconds)) return false;
        MwRecSetStartPadding(r->handle, seconds);
        return true;
      case kEndPadding:
        if (!NP_UtilsGetU32BIT(value, &seconds)) return false;
        MwRecSetEndPadding(r->handle, seconds);
        return true;
      case kName: return SetText(r->handle, MwRecSetName, value);
      case kDescription: return SetText(r->handle, MwRecSetDescription, value);
      default: return false;
    }
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
