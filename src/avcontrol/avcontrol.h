// The A/V control object ("video/mpeg", "video/mp4", "video/mpeg4",
// "audio/mpeg", "audio/mp4"): plays media other than broadcast through one
// middleware player, places its video like the broadcast object does, and
// reports the player's events to the page.
#ifndef ORVANE_AVCONTROL_AVCONTROL_H
#define ORVANE_AVCONTROL_AVCONTROL_H

#include "frame/record.h"
#include "middleware/types.h"
#include "npapi/export.h"
#include "npapi/npapi.h"
#include "style/video_element.h"

// One per embedded A/V control element. The common head holds the player
// handle (0 when none could be made), the media kind (7 to 10) and the
// listener list, which also holds the listeners set through the event
// properties.
struct AVControlRecord : ObjectRecord {
  VideoPlacement place;      // where the video goes
  uint32_t playState;        // the player's state when the object was made
  NPObject* styleObject;     // the element's style object (one reference, ours)
};

// A new record for media kind `kind` (7 video/mpeg, 8 video/mp4, 9
// audio/mpeg, 10 audio/mp4; any other kind gets no player), or null when
// memory is short. `style` is not used; `data`, `width` and `height` (-1:
// not given) are the element's attributes.
ORV_EXPORT AVControlRecord* AVControlCreate(NPP instance, uint32_t kind, const char* style,
                                            const char* data, int32_t width, int32_t height);
ORV_EXPORT void AVControlDestroy(AVControlRecord* record);
// Keeps the element's style object in the record and returns it; null for a
// null record.
ORV_EXPORT NPObject* AVControlSetStyleObject(AVControlRecord* record);
ORV_EXPORT void AVControlSetWindow(AVControlRecord* record, NPWindow* window);
// `update` is the dirty rectangle {left, top, right, bottom}.
ORV_EXPORT void AVControlPaint(AVControlRecord* record, const uint16_t update[4]);
// The audio kinds' cache and loop attributes (loop -1: for ever).
ORV_EXPORT void AVControlSetAudioParams(AVControlRecord* record, int32_t cache, int32_t loop);

// Middleware events, from any thread; the strings become the plug-in's.
ORV_EXPORT void AVControl_onPlayStateChange(MwHandle player);
ORV_EXPORT void AVControl_onFullScreenChange(MwHandle player);
ORV_EXPORT void AVControl_onPlayPositionChanged(MwHandle player, int32_t position);
ORV_EXPORT void AVControl_onSelectedComponentChanged(MwHandle player, int32_t componentType);
ORV_EXPORT void AVControl_onDRMRightsError(MwHandle player, int32_t errorState, MwHandle contentId,
                                           MwHandle drmSystemId, MwHandle rightsIssuerUrl);

#endif
