// The broadcast kind's life cycle, script class and instance-kind entry.
#include "broadcast/broadcast.h"

#include "broadcast/broadcast_kind.h"
#include "objects/stream_event.h"
#include "frame/instance_kind.h"
#include "middleware/broadcast.h"
#include "style/style.h"
#include "utils/record_alloc.h"

namespace {

RecordList g_broadcasts;

const char* const kPropertyNames[] = {
    "currentChannel", "width", "height", "fullScreen", "playState", "data", "programmes",
    "onfocus", "onblur", "COMPONENT_TYPE_VIDEO", "COMPONENT_TYPE_AUDIO",
    "COMPONENT_TYPE_SUBTITLE", "recordingState",
    "onSelectedComponentChanged", "onFullScreenChange", "onPlayStateChange",
    "onProgrammesChanged", "onChannelChangeError", "onChannelChangeSucceeded",
    "onParentalRatingChange", "onParentalRatingError", "onRecordingEvent",
    "onPlaySpeedChanged", "onPlayPositionChanged", "onDRMRightsError",
};

// Each event property's index is also its event id.
#define ORV_EVENT(index) {kPropertyNames[index], index}
const EventProperty kEvents[] = {
    ORV_EVENT(13), ORV_EVENT(14), ORV_EVENT(15), ORV_EVENT(16), ORV_EVENT(17), ORV_EVENT(18),
    ORV_EVENT(19), ORV_EVENT(20), ORV_EVENT(21), ORV_EVENT(22), ORV_EVENT(23), ORV_EVENT(24),
};
#undef ORV_EVENT
const EventTable kEventTable = ORV_EVENT_TABLE(kEvents, TypeRule::kIgnore, EmptyRead::kNull);

const char* const kMethodNames[] = {
    "getChannelConfig", "bindToCurrentChannel", "createChannelObject", "setChannel",
    "prevChannel", "nextChannel", "setFullScreen", "release", "stop", "addEventListener",
    "removeEventListener", "getComponents", "getCurrentActiveComponents", "selectComponent",
    "unselectComponent", "addStreamEventListener", "removeStreamEventListener", "recordNow",
    "stopRecording",
};

static_assert(sizeof(kPropertyNames) / sizeof(kPropertyNames[0]) == kLastEvent + 1,
              "25 properties");
static_assert(sizeof(kEvents) / sizeof(kEvents[0]) == kLastEvent - kFirstEvent + 1, "12 events");
static_assert(sizeof(kMethodNames) / sizeof(kMethodNames[0]) == kMethodStopRecording - kFirstMethod + 1,
              "19 methods");

// Instance dispatch: the style object is looked up even when creation failed
// (BroadcastSetStyleObject accepts a null record).
ObjectRecord* CreateInstance(NPP instance, const ElementAttributes& attributes) {
  BroadcastRecord* r = BroadcastCreate(instance, attributes.style);
  BroadcastSetStyleObject(r);
  return r;
}
void DestroyBroadcast(ObjectRecord* r) { BroadcastDestroy(static_cast<BroadcastRecord*>(r)); }
void SetWindow(ObjectRecord* r, NPWindow* window) {
  QueuePlacement<BroadcastRecord, Broadcast::List, BroadcastSetWindow>(static_cast<BroadcastRecord*>(r), window);
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
    "video/broadcast", kKindBroadcast, CreateInstance, DestroyBroadcast, SetWindow, Paint,
    true, true, StreamData, UrlNotify, &g_broadcasts,
};

RecordList& Broadcast::List() { return g_broadcasts; }

NameTable& Broadcast::Properties() {
  static NameTable t(kPropertyNames);
  return t;
}

NameTable& Broadcast::Methods() {
  static NameTable t(kMethodNames);
  return t;
}

const EventTable& Broadcast::Events() { return kEventTable; }

BroadcastRecord* Broadcast::FindByHandle(MwHandle handle) {
  return static_cast<BroadcastRecord*>(g_broadcasts.FindByHandle(handle));
}

void BroadcastInit() {
  SEventInit();
  Broadcast::Properties().Intern();
  Broadcast::Methods().Intern();
}

BroadcastRecord* BroadcastCreate(NPP instance, const char*) {
  BroadcastRecord* r = NewInstance<Broadcast>(instance, kKindBroadcast);
  if (!r) return nullptr;
  r->nextStreamEventKind = kFirstStreamEventKind;
  r->handle = MwBroadcastCreate(r->object);
  g_broadcasts.Add(r);
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
  if (!r || !g_broadcasts.Holds(r)) return;
  if (r->handle) MwVideoSetPaintRect(nullptr);  // the video plane no longer shows it
  NPObject* style = r->styleObject;
  r->styleObject = nullptr;
  BroadcastDropRequests(r);
  DestroyInstance(g_broadcasts, r);
  if (style) NPN_ReleaseObject(style);
}
