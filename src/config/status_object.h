// What the local system and network interface objects share: a status
// listener property, addEventListener for one event type, and the status
// events.
#ifndef ORVANE_CONFIG_STATUS_OBJECT_H
#define ORVANE_CONFIG_STATUS_OBJECT_H

#include "frame/event_arguments.h"
#include "frame/frame.h"
#include "frame/getters.h"

// A handed-out kind with one status event: K states its member rows and its
// event table. Without a record a read succeeds with no value; writes and
// calls fail.
template <class K>
struct StatusKind : HandedOutKind<K> {
  static Gate Check(const ObjectRecord* r, Access access) {
    if (r) return Gate::kGo;
    return access == Access::kGet ? Gate::kSucceed : Gate::kFail;
  }
};

using StatusRow = Member<ObjectRecord>;

#endif
