#include "frame/frame.h"

void FrameFreeRecord(ObjectRecord* r) {
  if (r->object) BindRecord(r->object, nullptr);
  r->object = nullptr;
  if (r->deliveries) {
    r->gone = true;  // the delivery running on it frees it
    return;
  }
  RecordFree(r);
}
