/* Middleware contract: the DRM agent. */
#ifndef ORVANE_MIDDLEWARE_DRM_H
#define ORVANE_MIDDLEWARE_DRM_H

#include "middleware/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A DRM agent for the given script object (context only); 0 on failure. */
MwHandle MwDrmAgentCreate(void* context);
/* Sends a message to a DRM system; returns the message id as a middleware string, or 0.
   The answer arrives later through DrmAgent_onDRMMessageResult. */
MwHandle MwDrmAgentSendMessage(MwHandle agent, const MwString* messageType, const MwString* message,
                               const MwString* drmSystemId);

#ifdef __cplusplus
}
#endif

#endif
