/* Middleware contract: A/V control players for media other than broadcast.
   String arguments here are {length, NUL-terminated characters}. */
#ifndef ORVANE_MIDDLEWARE_AVCONTROL_H
#define ORVANE_MIDDLEWARE_AVCONTROL_H

#include "middleware/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A player of each media kind; owned by the caller, 0 on failure. */
MwHandle MwAVCreateVideoMpeg(void);
MwHandle MwAVCreateVideoMp4(void);
MwHandle MwAVCreateAudioMpeg(void);
MwHandle MwAVCreateAudioMp4(void);
/* Clip rectangle of the video plane, or null when the player goes away. */
void MwVideoSetClipRect(const MwRect* rect);
/* The media URL as a middleware string, or 0. */
MwHandle MwAVGetData(MwHandle player);
void MwAVSetData(MwHandle player, const MwString* data);
int32_t MwAVGetPlayPosition(MwHandle player);
int32_t MwAVGetPlayTime(MwHandle player);
int32_t MwAVGetPlayState(MwHandle player);
int32_t MwAVGetError(MwHandle player);
int32_t MwAVGetNrTracks(MwHandle player);
int32_t MwAVGetSpeed(MwHandle player);
int32_t MwAVGetCurrentTrackIndex(MwHandle player);
int32_t MwAVGetWidth(MwHandle player);
int32_t MwAVGetHeight(MwHandle player);
int32_t MwAVGetPersist(MwHandle player);
int32_t MwAVIsFullScreen(MwHandle player);
void MwAVSetCurrentTrackIndex(MwHandle player, uint32_t index);
void MwAVSetPersist(MwHandle player, uint8_t persist);
void MwAVSetWidth(MwHandle player, uint32_t width);
void MwAVSetHeight(MwHandle player, uint32_t height);
void MwAVSetPosition(MwHandle player, int32_t x, int32_t y);
/* The following return 1 on success. */
int32_t MwAVPlay(MwHandle player, uint32_t speed);
int32_t MwAVSeek(MwHandle player, uint32_t position);
int32_t MwAVSetVolume(MwHandle player, uint32_t volume);
int32_t MwAVStop(MwHandle player);
int32_t MwAVNext(MwHandle player);
int32_t MwAVPrevious(MwHandle player);
/* Component lists; new reference or 0. */
MwHandle MwAVGetComponents(MwHandle player, uint32_t componentType);
MwHandle MwAVGetActiveComponents(MwHandle player, uint32_t componentType);
/* Selection by the component's script object, which the middleware recognises. */
void MwAVSelectComponent(MwHandle player, void* componentObject);
void MwAVUnselectComponent(MwHandle player, void* componentObject);
void MwAVSelectComponentType(MwHandle player, uint32_t componentType);
void MwAVUnselectComponentType(MwHandle player, uint32_t componentType);
/* Queues `url` after the current item; null clears the queue. Non-zero on success. */
int32_t MwAVQueue(MwHandle player, const MwString* url);
void MwAVSetFullScreen(MwHandle player, uint8_t fullScreen);
/* Changes the media source; `reserved` is 0. */
void MwAVSetSource(MwHandle player, const MwString* url, uint32_t reserved);
void MwAVSetCache(MwHandle player, int32_t cache);
/* Loop count, -1 for infinite. */
void MwAVSetLoop(MwHandle player, int32_t loop);

#ifdef __cplusplus
}
#endif

#endif
