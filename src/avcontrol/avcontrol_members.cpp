// The A/V control object's members: every value is the middleware's, read
// on each access. Bad arguments to a method are not errors: the call
// succeeds with no result, except queue(), whose success is the
// middleware's.
#include <cstring>

#include "avcontrol/avcontrol_kind.h"
#include "middleware/avcontrol.h"
#include "objects/collection.h"
#include "style/style.h"
#include "utils/convert.h"
#include "utils/record_alloc.h"

namespace {

using R = AVControlRecord;


bool SetData(AVControlRecord* r, const NPVariant* value) {
  MwString text;
  char* copy = ArgTextCopy(*value, &text);
  if (!copy) return false;
  MwAVSetData(r->handle, &text);
  RecordFree(copy);
  return true;
}

// Width and height cannot change while full screen; the element's style
// follows the player.
bool SetSize(AVControlRecord* r, const NPVariant* value, bool width) {
  uint32_t size;
  if (MwAVIsFullScreen(r->handle) || !NP_UtilsGetU32BIT(value, &size)) return false;
  if (width) {
    MwAVSetWidth(r->handle, size);
    StyleSetWidth(r->instance, r->styleObject, size & 0xffff);
  } else {
    MwAVSetHeight(r->handle, size);
    StyleSetHeight(r->instance, r->styleObject, size & 0xffff);
  }
  return true;
}

bool SetWidth(R* r, const NPVariant* value) { return SetSize(r, value, true); }
bool SetHeight(R* r, const NPVariant* value) { return SetSize(r, value, false); }

bool SetCurrentTrackIndex(R* r, const NPVariant* value) {
  uint32_t number;
  if (!NP_UtilsGetU32BIT(value, &number)) return false;
  MwAVSetCurrentTrackIndex(r->handle, number);
  return true;
}

bool SetPersist(R* r, const NPVariant* value) {
  MwAVSetPersist(r->handle, ArgFlag(*value) ? 1 : 0);
  return true;
}



// The one number argument of a call that takes exactly one; false otherwise.
bool OneNumber(const NPVariant* args, uint32_t count, uint32_t* n) {
  return count == 1 && NP_UtilsGetU32BIT(&args[0], n);
}

bool Answer(int32_t done, NPVariant* result) {
  SetBool(result, done == 1);
  return true;
}

template <bool active>
bool Components(R* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  uint32_t type;
  if (!OneNumber(args, count, &type)) return true;
  // The active list goes to the collection even when there is none.
  MwHandle list = active ? MwAVGetActiveComponents(r->handle, type) : MwAVGetComponents(r->handle, type);
  NPObject* collection = list || active ? CollectionCreate(r->instance, list, kCollectionComponents) : nullptr;
  SetObjectOrNull(result, collection);
  return true;
}

// A component object goes to the middleware as it is (the middleware made
// it and knows it); a number selects by component type.
template <bool select>
bool SelectComponent(R* r, const NPVariant* args, uint32_t count, NPVariant*) {
  if (count != 1) return true;
  uint32_t type;
  if (IsObject(args[0])) {
    void* component = args[0].value.objectValue;
    if (select) MwAVSelectComponent(r->handle, component);
    else MwAVUnselectComponent(r->handle, component);
  } else if (NP_UtilsGetU32BIT(&args[0], &type)) {
    if (select) MwAVSelectComponentType(r->handle, type);
    else MwAVUnselectComponentType(r->handle, type);
  }
  return true;
}

bool Queue(R* r, const NPVariant* args, uint32_t count, NPVariant*) {
  if (count != 1) return true;
  if (args[0].type == NPVariantType_Null) return MwAVQueue(r->handle, nullptr) != 0;
  if (!IsString(args[0])) return true;
  MwString url;
  char* copy = ArgTextCopy(args[0], &url);
  if (!copy) return false;
  bool queued = MwAVQueue(r->handle, &url) != 0;
  RecordFree(copy);
  return queued;
}

bool SetFullScreen(R* r, const NPVariant* args, uint32_t count, NPVariant*) {
  if (count != 1) return true;
  bool flag = ArgFlag(args[0]);
  MwAVSetFullScreen(r->handle, flag ? 1 : 0);
  StyleFullScreen(r, flag);
  return true;
}

bool SetSource(R* r, const NPVariant* args, uint32_t count, NPVariant*) {
  NPVariant none;
  SetVoid(&none);
  MwString url;
  char* copy = ArgTextCopy(count ? args[0] : none, &url);
  if (!copy) return false;
  MwAVSetSource(r->handle, &url, 0);
  RecordFree(copy);
  return true;
}


bool Play(R* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  uint32_t speed;
  return count < 1 || !NP_UtilsGetU32BIT(&args[0], &speed) || Answer(MwAVPlay(r->handle, speed), result);
}
bool Stop(R* r, const NPVariant*, uint32_t, NPVariant* result) { return Answer(MwAVStop(r->handle), result); }
bool Seek(R* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  uint32_t position;
  return !OneNumber(args, count, &position) || Answer(MwAVSeek(r->handle, position), result);
}
bool SetVolume(R* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  uint32_t volume;
  return !OneNumber(args, count, &volume) || Answer(MwAVSetVolume(r->handle, volume), result);
}
bool Next(R* r, const NPVariant*, uint32_t, NPVariant* result) { return Answer(MwAVNext(r->handle), result); }
bool Previous(R* r, const NPVariant*, uint32_t, NPVariant* result) {
  return Answer(MwAVPrevious(r->handle), result);
}

using Row = Member<R>;
const Row kMembers[] = {
    Row::Get("data", TextOf<R, MwAVGetData>, SetData),
    Row::Get("playPosition", IntOf<R, MwAVGetPlayPosition>),
    Row::Get("playTime", IntOf<R, MwAVGetPlayTime>),
    Row::Get("playState", IntOf<R, MwAVGetPlayState>),
    Row::Get("error", IntOf<R, MwAVGetError>),
    Row::Get("nrTracks", IntOf<R, MwAVGetNrTracks>),
    Row::Get("speed", IntOf<R, MwAVGetSpeed>),
    Row::Get("currentTrackIndex", IntOf<R, MwAVGetCurrentTrackIndex>, SetCurrentTrackIndex),
    Row::Get("persist", BoolOf<R, MwAVGetPersist>, SetPersist),
    Row::Get("width", IntOf<R, MwAVGetWidth>, SetWidth),
    Row::Get("height", IntOf<R, MwAVGetHeight>, SetHeight),
    Row::Get("fullScreen", BoolOf<R, MwAVIsFullScreen>),
    Row::Get("COMPONENT_TYPE_VIDEO", Constant<R, 0>),
    Row::Get("COMPONENT_TYPE_AUDIO", Constant<R, 1>),
    Row::Get("COMPONENT_TYPE_SUBTITLE", Constant<R, 2>),
    Row::EventSlots(),  // onPlayStateChange ... onDRMRightsError
    Row::Call("play", Play),
    Row::Call("stop", Stop),
    Row::Call("seek", Seek),
    Row::Call("setVolume", SetVolume),
    Row::Call("next", Next),
    Row::Call("previous", Previous),
    Row::Call("getComponents", Components<false>),
    Row::Call("getCurrentActiveComponents", Components<true>),
    Row::Call("selectComponent", SelectComponent<true>),
    Row::Call("unselectComponent", SelectComponent<false>),
    Row::Call("queue", Queue),
    Row::Call("setFullScreen", SetFullScreen),
    Row::ListenerMethods(),
    Row::Call("setSource", SetSource),
};

}  // namespace

MemberTable<AVControlRecord>& AVControl::Members() {
  static MemberTable<AVControlRecord> table(kMembers, &Events());
  return table;
}

