#include "appmgr/handle_record.h"

#include "plugin/browser.h"
#include "plugin/frame.h"
#include "plugin/record.h"
#include "utils/record_alloc.h"

NPObject* NewHandleObject(HandleRecord** list, NPP instance, NPClass* klass, MwHandle handle) {
  HandleRecord* r = NewScriptRecord<HandleRecord>(instance, klass);
  if (!r) {
    if (handle) MwObjectRelease(handle);
    return nullptr;
  }
  r->handle = handle;
  r->instance = instance;
  PushFront(list, r);
  return r->object;
}

void FreeHandleObject(HandleRecord** list, NPObject* object) {
  HandleRecord* r = FindByObject(*list, object);
  if (!r) return;
  if (r->handle) MwObjectRelease(r->handle);
  Unlink(list, r);
  RecordFree(r);
}
