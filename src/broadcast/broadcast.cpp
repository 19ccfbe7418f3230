// The broadcast kind's life cycle, script class and instance-kind entry.
#include "broadcast/broadcast.h"

#include "broadcast/broadcast_kind.h"
#include "broadcast/stream_event.h"
#include "middleware/broadcast.h"
#include "plugin/instance_kind.h"
#include "style/style.h"
#include "utils/listeners.h"
#include "utils/record_alloc.h"

ObjectRecord* g_broadcasts = nullptr;

namespace {

const char* const kPropertyNames[] = {
    "currentChannel", "width", "height", "fullScreen", "playState", "data", "programmes",
    "onfocus", "onblur", "COMPONENT_TYPE_VIDEO", "COMPONENT_TYPE_AUDIO",
    "COMPONENT_TYPE_SUBTITLE", "recordingState",
    "onSelectedComponentChanged", "onFullScreenChange", "onPlayStateChange",
    "onProgrammesChanged", "onChannelChangeError", "onChannelChangeSucceeded",
    "onParentalRatingChange", "onParentalRatingError", "onRecordingEvent",
    "onPlaySpeedChanged", "onPlayPositionChanged", "onDRMRightsError",
};

const char* const kMethodNames[] = {
    "getChannelConfig", "bindToCurrentChannel", "createChannelObject", "setChannel",
    "prevChannel", "nextChannel", "setFullScreen", "release", "stop", "addEventListener",
    "removeEventListener", "getComponents", "getCurrentActiveComponents", "selectComponent",
    "unselectComponent", "addStreamEventListener", "removeStreamEventListener", "recordNow",
    "stopRecording",
};

static_assert(sizeof(kPropertyNames) / sizeof(kPropertyNames[0]) == kLastEvent + 1,
              "25 properties");
static_assert(sizeof(kMethodNames) / sizeof(kMethodNames[0]) == kMethodStopRecording - kFirstMethod + 1,
              "19 methods");

struct Broadcast : KindDefaults<Broadcast> {
  static NameTable& Properties() { return BroadcastProperties(); }
  static NameTable& Methods() { return BroadcastMethods(); }

  // The middleware instance lives on until BroadcastDestroy.
  static void Deallocate(NPObject* object) {
    if (BroadcastRecord* r = BroadcastFind(object)) r->object = nullptr;
  }
  static bool Invoke(NPObject* o, NPIdentifier id, const NPVariant* args, uint32_t n, NPVariant* r) {
    return BroadcastInvoke(o, id, args, n, r);
  }
  static bool GetProperty(NPObject* o, NPIdentifier id, NPVariant* r) {
    return BroadcastGetProperty(o, id, r);
  }
  static bool SetProperty(NPObject* o, NPIdentifier id, const NPVariant* v) {
    return BroadcastSetProperty(o, id, v);
  }
};

// Instance dispatch: the style object is looked up even when creation failed
// (BroadcastSetStyleObject accepts a null record).
ObjectRecord* CreateInstance(NPP instance, const ElementAttributes& attributes) {
  BroadcastRecord* r = BroadcastCreate(instance, attributes.style);
  BroadcastSetStyleObject(r);
  return r;
}
void DestroyInstance(ObjectRecord* r) { BroadcastDestroy(static_cast<BroadcastRecord*>(r)); }
void SetWindow(ObjectRecord* r, NPWindow* window) {
  BroadcastSetWindow(static_cast<BroadcastRecord*>(r), window);
}
void Paint(ObjectRecord* r, const uint16_t rect[4]) {
  BroadcastPaint(static_cast<BroadcastRecord*>(r), rect);
}
int32_t StreamData(ObjectRecord* r, NPStream* stream, int32_t length, void* bytes) {
  return BroadcastStreamData(static_cast<BroadcastRecord*>(r), stream ? stream->notifyData : nullptr,
                             length, bytes);
}
void UrlNotify(ObjectRecord* r, void* notify_data, NPReason reason) {
  BroadcastStreamNotify(static_cast<BroadcastRecord*>(r), notify_data, reason);
}

}  // namespace

extern const InstanceKind kBroadcastKind = {
    "video/broadcast", kKindBroadcast, CreateInstance, DestroyInstance, SetWindow, Paint,
    true, true, StreamData, UrlNotify,
};

NameTable& BroadcastProperties() {
  static NameTable t(kPropertyNames);
  return t;
}

NameTable& BroadcastMethods() {
  static NameTable t(kMethodNames);
  return t;
}

const char* BroadcastPropertyName(int index) { return kPropertyNames[index]; }

BroadcastRecord* BroadcastFind(NPObject* object) {
  return static_cast<BroadcastRecord*>(FindByObject(g_broadcasts, object));
}

BroadcastRecord* BroadcastFindByHandle(MwHandle handle) {
  return static_cast<BroadcastRecord*>(FindByHandle(g_broadcasts, handle));
}

void BroadcastInit() {
  SEventInit();
  BroadcastProperties().Intern();
  BroadcastMethods().Intern();
}

BroadcastRecord* BroadcastCreate(NPP instance, const char*) {
  BroadcastProperties().Intern();
  BroadcastMethods().Intern();
  BroadcastRecord* r = NewInstanceRecord<BroadcastRecord, Broadcast>(instance, kKindBroadcast);
  if (!r) return nullptr;
  r->nextStreamEventKind = kFirstStreamEventKind;
  r->handle = MwBroadcastCreate(r->object);
  PushFront<ObjectRecord>(&g_broadcasts, r);
  return r;
}

NPObject* BroadcastSetStyleObject(BroadcastRecord* r) {
  if (!r) return nullptr;
  NPObject* previous = r->styleObject;
  r->styleObject = StyleObjectForPlugin(r->instance);
  if (previous) NPN_ReleaseObject(previous);
  return r->styleObject;
}

void BroadcastDestroy(BroadcastRecord* r) {
  if (!r || !Unlink<ObjectRecord>(&g_broadcasts, r)) return;
  NP_UtilsFreeAllEventListeners(r);
  for (NPObject*& slot : r->onHandlers) slot = nullptr;  // their references went with the list
  if (r->handle) {
    MwVideoSetPaintRect(nullptr);
    MwHandle handle = r->handle;
    r->handle = 0;
    MwObjectRelease(handle);
  }
  if (r->styleObject) NPN_ReleaseObject(r->styleObject);
  RecordFree(r);
}
