// The A/V control kind as one declaration: its list, member rows and
// events, defined across its source files (life cycle and events in
// avcontrol.cpp, members in avcontrol_members.cpp, window and paint in
// avcontrol_window.cpp).
#ifndef ORVANE_AVCONTROL_AVCONTROL_KIND_H
#define ORVANE_AVCONTROL_AVCONTROL_KIND_H

#include "avcontrol/avcontrol.h"
#include "frame/frame.h"

// The events' ids, as the listeners are keyed.
enum AVControlEvent : uint32_t {
  kEventPlayStateChange = 15,
  kEventFullScreenChange = 16,
  kEventPlayPositionChanged = 17,
  kEventSelectedComponentChanged = 18,
  kEventDRMRightsError = 19,
};

struct AVControl : InstanceKindBase<AVControl, AVControlRecord> {
  static RecordList& List();
  static const EventTable& Events();  // the onXxx properties, in property order
  static MemberTable<AVControlRecord>& Members();
};

#endif
