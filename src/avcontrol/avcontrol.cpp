// The A/V control kind's life cycle, script class, instance-kind entries and
// events.
#include "avcontrol/avcontrol.h"

#include <cstring>

#include "avcontrol/avcontrol_kind.h"
#include "frame/event_arguments.h"
#include "frame/events.h"
#include "frame/instance_kind.h"
#include "middleware/avcontrol.h"
#include "style/style.h"
#include "utils/convert.h"

namespace {

RecordList g_players;

// In property order. addEventListener compares the page's type with
// "PlayStateChange", "PlayPositionChanged", "FullScreenChange",
// "SelectedComponentChanged", "DRMRightsError" in that order; as
// PlayStateChange leads both orders and the other names begin with
// different letters, any prefix selects the same event either way.
const EventProperty kEvents[] = {
    {"onPlayStateChange", kEventPlayStateChange, SlotRead::kNoNull},
    {"onFullScreenChange", kEventFullScreenChange},
    {"onPlayPositionChanged", kEventPlayPositionChanged},
    {"onSelectedComponentChanged", kEventSelectedComponentChanged},
    {"onDRMRightsError", kEventDRMRightsError},
};
const EventTable kEventTable = ORV_EVENT_TABLE(kEvents, TypeRule::kIgnore, EmptyRead::kNull);

MwHandle CreatePlayer(uint32_t kind) {
  switch (kind) {
    case kKindVideoMpeg: return MwAVCreateVideoMpeg();
    case kKindVideoMp4: return MwAVCreateVideoMp4();
    case kKindAudioMpeg: return MwAVCreateAudioMpeg();
    case kKindAudioMp4: return MwAVCreateAudioMp4();
    default: return 0;
  }
}

// Instance dispatch: the style object is looked up even when creation
// failed (AVControlSetStyleObject accepts a null record); the audio kinds
// also get their cache and loop attributes.
AVControlRecord* CreateFor(NPP instance, uint32_t kind, const ElementAttributes& a) {
  AVControlRecord* r = AVControlCreate(instance, kind, a.style, a.data, a.width, a.height);
  AVControlSetStyleObject(r);
  return r;
}
ObjectRecord* CreateVideoMpeg(NPP instance, const ElementAttributes& a) {
  return CreateFor(instance, kKindVideoMpeg, a);
}
ObjectRecord* CreateVideoMp4(NPP instance, const ElementAttributes& a) {
  return CreateFor(instance, kKindVideoMp4, a);
}
ObjectRecord* CreateAudio(NPP instance, uint32_t kind, const ElementAttributes& a) {
  AVControlRecord* r = CreateFor(instance, kind, a);
  if (r) AVControlSetAudioParams(r, a.cache, a.loop);
  return r;
}
ObjectRecord* CreateAudioMpeg(NPP instance, const ElementAttributes& a) {
  return CreateAudio(instance, kKindAudioMpeg, a);
}
ObjectRecord* CreateAudioMp4(NPP instance, const ElementAttributes& a) {
  return CreateAudio(instance, kKindAudioMp4, a);
}
void DestroyPlayer(ObjectRecord* r) { AVControlDestroy(static_cast<AVControlRecord*>(r)); }
RecordList& Players() { return g_players; }
void SetWindow(ObjectRecord* r, NPWindow* window) {
  QueuePlacement<AVControlRecord, Players, AVControlSetWindow>(static_cast<AVControlRecord*>(r), window);
}
void Paint(ObjectRecord* r, const uint16_t rect[4]) {
  AVControlPaint(static_cast<AVControlRecord*>(r), rect);
}

PendingEvent Event(MwHandle player, EventDelivery deliver, uint32_t event) {
  return EventFor(g_players, deliver, player, event);
}

// The player kinds; only the video kinds take window and paint calls.
constexpr InstanceKind PlayerKind(const char* mime, uint32_t kind,
                                  ObjectRecord* (*create)(NPP, const ElementAttributes&), bool video) {
  return InstanceKind{mime, kind, create, DestroyPlayer, video ? SetWindow : nullptr, video ? Paint : nullptr,
                      false, false, nullptr, nullptr, &g_players};
}

}  // namespace

extern const InstanceKind kVideoMpegKind = PlayerKind("video/mpeg", kKindVideoMpeg, CreateVideoMpeg, true);
extern const InstanceKind kVideoMp4Kind = PlayerKind("video/mp4", kKindVideoMp4, CreateVideoMp4, true);
extern const InstanceKind kVideoMpeg4Kind = PlayerKind("video/mpeg4", kKindVideoMp4, CreateVideoMp4, true);
extern const InstanceKind kAudioMpegKind = PlayerKind("audio/mpeg", kKindAudioMpeg, CreateAudioMpeg, false);
extern const InstanceKind kAudioMp4Kind = PlayerKind("audio/mp4", kKindAudioMp4, CreateAudioMp4, false);

RecordList& AVControl::List() { return g_players; }

const EventTable& AVControl::Events() { return kEventTable; }

AVControlRecord* AVControlCreate(NPP instance, uint32_t kind, const char*, const char* data,
                                 int32_t width, int32_t height) {
  AVControlRecord* r = NewInstance<AVControl>(instance, kind);
  if (!r) return nullptr;
  r->handle = CreatePlayer(kind);
  g_players.Add(r);
  // Without a player the page still gets an object; its calls reach the
  // middleware with no handle.
  if (!r->handle) return r;
  r->playState = static_cast<uint32_t>(MwAVGetPlayState(r->handle));
  if (data) {
    MwString text{static_cast<uint32_t>(strlen(data)), data};
    MwAVSetData(r->handle, &text);
  }
  // The style object comes after creation: these reach the style code with none.
  if (width != -1) StyleSetWidth(instance, r->styleObject, static_cast<uint32_t>(width) & 0xffff);
  if (height != -1) StyleSetHeight(instance, r->styleObject, static_cast<uint32_t>(height) & 0xffff);
  return r;
}

void AVControlDestroy(AVControlRecord* r) {
  if (!r) return;
  // A record that is not on the list is only freed.
  if (!g_players.Holds(r)) {
    FrameFreeRecord(r);
    return;
  }
  if (r->handle) MwVideoSetClipRect(nullptr);
  NPObject* style = DetachStyleObject(r);
  DestroyInstance(g_players, r);
  if (style) NPN_ReleaseObject(style);
}

NPObject* AVControlSetStyleObject(AVControlRecord* r) { return TakeStyleObject(r); }

void AVControlSetAudioParams(AVControlRecord* r, int32_t cache, int32_t loop) {
  if (!r) return;
  MwAVSetCache(r->handle, cache);
  MwAVSetLoop(r->handle, loop);
}

void AVControl_onPlayStateChange(MwHandle player) {
  PostEvent(Event(player, DeliverNoArguments, kEventPlayStateChange));
}

void AVControl_onFullScreenChange(MwHandle player) {
  PostEvent(Event(player, DeliverNoArguments, kEventFullScreenChange));
}

void AVControl_onPlayPositionChanged(MwHandle player, int32_t position) {
  PostOneInt(g_players, player, kEventPlayPositionChanged, position);
}

void AVControl_onSelectedComponentChanged(MwHandle player, int32_t componentType) {
  PostOneInt(g_players, player, kEventSelectedComponentChanged, componentType);
}

void AVControl_onDRMRightsError(MwHandle player, int32_t errorState, MwHandle contentId,
                                MwHandle drmSystemId, MwHandle rightsIssuerUrl) {
  PostRightsError(g_players, player, kEventDRMRightsError, errorState, contentId, drmSystemId,
                  rightsIssuerUrl);
}
