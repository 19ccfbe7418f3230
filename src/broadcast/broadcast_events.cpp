// The middleware's broadcast events. The entry points may run on a
// middleware thread: they only capture the event and post it. On the
// browser's thread each becomes the arguments of the page's listeners.
#include <cstring>
#include <initializer_list>

#include "broadcast/broadcast_kind.h"
#include "objects/channel.h"
#include "objects/stream_event.h"
#include "frame/event_arguments.h"
#include "frame/events.h"
#include "objects/parental_rating.h"
#include "utils/convert.h"

namespace {

// An Int32, or undefined for the middleware's "none" (-1).
void SetIntOrVoid(NPVariant* v, int32_t value) {
  if (value == -1)
    SetVoid(v);
  else
    SetInt(v, value);
}

// Any thread: posts the event with its raw data, the handles it owns (in
// order), the numbers and the one handle it only names.
void Post(MwHandle broadcast, EventDelivery deliver, uint32_t event, std::initializer_list<MwHandle> owned,
          std::initializer_list<int32_t> numbers, MwHandle borrowed = 0) {
  PendingEvent ev = EventFor(Broadcast::List(), deliver, broadcast, event);
  size_t i = 0;
  for (MwHandle h : owned) ev.owned[i++] = h;
  i = 0;
  for (int32_t n : numbers) ev.numbers[i++] = n;
  ev.borrowed = borrowed;
  PostEvent(ev);
}

void DeliverPlayState(ObjectRecord* target, PendingEvent* ev) {
  // The one word of plug-in state an event changes; painting reads it.
  if (BroadcastRecord* r = Broadcast::FindByHandle(ev->target))
    r->playState = static_cast<uint32_t>(ev->numbers[0]);
  if (!target) return;
  NPVariant args[2];
  SetInt(&args[0], ev->numbers[0]);
  SetIntOrVoid(&args[1], ev->numbers[1]);
  DeliverToListeners(target, ev->event, args, 2);
}

// Channel-change events: the channel object (for a 0 channel, one whose
// reads fail), and for errors the error state.
void DeliverChannel(ObjectRecord* target, PendingEvent* ev) {
  if (!target) return;
  NPVariant args[2];
  MwHandle channel = ev->owned[0];
  ev->owned[0] = 0;
  NPObject* object = ChannelCreate(target->instance, channel);  // takes the handle over
  if (!object) return;
  SetObject(&args[0], object);
  uint32_t count = ev->event == kEventChannelChangeError ? 2 : 1;
  if (count > 1) SetIntOrVoid(&args[1], ev->numbers[0]);
  DeliverToListeners(target, ev->event, args, count);
}

// Rating events: contentID, the rating's object, DRMSystemID (and blocked).
// Dropped when the rating has no object.
void DeliverRating(ObjectRecord* target, PendingEvent* ev) {
  NPObject* rating = target ? ParentalRatingFindNPAPIObj(ev->borrowed) : nullptr;
  if (!rating) return;
  NPVariant args[4];
  TakeStringArgument(ev, 0, &args[0]);
  SetObject(&args[1], NPN_RetainObject(rating));
  TakeStringArgument(ev, 1, &args[2]);
  uint32_t count = ev->event == kEventParentalRatingChange ? 4 : 3;
  if (count > 3) SetBool(&args[3], ev->numbers[0] != 0);
  DeliverToListeners(target, ev->event, args, count);
}

void DeliverRecording(ObjectRecord* target, PendingEvent* ev) {
  if (!target) return;
  NPVariant args[3];
  SetInt(&args[0], ev->numbers[0]);
  SetInt(&args[1], ev->numbers[1]);
  TakeStringArgument(ev, 0, &args[2]);
  DeliverToListeners(target, ev->event, args, 3);
}

void DeliverSpeed(ObjectRecord* target, PendingEvent* ev) {
  if (!target) return;
  NPVariant arg;
  SetDouble(&arg, static_cast<double>(ev->real));
  DeliverToListeners(target, ev->event, &arg, 1);
}

// The stream event travels as a copy: its record, then name, data and text.
void DeliverStreamEvent(ObjectRecord* target, PendingEvent* ev) {
  if (!target) return;
  MwStreamEvent copy;
  memcpy(&copy, EventExtra(ev), sizeof copy);
  const char* bytes = EventExtra(ev) + sizeof copy;
  copy.name = bytes;
  copy.data = copy.name + copy.nameLength;
  copy.text = copy.data + copy.dataLength;
  NPObject* object = SEventCreate(target->instance, &copy);
  if (!object) return;
  NPVariant arg;
  SetObject(&arg, object);
  // Only the listener registered under this kind receives it.
  DeliverToListeners(target, ev->event, &arg, 1);
}

void Append(char** to, const char* from, uint32_t length) {
  if (length && from) memcpy(*to, from, length);
  else if (length) memset(*to, 0, length);
  *to += length;
}

}  // namespace

