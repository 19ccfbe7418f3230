// Middleware events on their way to the page's listeners.
//
// An event entry point may run on any thread. There it only captures the
// event's raw data (handles, numbers, copied bytes) in a pending event and
// posts it; no script object, identifier, reference count or list is
// touched. Pending events wait on a lock-free stack of the plug-in's own and
// the browser's thread is asked, with NPN_PluginThreadAsyncCall, to deliver
// them. The call carries no data, so a browser that drops the calls of a
// destroyed instance loses nothing: the events stay on the stack until a
// call of a live instance takes them; with no instance left they are
// dropped, with what they own.
//
// On the browser's thread each event goes to the head of its kind's list
// (only the head: one object of each kind per page), when that head carries
// the event's handle; its `deliver` function builds the arguments and calls
// the listeners. An event that finds no such head is dropped.
#ifndef ORVANE_FRAME_EVENTS_H
#define ORVANE_FRAME_EVENTS_H

#include "frame/record.h"
#include "middleware/types.h"
#include "npapi/npapi.h"

struct PendingEvent;
// Builds the event's arguments for `target` and calls its listeners (with
// DeliverToListeners). Runs on the browser's thread for every event; a null
// target means the event is dropped. Handles in `owned` that it takes over
// it sets to 0; the rest are released after it.
using EventDelivery = void (*)(ObjectRecord* target, PendingEvent* event);

struct PendingEvent {
  PendingEvent* next;
  RecordList* list;       // the kind's list
  EventDelivery deliver;
  MwHandle target;        // the middleware handle of the object concerned
  uint32_t event;         // the listeners' event id
  MwHandle owned[3];      // middleware handles the event owns (strings, channels)
  MwHandle borrowed;      // a handle the event only names
  MwHandle taken;         // `borrowed`, handed over by the plug-in (EventsHandOver)
  int32_t numbers[3];
  float real;
  uint32_t extra;         // bytes of kind-specific data after the record
  bool keep_if_unknown;   // no object ever had `target`: `owned` stays the middleware's
  bool target_known;      // an object had `target` when the event was posted or since
};

// The start of a pending event for the object with `target` on `list`.
inline PendingEvent EventFor(RecordList& list, EventDelivery deliver, MwHandle target, uint32_t event) {
  PendingEvent ev{};
  ev.list = &list;
  ev.deliver = deliver;
  ev.target = target;
  ev.event = event;
  return ev;
}

// Any thread. A pending event with `extra` bytes after it (the caller fills
// it and passes it to PostPendingEvent), or null when memory is short.
PendingEvent* NewPendingEvent(uint32_t extra);
// Any thread: queues `event` for delivery on the browser's thread.
void PostPendingEvent(PendingEvent* event);
// Any thread: a copy of `data` queued for delivery; when no copy can be
// made, its owned handles are released and the event is lost.
void PostEvent(const PendingEvent& data);
// The bytes after a pending event.
inline char* EventExtra(PendingEvent* event) { return reinterpret_cast<char*>(event + 1); }

// Browser's thread: calls every listener of `record` registered for
// `event`, oldest first, with `args`, then frees the arguments (objects
// released, strings freed). A listener that handles "handleEvent" gets
// that method called, any other is called as a function. Listeners may add
// and remove listeners and destroy the instance: delivery stops when the
// record goes.
void DeliverToListeners(ObjectRecord* record, uint32_t event, NPVariant* args, uint32_t count);
// Browser's thread: owned handle `i` (a middleware string) as a String
// argument (Null for none); the event no longer owns it.
void TakeStringArgument(PendingEvent* event, int i, NPVariant* arg);
// Frees an argument array's values as the delivery does.
void NP_UtilsReleaseArguments(NPVariant* args, uint32_t count);

// Browser's thread: the object with `target` on `list` goes. Events waiting
// for it count it as known (the object was there when they were posted).
void EventsTargetGoing(RecordList* list, MwHandle target);
// Browser's thread: the first waiting event delivered by `deliver` that
// names `handle` as borrowed takes over the plug-in's reference to it (in
// `taken`, released with the event unless its delivery takes it); false
// when none waits.
bool EventsHandOver(EventDelivery deliver, MwHandle handle);

// Browser's thread, from the instance dispatch: the instance that posts the
// deliveries. A new instance serves when none does; when the serving one
// goes, `next` (another live instance, or null) takes over, and with none
// left the waiting events are dropped at once.
void EventsInstanceCreated(NPP instance);
void EventsInstanceDestroyed(NPP instance, NPP next);
// A kind whose objects are handed out by a page instance and receive events
// names its list here: when that instance goes, its objects there receive
// no more events (the page's script may still hold them).
void EventsWatchHandedOutList(RecordList* list);

#endif
