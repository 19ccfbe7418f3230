#include "drm/drm_agent.h"

#include <cstring>

#include "middleware/drm.h"
#include "plugin/frame.h"
#include "plugin/instance_kind.h"
#include "utils/convert.h"
#include "utils/listeners.h"
#include "utils/record_alloc.h"

namespace {

ObjectRecord* g_agents = nullptr;

enum Event : uint32_t { kMessageResult = 0, kSystemMessage = 1 };
enum Property { kOnMessageResult, kOnSystemMessage };
enum Method { kSendMessage, kAddEventListener, kRemoveEventListener };

const char* const kPropertyNames[] = {"onDRMMessageResult", "onDRMSystemMessage"};
const char* const kMethodNames[] = {"sendDRMMessage", "addEventListener", "removeEventListener"};

DrmAgentRecord* Find(NPObject* object) {
  return static_cast<DrmAgentRecord*>(FindByObject(g_agents, object));
}

// A String argument's characters; empty for a missing or non-String argument.
MwString StringArg(const NPVariant* args, uint32_t count, uint32_t i) {
  if (i >= count || !IsString(args[i])) return MwString{0, ""};
  return ArgString(args[i]);
}

bool TypeMatches(const MwString& type, const char* name) {
  return strncmp(type.data, name, type.length) == 0;
}

struct DrmAgent : KindDefaults<DrmAgent> {
  ORV_PROPERTY_TABLE(kPropertyNames)
  ORV_METHOD_TABLE(kMethodNames)

  static void Deallocate(NPObject* object) {
    if (DrmAgentRecord* r = Find(object)) r->object = nullptr;
  }

  static bool Invoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                     NPVariant* result) {
    DrmAgentRecord* r = Find(object);
    if (!r) return false;
    switch (Methods().Find(id)) {
      case kSendMessage: {
        if (!r->handle) return false;
        MwString type = StringArg(args, count, 0);
        MwString message = StringArg(args, count, 1);
        MwString system = StringArg(args, count, 2);
        NP_UtilsHbbtvStringToResult(MwDrmAgentSendMessage(r->handle, &type, &message, &system),
                                    result);
        return false;  // the page sees the call fail, with the message id filled in
      }
      case kAddEventListener: {
        if (count < 2 || !IsString(args[0])) return true;
        MwString type = ArgString(args[0]);
        if (TypeMatches(type, "DRMMessageResult"))
          NP_UtilsAddEventListener(r, &args[1], kMessageResult);
        else if (TypeMatches(type, "DRMSystemMessage"))
          NP_UtilsAddEventListener(r, &args[1], kSystemMessage);
        return true;
      }
      case kRemoveEventListener:
        NP_UtilsRemoveFirstArgumentListener(r, args, count);
        return true;
      default:
        return false;
    }
  }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    DrmAgentRecord* r = Find(object);
    if (!r) return false;
    switch (Properties().Find(id)) {
      case kOnMessageResult:
        NP_UtilsListenerToResult(r->on_message_result, result);
        return false;  // filled when set, yet always reported as failed
      case kOnSystemMessage:
        return NP_UtilsListenerToResult(r->on_system_message, result);
      default:
        return false;
    }
  }

  static bool SetProperty(NPObject* object, NPIdentifier id, const NPVariant* value) {
    DrmAgentRecord* r = Find(object);
    if (!r) return false;
    switch (Properties().Find(id)) {
      case kOnMessageResult:
        NP_UtilsReplaceListener(r, &r->on_message_result, value, kMessageResult);
        return true;
      case kOnSystemMessage:
        NP_UtilsReplaceListener(r, &r->on_system_message, value, kSystemMessage);
        return true;
      default:
        return false;
    }
  }
};

void ReleaseStrings(MwHandle a, MwHandle b) {
  if (a) MwObjectRelease(a);
  if (b) MwObjectRelease(b);
}

ObjectRecord* CreateInstance(NPP instance, const ElementAttributes&) { return OipfDrmAgentCreate(instance); }
void DestroyInstance(ObjectRecord* r) { OipfDrmAgentDestroy(static_cast<DrmAgentRecord*>(r)); }

}  // namespace

extern const InstanceKind kDrmAgentKind = {
    "application/oipfdrmagent", kKindDrmAgent, CreateInstance, DestroyInstance,
    nullptr, nullptr, false, false, nullptr, nullptr,
};

DrmAgentRecord* OipfDrmAgentCreate(NPP instance) {
  DrmAgent::Properties().Intern();
  DrmAgent::Methods().Intern();
  DrmAgentRecord* r = NewInstanceRecord<DrmAgentRecord, DrmAgent>(instance, kKindDrmAgent);
  if (!r) return nullptr;
  r->handle = MwDrmAgentCreate(r->object);
  PushFront<ObjectRecord>(&g_agents, r);
  return r;
}

void OipfDrmAgentDestroy(DrmAgentRecord* r) {
  if (!r || !Unlink<ObjectRecord>(&g_agents, r)) return;
  if (r->handle) {
    MwObjectRelease(r->handle);
    r->handle = 0;
  }
  NP_UtilsFreeAllEventListeners(r);
  RecordFree(r);
}

void DrmAgent_onDRMMessageResult(MwHandle agent, MwHandle messageId, MwHandle resultMessage,
                                 int32_t resultCode) {
  NPVariant* args = FindByHandle(g_agents, agent) ? NP_UtilsNewArguments(3) : nullptr;
  if (!args) {
    ReleaseStrings(messageId, resultMessage);
    return;
  }
  NP_UtilsHbbtvStringToResult(messageId, &args[0]);
  NP_UtilsHbbtvStringToResult(resultMessage, &args[1]);
  SetInt(&args[2], resultCode);
  NP_UtilsAsyncCallback(&g_agents, agent, kMessageResult, args, 3);
}

// System messages reach the DRMMessageResult listeners (event 0), with two
// arguments; listeners registered for DRMSystemMessage are never called.
void DrmAgent_onDRMSystemMessage(MwHandle agent, MwHandle message, MwHandle drmSystemId) {
  NPVariant* args = FindByHandle(g_agents, agent) ? NP_UtilsNewArguments(2) : nullptr;
  if (!args) {
    ReleaseStrings(message, drmSystemId);
    return;
  }
  NP_UtilsHbbtvStringToResult(message, &args[0]);
  NP_UtilsHbbtvStringToResult(drmSystemId, &args[1]);
  NP_UtilsAsyncCallback(&g_agents, agent, kMessageResult, args, 2);
}
