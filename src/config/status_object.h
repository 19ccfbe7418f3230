// What the local system and network interface objects share: a status
// listener property, addEventListener for one event type, and the status
// events.
#ifndef ORVANE_CONFIG_STATUS_OBJECT_H
#define ORVANE_CONFIG_STATUS_OBJECT_H

#include "frame/events.h"
#include "frame/frame.h"

// The onXxx status property: the listener, retained, or Null and a failed read.
bool ReadStatusListener(ObjectRecord* r, NPVariant* result);
// addEventListener(type, listener): a String type that begins the event's
// name (the empty one included) adds the listener; any other type fails.
// removeEventListener(listener, ...) removes that listener's newest
// registration. Other methods fail.
bool InvokeStatusMethod(ObjectRecord* r, const EventTable& table, int method, const NPVariant* args,
                        uint32_t count);
// The status event of `list`'s head: one Int32.
void PostStatus(RecordList& list, MwHandle handle, uint32_t event, int32_t status);

enum StatusMethod { kAddEventListener, kRemoveEventListener };
extern const char* const kStatusMethodNames[2];

#endif
