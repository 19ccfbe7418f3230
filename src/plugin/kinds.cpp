#include "plugin/instance_kind.h"

extern const InstanceKind kAitKind;
extern const InstanceKind kDrmAgentKind;

const InstanceKind* const g_instance_kinds[] = {
    &kAitKind,
    &kDrmAgentKind,
    nullptr,
};
