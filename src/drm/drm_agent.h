// The DRM agent ("application/oipfDrmAgent"): sends DRM messages to a DRM
// system through the middleware and reports the answers to the page.
#ifndef ORVANE_DRM_DRM_AGENT_H
#define ORVANE_DRM_DRM_AGENT_H

#include "frame/record.h"
#include "middleware/types.h"
#include "npapi/export.h"

struct DrmAgentRecord : ObjectRecord {};

ORV_EXPORT DrmAgentRecord* OipfDrmAgentCreate(NPP instance);
ORV_EXPORT void OipfDrmAgentDestroy(DrmAgentRecord* record);
// Middleware events, from any thread; the strings become the plug-in's.
ORV_EXPORT void DrmAgent_onDRMMessageResult(MwHandle agent, MwHandle messageId,
                                            MwHandle resultMessage, int32_t resultCode);
ORV_EXPORT void DrmAgent_onDRMSystemMessage(MwHandle agent, MwHandle message, MwHandle drmSystemId);

#endif
