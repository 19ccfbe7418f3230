// Inside the broadcast kind: the record list, the name table and the
// operations the script class is made of, shared by its source files.
#ifndef ORVANE_BROADCAST_BROADCAST_KIND_H
#define ORVANE_BROADCAST_BROADCAST_KIND_H

#include "broadcast/broadcast.h"
#include "frame/frame.h"

// The broadcast records, newest first.
RecordList& BroadcastList();

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

NameTable& BroadcastProperties();  // indices 0..24
NameTable& BroadcastMethods();     // indices 25..43, stored from 0
// The event properties (indices 13..24) as the listener table; slot i is
// property kFirstEvent + i.
const EventTable& BroadcastEvents();

BroadcastRecord* BroadcastFind(NPObject* object);
BroadcastRecord* BroadcastFindByHandle(MwHandle handle);

bool BroadcastGetProperty(NPObject* object, NPIdentifier id, NPVariant* result);
bool BroadcastSetProperty(NPObject* object, NPIdentifier id, const NPVariant* value);
bool BroadcastInvoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                     NPVariant* result);

// addStreamEventListener / removeStreamEventListener with their arguments.
bool BroadcastAddStreamEventListener(BroadcastRecord* record, const NPVariant* args,
                                     uint32_t count);
bool BroadcastRemoveStreamEventListener(BroadcastRecord* record, const NPVariant* args,
                                        uint32_t count);

#endif
