// The middleware's broadcast events: each becomes an argument array that the
// asynchronous dispatch hands to the page's listeners on the browser thread.
// These entries may run on a middleware thread.
#include "broadcast/broadcast_kind.h"
#include "broadcast/channel.h"
#include "broadcast/stream_event.h"
#include "parental/parental_rating.h"
#include "utils/convert.h"
#include "utils/listeners.h"

namespace {

void Send(MwHandle broadcast, int event, NPVariant* args, uint32_t count) {
  NP_UtilsAsyncCallback(&g_broadcasts, broadcast, static_cast<uint32_t>(event), args, count);
}

void ReleaseHandle(MwHandle handle) {
  if (handle) MwObjectRelease(handle);
}

// An Int32, or undefined for the middleware's "none" (-1).
void SetIntOrVoid(NPVariant* v, int32_t value) {
  if (value == -1)
    SetVoid(v);
  else
    SetInt(v, value);
}

// A String from a middleware string, or undefined when there is none.
void SetStringOrVoid(NPVariant* v, MwHandle string) {
  if (string)
    NP_UtilsHbbtvStringToResult(string, v);
  else
    SetVoid(v);
}

// Channel-change events: `count` arguments, the channel object first.
void SendChannelEvent(MwHandle broadcast, MwHandle channel, int event, int32_t error,
                      uint32_t count) {
  BroadcastRecord* r = BroadcastFindByHandle(broadcast);
  NPVariant* args = r ? NP_UtilsNewArguments(count) : nullptr;
  if (!args) {
    ReleaseHandle(channel);
    return;
  }
  if (channel) {
    NPObject* object = ChannelCreate(r->instance, channel);  // takes the handle over
    if (!object) {
      NP_UtilsFreeArguments(args, count);
      return;
    }
    SetObject(&args[0], object);
  } else {
    SetNull(&args[0]);  // no channel to wrap
  }
  if (count > 1) SetIntOrVoid(&args[1], error);
  Send(broadcast, event, args, count);
}

// Rating events: contentID, the rating's object, DRMSystemID (and blocked).
void SendRatingEvent(MwHandle broadcast, MwHandle content_id, MwHandle rating,
                     MwHandle drm_system_id, int event, uint32_t count, bool blocked) {
  NPObject* object = ParentalRatingFindNPAPIObj(rating);
  NPVariant* args = object ? NP_UtilsNewArguments(count) : nullptr;
  if (!args) {
    ReleaseHandle(content_id);
    ReleaseHandle(drm_system_id);
    return;
  }
  NP_UtilsHbbtvStringToResult(content_id, &args[0]);
  SetObject(&args[1], NPN_RetainObject(object));
  NP_UtilsHbbtvStringToResult(drm_system_id, &args[2]);
  if (count > 3) SetBool(&args[3], blocked);
  Send(broadcast, event, args, count);
}

// One Int32 argument; the dispatch finds the record at delivery.
void SendInt(MwHandle broadcast, int event, int32_t value) {
  NPVariant* args = NP_UtilsNewArguments(1);
  if (!args) return;
  SetInt(&args[0], value);
  Send(broadcast, event, args, 1);
}

}  // namespace

void Broadcast_onSelectedComponentChanged(MwHandle broadcast, int32_t componentType) {
  SendInt(broadcast, kEventSelectedComponentChanged, componentType);
}

void Broadcast_onFullScreenChange(MwHandle broadcast) {
  if (BroadcastFindByHandle(broadcast)) Send(broadcast, kEventFullScreenChange, nullptr, 0);
}

void Broadcast_onPlayStateChange(MwHandle broadcast, int32_t state, int32_t error) {
  BroadcastRecord* r = BroadcastFindByHandle(broadcast);
  if (!r) return;
  // The one word of plug-in state an event changes; painting reads it.
  __atomic_store_n(&r->playState, static_cast<uint32_t>(state), __ATOMIC_RELAXED);
  NPVariant* args = NP_UtilsNewArguments(2);
  if (!args) return;
  SetInt(&args[0], state);
  SetIntOrVoid(&args[1], error);
  Send(broadcast, kEventPlayStateChange, args, 2);
}

void Broadcast_onProgrammesChanged(MwHandle broadcast) {
  Send(broadcast, kEventProgrammesChanged, nullptr, 0);
}

void Broadcast_onChannelChangeError(MwHandle broadcast, MwHandle channel, int32_t errorState) {
  SendChannelEvent(broadcast, channel, kEventChannelChangeError, errorState, 2);
}

void Broadcast_onChannelChangeSucceeded(MwHandle broadcast, MwHandle channel) {
  SendChannelEvent(broadcast, channel, kEventChannelChangeSucceeded, 0, 1);
}

void Broadcast_onParentalRatingChange(MwHandle broadcast, MwHandle contentId, MwHandle rating,
                                      MwHandle drmSystemId, uint8_t blocked) {
  SendRatingEvent(broadcast, contentId, rating, drmSystemId, kEventParentalRatingChange, 4,
                  blocked != 0);
}

void Broadcast_onParentalRatingError(MwHandle broadcast, MwHandle contentId, MwHandle rating,
                                     MwHandle drmSystemId) {
  SendRatingEvent(broadcast, contentId, rating, drmSystemId, kEventParentalRatingError, 3, false);
}

void Broadcast_onRecordingEvent(MwHandle broadcast, int32_t state, int32_t error,
                                MwHandle recordingId) {
  NPVariant* args = NP_UtilsNewArguments(3);
  if (!args) {
    ReleaseHandle(recordingId);
    return;
  }
  SetInt(&args[0], state);
  SetInt(&args[1], error);
  NP_UtilsHbbtvStringToResult(recordingId, &args[2]);
  Send(broadcast, kEventRecordingEvent, args, 3);
}

void Broadcast_onPlaySpeedChanged(MwHandle broadcast, float speed) {
  NPVariant* args = NP_UtilsNewArguments(1);
  if (!args) return;
  SetDouble(&args[0], static_cast<double>(speed));
  Send(broadcast, kEventPlaySpeedChanged, args, 1);
}

void Broadcast_onPlayPositionChanged(MwHandle broadcast, int32_t position) {
  SendInt(broadcast, kEventPlayPositionChanged, position);
}

void Broadcast_onDRMRightsError(MwHandle broadcast, int32_t errorState, MwHandle contentId,
                                MwHandle drmSystemId, MwHandle rightsIssuerUrl) {
  NPVariant* args = NP_UtilsNewArguments(4);
  if (!args) {
    ReleaseHandle(contentId);
    ReleaseHandle(drmSystemId);
    ReleaseHandle(rightsIssuerUrl);
    return;
  }
  SetInt(&args[0], errorState);
  SetStringOrVoid(&args[1], contentId);
  NP_UtilsHbbtvStringToResult(drmSystemId, &args[2]);
  SetStringOrVoid(&args[3], rightsIssuerUrl);
  Send(broadcast, kEventDRMRightsError, args, 4);
}

void Broadcast_onStreamEvent(MwHandle broadcast, uint32_t listenerKind, const MwStreamEvent* event) {
  BroadcastRecord* r = BroadcastFindByHandle(broadcast);
  if (!r || !event) return;
  NPObject* object = SEventCreate(r->instance, event);
  if (!object) return;
  NPVariant* args = NP_UtilsNewArguments(1);
  if (!args) {
    NPN_ReleaseObject(object);
    return;
  }
  SetObject(&args[0], object);
  // Only the listener registered under this kind receives it.
  NP_UtilsAsyncCallback(&g_broadcasts, broadcast, listenerKind, args, 1);
}
