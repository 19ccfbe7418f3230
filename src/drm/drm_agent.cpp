#include "drm/drm_agent.h"

#include "frame/events.h"
#include "frame/frame.h"
#include "frame/instance_kind.h"
#include "middleware/drm.h"
#include "utils/convert.h"

namespace {

RecordList g_agents;

enum Event : uint32_t { kMessageResult = 0, kSystemMessage = 1 };
// onDRMMessageResult always reads as failed, set or not.
const EventProperty kEvents[] = {{"onDRMMessageResult", kMessageResult, SlotRead::kNever},
                                 {"onDRMSystemMessage", kSystemMessage}};
const EventTable kEventTable = ORV_EVENT_TABLE(kEvents, TypeRule::kIgnore, EmptyRead::kNoValue);

// The answer is given to the page, but the page sees the call fail.
bool SendDrmMessage(DrmAgentRecord* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  if (!r->handle) return false;
  MwString type = ArgTextAt(args, count, 0);
  MwString message = ArgTextAt(args, count, 1);
  MwString system = ArgTextAt(args, count, 2);
  NP_UtilsHbbtvStringToResult(MwDrmAgentSendMessage(r->handle, &type, &message, &system), result);
  return false;
}

using Row = Member<DrmAgentRecord>;
const Row kMembers[] = {
    Row::EventSlots(),  // onDRMMessageResult, onDRMSystemMessage
    Row::Call("sendDRMMessage", SendDrmMessage),
    Row::ListenerMethods(),
};

struct DrmAgent : InstanceKindBase<DrmAgent, DrmAgentRecord> {
  ORV_KIND_WITH_EVENTS(kMembers, kEventTable, g_agents)
};

// Browser's thread: the answer to a message (id, answer, code).
void DeliverMessageResult(ObjectRecord* target, PendingEvent* ev) {
  if (!target) return;
  NPVariant args[3];
  TakeStringArgument(ev, 0, &args[0]);
  TakeStringArgument(ev, 1, &args[1]);
  SetInt(&args[2], ev->numbers[0]);
  DeliverToListeners(target, kMessageResult, args, 3);
}

// A system message (message, system id) goes to the DRMMessageResult
// listeners (event 0); listeners registered for DRMSystemMessage are never
// called, and pages written for this receiver listen on DRMMessageResult.
void DeliverSystemMessage(ObjectRecord* target, PendingEvent* ev) {
  if (!target) return;
  NPVariant args[2];
  TakeStringArgument(ev, 0, &args[0]);
  TakeStringArgument(ev, 1, &args[1]);
  DeliverToListeners(target, kMessageResult, args, 2);
}

}  // namespace

ORV_OPENED_INSTANCE_KIND(kDrmAgentKind, DrmAgent, g_agents, "application/oipfdrmagent", kKindDrmAgent,
                         OipfDrmAgentCreate, OipfDrmAgentDestroy, MwDrmAgentCreate)

void DrmAgent_onDRMMessageResult(MwHandle agent, MwHandle messageId, MwHandle resultMessage,
                                 int32_t resultCode) {
  PendingEvent ev = EventFor(g_agents, DeliverMessageResult, agent, kMessageResult);
  ev.owned[0] = messageId;
  ev.owned[1] = resultMessage;
  ev.keep_if_unknown = true;  // for an agent the plug-in never had, the strings stay the middleware's
  ev.numbers[0] = resultCode;
  PostEvent(ev);
}

void DrmAgent_onDRMSystemMessage(MwHandle agent, MwHandle message, MwHandle drmSystemId) {
  PendingEvent ev = EventFor(g_agents, DeliverSystemMessage, agent, kMessageResult);
  ev.owned[0] = message;
  ev.owned[1] = drmSystemId;
  ev.keep_if_unknown = true;
  PostEvent(ev);
}
