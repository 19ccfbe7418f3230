#include "appmgr/private_data.h"

#include "appmgr/keyset.h"
#include "objects/channel.h"
#include "frame/frame.h"
#include "middleware/appmgr.h"

namespace {

RecordList g_private_data;

// An object made for a middleware handle, or a failed read. With no handle
// the result is Null and the read still fails: a page without a presented
// channel sees a failed read of currentChannel, not a null value.
bool ObjectResult(NPP instance, MwHandle handle, NPObject* (*create)(NPP, MwHandle),
                  NPVariant* result) {
  if (!handle) {
    SetNull(result);
    return false;
  }
  NPObject* object = create(instance, handle);
  if (!object) return false;
  SetObject(result, object);
  return true;
}

bool Keyset(ObjectRecord* r, NPVariant* result) {
  return ObjectResult(r->instance, MwPrivateDataGetKeyset(r->handle), KeysetCreate, result);
}

bool CurrentChannel(ObjectRecord* r, NPVariant* result) {
  return ObjectResult(r->instance, MwPrivateDataGetCurrentChannel(r->handle), ChannelCreate, result);
}

// Arguments are ignored.
bool GetFreeMem(ObjectRecord* r, const NPVariant*, uint32_t, NPVariant* result) {
  SetInt(result, MwPrivateDataGetFreeMem(r->handle));
  return true;
}

using Row = Member<ObjectRecord>;
const Row kMembers[] = {
    Row::Get("keyset", Keyset),
    Row::Get("currentChannel", CurrentChannel),
    Row::Call("getFreeMem", GetFreeMem),
};

struct PrivateData : HandedOutKind<PrivateData> {
  ORV_KIND(kMembers, g_private_data)
};

}  // namespace

NPObject* ApplicationPrivDataCreate(NPP instance, MwHandle privateData) {
  if (!browser_funcs) {
    if (privateData) MwObjectRelease(privateData);
    return nullptr;
  }
  return NewHandedOut<PrivateData>(instance, privateData, kReleaseOnFailure);
}
