/* Middleware contract: application manager, AIT parser, applications, private data, keysets. */
#ifndef ORVANE_MIDDLEWARE_APPMGR_H
#define ORVANE_MIDDLEWARE_APPMGR_H

#include "middleware/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* An application manager (also the AIT parser of an AIT instance) for `context`;
   owned by the caller. Events for it carry this handle. */
MwHandle MwAppManagerCreate(void* context);
/* Feeds AIT bytes to the parser; may set outcome->navigate and outcome->url. */
void MwAitParserWrite(MwHandle parser, const void* bytes, int32_t length, MwAitOutcome* outcome);
/* The application owning the document at `url`; new reference or 0. */
MwHandle MwAppMgrGetOwnerApplication(MwHandle manager, const MwString* url);

/* Makes the application visible. */
void MwApplicationShow(MwHandle application);
/* Hides the application. */
void MwApplicationHide(MwHandle application);
/* Starts the application at the absolute `url` (copied) as a child when createChild is
   non-zero; new reference to it or 0. `application` may be 0. */
MwHandle MwApplicationCreateApplication(MwHandle application, const MwString* url,
                                        uint8_t createChild);
/* Stops the application; the caller's handle is then no longer used. */
void MwApplicationDestroy(MwHandle application);
/* The application's private data; new reference or 0. */
MwHandle MwApplicationGetPrivateData(MwHandle application);

/* The application's keyset; new reference or 0. */
MwHandle MwPrivateDataGetKeyset(MwHandle privateData);
/* The channel currently presented; new reference or 0. */
MwHandle MwPrivateDataGetCurrentChannel(MwHandle privateData);
/* Free memory available to the application, in bytes. */
int32_t MwPrivateDataGetFreeMem(MwHandle privateData);

/* Mask of the key groups the application currently receives. */
int32_t MwKeysetGetValue(MwHandle keyset);
/* Mask of every key group the receiver can deliver. */
int32_t MwKeysetGetMaximumValue(MwHandle keyset);
/* Further key codes: sets *keys to a middleware-owned array valid until the next
   call for this keyset and returns its element count. */
uint32_t MwKeysetGetOtherKeys(MwHandle keyset, const int32_t** keys);
/* Requests the key groups of `mask`; returns the mask granted (may be smaller). */
int32_t MwKeysetSetValue(MwHandle keyset, int32_t mask);

#ifdef __cplusplus
}
#endif

#endif
