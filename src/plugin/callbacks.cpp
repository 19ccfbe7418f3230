// The middleware's way back into the plug-in.
#include "appmgr/application_manager.h"
#include "avcontrol/avcontrol.h"
#include "broadcast/broadcast.h"
#include "config/local_system.h"
#include "drm/drm_agent.h"
#include "search/search.h"
#include "plugin/entry.h"

extern const MwEventCallbacks g_plugin_callbacks = {
    AppMgr_onLowMemory,
    AppMgr_onApplicationLoadError,
    SearchManager_onMetadataSearch,
    AVControl_onPlayStateChange,
    AVControl_onFullScreenChange,
    AVControl_onPlayPositionChanged,
    AVControl_onSelectedComponentChanged,
    AVControl_onDRMRightsError,
    Broadcast_onFullScreenChange,
    Broadcast_onChannelChangeError,
    Broadcast_onChannelChangeSucceeded,
    Broadcast_onPlayStateChange,
    Broadcast_onProgrammesChanged,
    Broadcast_onParentalRatingChange,
    Broadcast_onParentalRatingError,
    Broadcast_onSelectedComponentChanged,
    Broadcast_onStreamEvent,
    Broadcast_onRecordingEvent,
    Broadcast_onPlaySpeedChanged,
    Broadcast_onPlayPositionChanged,
    Broadcast_onDRMRightsError,
    LocalSystem_onPvrStatusChange,
    NetworkInterface_onNetworkStatusChange,
    DrmAgent_onDRMMessageResult,
    DrmAgent_onDRMSystemMessage,
};
