#include "frame/instance_kind.h"

extern const InstanceKind kAitKind;
extern const InstanceKind kApplicationManagerKind;
extern const InstanceKind kConfigurationKind;
extern const InstanceKind kCapabilitiesKind;
extern const InstanceKind kParentalControlKind;
extern const InstanceKind kRecordingSchedulerKind;
extern const InstanceKind kSearchManagerKind;
extern const InstanceKind kBroadcastKind;
extern const InstanceKind kVideoMpegKind;
extern const InstanceKind kVideoMp4Kind;
extern const InstanceKind kVideoMpeg4Kind;
extern const InstanceKind kAudioMpegKind;
extern const InstanceKind kAudioMp4Kind;
extern const InstanceKind kDrmAgentKind;

const InstanceKind* const g_instance_kinds[] = {
    &kAitKind,
    &kApplicationManagerKind,
    &kConfigurationKind,
    &kBroadcastKind,
    &kParentalControlKind,
    &kVideoMpegKind,
    &kVideoMp4Kind,
    &kVideoMpeg4Kind,
    &kAudioMpegKind,
    &kAudioMp4Kind,
    &kSearchManagerKind,
    &kCapabilitiesKind,
    &kRecordingSchedulerKind,
    &kDrmAgentKind,
    nullptr,
};
