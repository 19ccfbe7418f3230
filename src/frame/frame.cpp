#include "frame/frame.h"

#include "frame/events.h"

void FrameFreeRecord(ObjectRecord* r) {
  if (r->object) BindRecord(r->object, nullptr);
  r->object = nullptr;
  if (r->deliveries) {
    r->gone = true;  // the delivery running on it frees it
    return;
  }
  RecordFree(r);
}

bool DestroyInstance(RecordList& list, ObjectRecord* r) {
  if (!r || !list.Remove(r)) return false;
  if (r->handle) {
    MwHandle handle = r->handle;
    r->handle = 0;
    MwObjectRelease(handle);
    // Events the middleware raised while the plug-in held the handle are
    // waiting by now; they were for a known object.
    EventsTargetGoing(&list, handle);
  }
  NP_UtilsFreeAllEventListeners(r);
  FrameFreeRecord(r);
  return true;
}
