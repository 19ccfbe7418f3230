/* Middleware contract: broadcast video, channels, channel configuration,
   AV components and programmes. */
#ifndef ORVANE_MIDDLEWARE_BROADCAST_H
#define ORVANE_MIDDLEWARE_BROADCAST_H

#include "middleware/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- broadcast video ---- */
/* A broadcast video instance for `scriptObject` (context only); owned by the caller. */
MwHandle MwBroadcastCreate(void* scriptObject);
/* Rectangle of the video plane to punch through, or null to stop painting. */
void MwVideoSetPaintRect(const MwRect* rect);
/* Places and sizes the video. */
void MwBroadcastSetVideoRect(MwHandle broadcast, int32_t x, int32_t y, int32_t width, int32_t height);
/* Non-zero while the video is full screen. */
int32_t MwBroadcastIsFullScreen(MwHandle broadcast);
int32_t MwBroadcastGetWidth(MwHandle broadcast);
int32_t MwBroadcastGetHeight(MwHandle broadcast);
/* 0 unrealized, 1 connecting, 2 presenting, 3 stopped. */
int32_t MwBroadcastGetPlayState(MwHandle broadcast);
/* The object's "data" text as a middleware string, or 0. */
MwHandle MwBroadcastGetData(MwHandle broadcast);
/* Sets the "data" text; takes the record and its NUL-terminated characters (both
   from malloc) and frees them. */
void MwBroadcastSetData(MwHandle broadcast, MwString* data);
/* The channel presented; new reference or 0. */
MwHandle MwBroadcastGetCurrentChannel(MwHandle broadcast);
/* Programme list of the current channel; new reference or 0. Its programmes are
 * new references, lent when the plug-in holds them. */
MwHandle MwBroadcastGetProgrammes(MwHandle broadcast);
int32_t MwBroadcastGetRecordingState(MwHandle broadcast);
/* The channel configuration; new reference or 0 (an object whose reads fail). */
MwHandle MwBroadcastGetChannelConfig(MwHandle broadcast);
/* Binds to the channel the receiver presents; events report the outcome. */
void MwBroadcastBindToCurrentChannel(MwHandle broadcast);
/* A channel from its DVB/IP identification; new reference or 0. */
MwHandle MwBroadcastCreateChannelObject(MwHandle broadcast, uint32_t idType, uint32_t onid,
                                        uint32_t tsid, uint32_t sid, uint32_t sourceId,
                                        const MwString* ipBroadcastId);
/* A channel from a delivery system descriptor; new reference or 0. */
MwHandle MwBroadcastCreateChannelObjectByDsd(MwHandle broadcast, uint32_t idType,
                                             const MwString* dsd, uint32_t sid);
/* Tunes to `channel` (0: none); contentAccessDescriptorUrl may be null.
   The outcome arrives as channel-change events. */
void MwBroadcastSetChannel(MwHandle broadcast, MwHandle channel, uint32_t trickplay,
                           const MwString* contentAccessDescriptorUrl);
void MwBroadcastPrevChannel(MwHandle broadcast);
void MwBroadcastNextChannel(MwHandle broadcast);
void MwBroadcastSetFullScreen(MwHandle broadcast, uint32_t fullScreen);
void MwBroadcastRelease(MwHandle broadcast);
void MwBroadcastStop(MwHandle broadcast);
/* Components of a type (0 video, 1 audio, 2 subtitle) as a list; new reference or 0. */
MwHandle MwBroadcastGetComponents(MwHandle broadcast, uint32_t componentType);
MwHandle MwBroadcastGetCurrentActiveComponents(MwHandle broadcast, uint32_t componentType);
void MwBroadcastSelectComponent(MwHandle broadcast, MwHandle component);
void MwBroadcastUnselectComponent(MwHandle broadcast, MwHandle component);
void MwBroadcastSelectComponentType(MwHandle broadcast, uint32_t componentType);
void MwBroadcastUnselectComponentType(MwHandle broadcast, uint32_t componentType);
/* Subscribes listener kind `kind` to the stream event `name` of the "dvb:" URL;
   non-zero on success. Events arrive through Broadcast_onStreamEvent with that kind. */
int32_t MwBroadcastAddStreamEventListener(MwHandle broadcast, uint32_t urlLength, const char* url,
                                          uint32_t nameLength, const char* name, uint32_t kind);
/* The same from a stream-event description document (bytes borrowed). */
int32_t MwBroadcastAddStreamEventXml(MwHandle broadcast, const char* bytes, uint32_t count,
                                     uint32_t nameLength, const char* name, uint32_t kind);
void MwBroadcastRemoveStreamEventListener(MwHandle broadcast, uint32_t nameLength,
                                          const char* name, uint32_t kind);