void Broadcast_onSelectedComponentChanged(MwHandle broadcast, int32_t componentType) {
  PostOneInt(Broadcast::List(), broadcast, kEventSelectedComponentChanged, componentType);
}

void Broadcast_onFullScreenChange(MwHandle broadcast) {
  Post(broadcast, DeliverNoArguments, kEventFullScreenChange, {}, {});
}

void Broadcast_onPlayStateChange(MwHandle broadcast, int32_t state, int32_t error) {
  Post(broadcast, DeliverPlayState, kEventPlayStateChange, {}, {state, error});
}

void Broadcast_onProgrammesChanged(MwHandle broadcast) {
  Post(broadcast, DeliverNoArguments, kEventProgrammesChanged, {}, {});
}

void Broadcast_onChannelChangeError(MwHandle broadcast, MwHandle channel, int32_t errorState) {
  Post(broadcast, DeliverChannel, kEventChannelChangeError, {channel}, {errorState});
}

void Broadcast_onChannelChangeSucceeded(MwHandle broadcast, MwHandle channel) {
  Post(broadcast, DeliverChannel, kEventChannelChangeSucceeded, {channel}, {});
}

void Broadcast_onParentalRatingChange(MwHandle broadcast, MwHandle contentId, MwHandle rating,
                                      MwHandle drmSystemId, uint8_t blocked) {
  Post(broadcast, DeliverRating, kEventParentalRatingChange, {contentId, drmSystemId}, {blocked}, rating);
}

void Broadcast_onParentalRatingError(MwHandle broadcast, MwHandle contentId, MwHandle rating,
                                     MwHandle drmSystemId) {
  Post(broadcast, DeliverRating, kEventParentalRatingError, {contentId, drmSystemId}, {}, rating);
}

void Broadcast_onRecordingEvent(MwHandle broadcast, int32_t state, int32_t error,
                                MwHandle recordingId) {
  Post(broadcast, DeliverRecording, kEventRecordingEvent, {recordingId}, {state, error});
}

void Broadcast_onPlaySpeedChanged(MwHandle broadcast, float speed) {
  PendingEvent ev = EventFor(Broadcast::List(), DeliverSpeed, broadcast, kEventPlaySpeedChanged);
  ev.real = speed;
  PostEvent(ev);
}

void Broadcast_onPlayPositionChanged(MwHandle broadcast, int32_t position) {
  PostOneInt(Broadcast::List(), broadcast, kEventPlayPositionChanged, position);
}

void Broadcast_onDRMRightsError(MwHandle broadcast, int32_t errorState, MwHandle contentId,
                                MwHandle drmSystemId, MwHandle rightsIssuerUrl) {
  PostRightsError(Broadcast::List(), broadcast, kEventDRMRightsError, errorState, contentId, drmSystemId,
                  rightsIssuerUrl);
}

void Broadcast_onStreamEvent(MwHandle broadcast, uint32_t listenerKind, const MwStreamEvent* event) {
  if (!event) return;
  // The middleware's texts are only lent for the call: the event takes a copy.
  uint64_t bytes = uint64_t{event->nameLength} + event->dataLength + event->textLength;
  if (bytes > UINT32_MAX - sizeof(MwStreamEvent)) return;
  PendingEvent* ev = NewPendingEvent(static_cast<uint32_t>(sizeof(MwStreamEvent) + bytes));
  if (!ev) return;
  ev->list = &Broadcast::List();
  ev->deliver = DeliverStreamEvent;
  ev->target = broadcast;
  ev->event = listenerKind;
  memcpy(EventExtra(ev), event, sizeof(MwStreamEvent));
  char* to = EventExtra(ev) + sizeof(MwStreamEvent);
  Append(&to, event->name, event->nameLength);
  Append(&to, event->data, event->dataLength);
  Append(&to, event->text, event->textLength);
  PostPendingEvent(ev);
}
