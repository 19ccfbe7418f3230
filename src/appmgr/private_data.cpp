#include "appmgr/private_data.h"

#include "appmgr/keyset.h"
#include "objects/channel.h"
#include "frame/frame.h"
#include "middleware/appmgr.h"

namespace {

RecordList g_private_data;

enum Property { kKeyset, kCurrentChannel };

const char* const kPropertyNames[] = {"keyset", "currentChannel"};
const char* const kMethodNames[] = {"getFreeMem"};

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

struct PrivateData : HandedOutKind<PrivateData> {
  ORV_PROPERTY_TABLE(kPropertyNames)
  ORV_METHOD_TABLE(kMethodNames)

  static RecordList& List() { return g_private_data; }

  static bool Invoke(NPObject* object, NPIdentifier id, const NPVariant*, uint32_t,
                     NPVariant* result) {
    ObjectRecord* r = Find(object);
    if (!r || Methods().Find(id) != 0) return false;
    SetInt(result, MwPrivateDataGetFreeMem(r->handle));  // arguments are ignored
    return true;
  }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    ObjectRecord* r = Find(object);
    if (!r) return false;
    switch (Properties().Find(id)) {
      case kKeyset:
        return ObjectResult(r->instance, MwPrivateDataGetKeyset(r->handle), KeysetCreate, result);
      case kCurrentChannel:
        return ObjectResult(r->instance, MwPrivateDataGetCurrentChannel(r->handle), ChannelCreate,
                            result);
      default:
        return false;
    }
  }
};

}  // namespace

NPObject* ApplicationPrivDataCreate(NPP instance, MwHandle privateData) {
  if (!browser_funcs) {
    if (privateData) MwObjectRelease(privateData);
    return nullptr;
  }
  return NewHandedOut<PrivateData>(instance, privateData, kReleaseOnFailure);
}