/* Starts recording now; returns the recording id as a middleware string, or 0. */
MwHandle MwBroadcastRecordNow(MwHandle broadcast, int32_t durationSeconds);
void MwBroadcastStopRecording(MwHandle broadcast);

/* ---- channels (strings returned are middleware strings, 0 when absent) ---- */
int32_t MwChannelGetChannelType(MwHandle channel);
MwHandle MwChannelGetCcid(MwHandle channel);
MwHandle MwChannelGetDsd(MwHandle channel);
int32_t MwChannelGetOnid(MwHandle channel);
int32_t MwChannelGetTsid(MwHandle channel);
int32_t MwChannelGetSid(MwHandle channel);
MwHandle MwChannelGetName(MwHandle channel);
int32_t MwChannelGetNid(MwHandle channel);
/* Negative when the channel has no major channel number. */
int32_t MwChannelGetMajorChannel(MwHandle channel);
int32_t MwChannelIsLocked(MwHandle channel);
MwHandle MwChannelGetShortName(MwHandle channel);
int32_t MwChannelGetRunningStatus(MwHandle channel);
int32_t MwChannelIsHidden(MwHandle channel);
int32_t MwChannelGetOpalChannelType(MwHandle channel);
int32_t MwChannelGetFreesatServiceID(MwHandle channel);

/* ---- channel configuration ---- */
/* The channel list; new reference (a list of channels) or 0. */
MwHandle MwChannelConfigGetChannelList(MwHandle config);
/* The genre names; new reference (a list of middleware strings) or 0. */
MwHandle MwChannelConfigGetGenres(MwHandle config);

/* ---- AV components ---- */
/* -1 when the component has no tag. */
int32_t MwComponentGetTag(MwHandle component);
int32_t MwComponentGetPid(MwHandle component);
/* 0 video, 1 audio, 2 subtitle. */
int32_t MwComponentGetType(MwHandle component);
MwHandle MwComponentGetEncoding(MwHandle component);
/* 1 when encrypted. */
int32_t MwComponentIsEncrypted(MwHandle component);
float MwComponentGetAspectRatio(MwHandle component);
MwHandle MwComponentGetLanguage(MwHandle component);
int32_t MwComponentHasAudioDescription(MwHandle component);
int32_t MwComponentGetAudioChannels(MwHandle component);
int32_t MwComponentIsHearingImpaired(MwHandle component);

/* ---- programmes (lists and handles returned are new references or 0) ---- */
MwHandle MwProgrammeGetName(MwHandle programme);
MwHandle MwProgrammeGetProgrammeID(MwHandle programme);
int32_t MwProgrammeGetProgrammeIDType(MwHandle programme);
MwHandle MwProgrammeGetDescription(MwHandle programme);
MwHandle MwProgrammeGetLongDescription(MwHandle programme);
/* Seconds since the epoch. */
int32_t MwProgrammeGetStartTime(MwHandle programme);
/* Seconds. */
int32_t MwProgrammeGetDuration(MwHandle programme);
MwHandle MwProgrammeGetChannelID(MwHandle programme);
/* A list of ratings. */
MwHandle MwProgrammeGetParentalRatings(MwHandle programme);
int32_t MwProgrammeGetAudioType(MwHandle programme);
int32_t MwProgrammeIsMultilingual(MwHandle programme);
/* A list of middleware strings. */
MwHandle MwProgrammeGetAudioLanguages(MwHandle programme);
int32_t MwProgrammeIsHD(MwHandle programme);
int32_t MwProgrammeHasAudioDescription(MwHandle programme);
int32_t MwProgrammeHasSignLanguage(MwHandle programme);
/* A list of middleware strings. */
MwHandle MwProgrammeGetGenre(MwHandle programme);
int32_t MwProgrammeHasGuidance(MwHandle programme);
/* A list of middleware strings. */
MwHandle MwProgrammeGetGuidance(MwHandle programme);
/* A list that is only counted; its elements stay the middleware's. */
MwHandle MwProgrammeGetMediaAssets(MwHandle programme);
MwHandle MwProgrammeGetPromotionalContentText(MwHandle programme);
int32_t MwProgrammeHasHDSimulcast(MwHandle programme);
/* A list of middleware strings. */
MwHandle MwProgrammeGetCRIDS(MwHandle programme);
int32_t MwProgrammeHasRecording(MwHandle programme);
/* The programme's scheduled recording; new reference or 0. */
MwHandle MwProgrammeGetRecording(MwHandle programme);
/* SI descriptors with `tag` (and `tagExtension`, -1 for none) as a list of strings. */
MwHandle MwProgrammeGetSIDescriptors(MwHandle programme, uint32_t tag, int32_t tagExtension);

#ifdef __cplusplus
}
#endif

#endif
