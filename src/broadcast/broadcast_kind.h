// The broadcast kind as one declaration: its list, member rows and events,
// defined across its source files (life cycle in broadcast.cpp, members in
// broadcast_members.cpp, events, stream events and window in their own).
#ifndef ORVANE_BROADCAST_BROADCAST_KIND_H
#define ORVANE_BROADCAST_BROADCAST_KIND_H

#include "broadcast/broadcast.h"
#include "frame/frame.h"

// The events' ids, as the listeners are keyed (13..24, the positions of
// their onXxx properties in the name table).
enum BroadcastEvent : uint32_t {
  kEventSelectedComponentChanged = 13,
  kEventFullScreenChange,
  kEventPlayStateChange,
  kEventProgrammesChanged,
  kEventChannelChangeError,
  kEventChannelChangeSucceeded,
  kEventParentalRatingChange,
  kEventParentalRatingError,
  kEventRecordingEvent,
  kEventPlaySpeedChanged,
  kEventPlayPositionChanged,
  kEventDRMRightsError,  // 24
};
// Stream-event registrations get their own listener kinds from here on.
constexpr uint32_t kFirstStreamEventKind = 25;

struct Broadcast : InstanceKindBase<Broadcast, BroadcastRecord> {
  static RecordList& List();          // newest first
  static const EventTable& Events();  // the onXxx properties, in property order
  static MemberTable<BroadcastRecord>& Members();
  static Gate Check(const BroadcastRecord* r, Access access);
  static bool Unknown(BroadcastRecord* r, NPIdentifier id, Access access, const NPVariant* args,
                      uint32_t count, NPVariant* result);
  static BroadcastRecord* FindByHandle(MwHandle handle);
};

// addStreamEventListener / removeStreamEventListener with their arguments.
bool BroadcastAddStreamEventListener(BroadcastRecord* record, const NPVariant* args,
                                     uint32_t count);
bool BroadcastRemoveStreamEventListener(BroadcastRecord* record, const NPVariant* args,
                                        uint32_t count);

#endif
