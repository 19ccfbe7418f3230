// The broadcast kind as one declaration: its list, names, events and the
// operations its script class is made of, defined across its source files
// (life cycle in broadcast.cpp, properties, methods, events, stream events
// and window in their own).
#ifndef ORVANE_BROADCAST_BROADCAST_KIND_H
#define ORVANE_BROADCAST_BROADCAST_KIND_H

#include "broadcast/broadcast.h"
#include "frame/frame.h"

// Property indices; 13..24 are the event properties, and each index is also
// the listener kind of its event.
enum BroadcastProperty : int {
  kPropCurrentChannel = 0,
  kPropWidth,
  kPropHeight,
  kPropFullScreen,
  kPropPlayState,
  kPropData,
  kPropProgrammes,
  kPropOnFocus,
  kPropOnBlur,
  kPropComponentTypeVideo,
  kPropComponentTypeAudio,
  kPropComponentTypeSubtitle,
  kPropRecordingState,
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
constexpr int kFirstEvent = kEventSelectedComponentChanged;
constexpr int kLastEvent = kEventDRMRightsError;
// Stream-event registrations get their own listener kinds from here on.
constexpr uint32_t kFirstStreamEventKind = 25;

// Method indices, numbered on from the properties.
enum BroadcastMethod : int {
  kMethodGetChannelConfig = 25,
  kMethodBindToCurrentChannel,
  kMethodCreateChannelObject,
  kMethodSetChannel,
  kMethodPrevChannel,
  kMethodNextChannel,
  kMethodSetFullScreen,
  kMethodRelease,
  kMethodStop,
  kMethodAddEventListener,
  kMethodRemoveEventListener,
  kMethodGetComponents,
  kMethodGetCurrentActiveComponents,
  kMethodSelectComponent,
  kMethodUnselectComponent,
  kMethodAddStreamEventListener,
  kMethodRemoveStreamEventListener,
  kMethodRecordNow,
  kMethodStopRecording,  // 43
};
constexpr int kFirstMethod = kMethodGetChannelConfig;

struct Broadcast : InstanceKindBase<Broadcast, BroadcastRecord> {
  static RecordList& List();          // newest first
  static NameTable& Properties();     // indices 0..24
  static NameTable& Methods();        // indices 25..43, stored from 0
  // The event properties (indices 13..24) as the listener table; slot i is
  // property kFirstEvent + i.
  static const EventTable& Events();
  static BroadcastRecord* FindByHandle(MwHandle handle);

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result);
  static bool SetProperty(NPObject* object, NPIdentifier id, const NPVariant* value);
  static bool Invoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                     NPVariant* result);
};

// addStreamEventListener / removeStreamEventListener with their arguments.
bool BroadcastAddStreamEventListener(BroadcastRecord* record, const NPVariant* args,
                                     uint32_t count);
bool BroadcastRemoveStreamEventListener(BroadcastRecord* record, const NPVariant* args,
                                        uint32_t count);

#endif
