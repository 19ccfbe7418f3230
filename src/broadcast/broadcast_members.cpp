// The broadcast object's members.
#include <cstdlib>
#include <cstring>

#include "broadcast/broadcast_kind.h"
#include "middleware/broadcast.h"
#include "npapi/log.h"
#include "objects/av_component.h"
#include "objects/channel.h"
#include "objects/channel_config.h"
#include "objects/collection.h"
#include "style/style.h"
#include "utils/convert.h"

namespace {

using R = BroadcastRecord;

// ---- properties ----------------------------------------------------------------


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
  MwString text = ArgText(*value);
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

// Width and height cannot change while full screen; each refusal has its
// own error code.
template <int kRefusedCode, void (*Set)(NPP, NPObject*, uint32_t)>
bool SetSize(R* r, const NPVariant* value) {
  if (MwBroadcastIsFullScreen(r->handle)) {
    ORV_ERROR("Broadcast_SetProperty", kRefusedCode, "\n");
    return false;
  }
  uint32_t size = 0;
  NP_UtilsGetU32BIT(value, &size);
  Set(r->instance, r->styleObject, size);
  return true;
}

void LogUnknownProperty(NPIdentifier id) {
  NPUTF8* name = NPN_UTF8FromIdentifier(id);
  ORV_ERROR("Broadcast_GetProperty", 920, "Can not find property %s\n", name ? name : "");
  if (name) NPN_MemFree(name);
}

// ---- methods -------------------------------------------------------------------

// The numeric word of a flag or number argument: Bool 0/1, Int32 as it is,
// Double truncated; 0 for anything else or a missing argument.
uint32_t ValueWord(const NPVariant* args, uint32_t count, uint32_t i) {
  if (i >= count) return 0;
  const NPVariant& v = args[i];
  if (v.type == NPVariantType_Bool) return v.value.boolValue ? 1 : 0;
  if (v.type == NPVariantType_Int32) return static_cast<uint32_t>(v.value.intValue);
  uint32_t n = 0;
  if (v.type == NPVariantType_Double) NP_UtilsGetU32BIT(&v, &n);
  return n;
}

// A new channel object for `channel` (taken over) as the result; Null for 0.
void ChannelResult(NPP instance, MwHandle channel, NPVariant* result) {
  SetObjectOrNull(result, channel ? ChannelCreate(instance, channel) : nullptr);
}

bool GetChannelConfig(R* r, const NPVariant*, uint32_t, NPVariant* result) {
  MwHandle config = MwBroadcastGetChannelConfig(r->handle);
  SetObjectOrNull(result, ChannelConfigCreate(r->instance, config));
  return true;
}

bool CreateChannelObject(BroadcastRecord* r, const NPVariant* args, uint32_t count,
                         NPVariant* result) {
  if (count == 3) {
    uint32_t id_type, sid;
    if (!NP_UtilsGetU32BIT(&args[0], &id_type) || !NP_UtilsGetU32BIT(&args[2], &sid)) return true;
    MwString dsd = ArgTextAt(args, count, 1);
    ChannelResult(r->instance, MwBroadcastCreateChannelObjectByDsd(r->handle, id_type, &dsd, sid),
                  result);
  } else if (count == 6) {
    uint32_t n[5];
    for (uint32_t i = 0; i < 5; i++)
      if (!NP_UtilsGetU32BIT(&args[i], &n[i])) return true;
    MwString ip_broadcast_id = ArgTextAt(args, count, 5);
    ChannelResult(r->instance,
                  MwBroadcastCreateChannelObject(r->handle, n[0], n[1], n[2], n[3], n[4],
                                                 &ip_broadcast_id),
                  result);
  }
  return true;
}

bool SetChannel(R* r, const NPVariant* args, uint32_t count, NPVariant*) {
  if (count == 0) return true;
  MwHandle channel = IsObject(args[0]) ? ChannelGetHandle(args[0].value.objectValue) : 0;
  uint32_t trickplay = ValueWord(args, count, 1);
  if (count < 3) {
    MwBroadcastSetChannel(r->handle, channel, trickplay, nullptr);
    return true;
  }
  // The descriptor URL goes in a copy of exactly its bytes (not terminated);
  // the middleware copies what it keeps, so the copy is freed afterwards.
  MwString url = ArgTextAt(args, count, 2);
  char* copy = url.length ? static_cast<char*>(NPN_MemAlloc(url.length)) : nullptr;
  if (copy) memcpy(copy, url.data, url.length);
  MwString cad{copy ? url.length : 0, copy ? copy : ""};
  MwBroadcastSetChannel(r->handle, channel, trickplay, &cad);
  if (copy) NPN_MemFree(copy);
  return true;
}

bool SetFullScreen(R* r, const NPVariant* args, uint32_t count, NPVariant*) {
  if (count != 1) return true;
  uint32_t flag = ValueWord(args, count, 0) ? 1 : 0;
  MwBroadcastSetFullScreen(r->handle, flag);
  StyleFullScreen(r, flag != 0);
  return true;
}

template <bool active>
bool Components(R* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  uint32_t type;
  if (count != 1 || !NP_UtilsGetU32BIT(&args[0], &type)) return true;
  if (!active) {
    SetObjectOrNull(result, CollectionCreate(r->instance, MwBroadcastGetComponents(r->handle, type),
                                             kCollectionComponents));
    return true;
  }
  MwHandle list = MwBroadcastGetCurrentActiveComponents(r->handle, type);
  SetObjectOrNull(result, list ? CollectionCreate(r->instance, list, kCollectionComponents) : nullptr);
  return true;
}

template <bool select>
bool SelectComponent(R* r, const NPVariant* args, uint32_t count, NPVariant*) {
  if (count != 1) return true;
  if (IsObject(args[0])) {
    MwHandle component = AVComponentGetHandle(args[0].value.objectValue);
    if (select)
      MwBroadcastSelectComponent(r->handle, component);
    else
      MwBroadcastUnselectComponent(r->handle, component);
    return true;
  }
  uint32_t type;
  if (!NP_UtilsGetU32BIT(&args[0], &type)) return false;
  if (select)
    MwBroadcastSelectComponentType(r->handle, type);
  else
    MwBroadcastUnselectComponentType(r->handle, type);
  return true;
}

int32_t Duration(const NPVariant& v) {
  if (v.type == NPVariantType_Int32) return v.value.intValue;
  if (v.type != NPVariantType_Double) return 0;
  return NP_UtilsDoubleToInt32(v.value.doubleValue);
}

bool RecordNow(BroadcastRecord* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  if (count != 1) return false;
  MwHandle id = MwBroadcastRecordNow(r->handle, Duration(args[0]));
  if (!id)
    SetNull(result);
  else
    NP_UtilsHbbtvStringToResult(id, result);
  return true;
}

// Binding reports failure and doing nothing reports success: the page
// learns the outcome from the play state events, not from the call.
bool BindToCurrentChannel(R* r, const NPVariant*, uint32_t count, NPVariant*) {
  if (count != 0) return true;
  MwBroadcastBindToCurrentChannel(r->handle);
  return false;
}

// A middleware call on the broadcast with no arguments and no answer.
template <void (*Do)(MwHandle)>
bool Plain(R* r, const NPVariant*, uint32_t, NPVariant*) {
  Do(r->handle);
  return true;
}

bool AddStreamEventListener(R* r, const NPVariant* args, uint32_t count, NPVariant*) {
  return BroadcastAddStreamEventListener(r, args, count);
}
bool RemoveStreamEventListener(R* r, const NPVariant* args, uint32_t count, NPVariant*) {
  return BroadcastRemoveStreamEventListener(r, args, count);
}

using Row = Member<R>;
const Row kMembers[] = {
    Row::Get("currentChannel", CurrentChannel),
    Row::Get("width", IntOf<R, MwBroadcastGetWidth>, SetSize<686, StyleSetWidth>),
    Row::Get("height", IntOf<R, MwBroadcastGetHeight>, SetSize<700, StyleSetHeight>),
    Row::Get("fullScreen", BoolOf<R, MwBroadcastIsFullScreen>),
    Row::Get("playState", IntOf<R, MwBroadcastGetPlayState>, Ignored<R>),
    Row::Get("data", TextOf<R, MwBroadcastGetData>, SetData),
    Row::Get("programmes", Programmes),
    Row::Get("onfocus", NoValue<R>, Ignored<R>),
    Row::Get("onblur", NoValue<R>, Ignored<R>),
    Row::Get("COMPONENT_TYPE_VIDEO", Constant<R, 0>),
    Row::Get("COMPONENT_TYPE_AUDIO", Constant<R, 1>),
    Row::Get("COMPONENT_TYPE_SUBTITLE", Constant<R, 2>),
    Row::Get("recordingState", IntOf<R, MwBroadcastGetRecordingState>),
    Row::EventSlots(),  // onSelectedComponentChanged ... onDRMRightsError
    Row::Call("getChannelConfig", GetChannelConfig),
    Row::Call("bindToCurrentChannel", BindToCurrentChannel),
    Row::Call("createChannelObject", CreateChannelObject),
    Row::Call("setChannel", SetChannel),
    Row::Call("prevChannel", Plain<MwBroadcastPrevChannel>),
    Row::Call("nextChannel", Plain<MwBroadcastNextChannel>),
    Row::Call("setFullScreen", SetFullScreen),
    Row::Call("release", Plain<MwBroadcastRelease>),
    Row::Call("stop", Plain<MwBroadcastStop>),
    Row::ListenerMethods(),
    Row::Call("getComponents", Components<false>),
    Row::Call("getCurrentActiveComponents", Components<true>),
    Row::Call("selectComponent", SelectComponent<true>),
    Row::Call("unselectComponent", SelectComponent<false>),
    Row::Call("addStreamEventListener", AddStreamEventListener),
    Row::Call("removeStreamEventListener", RemoveStreamEventListener),
    Row::Call("recordNow", RecordNow),
    Row::Call("stopRecording", Plain<MwBroadcastStopRecording>),
};

}  // namespace

MemberTable<BroadcastRecord>& Broadcast::Members() {
  static MemberTable<BroadcastRecord> table(kMembers, &Events());
  return table;
}

// Reads need the middleware's broadcast, writes and calls a record; each
// refusal of a read or write says so.
Gate Broadcast::Check(const BroadcastRecord* r, Access access) {
  if (access == Access::kGet && (!r || !r->handle)) {
    ORV_ERROR("Broadcast_GetProperty", 791, "broadcast %p\n", static_cast<void*>(nullptr));  // always null
    return Gate::kFail;
  }
  if (access == Access::kSet && !r) ORV_ERROR("Broadcast_SetProperty", 669, "\n");
  return r ? Gate::kGo : Gate::kFail;
}

bool Broadcast::Unknown(BroadcastRecord*, NPIdentifier id, Access access, const NPVariant*, uint32_t,
                        NPVariant*) {
  if (access == Access::kGet) LogUnknownProperty(id);
  if (access == Access::kSet) ORV_ERROR("Broadcast_SetProperty", 750, "\n");  // unknown or read-only
  return false;
}
