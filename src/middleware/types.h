/*
 * Middleware contract: shared types, handle release, strings, event table.
 *
 * The plug-in calls the receiver's middleware through the functions declared
 * in this folder and does not link any middleware library: the symbols are
 * resolved from the browser process that loads the plug-in. A receiver maker
 * implements every function declared here.
 *
 * Ownership rules used throughout:
 * - A handle (MwHandle) names a middleware object; 0 means "none". A handle
 *   that a function returns is a new reference owned by the caller, who gives
 *   it back with MwObjectRelease exactly once, unless the declaration says
 *   otherwise. Handles passed as arguments are borrowed.
 * - A middleware string is a handle owning a NUL-terminated text.
 * - An MwString argument is borrowed for the duration of the call; its
 *   characters need not be NUL-terminated (length counts bytes). The
 *   middleware copies what it keeps, unless the declaration says it takes it.
 */
#ifndef ORVANE_MIDDLEWARE_TYPES_H
#define ORVANE_MIDDLEWARE_TYPES_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef uint32_t MwHandle;

typedef struct MwString {
  uint32_t length;   /* bytes, no terminator counted */
  const char* data;  /* need not be NUL-terminated */
} MwString;

/* A screen rectangle in pixels. */
typedef struct MwRect {
  int16_t left;
  int16_t top;
  int16_t right;
  int16_t bottom;
} MwRect;

/* A DSM-CC stream event as the middleware reports it (texts not terminated). */
typedef struct MwStreamEvent {
  uint32_t nameLength;
  const char* name;
  uint32_t dataLength;
  const char* data;
  uint32_t textLength;
  const char* text;
  uint32_t status; /* 1: the event triggered; anything else: error */
} MwStreamEvent;

/* In/out record of the AIT parser. */
typedef struct MwAitOutcome {
  uint32_t navigate; /* in: 0; out: non-zero when the page must be replaced by `url` */
  const char* url;   /* in: the stream's URL; out: the URL to open (middleware-owned) */
} MwAitOutcome;

/*
 * The plug-in's event entry points, handed to the middleware once at start
 * with MwRegisterEventCallbacks. The order of the members is part of the
 * contract. Middleware strings and channels passed in events become the
 * plug-in's (it releases them, also when the event is dropped), except the
 * strings of a DRM event for an agent the plug-in never had, which stay the
 * middleware's. The rating of a parental rating event is lent. The search of
 * SearchManager_onMetadataSearch is lent when the plug-in holds it (its
 * object lives) and a new reference when not; nothing is released for a
 * manager the plug-in never had. A channel of 0 gives a Channel object whose
 * reads fail. Entries may be called from any thread.
 * A null member means the plug-in has no such entry point.
 */
typedef struct MwEventCallbacks {
  void (*AppMgr_onLowMemory)(MwHandle manager);
  void (*AppMgr_onApplicationLoadError)(MwHandle manager);
  void (*SearchManager_onMetadataSearch)(MwHandle manager, MwHandle search, int32_t state);
  void (*AVControl_onPlayStateChange)(MwHandle player);
  void (*AVControl_onFullScreenChange)(MwHandle player);
  void (*AVControl_onPlayPositionChanged)(MwHandle player, int32_t position);
  void (*AVControl_onSelectedComponentChanged)(MwHandle player, int32_t componentType);
  void (*AVControl_onDRMRightsError)(MwHandle player, int32_t errorState, MwHandle contentId,
                                     MwHandle drmSystemId, MwHandle rightsIssuerUrl);
  void (*Broadcast_onFullScreenChange)(MwHandle broadcast);
  void (*Broadcast_onChannelChangeError)(MwHandle broadcast, MwHandle channel, int32_t errorState);
  void (*Broadcast_onChannelChangeSucceeded)(MwHandle broadcast, MwHandle channel);
  void (*Broadcast_onPlayStateChange)(MwHandle broadcast, int32_t state, int32_t error);
  void (*Broadcast_onProgrammesChanged)(MwHandle broadcast);
  void (*Broadcast_onParentalRatingChange)(MwHandle broadcast, MwHandle contentId, MwHandle rating,
                                           MwHandle drmSystemId, uint8_t blocked);
  void (*Broadcast_onParentalRatingError)(MwHandle broadcast, MwHandle contentId, MwHandle rating,
                                          MwHandle drmSystemId);
  void (*Broadcast_onSelectedComponentChanged)(MwHandle broadcast, int32_t componentType);
  void (*Broadcast_onStreamEvent)(MwHandle broadcast, uint32_t listenerKind,
                                  const MwStreamEvent* event);
  void (*Broadcast_onRecordingEvent)(MwHandle broadcast, int32_t state, int32_t error,
                                     MwHandle recordingId);
  void (*Broadcast_onPlaySpeedChanged)(MwHandle broadcast, float speed);
  void (*Broadcast_onPlayPositionChanged)(MwHandle broadcast, int32_t position);
  void (*Broadcast_onDRMRightsError)(MwHandle broadcast, int32_t errorState, MwHandle contentId,
                                     MwHandle drmSystemId, MwHandle rightsIssuerUrl);
  void (*LocalSystem_onPvrStatusChange)(MwHandle localSystem, int32_t status);
  void (*NetworkInterface_onNetworkStatusChange)(MwHandle networkInterface, int32_t status);
  void (*DrmAgent_onDRMMessageResult)(MwHandle agent, MwHandle messageId, MwHandle resultMessage,
                                      int32_t resultCode);
  void (*DrmAgent_onDRMSystemMessage)(MwHandle agent, MwHandle message, MwHandle drmSystemId);
} MwEventCallbacks;

/* Gives back one reference to any handle. */
void MwObjectRelease(MwHandle handle);

/* Stores the plug-in's event table (static, valid for the process life). */
void MwRegisterEventCallbacks(const MwEventCallbacks* callbacks);

/* Size of a middleware string's text including its terminator. */
uint32_t MwStringGetSize(MwHandle string);
/* Non-zero when the string holds a text. */
int32_t MwStringIsValid(MwHandle string);
/* Copies text and terminator into `buffer` (MwStringGetSize bytes). */
void MwStringCopyTo(MwHandle string, char* buffer);

#ifdef __cplusplus
}
#endif

#endif
