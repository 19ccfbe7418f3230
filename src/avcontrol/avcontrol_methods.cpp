// The A/V control object's methods. Bad arguments are not errors: the call
// succeeds with no result, except queue(), whose success is the middleware's.
#include "avcontrol/avcontrol_kind.h"
#include "objects/collection.h"
#include "middleware/avcontrol.h"
#include "style/style.h"
#include "utils/convert.h"
#include "utils/record_alloc.h"

namespace {

constexpr int32_t kFullScreenWidth = 1280;
constexpr int32_t kFullScreenHeight = 720;

// The one number argument of a call that takes exactly one; false otherwise.
bool OneNumber(const NPVariant* args, uint32_t count, uint32_t* n) {
  return count == 1 && NP_UtilsGetU32BIT(&args[0], n);
}

bool Answer(int32_t done, NPVariant* result) {
  SetBool(result, done == 1);
  return true;
}

bool Components(AVControlRecord* r, const NPVariant* args, uint32_t count, bool active,
                NPVariant* result) {
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
bool SelectComponent(AVControlRecord* r, const NPVariant* args, uint32_t count, bool select) {
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

bool Queue(AVControlRecord* r, const NPVariant* args, uint32_t count) {
  if (count != 1) return true;
  if (args[0].type == NPVariantType_Null) return MwAVQueue(r->handle, nullptr) != 0;
  if (!IsString(args[0])) return true;
  MwString url;
  char* copy = AVControlTextCopy(args[0], &url);
  if (!copy) return false;
  bool queued = MwAVQueue(r->handle, &url) != 0;
  RecordFree(copy);
  return queued;
}

bool SetFullScreen(AVControlRecord* r, const NPVariant* args, uint32_t count) {
  if (count != 1) return true;
  bool flag = ArgFlag(args[0]);
  MwAVSetFullScreen(r->handle, flag ? 1 : 0);
  // Full screen is a fixed 1280x720; back is the last place and size stored.
  if (flag)
    StyleSetRect(r->instance, r->styleObject, 0, 0, kFullScreenWidth, kFullScreenHeight);
  else
    StyleSetRect(r->instance, r->styleObject, r->place.screenX, r->place.screenY, r->place.width,
                 r->place.height);
  return true;
}

bool SetSource(AVControlRecord* r, const NPVariant* args, uint32_t count) {
  NPVariant none;
  SetVoid(&none);
  MwString url;
  char* copy = AVControlTextCopy(count ? args[0] : none, &url);
  if (!copy) return false;
  MwAVSetSource(r->handle, &url, 0);
  RecordFree(copy);
  return true;
}

}  // namespace

bool AVControl::Invoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                       NPVariant* result) {
  AVControlRecord* r = Find(object);
  if (!r) return false;
  bool ok;
  if (ListenerCall(r, Events(), id, args, count, &ok)) return ok;
  MwHandle h = r->handle;
  uint32_t n;
  switch (Methods().Find(id)) {
    case kMethodPlay: return count < 1 || !NP_UtilsGetU32BIT(&args[0], &n) || Answer(MwAVPlay(h, n), result);
    case kMethodStop: return Answer(MwAVStop(h), result);
    case kMethodSeek: return !OneNumber(args, count, &n) || Answer(MwAVSeek(h, n), result);
    case kMethodSetVolume: return !OneNumber(args, count, &n) || Answer(MwAVSetVolume(h, n), result);
    case kMethodNext: return Answer(MwAVNext(h), result);
    case kMethodPrevious: return Answer(MwAVPrevious(h), result);
    case kMethodGetComponents: return Components(r, args, count, false, result);
    case kMethodGetCurrentActiveComponents: return Components(r, args, count, true, result);
    case kMethodSelectComponent: return SelectComponent(r, args, count, true);
    case kMethodUnselectComponent: return SelectComponent(r, args, count, false);
    case kMethodQueue: return Queue(r, args, count);
    case kMethodSetFullScreen: return SetFullScreen(r, args, count);
    case kMethodSetSource: return SetSource(r, args, count);
    default: return false;
  }
}
