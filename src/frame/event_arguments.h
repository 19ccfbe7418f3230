// Deliveries of the event shapes several kinds share: no arguments, one
// Int32, and a DRM rights error.
#ifndef ORVANE_FRAME_EVENT_ARGUMENTS_H
#define ORVANE_FRAME_EVENT_ARGUMENTS_H

#include "frame/events.h"

// No arguments.
void DeliverNoArguments(ObjectRecord* target, PendingEvent* event);
// numbers[0] as one Int32.
void DeliverOneInt(ObjectRecord* target, PendingEvent* event);
// A DRM rights error: numbers[0] the error state; owned[0] the content id
// (undefined when none), owned[1] the DRM system id (always converted),
// owned[2] the rights issuer URL (undefined when none).
void DeliverRightsError(ObjectRecord* target, PendingEvent* event);

// Any thread: posts the event `event` with one Int32 for the object with
// `target` on `list`.
void PostOneInt(RecordList& list, MwHandle target, uint32_t event, int32_t value);
// Any thread: posts a rights error; the strings are taken over by the event.
void PostRightsError(RecordList& list, MwHandle target, uint32_t event, int32_t errorState,
                     MwHandle contentId, MwHandle drmSystemId, MwHandle rightsIssuerUrl);

#endif
