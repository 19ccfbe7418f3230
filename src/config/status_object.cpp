#include "config/status_object.h"

#include "frame/event_arguments.h"
#include "utils/convert.h"

const char* const kStatusMethodNames[2] = {"addEventListener", "removeEventListener"};

void PostStatus(RecordList& list, MwHandle handle, uint32_t event, int32_t status) {
  PendingEvent ev = EventFor(list, DeliverOneInt, handle, event);
  ev.numbers[0] = status;
  PostEvent(ev);
}
