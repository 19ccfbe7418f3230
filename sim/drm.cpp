// The simulated DRM agent: every message is answered a few milliseconds
// later from the simulator's thread, with the result "OK" and code 0.
#include <memory>

#include "middleware/drm.h"
#include "sim/core.h"
#include "sim/receiver.h"

namespace {

struct DrmAgentObject : sim::Object {
  const char* Type() const override { return "drm-agent"; }
};

int g_next_message = 1;
sim::ResetHook g_reset([] { g_next_message = 1; });

}  // namespace

extern "C" {

MwHandle MwDrmAgentCreate(void* context) {
  SIM_CALL(MwHandle, context);
  return sim::Register(std::make_shared<DrmAgentObject>(), false);
}

MwHandle MwDrmAgentSendMessage(MwHandle agent, const MwString* messageType, const MwString* message,
                               const MwString* drmSystemId) {
  SIM_CALL(MwHandle, agent, messageType, message, drmSystemId);
  if (!sim::Find<DrmAgentObject>(agent)) return 0;
  std::string id;
  {
    std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
    id = "msg-" + std::to_string(g_next_message++);
  }
  if (sim::AutoEvents()) {
    sim::OnSimThread(
        [agent, id] {
          if (!sim::Find<DrmAgentObject>(agent)) return;  // the agent went away
          SIM_EMIT(DrmAgent_onDRMMessageResult, agent, sim::NewStringHandle(id),
                   sim::NewStringHandle("OK"), int32_t{0});
        },
        5);
  }
  return sim::NewStringHandle(id);
}

}  // extern "C"
