#include "appmgr/handle_record.h"

#include "plugin/browser.h"
#include "plugin/record.h"
#include "utils/record_alloc.h"

NPObject* NewHandleObject(HandleRecord** list, NPP instance, NPClass* klass, MwHandle handle) {
  HandleRecord* r = RecordNew<HandleRecord>();
  NPObject* object = r ? NPN_CreateObject(instance, klass) : nullptr;
  if (!object) {
    RecordFree(r);
    if (handle) MwObjectRelease(handle);
    return nullptr;
  }
  r->object = object;
  r->handle = handle;
  r->instance = instance;
  PushFront(list, r);
  return object;
}

void FreeHandleObject(HandleRecord** list, NPObject* object) {
  HandleRecord* r = FindByObject(*list, object);
  if (!r) return;
  if (r->handle) MwObjectRelease(r->handle);
  Unlink(list, r);
  RecordFree(r);
}
