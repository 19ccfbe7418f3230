// Event listeners of script objects, and the hand-over of middleware events
// to the browser's thread, where the listeners are called.
#ifndef ORVANE_UTILS_LISTENERS_H
#define ORVANE_UTILS_LISTENERS_H

#include "plugin/npapi.h"
#include "plugin/record.h"

struct Listener {
  Listener* next;
  NPObject* object;  // retained while listed
  uint32_t event;
};

// Adds an Object-valued listener for `event`; returns the object, or null
// (nothing added) for any other value or when memory is short.
NPObject* NP_UtilsAddEventListener(ObjectRecord* record, const NPVariant* listener, uint32_t event);
// Removes the newest registration of `object`; its event id, or -1.
int32_t NP_UtilsRemoveEventListener(ObjectRecord* record, NPObject* object);
void NP_UtilsFreeAllEventListeners(ObjectRecord* record);
// removeEventListener(type, listener) as the kinds answer it: it removes the
// registration whose object is the FIRST argument, so in the usual call form
// (a type string first) it removes nothing. Intended; pages rely on it.
void NP_UtilsRemoveFirstArgumentListener(ObjectRecord* record, const NPVariant* args, uint32_t count);
// Queues event `event` with `arguments` (NPN_MemAlloc'ed; owned from here on)
// for the record carrying `handle` on the list at `head`. Any thread.
void NP_UtilsAsyncCallback(ObjectRecord** head, MwHandle handle, uint32_t event,
                           NPVariant* arguments, uint32_t count);
// Frees an argument array as the dispatch does (strings, objects, the array).
void NP_UtilsFreeArguments(NPVariant* arguments, uint32_t count);
// Allocates an argument array of `count` Void variants (null when short of memory).
NPVariant* NP_UtilsNewArguments(uint32_t count);

// The common `onXxx` property write: replaces the listener kept in `slot`.
void NP_UtilsReplaceListener(ObjectRecord* record, NPObject** slot, const NPVariant* value,
                             uint32_t event);
// The common `onXxx` property read: the slot's listener, retained; false when empty.
bool NP_UtilsListenerToResult(NPObject* slot, NPVariant* result);

#endif
