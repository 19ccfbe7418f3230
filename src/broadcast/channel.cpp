#include "broadcast/channel.h"

#include "middleware/broadcast.h"
#include "plugin/frame.h"
#include "plugin/record.h"
#include "utils/convert.h"
#include "utils/record_alloc.h"

namespace {

struct ChannelRecord {
  NPObject* object;
  MwHandle handle;  // owned
  ChannelRecord* next;
};

ChannelRecord* g_channels = nullptr;

enum Property {
  kTypeTv,
  kTypeRadio,
  kTypeOther,
  kTypeHbbtvData,
  kChannelType,
  kCcid,
  kDsd,
  kOnid,
  kTsid,
  kSid,
  kName,
  kNid,
  kMajorChannel,
  kLocked,
  kShortName,
  kRunningStatus,
  kHidden,
  kOpalChannelType,
  kFreesatServiceId,
};

const char* const kPropertyNames[] = {
    "TYPE_TV",     "TYPE_RADIO",   "TYPE_OTHER", "TYPE_HBBTV_DATA", "channelType",
    "ccid",        "dsd",          "onid",       "tsid",            "sid",
    "name",        "nid",          "majorChannel", "locked",        "shortName",
    "runningStatus", "hidden",     "opalChannelType", "freesatServiceID",
};

void Release(MwHandle handle) {
  if (handle) MwObjectRelease(handle);
}

struct Channel : KindDefaults<Channel> {
  ORV_PROPERTY_TABLE(kPropertyNames)

  static void Deallocate(NPObject* object) {
    ChannelRecord* r = FindByObject(g_channels, object);
    if (!r) return;
    Release(r->handle);
    Unlink(&g_channels, r);
    RecordFree(r);
  }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    ChannelRecord* r = FindByObject(g_channels, object);
    if (!r || !r->handle) return false;
    MwHandle h = r->handle;
    switch (Properties().Find(id)) {
      case kTypeTv: SetInt(result, 0); return true;
      case kTypeRadio: SetInt(result, 1); return true;
      case kTypeOther: SetInt(result, 2); return true;
      case kTypeHbbtvData: SetInt(result, 256); return true;
      case kChannelType: SetInt(result, MwChannelGetChannelType(h)); return true;
      case kCcid: NP_UtilsHbbtvStringToResult(MwChannelGetCcid(h), result); return true;
      case kDsd: NP_UtilsHbbtvStringToResult(MwChannelGetDsd(h), result); return true;
      case kOnid: SetInt(result, MwChannelGetOnid(h)); return true;
      case kTsid: SetInt(result, MwChannelGetTsid(h)); return true;
      case kSid: SetInt(result, MwChannelGetSid(h)); return true;
      case kName: NP_UtilsHbbtvStringToResult(MwChannelGetName(h), result); return true;
      case kNid: SetInt(result, MwChannelGetNid(h)); return true;
      case kMajorChannel: {
        int32_t major = MwChannelGetMajorChannel(h);
        if (major < 0) return false;  // no major channel: the property reads as absent
        SetInt(result, major);
        return true;
      }
      case kLocked: SetBool(result, MwChannelIsLocked(h) != 0); return true;
      case kShortName: NP_UtilsHbbtvStringToResult(MwChannelGetShortName(h), result); return true;
      // A flag, not the DVB running-status code: intended.
      case kRunningStatus: SetBool(result, MwChannelGetRunningStatus(h) != 0); return true;
      case kHidden: SetBool(result, MwChannelIsHidden(h) != 0); return true;
      case kOpalChannelType: SetInt(result, MwChannelGetOpalChannelType(h)); return true;
      case kFreesatServiceId: SetInt(result, MwChannelGetFreesatServiceID(h)); return true;
      default: return false;
    }
  }
};

}  // namespace

NPObject* ChannelCreate(NPP instance, MwHandle channel) {
  Channel::Properties().Intern();
  // One script object per channel handle: a second wrap shares the first.
  if (ChannelRecord* existing = channel ? FindByHandle(g_channels, channel) : nullptr) {
    Release(channel);
    return NPN_RetainObject(existing->object);
  }
  ChannelRecord* r = NewScriptRecord<ChannelRecord>(instance, ScriptClass<Channel>::Class());
  if (!r) {
    Release(channel);
    return nullptr;
  }
  r->handle = channel;
  PushFront(&g_channels, r);
  return r->object;
}

MwHandle ChannelGetHandle(NPObject* object) {
  if (!object) return 0;
  ChannelRecord* r = FindByObject(g_channels, object);
  return r ? r->handle : 0;
}
