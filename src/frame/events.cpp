#include "frame/events.h"

#include <atomic>
#include <cstring>

#include "frame/frame.h"
#include "frame/listeners.h"
#include "npapi/browser.h"
#include "utils/convert.h"

namespace {

std::atomic<PendingEvent*> g_pending{nullptr};
// Browser's thread: events taken from g_pending, oldest first, waiting for
// their delivery.
PendingEvent* g_queue = nullptr;
PendingEvent** g_queue_tail = &g_queue;
std::atomic<NPP> g_post_instance{nullptr};
// Browser's thread: the lists of handed-out kinds that receive events.
constexpr int kMaxWatchedLists = 4;
RecordList* g_watched[kMaxWatchedLists];

// What an event owns, unless it stays the middleware's.
void Release(PendingEvent* ev) {
  if (ev->taken) MwObjectRelease(ev->taken);
  ev->taken = 0;
  if (ev->keep_if_unknown && !ev->target_known) return;
  for (MwHandle& h : ev->owned) {
    if (h) MwObjectRelease(h);
    h = 0;
  }
}

// Any thread: frees every event waiting now, with what it owns.
void DropAll() {
  PendingEvent* ev = g_pending.exchange(nullptr);
  while (ev) {
    PendingEvent* next = ev->next;
    Release(ev);
    NPN_MemFree(ev);
    ev = next;
  }
}

// Browser's thread: moves the events posted so far to the end of g_queue,
// in the order they were posted.
void TakePending() {
  PendingEvent* batch = g_pending.exchange(nullptr);
  PendingEvent* ordered = nullptr;
  while (batch) {
    PendingEvent* next = batch->next;
    batch->next = ordered;
    ordered = batch;
    batch = next;
  }
  *g_queue_tail = ordered;
  while (*g_queue_tail) g_queue_tail = &(*g_queue_tail)->next;
}

PendingEvent* PopQueued() {
  PendingEvent* ev = g_queue;
  if (ev && !(g_queue = ev->next)) g_queue_tail = &g_queue;
  return ev;
}

// Runs every event waiting now, in the order they were posted. A listener
// may run a nested drain; both take from the one queue.
void Drain(void*) {
  TakePending();
  while (PendingEvent* ev = PopQueued()) {
    ObjectRecord* head = ev->list->head();
    bool found = head && head->handle == ev->target && !head->orphaned;
    if (!ev->target_known) ev->target_known = found || ev->list->FindByHandle(ev->target);
    ev->deliver(found ? head : nullptr, ev);
    Release(ev);
    NPN_MemFree(ev);
  }
}

// Asks the browser's thread to drain; with no instance to ask through
// there is nothing left to deliver to, and the events go.
void AskForDrain() {
  if (NPP instance = g_post_instance.load())
    NPN_PluginThreadAsyncCall(instance, Drain, nullptr);
  else
    DropAll();
}

constexpr uint32_t kInlineCalls = 8;

}  // namespace

PendingEvent* NewPendingEvent(uint32_t extra) {
  PendingEvent* ev = static_cast<PendingEvent*>(NPN_MemAlloc(sizeof(PendingEvent) + extra));
  if (!ev) return nullptr;
  memset(ev, 0, sizeof(PendingEvent));
  ev->extra = extra;
  return ev;
}

void PostPendingEvent(PendingEvent* ev) {
  PendingEvent* head = g_pending.load(std::memory_order_relaxed);
  do {
    ev->next = head;
  } while (!g_pending.compare_exchange_weak(head, ev));
  // The first event of a batch asks for the drain; later ones join it.
  if (!head || !g_post_instance.load()) AskForDrain();
}

void PostEvent(const PendingEvent& data) {
  PendingEvent* ev = NewPendingEvent(0);
  if (!ev) {
    for (MwHandle h : data.owned)
      if (h) MwObjectRelease(h);
    return;
  }
  *ev = data;
  ev->extra = 0;
  PostPendingEvent(ev);
}

void TakeStringArgument(PendingEvent* ev, int i, NPVariant* arg) {
  NP_UtilsHbbtvStringToResult(ev->owned[i], arg);
  ev->owned[i] = 0;
}

