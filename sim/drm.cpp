// The simulated DRM agent. The receiver's DRM systems (the capabilities'
// drm entries) answer each message a few milliseconds later from the
// simulator's thread: a known system with its answer for the message type,
// or "Unknown MIME type" (3) for a type it has no answer for; a system the
// receiver does not have with "Unknown DRM system" (5). A system's own
// messages reach every agent made, each after its delay.
#include <memory>

#include "middleware/drm.h"
#include "sim/core.h"
#include "sim/receiver.h"

namespace {

// The result codes of a DRM message.
constexpr int32_t kUnknownMimeType = 3;
constexpr int32_t kUnknownDrmSystem = 5;

struct DrmAgentObject : sim::Object {
  const char* Type() const override { return "drm-agent"; }
};

int g_next_message = 1;
sim::ResetHook g_reset([] { g_next_message = 1; });

// What the receiver answers to a message of `type` for `system`.
sim::CapabilitySpec::DrmAnswer Answer(const std::string& type, const std::string& system) {
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  for (const sim::CapabilitySpec::Drm& d : sim::Rx().capabilities.drm) {
    if (d.system_id != system) continue;
    auto it = d.answers.find(type);
    return it != d.answers.end() ? it->second : sim::CapabilitySpec::DrmAnswer{"", kUnknownMimeType};
  }
  return {"", kUnknownDrmSystem};
}

void SendSystemMessages(MwHandle agent) {
  std::vector<sim::CapabilitySpec::Drm> systems;
  {
    std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
    systems = sim::Rx().capabilities.drm;
  }
  for (const sim::CapabilitySpec::Drm& d : systems)
    for (const sim::CapabilitySpec::DrmSystemMessage& m : d.system_messages)
      sim::OnSimThread(
          [agent, message = m.message, system = d.system_id] {
            sim::RaiseWhileHeld(agent, [&] {  // not for an agent that went away
              SIM_EMIT(DrmAgent_onDRMSystemMessage, agent, sim::NewStringHandle(message),
                       sim::NewStringHandle(system));
            });
          },
          m.delay_ms);
}

}  // namespace

extern "C" {

MwHandle MwDrmAgentCreate(void* context) {
  SIM_CALL(MwHandle, context);
  MwHandle agent = sim::Register(std::make_shared<DrmAgentObject>(), false);
  if (sim::AutoEvents()) SendSystemMessages(agent);
  return agent;
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
    sim::CapabilitySpec::DrmAnswer answer = Answer(sim::Text(messageType), sim::Text(drmSystemId));
    sim::OnSimThread(
        [agent, id, answer] {
          sim::RaiseWhileHeld(agent, [&] {
            SIM_EMIT(DrmAgent_onDRMMessageResult, agent, sim::NewStringHandle(id),
                     sim::NewStringHandle(answer.result), answer.code);
          });
        },
        5);
  }
  return sim::NewStringHandle(id);
}

}  // extern "C"
