// The broadcast object's methods.
#include <cstring>

#include "objects/av_component.h"
#include "broadcast/broadcast_kind.h"
#include "objects/channel.h"
#include "objects/channel_config.h"
#include "objects/collection.h"
#include "middleware/broadcast.h"
#include "style/style.h"
#include "utils/convert.h"

namespace {

constexpr int32_t kFullScreenWidth = 1280;
constexpr int32_t kFullScreenHeight = 720;

// The characters of argument `i` when it is a String; empty otherwise.
MwString StringArg(const NPVariant* args, uint32_t count, uint32_t i) {
  if (i >= count || !IsString(args[i])) return MwString{0, ""};
  return ArgString(args[i]);
}

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

bool GetChannelConfig(BroadcastRecord* r, NPVariant* result) {
  MwHandle config = MwBroadcastGetChannelConfig(r->handle);
  SetObjectOrNull(result, ChannelConfigCreate(r->instance, config));
  return true;
}

bool CreateChannelObject(BroadcastRecord* r, const NPVariant* args, uint32_t count,
                         NPVariant* result) {
  if (count == 3) {
    uint32_t id_type, sid;
    if (!NP_UtilsGetU32BIT(&args[0], &id_type) || !NP_UtilsGetU32BIT(&args[2], &sid)) return true;
    MwString dsd = StringArg(args, count, 1);
    ChannelResult(r->instance, MwBroadcastCreateChannelObjectByDsd(r->handle, id_type, &dsd, sid),
                  result);
  } else if (count == 6) {
    uint32_t n[5];
    for (uint32_t i = 0; i < 5; i++)
      if (!NP_UtilsGetU32BIT(&args[i], &n[i])) return true;
    MwString ip_broadcast_id = StringArg(args, count, 5);
    ChannelResult(r->instance,
                  MwBroadcastCreateChannelObject(r->handle, n[0], n[1], n[2], n[3], n[4],
                                                 &ip_broadcast_id),
                  result);
  }
  return true;
}

bool SetChannel(BroadcastRecord* r, const NPVariant* args, uint32_t count) {
  if (count == 0) return true;
  MwHandle channel = IsObject(args[0]) ? ChannelGetHandle(args[0].value.objectValue) : 0;
  uint32_t trickplay = ValueWord(args, count, 1);
  if (count < 3) {
    MwBroadcastSetChannel(r->handle, channel, trickplay, nullptr);
    return true;
  }
  // The descriptor URL goes in a copy of exactly its bytes (not terminated);
  // the middleware copies what it keeps, so the copy is freed afterwards.
  MwString url = StringArg(args, count, 2);
  char* copy = url.length ? static_cast<char*>(NPN_MemAlloc(url.length)) : nullptr;
  if (copy) memcpy(copy, url.data, url.length);
  MwString cad{copy ? url.length : 0, copy ? copy : ""};
  MwBroadcastSetChannel(r->handle, channel, trickplay, &cad);
  if (copy) NPN_MemFree(copy);
  return true;
}

bool SetFullScreen(BroadcastRecord* r, const NPVariant* args, uint32_t count) {
  if (count != 1) return true;
  uint32_t flag = ValueWord(args, count, 0) ? 1 : 0;
  MwBroadcastSetFullScreen(r->handle, flag);
  // Without a style object the four writes fail and say so.
  if (flag)
    StyleSetRect(r->instance, r->styleObject, 0, 0, kFullScreenWidth, kFullScreenHeight);
  else
    StyleSetRect(r->instance, r->styleObject, r->place.screenX, r->place.screenY, r->place.width,
                 r->place.height);
  return true;
}

bool Components(BroadcastRecord* r, const NPVariant* args, uint32_t count, bool active,
                NPVariant* result) {
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

bool SelectComponent(BroadcastRecord* r, const NPVariant* args, uint32_t count, bool select) {
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

}  // namespace

bool Broadcast::Invoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                       NPVariant* result) {
  BroadcastRecord* r = Find(object);
  if (!r) return false;
  bool ok;
  if (ListenerCall(r, Events(), id, args, count, &ok)) return ok;
  MwHandle h = r->handle;
  int method = Methods().Find(id);
  switch (method < 0 ? -1 : method + kFirstMethod) {
    case kMethodGetChannelConfig: return GetChannelConfig(r, result);
    case kMethodBindToCurrentChannel:
      // Binding reports failure and doing nothing reports success: the page
      // learns the outcome from the play state events, not from the call.
      if (count != 0) return true;
      MwBroadcastBindToCurrentChannel(h);
      return false;
    case kMethodCreateChannelObject: return CreateChannelObject(r, args, count, result);
    case kMethodSetChannel: return SetChannel(r, args, count);
    case kMethodPrevChannel: MwBroadcastPrevChannel(h); return true;
    case kMethodNextChannel: MwBroadcastNextChannel(h); return true;
    case kMethodSetFullScreen: return SetFullScreen(r, args, count);
    case kMethodRelease: MwBroadcastRelease(h); return true;
    case kMethodStop: MwBroadcastStop(h); return true;
    case kMethodGetComponents: return Components(r, args, count, false, result);
    case kMethodGetCurrentActiveComponents: return Components(r, args, count, true, result);
    case kMethodSelectComponent: return SelectComponent(r, args, count, true);
    case kMethodUnselectComponent: return SelectComponent(r, args, count, false);
    case kMethodAddStreamEventListener: return BroadcastAddStreamEventListener(r, args, count);
    case kMethodRemoveStreamEventListener: return BroadcastRemoveStreamEventListener(r, args, count);
    case kMethodRecordNow: return RecordNow(r, args, count, result);
    case kMethodStopRecording: MwBroadcastStopRecording(h); return true;
    default: return false;
  }
}
