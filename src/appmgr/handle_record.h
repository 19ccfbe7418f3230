// The short record of the objects that applications hand out (applications,
// private data, keysets): one per script object, owning a middleware handle.
#ifndef ORVANE_APPMGR_HANDLE_RECORD_H
#define ORVANE_APPMGR_HANDLE_RECORD_H

#include "middleware/types.h"
#include "plugin/npapi.h"
#include "plugin/record.h"

struct HandleRecord {
  NPObject* object;
  MwHandle handle;
  NPP instance;
  HandleRecord* next;
};

// A new script object of `klass` with its record at the head of `*list`. The
// record takes over `handle`; when the record or the object cannot be made,
// the handle is released and null returned.
NPObject* NewHandleObject(HandleRecord** list, NPP instance, NPClass* klass, MwHandle handle);
// The deallocation of a handed-out object: its record goes, and with it a
// non-zero handle.
void FreeHandleObject(HandleRecord** list, NPObject* object);

#endif
