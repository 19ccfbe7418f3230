#include "frame/instance_kind.h"

extern const InstanceKind kAitKind;
extern const InstanceKind kApplicationManagerKind;
extern const InstanceKind kBroadcastKind;
extern const InstanceKind kDrmAgentKind;

const InstanceKind* const g_instance_kinds[] = {
    &kAitKind,
    &kApplicationManagerKind,
    &kBroadcastKind,
    &kDrmAgentKind,
    nullptr,
};
