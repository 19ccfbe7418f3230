// What the local system and network interface objects share: a status
// listener property, addEventListener for one event type, and the status
// events.
#ifndef ORVANE_CONFIG_STATUS_OBJECT_H
#define ORVANE_CONFIG_STATUS_OBJECT_H

#include "frame/event_arguments.h"
#include "frame/frame.h"

// addEventListener and removeEventListener, answered by the frame.
extern const char* const kStatusMethodNames[2];

// A handed-out kind with one status event: K states its properties, its
// listener property's index (kListenerProperty) and its event table
// (Events()); writes of other properties fail.
template <class K>
struct StatusKind : HandedOutKind<K> {
  ORV_METHOD_TABLE(kStatusMethodNames)

  static bool SetProperty(NPObject* object, NPIdentifier id, const NPVariant* value) {
    ObjectRecord* r = K::Find(object);
    if (!r || K::Properties().Find(id) != K::kListenerProperty) return false;
    WriteListenerSlot(r, K::Events(), 0, value);
    return true;
  }

  static bool Invoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                     NPVariant*) {
    ObjectRecord* r = K::Find(object);
    bool ok = false;
    return r && ListenerCall(r, K::Events(), id, args, count, &ok) && ok;
  }
};

#endif
