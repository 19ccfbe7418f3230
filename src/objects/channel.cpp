#include "objects/channel.h"

#include "objects/collection_item.h"
#include "frame/frame.h"
#include "middleware/broadcast.h"
#include "middleware/collection.h"
#include "utils/convert.h"

namespace {

RecordList g_channels;

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

struct Channel : HandedOutKind<Channel> {
  ORV_PROPERTY_TABLE(kPropertyNames)
  static RecordList& List() { return g_channels; }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    ObjectRecord* r = Find(object);
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
      // A flag, not the DVB running-status code: pages test it for truth.
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
  // One script object per channel handle: a second wrap shares the first.
  if (NPObject* shared = SharedObject<Channel>(channel)) {
    MwObjectRelease(channel);
    return shared;
  }
  return NewHandedOut<Channel>(instance, channel, kReleaseOnFailure);
}

MwHandle ChannelGetHandle(NPObject* object) { return HandleOf<Channel>(object); }

// ---- channel lists ---------------------------------------------------------------

namespace {

void ChannelToResult(CollectionRecord* r, MwHandle channel, NPVariant* result) {
  SetObjectOrNull(result, channel ? ChannelCreate(r->instance, channel) : nullptr);
}

bool GetChannel(CollectionRecord* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  if (count != 1) return false;
  MwString ccid = CollectionStringArg(args[0]);
  ChannelToResult(r, MwChannelListGetChannel(r->handle, &ccid), result);
  return true;
}

bool GetChannelByTriplet(CollectionRecord* r, const NPVariant* args, uint32_t count,
                         NPVariant* result) {
  if (count != 3) return false;
  uint32_t onid, tsid = 0, sid;
  if (!NP_UtilsGetU32BIT(&args[0], &onid) || !NP_UtilsGetU32BIT(&args[2], &sid)) return false;
  // A null tsid stands for "any transport stream" and is passed as 0.
  if (args[1].type != NPVariantType_Null && !NP_UtilsGetU32BIT(&args[1], &tsid)) return false;
  ChannelToResult(r, MwChannelListGetChannelByTriplet(r->handle, onid, tsid, sid), result);
  return true;
}

const CollectionMember kListMembers[] = {
    {"getChannel", nullptr, GetChannel},
    {"getChannelByTriplet", nullptr, GetChannelByTriplet},
};

}  // namespace

extern const CollectionItemKind kChannelItems = {ChannelCreate, true, ORV_MEMBERS(kListMembers)};
