// The end of a page instance's record. Apart from the rest of the frame
// because it tells the waiting events that their object goes.
#include "frame/events.h"
#include "frame/frame.h"

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
