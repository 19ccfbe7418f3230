// The middleware's way back into the plug-in.
#include "appmgr/application_manager.h"
#include "drm/drm_agent.h"
#include "plugin/entry.h"

extern const MwEventCallbacks g_plugin_callbacks = {
    AppMgr_onLowMemory,
    AppMgr_onApplicationLoadError,
    nullptr,  // SearchManager_onMetadataSearch
    nullptr,  // AVControl_onPlayStateChange
    nullptr,  // AVControl_onFullScreenChange
    nullptr,  // AVControl_onPlayPositionChanged
    nullptr,  // AVControl_onSelectedComponentChanged
    nullptr,  // AVControl_onDRMRightsError
    nullptr,  // Broadcast_onFullScreenChange
    nullptr,  // Broadcast_onChannelChangeError
    nullptr,  // Broadcast_onChannelChangeSucceeded
    nullptr,  // Broadcast_onPlayStateChange
    nullptr,  // Broadcast_onProgrammesChanged
    nullptr,  // Broadcast_onParentalRatingChange
    nullptr,  // Broadcast_onParentalRatingError
    nullptr,  // Broadcast_onSelectedComponentChanged
    nullptr,  // Broadcast_onStreamEvent
    nullptr,  // Broadcast_onRecordingEvent
    nullptr,  // Broadcast_onPlaySpeedChanged
    nullptr,  // Broadcast_onPlayPositionChanged
    nullptr,  // Broadcast_onDRMRightsError
    nullptr,  // LocalSystem_onPvrStatusChange
    nullptr,  // NetworkInterface_onNetworkStatusChange
    DrmAgent_onDRMMessageResult,
    DrmAgent_onDRMSystemMessage,
};
