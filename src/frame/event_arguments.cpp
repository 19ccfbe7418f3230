#include "frame/event_arguments.h"

#include "npapi/browser.h"

namespace {

// Owned string `i` as a String, or undefined when there is none.
void TakeStringOrVoid(PendingEvent* ev, int i, NPVariant* v) {
  if (ev->owned[i])
    TakeStringArgument(ev, i, v);
  else
    SetVoid(v);
}

}  // namespace

void DeliverNoArguments(ObjectRecord* target, PendingEvent* ev) {
  if (target) DeliverToListeners(target, ev->event, nullptr, 0);
}

void DeliverOneInt(ObjectRecord* target, PendingEvent* ev) {
  if (!target) return;
  NPVariant arg;
  SetInt(&arg, ev->numbers[0]);
  DeliverToListeners(target, ev->event, &arg, 1);
}

void DeliverRightsError(ObjectRecord* target, PendingEvent* ev) {
  if (!target) return;
  NPVariant args[4];
  SetInt(&args[0], ev->numbers[0]);
  TakeStringOrVoid(ev, 0, &args[1]);
  TakeStringArgument(ev, 1, &args[2]);
  TakeStringOrVoid(ev, 2, &args[3]);
  DeliverToListeners(target, ev->event, args, 4);
}

void PostOneInt(RecordList& list, MwHandle target, uint32_t event, int32_t value) {
  PendingEvent ev = EventFor(list, DeliverOneInt, target, event);
  ev.numbers[0] = value;
  PostEvent(ev);
}

void PostRightsError(RecordList& list, MwHandle target, uint32_t event, int32_t errorState,
                     MwHandle contentId, MwHandle drmSystemId, MwHandle rightsIssuerUrl) {
  PendingEvent ev = EventFor(list, DeliverRightsError, target, event);
  ev.numbers[0] = errorState;
  ev.owned[0] = contentId;
  ev.owned[1] = drmSystemId;
  ev.owned[2] = rightsIssuerUrl;
  PostEvent(ev);
}
