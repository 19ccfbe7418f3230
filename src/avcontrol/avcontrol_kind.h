// The A/V control kind as one declaration: its list, names, events and the
// operations its script class is made of, defined across its source files
// (life cycle in avcontrol.cpp, properties, methods and window in their own).
#ifndef ORVANE_AVCONTROL_AVCONTROL_KIND_H
#define ORVANE_AVCONTROL_AVCONTROL_KIND_H

#include "avcontrol/avcontrol.h"
#include "frame/frame.h"

// Property indices in name-table order; 15..19 are the event properties.
enum AVControlProperty : int {
  kPropData = 0,
  kPropPlayPosition,
  kPropPlayTime,
  kPropPlayState,
  kPropError,
  kPropNrTracks,
  kPropSpeed,
  kPropCurrentTrackIndex,
  kPropPersist,
  kPropWidth,
  kPropHeight,
  kPropFullScreen,
  kPropComponentTypeVideo,
  kPropComponentTypeAudio,
  kPropComponentTypeSubtitle,
  kPropOnPlayStateChange,  // 15
  kPropOnFullScreenChange,
  kPropOnPlayPositionChanged,
  kPropOnSelectedComponentChanged,
  kPropOnDRMRightsError,  // 19
};
constexpr int kFirstEventProperty = kPropOnPlayStateChange;

enum AVControlMethod : int {
  kMethodPlay = 0,
  kMethodStop,
  kMethodSeek,
  kMethodSetVolume,
  kMethodNext,
  kMethodPrevious,
  kMethodGetComponents,
  kMethodGetCurrentActiveComponents,
  kMethodSelectComponent,
  kMethodUnselectComponent,
  kMethodQueue,
  kMethodSetFullScreen,
  kMethodAddEventListener,
  kMethodRemoveEventListener,
  kMethodSetSource,
};

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
  static NameTable& Properties();
  static NameTable& Methods();
  // The event properties as the listener table; slot i is property
  // kFirstEventProperty + i.
  static const EventTable& Events();

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result);
  static bool SetProperty(NPObject* object, NPIdentifier id, const NPVariant* value);
  static bool Invoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                     NPVariant* result);
};

// The characters of `v` in a new NUL-terminated buffer (from malloc; the
// empty text for anything but a String); null when memory is short.
char* AVControlTextCopy(const NPVariant& v, MwString* text);

#endif
