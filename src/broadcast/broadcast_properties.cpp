// The broadcast object's properties.
#include <cstdlib>
#include <cstring>

#include "broadcast/broadcast_kind.h"
#include "objects/channel.h"
#include "objects/collection.h"
#include "middleware/broadcast.h"
#include "npapi/log.h"
#include "style/style.h"
#include "utils/convert.h"

namespace {

bool IsEvent(int index) { return index >= kFirstEvent && index <= kLastEvent; }

bool CurrentChannel(BroadcastRecord* r, NPVariant* result) {
  MwHandle channel = MwBroadcastGetCurrentChannel(r->handle);
  NPObject* object = channel ? ChannelCreate(r->instance, channel) : nullptr;
  SetObjectOrNull(result, object);
  return object != nullptr;
}

bool Programmes(BroadcastRecord* r, NPVariant* result) {
  NPObject* list =
      CollectionCreate(r->instance, MwBroadcastGetProgrammes(r->handle), kCollectionProgrammes);
  SetObjectOrNull(result, list);
  return list != nullptr;
}

// The "data" text goes to the middleware in a record and a NUL-terminated
// buffer that it takes over and frees with free(); both come from malloc.
bool SetData(BroadcastRecord* r, const NPVariant* value) {
  MwString text = IsString(*value) ? ArgString(*value) : MwString{0, ""};
  char* buffer = static_cast<char*>(malloc(text.length + 1));
  MwString* record = static_cast<MwString*>(malloc(sizeof(MwString)));
  if (!buffer || !record) {
    free(buffer);
    free(record);
    return false;
  }
  if (text.length) memcpy(buffer, text.data, text.length);
  buffer[text.length] = '\0';
  record->length = text.length;
  record->data = buffer;
  MwBroadcastSetData(r->handle, record);
  return true;
}

void LogUnknownProperty(NPIdentifier id) {
  NPUTF8* name = NPN_UTF8FromIdentifier(id);
  ORV_ERROR("Broadcast_GetProperty", 920, "Can not find property %s\n", name ? name : "");
  if (name) NPN_MemFree(name);
}

}  // namespace

bool Broadcast::GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
  BroadcastRecord* r = Find(object);
  if (!r || !r->handle) {
    ORV_ERROR("Broadcast_GetProperty", 791, "broadcast %p\n", static_cast<void*>(nullptr));  // always null
    return false;
  }
  MwHandle h = r->handle;
  int index = Properties().Find(id);
  switch (index) {
    case kPropCurrentChannel: return CurrentChannel(r, result);
    case kPropWidth: SetInt(result, MwBroadcastGetWidth(h)); return true;
    case kPropHeight: SetInt(result, MwBroadcastGetHeight(h)); return true;
    case kPropFullScreen: SetBool(result, MwBroadcastIsFullScreen(h) != 0); return true;
    case kPropPlayState: SetInt(result, MwBroadcastGetPlayState(h)); return true;
    case kPropData: NP_UtilsHbbtvStringToResult(MwBroadcastGetData(h), result); return true;
    case kPropProgrammes: return Programmes(r, result);
    case kPropOnFocus:
    case kPropOnBlur: return true;  // no value: the result stays as it was
    case kPropComponentTypeVideo: SetInt(result, 0); return true;
    case kPropComponentTypeAudio: SetInt(result, 1); return true;
    case kPropComponentTypeSubtitle: SetInt(result, 2); return true;
    case kPropRecordingState: SetInt(result, MwBroadcastGetRecordingState(h)); return true;
    default:
      if (IsEvent(index)) {
        return ReadListenerProperty(r, Events(), index - kFirstEvent, result);
      }
      LogUnknownProperty(id);
      return false;
  }
}

bool Broadcast::SetProperty(NPObject* object, NPIdentifier id, const NPVariant* value) {
  BroadcastRecord* r = Find(object);
  if (!r) {
    ORV_ERROR("Broadcast_SetProperty", 669, "\n");
    return false;
  }
  int index = Properties().Find(id);
  uint32_t size = 0;
  switch (index) {
    case kPropWidth:
      if (MwBroadcastIsFullScreen(r->handle)) {
        ORV_ERROR("Broadcast_SetProperty", 686, "\n");
        return false;
      }
      NP_UtilsGetU32BIT(value, &size);
      StyleSetWidth(r->instance, r->styleObject, size);
      return true;
    case kPropHeight:
      if (MwBroadcastIsFullScreen(r->handle)) {
        ORV_ERROR("Broadcast_SetProperty", 700, "\n");
        return false;
      }
      NP_UtilsGetU32BIT(value, &size);
      StyleSetHeight(r->instance, r->styleObject, size);
      return true;
    case kPropPlayState:
    case kPropOnFocus:
    case kPropOnBlur: return true;  // accepted and ignored
    case kPropData: return SetData(r, value);
    default:
      if (IsEvent(index)) {
        WriteListenerSlot(r, Events(), index - kFirstEvent, value);
        return true;
      }
      ORV_ERROR("Broadcast_SetProperty", 750, "\n");
      return false;
  }
}
