#include "config/status_object.h"

#include "frame/event_arguments.h"
#include "utils/convert.h"

const char* const kStatusMethodNames[2] = {"addEventListener", "removeEventListener"};

bool ReadStatusListener(ObjectRecord* r, NPVariant* result) {
  SetNull(result);
  return ReadListenerSlot(r, 0, result);
}

bool InvokeStatusMethod(ObjectRecord* r, const EventTable& table, int method, const NPVariant* args,
                        uint32_t count) {
  static const NPVariant kVoid = {NPVariantType_Void, {}};
  switch (method) {
    case kAddEventListener:
      if (count < 1 || !IsString(args[0])) return false;
      AddListenerByType(r, table, ArgString(args[0]), count >= 2 ? &args[1] : &kVoid);
      return true;
    case kRemoveEventListener:
      NP_UtilsRemoveFirstArgumentListener(r, args, count);
      return true;
    default:
      return false;
  }
}

void PostStatus(RecordList& list, MwHandle handle, uint32_t event, int32_t status) {
  PendingEvent ev = EventFor(list, DeliverOneInt, handle, event);
  ev.numbers[0] = status;
  PostEvent(ev);
}
