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

const EventProperty kEvents[] = {
    {"onSelectedComponentChanged", kEventSelectedComponentChanged},
    {"onFullScreenChange", kEventFullScreenChange},
    {"onPlayStateChange", kEventPlayStateChange},
    {"onProgrammesChanged", kEventProgrammesChanged},
    {"onChannelChangeError", kEventChannelChangeError},
    {"onChannelChangeSucceeded", kEventChannelChangeSucceeded},
    {"onParentalRatingChange", kEventParentalRatingChange},
    {"onParentalRatingError", kEventParentalRatingError},
    {"onRecordingEvent", kEventRecordingEvent},
    {"onPlaySpeedChanged", kEventPlaySpeedChanged},
    {"onPlayPositionChanged", kEventPlayPositionChanged},
    {"onDRMRightsError", kEventDRMRightsError},
};
const EventTable kEventTable = ORV_EVENT_TABLE(kEvents, TypeRule::kIgnore, EmptyRead::kNull);

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

const EventTable& Broadcast::Events() { return kEventTable; }

BroadcastRecord* Broadcast::FindByHandle(MwHandle handle) {
  return static_cast<BroadcastRecord*>(g_broadcasts.FindByHandle(handle));
}

void BroadcastInit() {
  SEventInit();
  Broadcast::Members().Intern();
}

BroadcastRecord* BroadcastCreate(NPP instance, const char*) {
  BroadcastRecord* r = NewInstance<Broadcast>(instance, kKindBroadcast);
  if (!r) return nullptr;
  r->nextStreamEventKind = kFirstStreamEventKind;
  r->handle = MwBroadcastCreate(r->object);
  g_broadcasts.Add(r);
  return r;
}

NPObject* BroadcastSetStyleObject(BroadcastRecord* r) { return TakeStyleObject(r); }

void BroadcastDestroy(BroadcastRecord* r) {
  if (!r || !g_broadcasts.Holds(r)) return;
  if (r->handle) MwVideoSetPaintRect(nullptr);  // the video plane no longer shows it
  NPObject* style = DetachStyleObject(r);
  BroadcastDropRequests(r);
  DestroyInstance(g_broadcasts, r);
  if (style) NPN_ReleaseObject(style);
}
