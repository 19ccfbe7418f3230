// The broadcast video object ("video/broadcast"): shows the tuned service in
// the plug-in's rectangle and lets the page change channel, go full screen,
// choose components, listen to stream events and record. Every operation is
// forwarded to the middleware's broadcast instance of the plug-in instance.
#ifndef ORVANE_BROADCAST_BROADCAST_H
#define ORVANE_BROADCAST_BROADCAST_H

#include "frame/record.h"
#include "middleware/types.h"
#include "npapi/export.h"
#include "npapi/npapi.h"
#include "style/video_element.h"

// One per embedded video/broadcast object. The common head holds the script
// object (null once the browser deallocated it), the middleware broadcast
// handle (0 once BroadcastDestroy began releasing it), the kind (6) and the
// listener list, which also holds the listeners set through the event
// properties.
struct BroadcastRecord : ObjectRecord {
  VideoPlacement place;      // where the video goes
  uint32_t playState;        // last state reported by the middleware; gates painting
  uint32_t nextStreamEventKind;  // listener kind of the next stream-event registration
  NPObject* styleObject;         // the element's style object (one reference, ours)
  // Description downloads the browser has not finished: a browser may drop
  // them unanswered when the element goes, so the record frees them then.
  struct StreamEventRequest* pendingRequests;
};

// Fetches the kind's identifiers (after the stream-event kind's).
ORV_EXPORT void BroadcastInit(void);
// A new record with its script object and middleware instance, or null. The
// style attribute is not used.
ORV_EXPORT BroadcastRecord* BroadcastCreate(NPP instance, const char* style);
// Keeps the element's style object in the record and returns it; null for a
// null record.
ORV_EXPORT NPObject* BroadcastSetStyleObject(BroadcastRecord* record);
ORV_EXPORT void BroadcastSetWindow(BroadcastRecord* record, NPWindow* window);
// `update` is the dirty rectangle {left, top, right, bottom}.
ORV_EXPORT void BroadcastPaint(BroadcastRecord* record, const uint16_t update[4]);
// Data and end of the stream-event description requests; `request` is the
// request's notify data.
ORV_EXPORT int32_t BroadcastStreamData(BroadcastRecord* record, void* request, int32_t count,
                                       const void* bytes);
ORV_EXPORT void BroadcastStreamNotify(BroadcastRecord* record, void* request, NPReason reason);
// Frees the requests still waiting for their download (the element goes).
void BroadcastDropRequests(BroadcastRecord* record);
ORV_EXPORT void BroadcastDestroy(BroadcastRecord* record);

// Middleware events, from any thread. Channel handles are new references and become the
// plug-in's; middleware strings become the plug-in's; the rating handle is
// borrowed (its script object holds its own reference).
ORV_EXPORT void Broadcast_onSelectedComponentChanged(MwHandle broadcast, int32_t componentType);
ORV_EXPORT void Broadcast_onFullScreenChange(MwHandle broadcast);
ORV_EXPORT void Broadcast_onPlayStateChange(MwHandle broadcast, int32_t state, int32_t error);
ORV_EXPORT void Broadcast_onProgrammesChanged(MwHandle broadcast);
ORV_EXPORT void Broadcast_onChannelChangeError(MwHandle broadcast, MwHandle channel,
                                               int32_t errorState);
ORV_EXPORT void Broadcast_onChannelChangeSucceeded(MwHandle broadcast, MwHandle channel);
ORV_EXPORT void Broadcast_onParentalRatingChange(MwHandle broadcast, MwHandle contentId,
                                                 MwHandle rating, MwHandle drmSystemId,
                                                 uint8_t blocked);
ORV_EXPORT void Broadcast_onParentalRatingError(MwHandle broadcast, MwHandle contentId,
                                                MwHandle rating, MwHandle drmSystemId);
ORV_EXPORT void Broadcast_onRecordingEvent(MwHandle broadcast, int32_t state, int32_t error,
                                           MwHandle recordingId);
ORV_EXPORT void Broadcast_onPlaySpeedChanged(MwHandle broadcast, float speed);
ORV_EXPORT void Broadcast_onPlayPositionChanged(MwHandle broadcast, int32_t position);
ORV_EXPORT void Broadcast_onDRMRightsError(MwHandle broadcast, int32_t errorState,
                                           MwHandle contentId, MwHandle drmSystemId,
                                           MwHandle rightsIssuerUrl);
ORV_EXPORT void Broadcast_onStreamEvent(MwHandle broadcast, uint32_t listenerKind,
                                        const MwStreamEvent* event);

#endif