void NP_UtilsReleaseArguments(NPVariant* args, uint32_t count) {
  for (uint32_t i = count; i-- > 0;) {
    NPVariant& v = args[i];
    if (v.type == NPVariantType_Object && v.value.objectValue)
      NPN_ReleaseObject(v.value.objectValue);
    else if (v.type == NPVariantType_String && v.value.stringValue.UTF8Characters)
      NPN_MemFree(const_cast<NPUTF8*>(v.value.stringValue.UTF8Characters));
    SetVoid(&v);
  }
}

void DeliverToListeners(ObjectRecord* r, uint32_t event, NPVariant* args, uint32_t count) {
  // The listeners of this event as they are now, oldest first, each kept
  // alive while the calls run.
  uint32_t n = 0;
  for (Listener* l = r->listeners; l; l = l->next) n += l->event == event;
  NPObject* inline_calls[kInlineCalls];
  NPObject** calls = inline_calls;
  if (n > kInlineCalls) {
    calls = static_cast<NPObject**>(NPN_MemAlloc(n * sizeof(NPObject*)));
    if (!calls) n = 0;
  }
  uint32_t i = n;
  for (Listener* l = r->listeners; l && i; l = l->next)
    if (l->event == event) calls[--i] = NPN_RetainObject(l->object);

  NPP instance = r->instance;
  RecordHold hold(r);  // a listener may destroy the object: the record lasts the delivery
  for (i = 0; i < n; i++) {
    if (!r->gone) {
      NPVariant ignored;
      SetVoid(&ignored);
      if (NPN_HasMethod(instance, calls[i], g_id_handleEvent))
        NPN_Invoke(instance, calls[i], g_id_handleEvent, args, count, &ignored);
      else
        NPN_InvokeDefault(instance, calls[i], args, count, &ignored);
      NPN_ReleaseVariantValue(&ignored);
    }
    NPN_ReleaseObject(calls[i]);
  }
  if (calls != inline_calls) NPN_MemFree(calls);
  NP_UtilsReleaseArguments(args, count);
}

void EventsInstanceCreated(NPP instance) {
  NPP none = nullptr;
  if (g_post_instance.compare_exchange_strong(none, instance) && g_pending.load())
    AskForDrain();
}

void EventsWatchHandedOutList(RecordList* list) {
  for (RecordList*& slot : g_watched) {
    if (slot == list) return;
    if (!slot) {
      slot = list;
      return;
    }
  }
}

// The handed-out objects of `instance` that receive events receive no more,
// and let their listeners go: a page may have made one its own listener, a
// cycle that nothing else would break. Letting a listener go may free
// records of the list, so each round starts again from its head.
namespace {

void OrphanHandedOut(RecordList* list, NPP instance) {
  for (;;) {
    ObjectRecord* r = list->head();
    while (r && !(r->instance == instance && (!r->orphaned || r->listeners))) r = r->next;
    if (!r) return;
    r->orphaned = true;
    NP_UtilsFreeAllEventListeners(r);
  }
}

}  // namespace

void EventsTargetGoing(RecordList* list, MwHandle target) {
  TakePending();
  for (PendingEvent* ev = g_queue; ev; ev = ev->next)
    if (ev->list == list && ev->target == target) ev->target_known = true;
}

bool EventsHandOver(EventDelivery deliver, MwHandle handle) {
  TakePending();
  for (PendingEvent* ev = g_queue; ev; ev = ev->next) {
    if (ev->deliver == deliver && ev->borrowed == handle && !ev->taken) {
      ev->taken = handle;
      return true;
    }
  }
  return false;
}

void EventsInstanceDestroyed(NPP instance, NPP next) {
  for (RecordList* list : g_watched)
    if (list) OrphanHandedOut(list, instance);
  NPP expected = instance;
  if (!g_post_instance.compare_exchange_strong(expected, next)) return;
  if (!next) {  // nothing left to deliver to: the queue goes too
    while (PendingEvent* ev = PopQueued()) {
      Release(ev);
      NPN_MemFree(ev);
    }
  }
  // Calls already asked of the instance that goes may never run.
  if (!g_pending.load()) return;
  AskForDrain();
}
