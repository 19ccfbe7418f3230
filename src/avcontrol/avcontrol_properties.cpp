// The A/V control object's properties: every value is the middleware's, read
// on each access.
#include <cstring>

#include "avcontrol/avcontrol_kind.h"
#include "middleware/avcontrol.h"
#include "style/style.h"
#include "utils/convert.h"
#include "utils/record_alloc.h"

namespace {

bool Int(int32_t value, NPVariant* result) {
  SetInt(result, value);
  return true;
}

bool SetData(AVControlRecord* r, const NPVariant& value) {
  MwString text;
  char* copy = AVControlTextCopy(value, &text);
  if (!copy) return false;
  MwAVSetData(r->handle, &text);
  RecordFree(copy);
  return true;
}

// Width and height cannot change while full screen; the element's style
// follows the player.
bool SetSize(AVControlRecord* r, const NPVariant& value, bool width) {
  uint32_t size;
  if (MwAVIsFullScreen(r->handle) || !NP_UtilsGetU32BIT(&value, &size)) return false;
  if (width) {
    MwAVSetWidth(r->handle, size);
    StyleSetWidth(r->instance, r->styleObject, size & 0xffff);
  } else {
    MwAVSetHeight(r->handle, size);
    StyleSetHeight(r->instance, r->styleObject, size & 0xffff);
  }
  return true;
}

}  // namespace

char* AVControlTextCopy(const NPVariant& v, MwString* text) {
  uint32_t length = IsString(v) ? v.value.stringValue.UTF8Length : 0;
  char* copy = static_cast<char*>(RecordAlloc(length + 1));
  if (!copy) return nullptr;
  if (length) memcpy(copy, v.value.stringValue.UTF8Characters, length);
  copy[length] = '\0';
  *text = MwString{length, copy};
  return copy;
}

bool AVControl::GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
  AVControlRecord* r = Find(object);
  if (!r) return false;
  MwHandle h = r->handle;
  int index = Properties().Find(id);
  switch (index) {
    case kPropData: NP_UtilsHbbtvStringToResult(MwAVGetData(h), result); return true;
    case kPropPlayPosition: return Int(MwAVGetPlayPosition(h), result);
    case kPropPlayTime: return Int(MwAVGetPlayTime(h), result);
    case kPropPlayState: return Int(MwAVGetPlayState(h), result);
    case kPropError: return Int(MwAVGetError(h), result);
    case kPropNrTracks: return Int(MwAVGetNrTracks(h), result);
    case kPropSpeed: return Int(MwAVGetSpeed(h), result);
    case kPropCurrentTrackIndex: return Int(MwAVGetCurrentTrackIndex(h), result);
    case kPropPersist: SetBool(result, MwAVGetPersist(h) != 0); return true;
    case kPropWidth: return Int(MwAVGetWidth(h), result);
    case kPropHeight: return Int(MwAVGetHeight(h), result);
    case kPropFullScreen: SetBool(result, MwAVIsFullScreen(h) != 0); return true;
    case kPropComponentTypeVideo: return Int(0, result);
    case kPropComponentTypeAudio: return Int(1, result);
    case kPropComponentTypeSubtitle: return Int(2, result);
    case kPropOnPlayStateChange:
      // Unset, this one fails with no value; the other four fail with Null.
      return ReadListenerSlot(r, 0, result);
    default:
      if (index > kPropOnPlayStateChange)
        return ReadListenerProperty(r, Events(), index - kFirstEventProperty, result);
      return false;
  }
}

bool AVControl::SetProperty(NPObject* object, NPIdentifier id, const NPVariant* value) {
  AVControlRecord* r = Find(object);
  if (!r) return false;
  int index = Properties().Find(id);
  uint32_t number;
  switch (index) {
    case kPropData: return SetData(r, *value);
    case kPropCurrentTrackIndex:
      if (!NP_UtilsGetU32BIT(value, &number)) return false;
      MwAVSetCurrentTrackIndex(r->handle, number);
      return true;
    case kPropPersist: MwAVSetPersist(r->handle, ArgFlag(*value) ? 1 : 0); return true;
    case kPropWidth: return SetSize(r, *value, true);
    case kPropHeight: return SetSize(r, *value, false);
    default:
      if (index >= kFirstEventProperty) {
        WriteListenerSlot(r, Events(), index - kFirstEventProperty, value);
        return true;
      }
      return false;  // read-only or unknown
  }
}
